// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace Tool {

// The texts of the .css files beside this, built into the program.

/// What a drawn timeline looks like, in light (CSS for SVG).
[[nodiscard]] const char* TimelineStyle();
/// What all pages share: colours, headings, tables, and drawings in dark (CSS).
[[nodiscard]] const char* PageStyle();

}  // namespace Tool
