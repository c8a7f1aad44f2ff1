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
/// The parser goes on after an error. Of one document MaxLineCount diagnostics are logged, so that none can flood the log;
/// the errors are all counted, and a document that reaches MaxErrorCount of them is given up.
class CAIRN_API DOMTreeErrorReporter : public xercesc::ErrorHandler {
 public:
  static constexpr ui32_t MaxLineCount = 100;
  static constexpr ui32_t MaxErrorCount = 100'000;

  DOMTreeErrorReporter() = default;
  DOMTreeErrorReporter(const DOMTreeErrorReporter&) = delete;
  DOMTreeErrorReporter& operator=(const DOMTreeErrorReporter&) = delete;
  ~DOMTreeErrorReporter() override;

  void warning(const xercesc::SAXParseException& exception) override;
  void error(const xercesc::SAXParseException& exception) override;
  void fatalError(const xercesc::SAXParseException& exception) override;
  void resetErrors() override;

  ui32_t m_ErrorCount = 0;
  ui64_t m_FirstErrorLine = 0;           ///< from 1; 0 without errors
  Ferro::ILogSink* m_LogSink = nullptr;  ///< not owned; null: the default sink

 private:
  [[nodiscard]] Ferro::ILogSink& Log() const;
  /// True when one more diagnostic may be logged.
  bool TakeLine();

  ui32_t m_LineCount = 0;
};

}  // namespace Cairn
