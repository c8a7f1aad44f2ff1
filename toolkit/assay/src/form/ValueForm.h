// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/Types.h>

#include <string>
#include <string_view>

namespace Assay {

/// The forms that values of documents can have (XML Schema, part 2, and what the documents' standards build on it).
enum class ValueForm : ui8_t {
  Text,                 ///< anything
  NonEmptyText,         ///< at least one character
  Empty,                ///< nothing
  OneOf,                ///< one of given words, exactly
  TokenOneOf,           ///< the same with white space around
  URI,                  ///< RFC 3986 reference; blanks and characters beyond ASCII are allowed
  UUID,                 ///< urn:uuid: and 8-4-4-4-12 hexadecimal digits
  PlainUUID,            ///< the same, urn:uuid: may be missing
  Name,                 ///< an XML name without colon
  DateTime,             ///< 2024-03-01T09:30:00, fraction and offset may follow
  Integer,              ///< of any size
  Long,                 ///< of 64 bits
  NonNegativeLong,      ///< of 64 bits, not below 0
  PositiveInteger,      ///< of any size
  NonNegativeInteger,   ///< of any size
  Boolean,              ///< true, false, 1, 0
  Base64,               ///< of any length
  Language,             ///< words of up to 8 letters and digits with hyphens
  LanguageList,         ///< one or several, white space between
  Rational,             ///< two integers of 64 bits
  Decimal,              ///< 1, 1.5, .5, -2.
  PositiveDecimal,      ///< above 0
  NonNegativeDecimal,   ///< 0 and above
  DecimalFromMinusOne,  ///< -1 and above
  Percent,              ///< -100 to 100
  Aspect,               ///< 0.25 to 4
  Color,                ///< eight hexadecimal digits
  TimeCode,             ///< HH:MM:SS:E with any number of digits behind
  InteropTime,          ///< HH:MM:SS:TTT in ticks of 4 ms, or HH:MM:SS.sss
  InteropFade,          ///< the same, or up to three digits
  Em,                   ///< a number and "em"
  Anything,             ///< also elements
};

/// Whether `text` has the form. `choices` are the words of OneOf, blanks between.
[[nodiscard]] bool HasForm(ValueForm form, std::string_view text, std::string_view choices = {});
/// The form for people: "a date and time such as 2024-03-01T09:30:00+00:00".
[[nodiscard]] std::string DescribeForm(ValueForm form, std::string_view choices = {});

}  // namespace Assay
