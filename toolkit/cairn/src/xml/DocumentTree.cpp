// SPDX-License-Identifier: BSD-3-Clause
#include "DocumentTree.h"

#include "BoundedParser.h"
#include "base/Blanks.h"
#include "base/UTF16.h"

#include <Cairn/DOMTreeErrorReporter.h>
#include <Cairn/DocumentParser.h>
#include <Cairn/XMLLibraries.h>
#include <Cairn/XMLNode.h>

#include <Ferro/Assert.h>
#include <Ferro/ILogSink.h>

#include <xercesc/framework/XMLAttr.hpp>
#include <xercesc/framework/XMLElementDecl.hpp>
#include <xercesc/internal/XMLScanner.hpp>

#include <deque>
#include <memory>
#include <unordered_map>
#include <utility>

namespace Cairn {
namespace {

const std::string s_Empty;

/// Builds the tree from the parser's events; the parser's own tree stays unbuilt.
class TreeParser : public BoundedParser {
 public:
  /// The document element of the last successful parse; valid until the next one.
  [[nodiscard]] const Element* Root() const {
    FERRO_ASSERT(!m_Elements.empty());
    return &m_Elements.front();
  }

  /// Makes room for the text of a document of that many bytes, which has no more.
  void Reserve(size_t size) { m_Text.reserve(size); }

  void startDocument() override {
    m_Elements.clear();
    m_Open = nullptr;
    m_Text.clear();
    m_Half = 0;
    m_Namespaces.clear();
  }

  void endDocument() override {}
  void XMLDecl(const XMLCh*, const XMLCh*, const XMLCh*, const XMLCh*) override {}
  void startEntityReference(const xercesc::XMLEntityDecl&) override {}
  void endEntityReference(const xercesc::XMLEntityDecl&) override {}

  void startElement(const xercesc::XMLElementDecl& declaration, unsigned int uri, const XMLCh*,
                    const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes, XMLSize_t attribute_count, bool is_empty,
                    bool) override {
    Element& element = m_Elements.emplace_back();
    element.Name = &AdmitElement(declaration, attributes, attribute_count).Local;
    element.Namespace = &NamespaceOf(uri);
    for (XMLSize_t i = 0; i < attribute_count; ++i) {
      const xercesc::XMLAttr* attribute = attributes.elementAt(i);
      element.Attributes.push_back({&NoteName(attribute->getQName()).Qualified, attribute->getValue()});
    }
    element.Root = &m_Elements.front();
    element.DocumentText = &m_Text;
    element.TextBegin = m_Text.size();
    element.Line = getScanner()->getLocator()->getLineNumber();
    AppendTo(m_Open, element);
    m_Open = &element;
    if (is_empty) Close();
  }

  void endElement(const xercesc::XMLElementDecl&, unsigned int, bool, const XMLCh*) override { Close(); }

  void docCharacters(const XMLCh* text, XMLSize_t length, bool) override {
    if (m_Open == nullptr || length == 0) return;
    std::u16string_view rest(text, length);
    if (m_Half != 0) {
      const char16_t pair[] = {std::exchange(m_Half, u'\0'), rest.front()};
      AppendUTF8(m_Text, {pair, 2});
      rest.remove_prefix(1);
    }
    if (!rest.empty() && rest.back() >= 0xD800 && rest.back() <= 0xDBFF) {
      m_Half = rest.back();
      rest.remove_suffix(1);
    }
    AppendUTF8(m_Text, rest);
  }

 private:
  static void AppendTo(Element* parent, Element& element) {
    element.Parent = parent;
    if (parent == nullptr) return;
    (parent->FirstChild == nullptr ? parent->FirstChild : parent->LastChild->NextSibling) = &element;
    parent->LastChild = &element;
  }

  // In a malformed document an end may come without its start.
  void Close() {
    if (m_Open == nullptr) return;
    LeaveElement();
    m_Open->TextEnd = m_Text.size();
    m_Open = m_Open->Parent;
  }

