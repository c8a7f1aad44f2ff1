// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "PageContent.h"

#include <string>

namespace Tool {

/// The check as one page that people send on: it needs no other file, no connection and no scripts, and prints.
[[nodiscard]] std::string CheckPage(const PageContent& content);

/// What the page looks like beyond what all pages share: the text of the .css file beside this.
[[nodiscard]] const char* CheckPageStyle();

}  // namespace Tool
