// SPDX-License-Identifier: BSD-3-Clause
#include "TimelineHtml.h"

#include "TimelineJson.h"
#include "TimelinePage.h"
#include "TimelineSvg.h"
#include "terminal/DisplayText.h"

namespace Tool {

namespace {

std::string Escaped(const std::string& text) {
  std::string out;
  for (const char letter : DisplayText(text)) {
    if (letter == '&')
      out += "&amp;";
    else if (letter == '<')
      out += "&lt;";
    else
      out += letter;
  }
  return out;
}

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
  const std::string picture = TimelineSvg(model);
  return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
         "<meta name=\"viewport\" content=\"width=device-width\">\n"
         "<meta http-equiv=\"Content-Security-Policy\" "
         "content=\"default-src 'none'; style-src 'unsafe-inline'; script-src 'unsafe-inline'\">\n<title>" +
         Escaped(model.Title) + "</title>\n<style>\n" + TimelineStyle() + TimelinePageStyle() +
         "</style>\n</head>\n<body>\n<noscript>" + picture.substr(picture.find("<svg")) +
         "</noscript>\n<div id=\"page\"></div>\n<script type=\"application/json\" id=\"model\">" +
         Embedded(TimelineJson(model, false)) + "</script>\n<script>\n" + TimelinePageScript() +
         "</script>\n</body>\n</html>\n";
}

}  // namespace Tool
