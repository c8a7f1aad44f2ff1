// SPDX-License-Identifier: BSD-3-Clause
#include "FieldReader.h"

#include "base/Decimal.h"

#include <Ferro/ILogSink.h>

#include <algorithm>
#include <cctype>
#include <limits>
#include <numeric>

namespace Cairn {
namespace {

constexpr std::string_view URNPrefix = "urn:uuid:";

bool HasURNPrefix(std::string_view text) {
  const auto same = [](char a, char b) { return std::tolower(static_cast<unsigned char>(a)) == b; };
  return text.size() >= URNPrefix.size() && std::ranges::equal(text.substr(0, URNPrefix.size()), URNPrefix, same);
}

}  // namespace

void FieldReader::ID(const Element* element, UUID& out) {
  if (!HasURNPrefix(TrimmedText(element))) return Malformed(element, RESULT_CN_UUID_FORMAT);
  PlainID(element, out);
}

void FieldReader::PlainID(const Element* element, UUID& out) {
  const std::string text = TrimmedText(element);
  const size_t prefix = HasURNPrefix(text) ? URNPrefix.size() : 0;
  if (!out.DecodeHex(std::string_view(text).substr(prefix))) Malformed(element, RESULT_CN_UUID_FORMAT);
}

void FieldReader::Count(const Element* element, ui64_t& out) {
  const auto value = ParseDecimal(TrimmedText(element));
  value ? static_cast<void>(out = *value) : Malformed(element);
}

bool FieldReader::Count(const Element* element, ui32_t& out) {
  const auto value = ParseDecimal(TrimmedText(element));
  const bool fits = value && *value <= std::numeric_limits<ui32_t>::max();
  fits ? static_cast<void>(out = static_cast<ui32_t>(*value)) : Malformed(element);
  return fits;
}

void FieldReader::Rate(const Element* element, QUIRE::Rational& out) {
  const auto rate = ParseDecimalPair(TrimmedText(element));
  if (!rate || rate->first == 0 || rate->second == 0) return Malformed(element);
  const ui64_t divisor = std::gcd(rate->first, rate->second);
  const auto reduced = MakeRational(rate->first / divisor, rate->second / divisor);
  reduced ? static_cast<void>(out = *reduced) : Malformed(element);
}

void FieldReader::Ratio(const Element* element, QUIRE::Rational& out) {
  const std::string text = TrimmedText(element);
  if (const auto pair = ParseDecimalPair(text)) {
    out = MakeRational(pair->first, pair->second == 0 ? 100 : pair->second).value_or(QUIRE::Rational());
  } else {
    out = ParseDecimalFraction(text).value_or(QUIRE::Rational());
  }
}

void FieldReader::Digest(const Element* element, SHA1& out) {
  if (!out.DecodeBase64(TrimmedText(element))) Malformed(element);
}

void FieldReader::Missing(const char* what) {
  Fail(std::string(what) + " is missing", RESULT_CN_VALUE);
}

void FieldReader::Malformed(const char* what, const std::string& value, Result_t result) {
  static constexpr size_t ShownLength = 80;
  Fail(std::string("malformed ") + what + " \"" + value.substr(0, ShownLength) + "\"", result);
}

void FieldReader::Malformed(const Element* element, Result_t result) {
  Malformed(LocalName(element).c_str(), TrimmedText(element), result);
}

void FieldReader::Fail(const std::string& message, Result_t result) {
  if (m_Mode == Mode::Lenient) {
    m_Log.Warn("%s: %s\n", m_Document, message.c_str());
    return;
  }
  m_Log.Error("%s: %s\n", m_Document, message.c_str());
  if (m_Result.Success()) m_Result = result;
}

}  // namespace Cairn
