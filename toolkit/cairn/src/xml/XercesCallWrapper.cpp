// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/XercesCallWrapper.h>

#include <Ferro/Assert.h>

#include <xercesc/dom/DOMNodeFilter.hpp>

namespace Cairn {
namespace {

constexpr xercesc::DOMNodeFilter::ShowType Shown =
    xercesc::DOMNodeFilter::SHOW_ELEMENT | xercesc::DOMNodeFilter::SHOW_TEXT;

}  // namespace

ParsingFrame::ParsingFrame() = default;
ParsingFrame::~ParsingFrame() = default;

Result_t ParsingFrame::ParseDocument(const std::string& xml, DCPFormat_t& format, Ferro::ILogSink& log) {
  try {
    if (const Result_t result = ClassifyXMLDocument(xml, format, log); result.Failure()) return result;
    init_xml_libs();
    m_parser.set(new DocumentParser);
    SetupParser(log);
    FERRO_ASSERT_TEXT(!m_parser.empty(), "m_parser");
    if (const Result_t result = m_parser->ParseText(xml, m_ErrorReporter, log); result.Failure()) return result;
    m_doc = m_parser->Document();
    FERRO_ASSERT_TEXT(m_doc != nullptr, "m_doc");
    m_iter = m_doc->createTreeWalker(m_doc->getDocumentElement(), Shown, nullptr, true);
    FERRO_ASSERT_TEXT(m_iter != nullptr, "m_iter");
    return Ferro::RESULT_OK;
  } catch (...) {
    return LogXMLException(log);
  }
}

}  // namespace Cairn
