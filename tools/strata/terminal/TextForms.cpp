// SPDX-License-Identifier: BSD-3-Clause
#include "TextForms.h"

#include <array>
#include <cmath>
#include <cstdio>

namespace Tool {

namespace {

template <class... Values>
std::string Format(const char* pattern, Values... values) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), pattern, values...);
  return text.data();
}

}  // namespace

std::string BytesText(Ferro::ui64_t bytes) {
  constexpr std::array units = {"kB", "MB", "GB", "TB", "PB", "EB"};
  if (bytes < 1000) return std::to_string(bytes) + " B";
  double value = double(bytes) / 1000;
  size_t unit = 0;
  while (value >= 999.5 && unit + 1 < units.size()) {
    value /= 1000;
    ++unit;
  }
  return Format(value < 9.995 ? "%.2f %s" : value < 99.95 ? "%.1f %s" : "%.0f %s", value, units[unit]);
}

std::string DurationText(double seconds) {
  if (!(seconds >= 0) || seconds > 1e9) return "?";
  const auto whole = static_cast<unsigned long>(seconds);
  if (whole < 3600) return Format("%lu:%02lu", whole / 60, whole % 60);
  return Format("%lu:%02lu:%02lu", whole / 3600, whole / 60 % 60, whole % 60);
}

std::string TimeCodeText(Ferro::ui32_t edit_unit, const QUIRE::Rational& edit_rate) {
  const double rate = edit_rate.Denominator > 0 ? std::ceil(edit_rate.Quotient()) : 0;
  if (!(rate >= 1) || rate > 1e6) return std::to_string(edit_unit);
  const auto base = static_cast<Ferro::ui32_t>(rate);
  const Ferro::ui32_t seconds = edit_unit / base;
  return Format("%02u:%02u:%02u:%02u", seconds / 3600, seconds / 60 % 60, seconds % 60, edit_unit % base);
}

std::string SamplingRateText(const QUIRE::Rational& rate) {
  return rate.Denominator == 0 ? "unknown" : Format("%.6g kHz", rate.Quotient() / 1000);
}

std::string RateText(const QUIRE::Rational& rate) {
  if (rate.Denominator == 0) return "unknown";
  return rate.Numerator % rate.Denominator == 0 ? std::to_string(rate.Numerator / rate.Denominator)
                                                : Format("%.3f", rate.Quotient());
}

}  // namespace Tool
