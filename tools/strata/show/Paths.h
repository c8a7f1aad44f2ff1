// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>

namespace Tool {

// What a path leads to, symbolic links followed. A path that cannot be followed leads to nothing.

[[nodiscard]] bool PathExists(const std::string& path);
[[nodiscard]] bool IsFolder(const std::string& path);
[[nodiscard]] bool IsRegularFile(const std::string& path);

/// The absolute path without links and ".."; empty where the path leads to nothing.
[[nodiscard]] std::string CanonicalPath(const std::string& path);

}  // namespace Tool
