// SPDX-License-Identifier: BSD-3-Clause
#include "ValueForm.h"

#include "DateTime.h"
#include "base/Text.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace Assay {
namespace {

/// Takes a text from its front, piece by piece.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : m_Rest(text) {}

  [[nodiscard]] bool IsAtEnd() const { return m_Rest.empty(); }
  bool Take(std::string_view word) {
    if (!m_Rest.starts_with(word)) return false;
    m_Rest.remove_prefix(word.size());
    return true;
  }
  /// As many characters as fit, `most` at the utmost.
  template <class PredicateT>
  size_t TakeWhile(PredicateT fits, size_t most = std::numeric_limits<size_t>::max()) {
    size_t count = 0;
    while (count < m_Rest.size() && count < most && fits(m_Rest[count])) ++count;
    m_Rest.remove_prefix(count);
    return count;
  }
  bool TakeDigits(size_t count) { return TakeWhile(IsDigit, count) == count; }
  /// Two digits, the first of them at most `highest`.
  bool TakeTwoDigits(char highest) {
    if (m_Rest.empty() || m_Rest.front() > highest) return false;
    return TakeDigits(2);
  }

 private:
  std::string_view m_Rest;
};

/// A whole number without its sign and leading zeros; false where the text is none.
bool ReadInteger(std::string_view text, bool& is_negative, std::string_view& digits) {
  is_negative = text.starts_with('-');
  if (is_negative || text.starts_with('+')) text.remove_prefix(1);
  if (text.empty() || !std::ranges::all_of(text, IsDigit)) return false;
  digits = text.substr(std::min(text.find_first_not_of('0'), text.size()));
  return true;
}

bool IsInteger(std::string_view text, bool allows_negative, bool allows_zero) {
  bool is_negative = false;
  std::string_view digits;
  if (!ReadInteger(text, is_negative, digits)) return false;
  return digits.empty() ? allows_zero : allows_negative || !is_negative;
}

bool IsLong(std::string_view text, bool allows_negative) {
  bool is_negative = false;
  std::string_view digits;
  if (!ReadInteger(text, is_negative, digits)) return false;
  if (digits.empty()) return true;
  if (is_negative && !allows_negative) return false;
  const std::string_view limit = is_negative ? "9223372036854775808" : "9223372036854775807";
  return digits.size() < limit.size() || (digits.size() == limit.size() && digits <= limit);
}

/// A decimal number compared with limits that are whole numbers or quarters of them. Long digit strings are no matter.
struct Decimal {
  bool IsNegative = false;
  std::string_view Whole;     // without leading zeros
  std::string_view Fraction;  // without trailing zeros
};

bool ReadDecimal(std::string_view text, Decimal& out) {
  out.IsNegative = text.starts_with('-');
  if (out.IsNegative || text.starts_with('+')) text.remove_prefix(1);
  const size_t point = std::min(text.find('.'), text.size());
  out.Whole = text.substr(0, point);
  out.Fraction = point < text.size() ? text.substr(point + 1) : std::string_view();
  if (out.Whole.empty() && out.Fraction.empty()) return false;
  if (!std::ranges::all_of(out.Whole, IsDigit) || !std::ranges::all_of(out.Fraction, IsDigit)) return false;
  out.Whole.remove_prefix(std::min(out.Whole.find_first_not_of('0'), out.Whole.size()));
  out.Fraction = out.Fraction.substr(0, out.Fraction.find_last_not_of('0') + 1);
  if (out.Whole.empty() && out.Fraction.empty()) out.IsNegative = false;
  return true;
}

/// The number's size against a limit that is not negative: below 0, 0, above 0 as in a difference.
int CompareSize(const Decimal& number, std::string_view whole, std::string_view fraction) {
  if (number.Whole.size() != whole.size()) return number.Whole.size() < whole.size() ? -1 : 1;
  if (const int difference = number.Whole.compare(whole); difference != 0) return difference;
  return number.Fraction.compare(fraction);
}

bool IsDecimal(ValueForm form, std::string_view text) {
  Decimal number;
  if (!ReadDecimal(text, number)) return false;
  const bool is_zero = number.Whole.empty() && number.Fraction.empty();
  switch (form) {
    case ValueForm::PositiveDecimal:
      return !number.IsNegative && !is_zero;
    case ValueForm::NonNegativeDecimal:
      return !number.IsNegative;
    case ValueForm::DecimalFromMinusOne:
      return !number.IsNegative || CompareSize(number, "1", "") <= 0;
    case ValueForm::Percent:
      return CompareSize(number, "100", "") <= 0;
    case ValueForm::Aspect:
      return !number.IsNegative && CompareSize(number, "", "25") >= 0 && CompareSize(number, "4", "") <= 0;
    default:
      return true;
  }
}

