// SPDX-License-Identifier: BSD-3-Clause
#include "InfoElements.h"

#include <Cairn/DocumentParser.h>
#include <Cairn/InitObjectWithFile.h>
#include <Cairn/XMLNode.h>
#include <Cairn/XercesCallWrapper.h>

#include <utility>

namespace Tool {

namespace {

using Cairn::LocalName;

/// Counts every element by its name, wherever it stands.
class Elements {
 public:
  /// As the documents of the libraries have it, for InitObjectWithFile.
  [[nodiscard]] Cairn::Result_t DecodeXML(const std::string& xml);

  Json Facts = Json::object();
};

// The texts of the document element's children that are told, under the keys they are told by.
constexpr std::pair<const char*, const char*> Texts[] = {
    {"Id", "id"},
    {"ContentTitleText", "title"},
    {"AnnotationText", "annotation"},
    {"IssueDate", "issue_date"},
    {"Language", "language"},
    {"EditRate", "edit_rate"},
    {"PlayoutID", "playout_id"},
};

// What is counted.
constexpr std::pair<const char*, const char*> Counts[] = {
    {"Subtitle", "spots"}, {"Text", "texts"}, {"Image", "images"}, {"LoadFont", "fonts"}, {"ReelResource", "resources"},
};

class ElementReader : public Cairn::XercesCallWrapper<Elements> {
 public:
  Cairn::Result_t SetupCaller(Elements* elements, Cairn::DCPFormat_t, Ferro::ILogSink&) override {
    const xercesc::DOMElement* root = m_doc->getDocumentElement();
    Json& facts = elements->Facts;
    for (const auto& [name, key] : Texts) AddFact(facts, key, Cairn::TrimmedText(Cairn::FirstChildNamed(root, name)));
    if (facts.contains("id")) facts["id"] = WithoutPrefix(facts["id"].get<std::string>());
    Count(root, facts);
    return Ferro::RESULT_OK;
  }

 private:
  static std::string WithoutPrefix(const std::string& urn) {
    const auto id = Cairn::UUID::FromURN(urn);
    return id ? id->EncodeString() : urn;
  }

  // The parser bounds the depth.
  static void Count(const xercesc::DOMElement* element, Json& facts) {
    for (auto* child = Cairn::FirstChildElement(element); child != nullptr; child = Cairn::NextSiblingElement(child)) {
      for (const auto& [name, key] : Counts)
        if (LocalName(child) == name) facts[key] = facts.value(key, 0) + 1;
      Count(child, facts);
    }
  }
};

Cairn::Result_t Elements::DecodeXML(const std::string& xml) {
  return Cairn::DecodeXMLDocument<ElementReader>(xml, this);
}

}  // namespace

void DescribeByElements(const std::string& path, Json& item) {
  Elements elements;
  if (const auto result = Cairn::InitObjectWithFile(elements, path); result.Failure())
    AddProblem(item, std::string("The document cannot be read: ") + result.Label() + '.');
  item.update(elements.Facts);
}

}  // namespace Tool