  const std::string& NamespaceOf(unsigned int uri) {
    const auto [entry, is_new] = m_Namespaces.try_emplace(uri);
    if (is_new) entry->second = XMLChToUTF8(getScanner()->getURIText(uri));
    return entry->second;
  }

  std::deque<Element> m_Elements;  // the document element first
  Element* m_Open = nullptr;       // the innermost one open
  std::string m_Text;
  char16_t m_Half = 0;  // a high surrogate whose low one comes with the next characters
  std::unordered_map<unsigned int, std::string> m_Namespaces;  // by the parser's numbers
};

// Making a parser takes longer than parsing a small document, so each thread keeps the one it used last. A parser that
// an exception ended, or that a large document swelled, is not kept; nor is one missed by a reader within a reader.
class ParserLease {
 public:
  ParserLease() : m_Parser(s_Kept ? std::move(s_Kept) : std::make_unique<TreeParser>()) {}
  ParserLease(const ParserLease&) = delete;
  ParserLease& operator=(const ParserLease&) = delete;
  ~ParserLease() = default;

  TreeParser* operator->() { return m_Parser.get(); }
  void Keep() { s_Kept = std::move(m_Parser); }

 private:
  static thread_local std::unique_ptr<TreeParser> s_Kept;

  std::unique_ptr<TreeParser> m_Parser;
};

thread_local std::unique_ptr<TreeParser> ParserLease::s_Kept;

constexpr size_t s_LargestKept = 1024 * 1024;  // bytes of a document

}  // namespace

const std::string& LocalName(const Element* element) {
  return element == nullptr ? s_Empty : *element->Name;
}

const std::string& NamespaceName(const Element* element) {
  return element == nullptr ? s_Empty : *element->Namespace;
}

std::string TextContent(const Element* element) {
  if (element == nullptr) return {};
  return element->DocumentText->substr(element->TextBegin, element->TextEnd - element->TextBegin);
}

std::string TrimmedText(const Element* element) {
  return std::string(TrimBlanks(TextContent(element)));
}

std::string AttributeValue(const Element* element, std::string_view name) {
  if (element != nullptr)
    for (const Element::NamedValue& attribute : element->Attributes)
      if (*attribute.Name == name) return UTF16ToUTF8(attribute.Value);
  return {};
}

const Element* FirstChildElement(const Element* element) {
  return element == nullptr ? nullptr : element->FirstChild;
}

const Element* NextSiblingElement(const Element* element) {
  return element == nullptr ? nullptr : element->NextSibling;
}

const Element* FirstChildNamed(const Element* element, std::string_view name) {
  const Element* child = FirstChildElement(element);
  while (child != nullptr && *child->Name != name) child = child->NextSibling;
  return child;
}

bool IsOwnElement(const Element* child) {
  return *child->Namespace == *child->Root->Namespace ||
         (child->Parent != nullptr && *child->Namespace == *child->Parent->Namespace);
}

Result_t ParseDocument(const std::string& xml, DOMTreeErrorReporter& reporter, Ferro::ILogSink& log,
                       ElementReader read) {
  try {
    init_xml_libs();
    ParserLease parser;
    parser->Reserve(xml.size());
    if (const Result_t result = parser->ParseText(xml, reporter, log); result.Failure()) return result;
    const Result_t result = read(parser->Root());
    if (xml.size() <= s_LargestKept) parser.Keep();
    return result;
  } catch (...) {
    return LogXMLException(log);
  }
}

Result_t ReadDocument(const std::string& xml, Ferro::ILogSink& log, TreeReader read) {
  try {
    DCPFormat_t format = DFT_NONE;
    if (const Result_t result = ClassifyXMLDocument(xml, format, log); result.Failure()) return result;
    DOMTreeErrorReporter reporter;
    reporter.m_LogSink = &log;
    return ParseDocument(xml, reporter, log, [&](const Element* root) { return read(root, format, log); });
  } catch (...) {
    return LogXMLException(log);
  }
}

}  // namespace Cairn
