// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Types.h>

#include <vector>

namespace Tool {

/// One frame of immersive audio (ST 2098-2): a preamble that begins with the frame's number, in 4 bytes, so that no two
/// frames are alike, and a frame element without channels and objects: silence.
/// @param rate  frames per second: 24, 25, 30, 48, 50 or 60.
[[nodiscard]] std::vector<Ferro::ui8_t> SampleImmersiveFrame(Ferro::ui32_t number, Ferro::ui32_t rate);

}  // namespace Tool
