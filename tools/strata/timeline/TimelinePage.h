// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace Tool {

// The texts of the .css and .js files beside this, built into the program.

/// What the page has that no other has (CSS).
[[nodiscard]] const char* TimelinePageStyle();
/// What makes the page zoom, pan and tell of what is pointed at (JavaScript).
[[nodiscard]] const char* TimelinePageScript();

}  // namespace Tool
