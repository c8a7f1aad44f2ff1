// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/DCPFormat.h>
#include <Cairn/DOMTreeErrorReporter.h>
#include <Cairn/DocumentParser.h>
#include <Cairn/Export.h>
#include <Cairn/Result.h>
#include <Cairn/XMLLibraries.h>

#include <Ferro/ILogSink.h>
#include <Ferro/mem_ptr.h>

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMTreeWalker.hpp>

#include <string>

namespace Cairn {

/// What reading a document takes whatever it is filled into: the parser, the document, and a walker over it.
class CAIRN_API ParsingFrame {
 public:
  virtual ~ParsingFrame();
  ParsingFrame(const ParsingFrame&) = delete;
  ParsingFrame& operator=(const ParsingFrame&) = delete;

  /// Gives the error reporter its log sink. Called when the parser is made, before it parses.
  virtual void SetupParser(Ferro::ILogSink& log) { m_ErrorReporter.m_LogSink = &log; }

 protected:
  ParsingFrame();

  /// Classifies the document by its namespace, makes the parser and parses. Exceptions of the XML libraries, of making
  /// them ready too, end here. Every failure is logged.
  /// @return RESULT_OK; RESULT_XML_PARSE, RESULT_XML_NAMESPACE or Ferro::RESULT_TOOLARGE.
  [[nodiscard]] Result_t ParseDocument(const std::string& xml, DCPFormat_t& format, Ferro::ILogSink& log);

  Ferro::mem_ptr<DocumentParser> m_parser;
  xercesc::DOMDocument* m_doc = nullptr;     // owned by the parser
  xercesc::DOMTreeWalker* m_iter = nullptr;  // over m_doc's elements and texts, from its element on; owned by m_doc
  DOMTreeErrorReporter m_ErrorReporter;
};

/// Parses a document's text and hands the tree to a handler, which fills an object of type T from it. A handler derives
/// from this and overrides SetupCaller. One document per object; one thread at a time.
template <class T>
class XercesCallWrapper : public ParsingFrame {
 public:
  /// Fills `object` from m_doc, or by way of m_iter. Its result is that of Parse.
  [[nodiscard]] virtual Result_t SetupCaller(T* object, DCPFormat_t format, Ferro::ILogSink& log) = 0;

  /// Parses the document and calls SetupCaller. Exceptions of the XML libraries end here. Every failure is logged; parts
  /// read before it stay in `object`.
  /// @return SetupCaller's result; RESULT_XML_PARSE, RESULT_XML_NAMESPACE or Ferro::RESULT_TOOLARGE before it.
  [[nodiscard]] Result_t Parse(const std::string& xml, T* object, Ferro::ILogSink& log) {
    DCPFormat_t format = DFT_NONE;
    if (const Result_t result = ParseDocument(xml, format, log); result.Failure()) return result;
    try {
      return SetupCaller(object, format, log);
    } catch (...) {
      return LogXMLException(log);
    }
  }
};

/// Has a handler read `xml` into `object`, logging to the default sink; the tree is released whatever the result.
template <class Handler, class T>
[[nodiscard]] Result_t DecodeXMLDocument(const std::string& xml, T* object) {
  Handler handler;
  return handler.Parse(xml, object, Ferro::DefaultLogSink());
}

}  // namespace Cairn
