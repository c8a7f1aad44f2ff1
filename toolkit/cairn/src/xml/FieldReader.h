// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "DocumentTree.h"

#include <Cairn/Result.h>
#include <Cairn/Types.h>

#include <Ferro/ILogSink.h>
#include <QUIRE/Rational.h>

#include <string>

namespace Cairn {

/// Reads typed values out of elements. A malformed value leaves its target, is logged, and makes Result a failure; the
/// first failure stays. A lenient reader only warns: for values that nothing played depends on.
class FieldReader {
 public:
  enum class Mode { Strict, Lenient };

  /// `document` names the document's kind in messages; it and `log` must outlive the reader.
  FieldReader(const char* document, Ferro::ILogSink& log, Mode mode = Mode::Strict)
      : m_Document(document), m_Log(log), m_Mode(mode) {}

  [[nodiscard]] Result_t Result() const { return m_Result; }
  [[nodiscard]] Ferro::ILogSink& Log() const { return m_Log; }
  [[nodiscard]] const char* Document() const { return m_Document; }

  /// "urn:uuid:" in either case and a hexadecimal UUID, blanks around.
  void ID(const Element* element, UUID& out);
  /// A UUID with or without "urn:uuid:".
  void PlainID(const Element* element, UUID& out);
  /// A decimal number from 0 to the largest that fits, a plus sign and leading zeros allowed. The first answers whether it
  /// was one.
  bool Count(const Element* element, ui32_t& out);
  void Count(const Element* element, ui64_t& out);
  /// Two positive numbers; given reduced.
  void Rate(const Element* element, QUIRE::Rational& out);
  /// A number, or two: 0/0 where they make no ratio, which is no failure. "185 0" is 185/100.
  static void Ratio(const Element* element, QUIRE::Rational& out);
  /// Base64 of 20 bytes.
  void Digest(const Element* element, SHA1& out);

  /// Takes down that a required value is not there.
  void Missing(const char* what);
  void Malformed(const char* what, const std::string& value, Result_t result = RESULT_CN_VALUE);

 private:
  void Malformed(const Element* element, Result_t result = RESULT_CN_VALUE);
  void Fail(const std::string& message, Result_t result);

  const char* m_Document;
  Ferro::ILogSink& m_Log;
  Mode m_Mode;
  Result_t m_Result = Ferro::RESULT_OK;
};

}  // namespace Cairn
