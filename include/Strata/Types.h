// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Types.h>
#include <Ferro/UUID.h>

namespace Strata {

using Ferro::fsize_t;
using Ferro::i32_t;
using Ferro::i64_t;
using Ferro::SHA1;
using Ferro::ui16_t;
using Ferro::ui32_t;
using Ferro::ui64_t;
using Ferro::ui8_t;
using Ferro::UUID;
using Ferro::UUIDList;

// Positions, offsets and durations are unsigned 32-bit counts of edit units. One edit unit is the time of one picture
// frame: the reciprocal of the edit rate. Positions count from 0; ranges are half open.

/// As a frame number or position: no frame is held.
inline constexpr ui32_t NoFrame = 0xFFFFFFFF;

}  // namespace Strata
