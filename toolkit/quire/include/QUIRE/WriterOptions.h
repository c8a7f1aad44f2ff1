// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Types.h>

#include <Ferro/Timestamp.h>
#include <Ferro/UUID.h>

#include <optional>

namespace QUIRE {

/// What a writer may be told beyond the track file's own facts. Two runs with the same frames, facts, seed and date write
/// the same bytes.
struct WriterOptions {
  /// All identifiers that WriterInfo does not give, and the initialization vectors, are derived from it by SHA-1. No
  /// value: a random one. Never the same for different essence under one key.
  Ferro::UUID Seed;
  /// The date of creation in the header; none: now.
  std::optional<Ferro::Timestamp> Date;
  /// Where the header partition ends, in bytes, as a hint: header metadata that need more take the next multiple of
  /// 16384. 0: what is usual for the kind.
  ui32_t HeaderSize = 0;
};

}  // namespace QUIRE
