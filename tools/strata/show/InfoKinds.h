// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/FileType.h>

namespace Tool {

/// What a kind of file is called: "composition playlist", "sound track file"; "unknown file" for FT_UNKNOWN.
[[nodiscard]] const char* FileKindName(Cairn::FileType_t type);
/// True for a track file, and for an MXF file of anything else.
[[nodiscard]] bool IsMXF(Cairn::FileType_t type);

}  // namespace Tool
