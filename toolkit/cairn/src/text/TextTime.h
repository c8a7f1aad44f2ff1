// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/TimedText.h>
#include <Cairn/Types.h>

#include <optional>
#include <string>
#include <string_view>

namespace Cairn {

// Times of both flavours, in units from 00:00:00. Numbers that the form allows are read whatever their number of digits:
// hours, minutes and seconds have one or two of them. No value where a time cannot be read.

struct TextTime {
  i64_t Units = 0;
  std::optional<TextProblem_t> Problem;  // Malformed or OutOfRange: Units is the time as far as it goes
};

/// "HH:MM:SS:E", E counting `rate` units a second (ST 428-7). An E beyond the last one is taken for it.
[[nodiscard]] std::optional<TextTime> ParseTimeCode(std::string_view text, ui32_t rate);
/// "HH:MM:SS:TTT" in ticks of 4 ms, 0 to 249, or "HH:MM:SS.s" with up to three digits after the point, in milliseconds.
/// Ticks beyond the last one are taken for it.
[[nodiscard]] std::optional<TextTime> ParseTickTime(std::string_view text);
/// A time as above, or ticks alone, in milliseconds.
[[nodiscard]] std::optional<TextTime> ParseTickFade(std::string_view text);

/// The form that ParseTimeCode, or without a rate ParseTickTime, reads.
[[nodiscard]] std::string FormatTextTime(i64_t units, std::optional<ui32_t> rate);

}  // namespace Cairn
