// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/Export.h>
#include <Cairn/Types.h>

#include <xercesc/sax/ErrorHandler.hpp>

namespace Ferro {
class ILogSink;
}

namespace Cairn {

/// Logs a parser's diagnostics, "line %u: %s\n" each, and counts the errors. One thread at a time.
///
/// The parser goes on after an error; a document that reaches MaxErrorCount of them is given up, so that no document
/// can flood the log.
class CAIRN_API DOMTreeErrorReporter : public xercesc::ErrorHandler {
 public:
  static constexpr ui32_t MaxErrorCount = 100;

  DOMTreeErrorReporter() = default;
  DOMTreeErrorReporter(const DOMTreeErrorReporter&) = delete;
  DOMTreeErrorReporter& operator=(const DOMTreeErrorReporter&) = delete;
  ~DOMTreeErrorReporter() override;

  void warning(const xercesc::SAXParseException& exception) override;
  void error(const xercesc::SAXParseException& exception) override;
  void fatalError(const xercesc::SAXParseException& exception) override;
  void resetErrors() override;

  ui32_t m_ErrorCount = 0;
  Ferro::ILogSink* m_LogSink = nullptr;  ///< not owned; null: the default sink

 private:
  [[nodiscard]] Ferro::ILogSink& Log() const;
};

}  // namespace Cairn
