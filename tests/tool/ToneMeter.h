// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Types.h>

#include <vector>

/// Power of one frequency in one channel of interleaved 24-bit samples at 48000 per second (Goertzel), relative to full
/// scale squared.
double PowerAt(const std::vector<Ferro::ui8_t>& bytes, Ferro::ui32_t channels, Ferro::ui32_t channel, double hertz);
