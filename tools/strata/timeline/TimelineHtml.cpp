// SPDX-License-Identifier: BSD-3-Clause
#include "TimelineHtml.h"

#include "TimelineJson.h"
#include "TimelinePage.h"
#include "drawing/HtmlPage.h"
#include "drawing/TimelineSvg.h"

namespace Tool {

namespace {

/// JSON in which nothing can end the element that it stands in (HTML, 4.12.1.3): each "<" in a text is written as its
/// number.
std::string Embedded(const std::string& json) {
  std::string out;
  for (const char letter : json) {
    if (letter == '<')
      out += "\\u003c";
    else
      out += letter;
  }
  return out;
}

}  // namespace

std::string TimelineHtml(const TimelineModel& model) {
  return HtmlPage({.Title = model.Title,
                   .Style = TimelinePageStyle(),
                   .Body = "<noscript>" + HtmlSvg(TimelineSvg(model)) +
                           "</noscript>\n<div id=\"page\"></div>\n<script type=\"application/json\" id=\"model\">" +
                           Embedded(TimelineJson(model, false)) + "</script>\n<script>\n" + TimelinePageScript() +
                           "</script>\n",
                   .HasScripts = true});
}

}  // namespace Tool
