// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "base/BigEndian.h"

#include <QUIRE/MXF/IndexTableSegment.h>

namespace QUIRE::MXF {

[[nodiscard]] inline PackedIndexEntry PackEntry(const IndexEntry& entry) {
  PackedIndexEntry packed{static_cast<ui8_t>(entry.TemporalOffset), static_cast<ui8_t>(entry.KeyFrameOffset),
                          entry.Flags};
  for (size_t i = 0; i < 8; ++i) packed[3 + i] = static_cast<ui8_t>(entry.StreamOffset >> (56 - 8 * i));
  return packed;
}

/// The entry at `bytes`, at least sizeof(PackedIndexEntry) of them.
[[nodiscard]] inline IndexEntry UnpackEntry(const ui8_t* bytes) {
  return {LoadBE<ui64_t>(bytes + 3), static_cast<i8_t>(bytes[0]), static_cast<i8_t>(bytes[1]), bytes[2]};
}

}  // namespace QUIRE::MXF
