// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/DCPFormat.h>
#include <Cairn/DOMTreeErrorReporter.h>
#include <Cairn/DocumentParser.h>
#include <Cairn/Result.h>
#include <Cairn/XMLLibraries.h>

#include <Ferro/Assert.h>
#include <Ferro/LogSink.h>

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNodeFilter.hpp>
#include <xercesc/dom/DOMTreeWalker.hpp>

#include <memory>
#include <string>

namespace Cairn {

/// Parses a document's text and hands the tree to a handler, which fills an object of type T from it. A handler derives
/// from this and overrides SetupCaller. One document per object; one thread at a time. init_xml_libs comes first.
template <class T>
class XercesCallWrapper {
 public:
  XercesCallWrapper() : m_parser(std::make_unique<DocumentParser>()) {}
  XercesCallWrapper(const XercesCallWrapper&) = delete;
  XercesCallWrapper& operator=(const XercesCallWrapper&) = delete;
  virtual ~XercesCallWrapper() = default;

  /// Gives the error reporter its log sink.
  virtual void SetupParser(Ferro::ILogSink& log) { m_ErrorReporter.m_LogSink = &log; }
  /// Fills `object` from m_doc, or by way of m_iter. Its result is that of Parse.
  [[nodiscard]] virtual Result_t SetupCaller(T* object, DCPFormat_t format, Ferro::ILogSink& log) = 0;

  /// Classifies the document by its namespace, parses it, and calls SetupCaller. Exceptions of the XML libraries end
  /// here. Every failure is logged; parts read before it stay in `object`.
  /// @return SetupCaller's result; RESULT_XML_PARSE, RESULT_XML_NAMESPACE or Ferro::RESULT_TOOLARGE before it.
  [[nodiscard]] Result_t Parse(const std::string& xml, T* object, Ferro::ILogSink& log) {
    DCPFormat_t format = DFT_NONE;
    if (const Result_t result = ClassifyXMLDocument(xml, format, log); result.Failure()) return result;
    try {
      SetupParser(log);
      FERRO_ASSERT_TEXT(m_parser != nullptr, "m_parser");
      if (const Result_t result = m_parser->ParseText(xml, m_ErrorReporter, log); result.Failure()) return result;
      m_doc = m_parser->getDocument();
      FERRO_ASSERT_TEXT(m_doc != nullptr, "m_doc");
      m_iter = m_doc->createTreeWalker(m_doc->getDocumentElement(), Shown, nullptr, true);
      FERRO_ASSERT_TEXT(m_iter != nullptr, "m_iter");
      return SetupCaller(object, format, log);
    } catch (...) {
      return LogXMLException(log);
    }
  }

 protected:
  std::unique_ptr<DocumentParser> m_parser;
  xercesc::DOMDocument* m_doc = nullptr;     // owned by the parser
  xercesc::DOMTreeWalker* m_iter = nullptr;  // over m_doc's elements and texts, from its element on; owned by m_doc
  DOMTreeErrorReporter m_ErrorReporter;

 private:
  static constexpr xercesc::DOMNodeFilter::ShowType Shown =
      xercesc::DOMNodeFilter::SHOW_ELEMENT | xercesc::DOMNodeFilter::SHOW_TEXT;
};

/// Has a handler read `xml` into `object`, logging to the default sink; the tree is released whatever the result.
template <class Handler, class T>
[[nodiscard]] Result_t DecodeXMLDocument(const std::string& xml, T* object) {
  init_xml_libs();
  Handler handler;
  return handler.Parse(xml, object, Ferro::DefaultLogSink());
}

}  // namespace Cairn
