// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "FrameSource.h"

#include <Cairn/FileType.h>

namespace Tool {

/// Opens one track file; null where `type` is none that holds frames or text. Throws CommandError where it is broken.
/// @param key  what decrypts it, which outlives the source; null: there is no key, or it is not encrypted.
[[nodiscard]] std::unique_ptr<FrameSource> OpenTrackFile(const std::string& filename, Cairn::FileType_t type,
                                                         TrackKey* key);

}  // namespace Tool
