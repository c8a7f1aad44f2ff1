// SPDX-License-Identifier: BSD-3-Clause
#include "ToneMeter.h"

#include "sample/SampleSound.h"

#include <cmath>
#include <numbers>

double PowerAt(const std::vector<Ferro::ui8_t>& bytes, Ferro::ui32_t channels, Ferro::ui32_t channel, double hertz) {
  const double factor = 2 * std::cos(2 * std::numbers::pi * hertz / Tool::SampleSound::Rate);
  double before = 0;
  double last = 0;
  const size_t count = bytes.size() / 3 / channels;
  for (size_t i = 0; i < count; ++i) {
    const Ferro::ui8_t* at = bytes.data() + (i * channels + channel) * 3;
    const auto value = static_cast<Ferro::i32_t>(
                           (Ferro::ui32_t{at[0]} << 8 | Ferro::ui32_t{at[1]} << 16 | Ferro::ui32_t{at[2]} << 24)) >>
                       8;
    const double now = value / 8'388'607.0 + factor * last - before;
    before = last;
    last = now;
  }
  const double energy = last * last + before * before - factor * last * before;
  return 4 * energy / (double(count) * double(count));
}
