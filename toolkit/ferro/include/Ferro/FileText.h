// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Export.h>
#include <Ferro/Result.h>
#include <Ferro/Types.h>

#include <string>
#include <string_view>

namespace Ferro {

/// The largest file ReadFileIntoString accepts unless told otherwise: 8 MiB.
inline constexpr fsize_t DefaultTextLimit = 8'388'608;

/// Reads a whole file of at most `limit` bytes.
/// @return RESULT_OK; RESULT_TOOLARGE for a larger file (nothing is read); otherwise as FileReader. On failure `out` is
/// unchanged.
[[nodiscard]] FERRO_API Result_t ReadFileIntoString(const std::string& filename, std::string& out,
                                                    fsize_t limit = DefaultTextLimit);
/// Writes a whole file through FileWriter: complete, or as it was before.
[[nodiscard]] FERRO_API Result_t WriteStringIntoFile(const std::string& filename, std::string_view text);

}  // namespace Ferro
