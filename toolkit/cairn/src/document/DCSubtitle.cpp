// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/DCSubtitle.h>

#include "base/Blanks.h"
#include "xml/FieldReader.h"

#include <algorithm>

namespace Cairn {
namespace {

constexpr char DocumentName[] = "DCSubtitle";

// DCSubtitle Version
//   SubtitleID, MovieTitle, ReelNumber, Language
//   LoadFont* Id URI
//   Font*                                       nested at will, around spots, texts and images
//     Subtitle* SpotNumber TimeIn TimeOut
//       Text*, Image*

std::string TrimmedAttribute(const Element* element, const char* name) {
  return std::string(TrimBlanks(AttributeValue(element, name)));
}

// Text and images of a spot, whatever Font elements stand around them. The parser bounds the depth.
void ReadSpotContent(const Element* element, DCSubtitle::Spot& spot) {
  for (auto* child = FirstChildElement(element); child != nullptr; child = NextSiblingElement(child)) {
    const std::string& name = LocalName(child);
    if (name == "Text") {
      spot.TextList.push_back(TextContent(child));
    } else if (name == "Image") {
      spot.ImageList.push_back(TrimmedText(child));
    } else if (name == "Font") {
      ReadSpotContent(child, spot);
    }
  }
}

void ReadSpot(const Element* element, DCSubtitle& document) {
  DCSubtitle::Spot& spot = document.SpotList.emplace_back();
  spot.SpotNumber = TrimmedAttribute(element, "SpotNumber");
  spot.TimeIn = TrimmedAttribute(element, "TimeIn");
  spot.TimeOut = TrimmedAttribute(element, "TimeOut");
  ReadSpotContent(element, spot);
}

void ReadFont(FieldReader& fields, const Element* element, DCSubtitle& document) {
  DCSubtitle::Font font{AttributeValue(element, "Id"), TrimmedAttribute(element, "URI")};
  if (font.URI.empty()) {
    fields.Log().Warn("%s: LoadFont without URI, ignored\n", DocumentName);
  } else {
    document.FontList.push_back(std::move(font));
  }
}

void ReadChildren(FieldReader& fields, FieldReader& lenient, const Element* element, DCSubtitle& document) {
  for (auto* child = FirstChildElement(element); child != nullptr; child = NextSiblingElement(child)) {
    const std::string& name = LocalName(child);
    if (name == "SubtitleID") {
      fields.PlainID(child, document.SubtitleID);
    } else if (name == "MovieTitle") {
      document.MovieTitle = TrimmedText(child);
    } else if (name == "ReelNumber") {
      lenient.Count(child, document.ReelNumber);
    } else if (name == "Language") {
      document.Language = TrimmedText(child);
    } else if (name == "LoadFont") {
      ReadFont(fields, child, document);
    } else if (name == "Subtitle") {
      ReadSpot(child, document);
    } else if (name == "Font") {
      ReadChildren(fields, lenient, child, document);
    }
  }
}

Result_t ReadSubtitle(const Element* root, DCPFormat_t format, Ferro::ILogSink& log, DCSubtitle& document) {
  if (LocalName(root) != "DCSubtitle") return RESULT_NOT_SUBTITLE;
  document.DCPFormat = format;
  document.Version = AttributeValue(root, "Version");
  FieldReader fields(DocumentName, log);
  FieldReader lenient(DocumentName, log, FieldReader::Mode::Lenient);
  ReadChildren(fields, lenient, root, document);
  if (!document.SubtitleID.HasValue() && fields.Result().Success()) fields.Missing("SubtitleID");
  return fields.Result();
}

}  // namespace

std::list<std::string> DCSubtitle::AncillaryNames() const {
  std::list<std::string> names;
  const auto add = [&](const std::string& name) {
    if (!name.empty() && std::ranges::find(names, name) == names.end()) names.push_back(name);
  };
  for (const Font& font : FontList) add(font.URI);
  for (const Spot& spot : SpotList)
    for (const std::string& image : spot.ImageList) add(image);
  return names;
}

Result_t DCSubtitle::DecodeXML(const std::string& xml) {
  *this = DCSubtitle();
  return ReadDocument(xml, Ferro::DefaultLogSink(),
                      [this](const Element* root, DCPFormat_t format, Ferro::ILogSink& log) {
                        return ReadSubtitle(root, format, log, *this);
                      });
}

}  // namespace Cairn
