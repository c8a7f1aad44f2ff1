// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/FileType.h>

#include <string>

namespace Tool {

/// The title that a composition, a show playlist or a packing list gives itself; empty for other files, and for what
/// cannot be read.
[[nodiscard]] std::string DocumentTitle(Cairn::FileType_t type, const std::string& path);

}  // namespace Tool
