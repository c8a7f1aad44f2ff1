// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>
#include <string_view>

namespace Tool {

// What all pages share. A page is one file that asks for nothing else: its content security policy forbids any request.

/// Text for HTML, in elements and in quoted attributes; what is not fit to be shown is replaced as DisplayText does.
[[nodiscard]] std::string HtmlText(std::string_view text);

/// An SVG document as an element of a page: from its root on, without the XML declaration.
[[nodiscard]] std::string HtmlSvg(const std::string& document);

struct HtmlPageParts {
  std::string Title;  ///< as it is; it is escaped here
  std::string Style;  ///< CSS, behind what all pages share
  std::string Body;   ///< HTML
  bool HasScripts = false;
};

/// The whole page.
[[nodiscard]] std::string HtmlPage(const HtmlPageParts& parts);

}  // namespace Tool
