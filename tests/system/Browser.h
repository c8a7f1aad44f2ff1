// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <nlohmann/json.hpp>

#include <string>

/// How a page is looked at.
struct BrowserView {
  unsigned Width = 1600;  ///< pixels
  bool IsDark = false;
};

/// Opens a page in headless Chromium as it is, and asks it something. No value where that fails, which is a test failure.
/// @param probe   JavaScript: the body of a function of `window` and `document`, the page's. Its value goes through JSON.
/// @param folder  for the browser's own files.
[[nodiscard]] nlohmann::json ProbePage(const std::string& page, const std::string& probe, const BrowserView& view,
                                       const std::string& folder);
