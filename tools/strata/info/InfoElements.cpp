// SPDX-License-Identifier: BSD-3-Clause
#include "InfoElements.h"

#include "show/DocumentFault.h"
#include "terminal/LogView.h"
#include "terminal/TextForms.h"

#include <Cairn/DocumentParser.h>
#include <Cairn/InitObjectWithFile.h>
#include <Cairn/XMLNode.h>
#include <Cairn/XercesCallWrapper.h>

#include <map>
#include <string_view>
#include <utility>

namespace Tool {

namespace {

using Cairn::LocalName;

/// Counts every element by its name, wherever it stands.
class Elements {
 public:
  /// As the documents of the libraries have it, for InitObjectWithFile.
  [[nodiscard]] Cairn::Result_t DecodeXML(const std::string& xml);

  InfoFacts Texts;
  std::map<std::string, Ferro::ui64_t> Found;  ///< by the element's name
};

constexpr std::string_view EditRateKey = "edit_rate";

// The texts of the document element's children that are told, under the keys they are told by.
constexpr std::pair<const char*, const char*> Texts[] = {
    {"ContentTitleText", "title"}, {"AnnotationText", "annotation"}, {"IssueDate", "issue_date"},
    {"Language", "language"},      {"EditRate", EditRateKey.data()}, {"PlayoutID", "playout_id"},
};

// What is counted.
constexpr std::pair<const char*, const char*> Counts[] = {
    {"Subtitle", "spots"}, {"Text", "texts"}, {"Image", "images"}, {"LoadFont", "fonts"}, {"ReelResource", "resources"},
};

class ElementReader : public Cairn::XercesCallWrapper<Elements> {
 public:
  Cairn::Result_t SetupCaller(Elements* elements, Cairn::DCPFormat_t, Ferro::ILogSink&) override {
    const xercesc::DOMElement* root = m_doc->getDocumentElement();
    elements->Texts.Add("id", WithoutPrefix(Cairn::TrimmedText(Cairn::FirstChildNamed(root, "Id"))));
    for (const auto& [name, key] : Texts)
      elements->Texts.Add(key, Cairn::TrimmedText(Cairn::FirstChildNamed(root, name)));
    Count(root, elements->Found);
    return Ferro::RESULT_OK;
  }

 private:
  static std::string WithoutPrefix(const std::string& urn) {
    const auto id = Cairn::UUID::FromURN(urn);
    return id ? id->EncodeString() : urn;
  }

  // The parser bounds the depth.
  static void Count(const xercesc::DOMElement* element, std::map<std::string, Ferro::ui64_t>& found) {
    for (auto* child = Cairn::FirstChildElement(element); child != nullptr; child = Cairn::NextSiblingElement(child)) {
      ++found[LocalName(child)];
      Count(child, found);
    }
  }
};

Cairn::Result_t Elements::DecodeXML(const std::string& xml) {
  return Cairn::DecodeXMLDocument<ElementReader>(xml, this);
}

}  // namespace

void DescribeByElements(const std::string& path, InfoItem& item) {
  Elements elements;
  QuietLog log;
  if (const auto result = Cairn::InitObjectWithFile(elements, path); result.Failure())
    item.AddProblem("The document cannot be read: " + DocumentFault(path, result, log.Take()) + '.');
  for (const auto& [key, value] : elements.Texts.All) {
    InfoValue& added = item.Facts.Set(key, value);
    QUIRE::Rational rate;
    if (key == EditRateKey && rate.DecodeString(std::get<std::string>(value.Value)))
      added.ShownAs(RateText(rate) + " edit units per second");
  }
  for (const auto& [name, key] : Counts)
    if (const auto found = elements.Found.find(name); found != elements.Found.end()) item.Facts.Set(key, found->second);
}

}  // namespace Tool
