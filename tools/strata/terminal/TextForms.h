// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Types.h>
#include <QUIRE/Rational.h>

#include <string>

namespace Tool {

// How numbers are shown to people.

/// "987 B", "1.5 MB": decimal units, three digits.
[[nodiscard]] std::string BytesText(Ferro::ui64_t bytes);
/// "0:07", "12:05", "1:02:03": hours only when there are any; fractions of a second are dropped.
[[nodiscard]] std::string DurationText(double seconds);
/// Time code of an edit unit: "01:02:03:04" with whole edit units per second, the rate rounded up; no frames dropped.
[[nodiscard]] std::string TimeCodeText(Ferro::ui32_t edit_unit, const QUIRE::Rational& edit_rate);
/// "48 kHz", "44.1 kHz": samples per second.
[[nodiscard]] std::string SamplingRateText(const QUIRE::Rational& rate);
/// "24", "23.976": edit units per second.
[[nodiscard]] std::string RateText(const QUIRE::Rational& rate);

}  // namespace Tool
