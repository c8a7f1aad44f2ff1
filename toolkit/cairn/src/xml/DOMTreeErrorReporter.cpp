// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/DOMTreeErrorReporter.h>

#include <Cairn/XMLNode.h>

#include "DocumentRefused.h"

#include <Ferro/ILogSink.h>

#include <xercesc/sax/SAXParseException.hpp>

namespace Cairn {
namespace {

unsigned LineNumber(const xercesc::SAXParseException& exception) {
  return static_cast<unsigned>(exception.getLineNumber());
}

}  // namespace

DOMTreeErrorReporter::~DOMTreeErrorReporter() = default;

void DOMTreeErrorReporter::warning(const xercesc::SAXParseException& exception) {
  if (TakeLine()) Log().Warn("line %u: %s\n", LineNumber(exception), XMLChToUTF8(exception.getMessage()).c_str());
}

void DOMTreeErrorReporter::error(const xercesc::SAXParseException& exception) {
  if (++m_ErrorCount == 1) m_FirstErrorLine = exception.getLineNumber();
  if (TakeLine()) Log().Error("line %u: %s\n", LineNumber(exception), XMLChToUTF8(exception.getMessage()).c_str());
  if (m_ErrorCount >= MaxErrorCount) throw TooManyErrors{};
}

void DOMTreeErrorReporter::fatalError(const xercesc::SAXParseException& exception) {
  error(exception);
}

void DOMTreeErrorReporter::resetErrors() {
  m_ErrorCount = 0;
  m_FirstErrorLine = 0;
  m_LineCount = 0;
}

bool DOMTreeErrorReporter::TakeLine() {
  if (m_LineCount == MaxLineCount) return false;
  ++m_LineCount;
  return true;
}

Ferro::ILogSink& DOMTreeErrorReporter::Log() const {
  return m_LogSink != nullptr ? *m_LogSink : Ferro::DefaultLogSink();
}

}  // namespace Cairn