bool IsUUID(std::string_view text, bool needs_prefix) {
  Scanner scan(text);
  if (!scan.Take("urn:uuid:") && needs_prefix) return false;
  for (const size_t count : {8U, 4U, 4U, 4U, 12U}) {
    if (count != 8 && !scan.Take("-")) return false;
    if (scan.TakeWhile(IsHexDigit, count) != count) return false;
  }
  return scan.IsAtEnd();
}

bool IsLanguage(std::string_view text) {
  const std::vector<std::string_view> parts = Split(text, '-');
  for (const std::string_view& part : parts) {
    const bool is_first = &part == &parts.front();
    if (part.empty() || part.size() > 8) return false;
    if (!std::ranges::all_of(part, [&](char c) { return IsLetter(c) || (!is_first && IsDigit(c)); })) return false;
  }
  return true;
}

constexpr std::string_view Base64Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

bool IsBase64(std::string_view text) {
  std::string packed;
  for (const std::string_view word : Words(text)) packed += word;
  if (packed.size() % 4 != 0) return false;
  const size_t padding = packed.size() - (packed.find_last_not_of('=') + 1);
  if (padding > 2) return false;
  packed.resize(packed.size() - padding);
  if (packed.find_first_not_of(Base64Digits) != std::string::npos) return false;
  if (padding == 0) return true;
  // The bits of the last digit that belong to no byte are 0.
  return Base64Digits.find(packed.back()) % (padding == 2 ? 16U : 4U) == 0;
}

bool IsTimeOfDay(Scanner& scan, char highest) {
  return scan.TakeTwoDigits(highest) && scan.Take(":") && scan.TakeTwoDigits('5') && scan.Take(":") &&
         scan.TakeTwoDigits('5');
}

bool IsTimeCode(std::string_view text) {
  Scanner scan(text);
  return IsTimeOfDay(scan, '2') && scan.Take(":") && scan.TakeWhile(IsDigit) > 0 && scan.IsAtEnd();
}

bool IsInteropTime(std::string_view text) {
  Scanner scan(text);
  if (!IsTimeOfDay(scan, '9')) return false;
  if (scan.Take(".")) {
    const size_t digits = scan.TakeWhile(IsDigit);
    return digits >= 1 && digits <= 3 && scan.IsAtEnd();
  }
  const std::string_view ticks = text.substr(text.size() - std::min<size_t>(text.size(), 3));
  return scan.Take(":") && scan.TakeDigits(3) && scan.IsAtEnd() && ticks < "250";
}

bool IsEm(std::string_view text) {
  Scanner scan(text);
  scan.Take("-");
  if (scan.TakeWhile(IsDigit) == 0) return false;
  if (scan.Take(".") && scan.TakeWhile(IsDigit) == 0) return false;
  return scan.Take("em") && scan.IsAtEnd();
}

bool IsName(std::string_view text) {
  const auto begins = [](char c) { return IsLetter(c) || c == '_' || static_cast<unsigned char>(c) >= 0x80; };
  const auto goes_on = [&](char c) { return begins(c) || IsDigit(c) || c == '-' || c == '.'; };
  return !text.empty() && begins(text.front()) && std::ranges::all_of(text, goes_on);
}

/// Characters that RFC 3986 does not know are escaped by whoever follows a URI (XML Schema, part 2, 3.2.17): refused is
/// only what cannot be taken apart.
bool IsURI(std::string_view text) {
  const size_t hashes = static_cast<size_t>(std::ranges::count(text, '#'));
  if (hashes > 1) return false;
  for (size_t at = text.find('%'); at != std::string_view::npos; at = text.find('%', at + 1))
    if (at + 2 >= text.size() || !IsHexDigit(text[at + 1]) || !IsHexDigit(text[at + 2])) return false;
  const size_t colon = text.find(':');
  if (colon >= text.find_first_of("/?#")) return true;  // no scheme
  const std::string_view scheme = text.substr(0, colon);
  return !scheme.empty() && IsLetter(scheme.front()) && std::ranges::all_of(scheme, [](char c) {
    return IsLetter(c) || IsDigit(c) || c == '+' || c == '-' || c == '.';
  });
}

bool IsOneOf(std::string_view text, std::string_view choices) {
  return std::ranges::any_of(Words(choices), [&](std::string_view word) { return word == text; });
}

bool IsRational(std::string_view text) {
  const std::vector<std::string_view> words = Words(text);
  return words.size() == 2 && IsLong(words[0], true) && IsLong(words[1], true);
}

bool IsLanguageList(std::string_view text) {
  const std::vector<std::string_view> words = Words(text);
  return !words.empty() && std::ranges::all_of(words, IsLanguage);
}

bool IsColor(std::string_view text) {
  return text.size() == 8 && std::ranges::all_of(text, IsHexDigit);
}

