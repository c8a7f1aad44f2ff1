// SPDX-License-Identifier: BSD-3-Clause
#include "SampleText.h"

#include "SampleFont.h"
#include "SampleRequire.h"
#include "picture/PngFile.h"

#include <Cairn/DCSubtitle.h>
#include <Ferro/XMLElement.h>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace Tool {

namespace {

using Ferro::ui32_t;
using Ferro::ui8_t;

constexpr char FontID[] = "Sample";
constexpr ui32_t GlyphWidth = 6;  // dots, with the gap behind
constexpr ui32_t GlyphHeight = 7;
constexpr ui32_t GlyphColumns = 5;

/// Hours, minutes, seconds and the units of half a second: of `units` in each second, the earlier half is never longer.
std::string TimeOf(ui32_t half_seconds, ui32_t units, const char* format) {
  const ui32_t seconds = half_seconds / 2;
  char text[64];
  std::snprintf(text, sizeof text, format, seconds / 3600, seconds / 60 % 60, seconds % 60,
                half_seconds % 2 * (units / 2));
  return text;
}

/// The places of all dots that are set in a line of text, in dots.
std::vector<std::pair<ui32_t, ui32_t>> DotsOf(const std::string& text) {
  std::vector<std::pair<ui32_t, ui32_t>> dots;
  for (size_t i = 0; i < text.size(); ++i)
    for (ui32_t row = 0; row < GlyphHeight; ++row)
      for (ui32_t column = 0; column < GlyphColumns; ++column)
        if ((SampleGlyphOf(text[i])[row] >> (GlyphColumns - 1 - column) & 1) != 0)
          dots.emplace_back(static_cast<ui32_t>(i) * GlyphWidth + column, row);
  return dots;
}

void FillSquare(PngPicture& picture, ui32_t left, ui32_t top, ui32_t size, ui8_t grey) {
  for (ui32_t y = top; y < top + size; ++y)
    for (ui32_t x = left; x < left + size; ++x) {
      ui8_t* pixel = picture.Samples.data() + (size_t{y} * picture.Width + x) * 4;
      std::fill_n(pixel, 3, grey);
      pixel[3] = 255;
    }
}

}  // namespace

SampleText::SampleText(Facts facts) : m_Facts(std::move(facts)) {}

std::vector<SampleText::Spot> SampleText::Spots() const {
  const bool has_image = m_Facts.ImageID.HasValue();
  std::vector<Spot> spots;
  for (ui32_t second = 0; second < m_Facts.Seconds; ++second) {
    spots.push_back(
        {"Reel " + std::to_string(m_Facts.ReelNumber) + ' ' + m_Facts.Kind + " of second " + std::to_string(second),
         second * 2, second * 2 + (has_image ? 1 : 2)});
    if (has_image) spots.push_back({"", second * 2 + 1, second * 2 + 2});
  }
  return spots;
}

std::string SampleText::SMPTEDocument() const {
  constexpr char format[] = "%02u:%02u:%02u:%02u";
  const std::string rate = std::to_string(m_Facts.Rate);
  Ferro::XMLElement root("SubtitleReel");
  root.SetAttr("xmlns", Namespace);
  root.AddChildWithContent("Id", m_Facts.DocumentID.EncodeURN());
  root.AddChildWithContent("ContentTitleText", m_Facts.Title);
  root.AddChildWithContent("IssueDate", m_Facts.Date.EncodeString());
  root.AddChildWithContent("ReelNumber", std::to_string(m_Facts.ReelNumber));
  root.AddChildWithContent("Language", "en");
  root.AddChildWithContent("EditRate", rate + " 1");
  root.AddChildWithContent("TimeCodeRate", rate);
  root.AddChildWithContent("StartTime", TimeOf(0, m_Facts.Rate, format));
  root.AddChildWithContent("LoadFont", m_Facts.FontID.EncodeURN()).SetAttr("ID", FontID);
  Ferro::XMLElement& font = root.AddChild("SubtitleList").AddChild("Font");
  font.SetAttr("ID", FontID);
  ui32_t number = 0;
  for (const Spot& spot : Spots()) {
    Ferro::XMLElement& subtitle = font.AddChild("Subtitle");
    subtitle.SetAttr("SpotNumber", std::to_string(++number));
    subtitle.SetAttr("TimeIn", TimeOf(spot.In, m_Facts.Rate, format));
    subtitle.SetAttr("TimeOut", TimeOf(spot.Out, m_Facts.Rate, format));
    Ferro::XMLElement& content = spot.Line.empty() ? subtitle.AddChildWithContent("Image", m_Facts.ImageID.EncodeURN())
                                                   : subtitle.AddChildWithContent("Text", spot.Line);
    content.SetAttr("Valign", "bottom");
    content.SetAttr("Vposition", "8");
  }
  std::string text;
  SampleRequire(root.Render(text), "a text");
  return text;
}

std::string SampleText::InteropDocument() const {
  constexpr char format[] = "%02u:%02u:%02u:%03u";
  constexpr ui32_t ticks = 250;  // per second
  Cairn::DCSubtitle document;
  document.SubtitleID = m_Facts.DocumentID;
  document.MovieTitle = m_Facts.Title;
  document.ReelNumber = m_Facts.ReelNumber;
  document.Language = "English";
  document.FontList.push_back({FontID, FontName});
  for (const Spot& spot : Spots()) {
    Cairn::DCSubtitle::Spot& subtitle = document.SpotList.emplace_back();
    subtitle.SpotNumber = std::to_string(document.SpotList.size());
    subtitle.TimeIn = TimeOf(spot.In, ticks, format);
    subtitle.TimeOut = TimeOf(spot.Out, ticks, format);
    (spot.Line.empty() ? subtitle.ImageList : subtitle.TextList).push_back(spot.Line.empty() ? ImageName : spot.Line);
  }
  std::string text;
  SampleRequire(document.EncodeXML(text), "a text");
  return text;
}

std::vector<ui8_t> SampleText::Image() const {
  const std::string line = "REEL " + std::to_string(m_Facts.ReelNumber);
  const ui32_t dot = std::max(1U, m_Facts.PictureHeight / 90);
  PngPicture picture;
  picture.Channels = 4;
  picture.Width = (static_cast<ui32_t>(line.size()) * GlyphWidth + 1) * dot;  // with the border on both sides
  picture.Height = (GlyphHeight + 2) * dot;
  picture.Samples.resize(size_t{picture.Width} * picture.Height * 4);
  const auto dots = DotsOf(line);
  for (const auto& [column, row] : dots) FillSquare(picture, column * dot, row * dot, dot * 3, 0);
  for (const auto& [column, row] : dots) FillSquare(picture, (column + 1) * dot, (row + 1) * dot, dot, 255);
  return EncodePng(picture);
}

}  // namespace Tool
