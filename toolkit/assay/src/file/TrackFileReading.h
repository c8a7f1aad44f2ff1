// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TrackFile.h"

namespace Assay {

/// Opens the file that Package and Path name, once, and fills in all that follows Size. Reads no frame: the first edit unit
/// of the file, the last one that is played and the last one of the file are looked up in the index, and their keys and
/// lengths in the file. Any thread may call it.
/// @param last_played  the last edit unit of the file that any composition plays; no value: none.
void ReadTrackFile(TrackFile& file, std::optional<ui64_t> last_played = std::nullopt);

}  // namespace Assay