/// Forms that white space around does not count for.
bool HasTrimmedForm(ValueForm form, std::string_view text, std::string_view choices) {
  switch (form) {
    case ValueForm::TokenOneOf:
      return IsOneOf(text, choices);
    case ValueForm::URI:
      return IsURI(text);
    case ValueForm::UUID:
      return IsUUID(text, true);
    case ValueForm::PlainUUID:
      return IsUUID(text, false);
    case ValueForm::Name:
      return IsName(text);
    case ValueForm::DateTime:
      return DateTime::FromText(text).has_value();
    case ValueForm::Integer:
      return IsInteger(text, true, true);
    case ValueForm::PositiveInteger:
      return IsInteger(text, false, false);
    case ValueForm::NonNegativeInteger:
      return IsInteger(text, false, true);
    case ValueForm::Long:
      return IsLong(text, true);
    case ValueForm::NonNegativeLong:
      return IsLong(text, false);
    case ValueForm::Boolean:
      return IsOneOf(text, "true false 1 0");
    case ValueForm::Base64:
      return IsBase64(text);
    case ValueForm::Language:
      return IsLanguage(text);
    case ValueForm::LanguageList:
      return IsLanguageList(text);
    case ValueForm::Rational:
      return IsRational(text);
    case ValueForm::Color:
      return IsColor(text);
    default:
      return IsDecimal(form, text);
  }
}

struct FormText {
  ValueForm Form;
  const char* Text;
};

constexpr FormText FormTexts[] = {
    {ValueForm::NonEmptyText, "a text that is not empty"},
    {ValueForm::Empty, "nothing"},
    {ValueForm::URI, "a URI"},
    {ValueForm::UUID, "urn:uuid: and 32 hexadecimal digits in groups of 8-4-4-4-12"},
    {ValueForm::PlainUUID, "32 hexadecimal digits in groups of 8-4-4-4-12"},
    {ValueForm::Name, "a name"},
    {ValueForm::DateTime, "a date and time such as 2024-03-01T09:30:00+00:00"},
    {ValueForm::Integer, "a whole number"},
    {ValueForm::Long, "a whole number of 64 bits"},
    {ValueForm::NonNegativeLong, "a whole number from 0 on"},
    {ValueForm::PositiveInteger, "a whole number from 1 on"},
    {ValueForm::NonNegativeInteger, "a whole number from 0 on"},
    {ValueForm::Boolean, "true or false"},
    {ValueForm::Base64, "Base64"},
    {ValueForm::Language, "a language tag such as en or fr-CA"},
    {ValueForm::LanguageList, "language tags with blanks between"},
    {ValueForm::Rational, "two whole numbers such as 24 1"},
    {ValueForm::Decimal, "a decimal number"},
    {ValueForm::PositiveDecimal, "a decimal number above 0"},
    {ValueForm::NonNegativeDecimal, "a decimal number from 0 on"},
    {ValueForm::DecimalFromMinusOne, "a decimal number from -1 on"},
    {ValueForm::Percent, "a decimal number from -100 to 100"},
    {ValueForm::Aspect, "a decimal number from 0.25 to 4"},
    {ValueForm::Color, "8 hexadecimal digits"},
    {ValueForm::TimeCode, "a time such as 00:00:04:00"},
    {ValueForm::InteropTime, "a time such as 00:00:04:249"},
    {ValueForm::InteropFade, "up to three digits, or a time such as 00:00:04:249"},
    {ValueForm::Em, "a number and em, such as 0.5em"},
};

}  // namespace

bool HasForm(ValueForm form, std::string_view text, std::string_view choices) {
  switch (form) {
    case ValueForm::Text:
    case ValueForm::Anything:
      return true;
    case ValueForm::NonEmptyText:
      return !text.empty();
    case ValueForm::Empty:
      return text.empty();
    case ValueForm::OneOf:
      return IsOneOf(text, choices);
    case ValueForm::TimeCode:
      return IsTimeCode(text);
    case ValueForm::InteropTime:
      return IsInteropTime(text);
    case ValueForm::InteropFade:
      return IsInteropTime(text) || (!text.empty() && text.size() <= 3 && std::ranges::all_of(text, IsDigit));
    case ValueForm::Em:
      return IsEm(text);
    default:
      return HasTrimmedForm(form, Trim(text), choices);
  }
}

std::string DescribeForm(ValueForm form, std::string_view choices) {
  if (form == ValueForm::OneOf || form == ValueForm::TokenOneOf) {
    std::string text;
    for (const std::string_view word : Words(choices)) text += (text.empty() ? "" : ", ") + std::string(word);
    return text;
  }
  for (const FormText& row : FormTexts)
    if (row.Form == form) return row.Text;
  return "a text";
}

}  // namespace Assay
