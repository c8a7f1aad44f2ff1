// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace Tool {

// The texts of the .css and .js files beside this, built into the program.

/// What a drawing looks like, in light (CSS for SVG).
[[nodiscard]] const char* TimelineStyle();
/// What the page around it looks like, and the drawing in dark (CSS).
[[nodiscard]] const char* TimelinePageStyle();
/// What makes the page zoom, pan and tell of what is pointed at (JavaScript).
[[nodiscard]] const char* TimelinePageScript();

}  // namespace Tool
