// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/DCPFormat.h>
#include <Cairn/Export.h>
#include <Cairn/Result.h>

#include <Ferro/mem_ptr.h>

#include <xercesc/util/XercesDefs.hpp>

#include <string>

XERCES_CPP_NAMESPACE_BEGIN
class DOMDocument;
XERCES_CPP_NAMESPACE_END

namespace Ferro {
class ILogSink;
}

namespace Cairn {

class BoundedParser;
class DOMTreeErrorReporter;

/// A parser for documents from outside, with a DOM tree. Refuses document type declarations and has no code for them in
/// use, so nothing expands and nothing is loaded; opens no file and no connection; bounds size, depth and counts.
/// CDATA sections become text, and comments and processing instructions are left out of the tree unless they are asked
/// for, so that an element's text is one node. init_xml_libs comes first; one thread at a time.
class CAIRN_API DocumentParser {
 public:
  static constexpr size_t MaxDocumentSize = 64 * 1024 * 1024;  // bytes
  static constexpr unsigned MaxDepth = 256;                    // elements inside each other
  static constexpr unsigned MaxElementCount = 500'000;
  static constexpr unsigned MaxNameCount = 4096;  // different names of elements and attributes
  static constexpr size_t MaxNameLength = 1024;   // bytes of one name
  static constexpr unsigned MaxTotalAttributeCount = 1'000'000;
  static constexpr unsigned MaxAttributeCount = 64;     // of one element
  static constexpr size_t MaxAttributeLength = 65'536;  // UTF-16 units of one value
  static constexpr unsigned MaxNamespaceCount = 256;    // declarations in scope

  enum Content_t {
    ElementsAndText,
    Everything,  ///< comments and processing instructions too, as canonical XML has them
  };

  /// May throw what Xerces-C throws.
  explicit DocumentParser(Content_t content = ElementsAndText);
  ~DocumentParser();
  DocumentParser(const DocumentParser&) = delete;
  DocumentParser& operator=(const DocumentParser&) = delete;

  /// Parses a document, all of whose diagnostics go to `reporter`. Understands UTF-8, UTF-16 with a byte order mark,
  /// US-ASCII and ISO-8859-1; the declared encoding must agree with the bytes.
  /// @return RESULT_OK; RESULT_XML_PARSE, logged, when the document is malformed or refused; Ferro::RESULT_TOOLARGE,
  /// logged, beyond MaxDocumentSize. May throw what Xerces-C throws.
  [[nodiscard]] Result_t ParseText(const std::string& xml, DOMTreeErrorReporter& reporter, Ferro::ILogSink& log);
  /// The document parsed last, which belongs to the parser; null before.
  [[nodiscard]] xercesc::DOMDocument* Document() const;

 private:
  Ferro::mem_ptr<BoundedParser> m_Parser;
};

/// Finds out a document's flavour from its document element, without building a tree.
/// @return RESULT_OK; RESULT_XML_PARSE or RESULT_XML_NAMESPACE, logged.
[[nodiscard]] CAIRN_API Result_t ClassifyXMLDocument(const std::string& xml, DCPFormat_t& format, Ferro::ILogSink& log);

}  // namespace Cairn
