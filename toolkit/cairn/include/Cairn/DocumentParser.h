// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/DCPFormat.h>
#include <Cairn/DOMTreeErrorReporter.h>
#include <Cairn/Export.h>
#include <Cairn/Result.h>

#include <Ferro/LogSink.h>

#include <xercesc/parsers/XercesDOMParser.hpp>

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Cairn {

/// A parser for documents from outside, with a DOM tree unless a derived class builds its own. Refuses document type
/// declarations and has no code for them in use, so nothing expands and nothing is loaded; opens no file and no
/// connection; bounds size, depth and counts. Comments and processing instructions are left out of the tree and CDATA
/// sections become text, so that an element's text is one node.
class CAIRN_API DocumentParser : public xercesc::XercesDOMParser {
 public:
  static constexpr size_t MaxDocumentSize = 64 * 1024 * 1024;  // bytes
  static constexpr unsigned MaxDepth = 256;                    // elements inside each other
  static constexpr unsigned MaxElementCount = 500'000;
  static constexpr unsigned MaxNameCount = 4096;  // different names of elements and attributes
  static constexpr unsigned MaxTotalAttributeCount = 1'000'000;
  static constexpr unsigned MaxAttributeCount = 64;     // of one element
  static constexpr size_t MaxAttributeLength = 65'536;  // UTF-16 units of one value
  static constexpr unsigned MaxNamespaceCount = 256;    // declarations in scope

  DocumentParser();
  ~DocumentParser() override;

  /// Parses a document, all of whose diagnostics go to `reporter`. Understands UTF-8, UTF-16 with a byte order mark,
  /// US-ASCII and ISO-8859-1; the declared encoding must agree with the bytes.
  /// @return RESULT_OK; RESULT_XML_PARSE, logged, when the document is malformed or refused; Ferro::RESULT_TOOLARGE,
  /// logged, beyond MaxDocumentSize. May throw what Xerces-C throws.
  [[nodiscard]] Result_t ParseText(const std::string& xml, DOMTreeErrorReporter& reporter, Ferro::ILogSink& log);

  // Events of the parser, overridden to hold the limits and to end the tree at the first error.
  void startElement(const xercesc::XMLElementDecl& declaration, unsigned int uri, const XMLCh* prefix,
                    const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes, XMLSize_t attribute_count, bool is_empty,
                    bool is_root) override;
  void endElement(const xercesc::XMLElementDecl& declaration, unsigned int uri, bool is_root,
                  const XMLCh* prefix) override;
  void docCharacters(const XMLCh* text, XMLSize_t length, bool is_cdata) override;
  void ignorableWhitespace(const XMLCh* text, XMLSize_t length, bool is_cdata) override;
  void docPI(const XMLCh* target, const XMLCh* data) override;

 protected:
  /// A name of an element or an attribute, as UTF-8.
  struct Name {
    std::string Qualified;
    std::string Local;  // without its prefix
  };

  /// Counts an element that begins, and its attributes; throws what ParseText reports when there are too many. The name
  /// lives until the next parse.
  const Name& AdmitElement(const xercesc::XMLElementDecl& declaration,
                           const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes, size_t attribute_count);
  /// An element ends.
  void LeaveElement();
  /// Counts a name unless it was met before.
  const Name& NoteName(const XMLCh* name);

 private:
  struct NameHash : std::hash<std::u16string_view> {
    using is_transparent = void;
  };

  void CheckAttributes(const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes, size_t count);
  [[nodiscard]] bool IsMalformed() const;
  void Reset();

  const DOMTreeErrorReporter* m_Reporter = nullptr;  // of the parse that goes on
  unsigned m_ElementCount = 0;
  size_t m_AttributeCount = 0;
  std::vector<size_t> m_NamespaceCounts;  // declarations in scope, for each open element
  std::unordered_map<std::u16string, Name, NameHash, std::equal_to<>> m_Names;
};

/// Finds out a document's flavour from its document element, without building a tree.
/// @return RESULT_OK; RESULT_XML_PARSE or RESULT_XML_NAMESPACE, logged.
[[nodiscard]] CAIRN_API Result_t ClassifyXMLDocument(const std::string& xml, DCPFormat_t& format, Ferro::ILogSink& log);

/// Logs the exception being handled, which a library below threw. To be called in a catch block.
/// @return RESULT_XML_PARSE.
[[nodiscard]] CAIRN_API Result_t LogXMLException(Ferro::ILogSink& log);

}  // namespace Cairn
