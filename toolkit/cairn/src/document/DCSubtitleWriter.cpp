// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/DCSubtitle.h>

#include "xml/FieldWriter.h"

namespace Cairn {
namespace {

using Ferro::XMLElement;

// Lines stand above each other, from this many per cent of the screen's height on.
constexpr unsigned LowestLine = 8;
constexpr unsigned LineDistance = 6;

void Place(XMLElement& element, unsigned vertical_position) {
  element.SetAttr("VAlign", "bottom");
  element.SetAttr("VPosition", std::to_string(vertical_position));
}

void WriteSpot(FieldWriter& fields, XMLElement& parent, const DCSubtitle::Spot& spot) {
  XMLElement& element = parent.AddChild("Subtitle");
  if (spot.TimeIn.empty() || spot.TimeOut.empty()) fields.Missing("Subtitle TimeIn or TimeOut");
  if (spot.TextList.empty() && spot.ImageList.empty()) fields.Missing("Subtitle Text or Image");
  element.SetAttr("SpotNumber", spot.SpotNumber);
  element.SetAttr("TimeIn", spot.TimeIn);
  element.SetAttr("TimeOut", spot.TimeOut);
  auto line = static_cast<unsigned>(spot.TextList.size());
  for (const std::string& text : spot.TextList)
    Place(element.AddChildWithContent("Text", text), LowestLine + --line * LineDistance);
  for (const std::string& image : spot.ImageList) Place(element.AddChildWithContent("Image", image), LowestLine);
}

}  // namespace

Result_t DCSubtitle::EncodeXML(std::string& out) const {
  FieldWriter fields("DCSubtitle", DFT_Interop);
  XMLElement root("DCSubtitle");
  root.SetAttr("Version", Version.empty() ? "1.1" : Version);
  if (!SubtitleID.HasValue()) fields.Missing("SubtitleID");
  root.AddChildWithContent("SubtitleID", SubtitleID.EncodeString());
  root.AddChildWithContent("MovieTitle", MovieTitle);
  FieldWriter::Count(root, "ReelNumber", ReelNumber);
  root.AddChildWithContent("Language", Language);
  for (const Font& font : FontList) {
    XMLElement& element = root.AddChild("LoadFont");
    element.SetAttr("Id", font.ID);
    element.SetAttr("URI", font.URI);
  }
  XMLElement* parent = &root;
  if (!FontList.empty() && !SpotList.empty()) {
    parent = &root.AddChild("Font");
    parent->SetAttr("Id", FontList.front().ID);
  }
  for (const Spot& spot : SpotList) WriteSpot(fields, *parent, spot);
  return fields.Render(root, out);
}

}  // namespace Cairn
