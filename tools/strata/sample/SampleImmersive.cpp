// SPDX-License-Identifier: BSD-3-Clause
#include "SampleImmersive.h"

#include <algorithm>
#include <array>

namespace Tool {

namespace {

using Ferro::ui32_t;
using Ferro::ui8_t;

constexpr ui8_t PreambleTag = 1;
constexpr ui8_t FrameTag = 2;
constexpr ui32_t PreambleLength = 1603;  // bytes, as cinema packages have it at 24 frames per second

constexpr std::array<ui32_t, 6> Rates = {24, 25, 30, 48, 50, 60};  // by their codes

void AppendNumber(std::vector<ui8_t>& bytes, ui32_t number) {
  for (int shift = 24; shift >= 0; shift -= 8) bytes.push_back(static_cast<ui8_t>(number >> shift));
}

}  // namespace

std::vector<ui8_t> SampleImmersiveFrame(ui32_t number, ui32_t rate) {
  std::vector<ui8_t> bytes = {PreambleTag};
  AppendNumber(bytes, PreambleLength);
  AppendNumber(bytes, number);
  bytes.insert(bytes.end(), PreambleLength - 4, 0);

  const auto rate_code = static_cast<ui8_t>(std::find(Rates.begin(), Rates.end(), rate) - Rates.begin());
  // Element of kind 8 with 4 bytes: version 1; 48 kHz (2 bits), 24 bits per sample (2 bits, code 1), the rate (4 bits);
  // nothing rendered; no elements inside.
  const std::array<ui8_t, 6> frame = {8, 4, 1, static_cast<ui8_t>(0x10 | rate_code), 0, 0};
  bytes.push_back(FrameTag);
  AppendNumber(bytes, frame.size());
  bytes.insert(bytes.end(), frame.begin(), frame.end());
  return bytes;
}

}  // namespace Tool
