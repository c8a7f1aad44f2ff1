// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/Export.h>
#include <Cairn/Result.h>

#include <string>
#include <string_view>
#include <vector>

namespace Cairn {

/// Turns a path text of an asset map or a subtitle document into the relative paths to try, best first: the text as it
/// stands, then its percent-decoded form where that differs. One "file:///", "file://" or "file:/" in front is taken
/// off; empty and "." steps are removed. Touches no file: whoever opens the result still keeps symbolic links inside.
///
/// Refused are other schemes, absolute paths, drive letters, backslashes in front, ".." steps, NUL and other control
/// characters, and empty paths; a form that only percent-decoding makes hostile refuses the whole path.
/// @return RESULT_OK; RESULT_CN_PATH when refused, `out` then being empty. Any thread may call it.
[[nodiscard]] CAIRN_API Result_t AssetMapPathCandidates(std::string_view path, std::vector<std::string>& out);

}  // namespace Cairn
