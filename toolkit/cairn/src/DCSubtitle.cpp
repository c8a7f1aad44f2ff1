// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/DCSubtitle.h>

#include "Blanks.h"
#include "FieldReader.h"

#include <Cairn/XMLAttrPtr.h>
#include <Cairn/XMLNode.h>
#include <Cairn/XercesCallWrapper.h>

#include <algorithm>

namespace Cairn {
namespace {

using xercesc::DOMElement;

constexpr char DocumentName[] = "DCSubtitle";

std::string TrimmedAttribute(const DOMElement* element, const char* name) {
  return std::string(TrimBlanks(XMLAttrPtr::get_attr_with_name(element, name)));
}

// Text and images of a spot, whatever Font elements stand around them. The parser bounds the depth.
void ReadSpotContent(const DOMElement* element, DCSubtitle::Spot& spot) {
  for (auto* child = FirstChildElement(element); child != nullptr; child = NextSiblingElement(child)) {
    const std::string name = LocalName(child);
    if (name == "Text") {
      spot.TextList.push_back(TextContent(child));
    } else if (name == "Image") {
      spot.ImageList.push_back(TrimmedText(child));
    } else if (name == "Font") {
      ReadSpotContent(child, spot);
    }
  }
}

void ReadSpot(const DOMElement* element, DCSubtitle& document) {
  DCSubtitle::Spot& spot = document.SpotList.emplace_back();
  spot.SpotNumber = TrimmedAttribute(element, "SpotNumber");
  spot.TimeIn = TrimmedAttribute(element, "TimeIn");
  spot.TimeOut = TrimmedAttribute(element, "TimeOut");
  ReadSpotContent(element, spot);
}

void ReadFont(FieldReader& fields, const DOMElement* element, DCSubtitle& document) {
  DCSubtitle::Font font{XMLAttrPtr::get_attr_with_name(element, "Id"), TrimmedAttribute(element, "URI")};
  if (font.URI.empty()) {
    fields.Log().Warn("%s: LoadFont without URI, ignored\n", DocumentName);
  } else {
    document.FontList.push_back(std::move(font));
  }
}

void ReadChildren(FieldReader& fields, FieldReader& lenient, const DOMElement* element, DCSubtitle& document) {
  for (auto* child = FirstChildElement(element); child != nullptr; child = NextSiblingElement(child)) {
    const std::string name = LocalName(child);
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

class SubtitleParser : public XercesCallWrapper<DCSubtitle> {
 public:
  Result_t SetupCaller(DCSubtitle* document, DCPFormat_t format, Ferro::ILogSink& log) override {
    const DOMElement* root = m_doc->getDocumentElement();
    if (LocalName(root) != "DCSubtitle") return RESULT_NOT_SUBTITLE;
    document->DCPFormat = format;
    document->Version = XMLAttrPtr::get_attr_with_name(root, "Version");
    FieldReader fields(DocumentName, log);
    FieldReader lenient(DocumentName, log, FieldReader::Mode::Lenient);
    ReadChildren(fields, lenient, root, *document);
    if (!document->SubtitleID.HasValue() && fields.Result().Success()) fields.Missing("SubtitleID");
    return fields.Result();
  }
};

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
  return DecodeXMLDocument<SubtitleParser>(xml, this);
}

}  // namespace Cairn
