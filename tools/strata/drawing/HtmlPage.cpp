// SPDX-License-Identifier: BSD-3-Clause
#include "HtmlPage.h"

#include "DrawingStyles.h"
#include "terminal/DisplayText.h"

namespace Tool {

std::string HtmlText(std::string_view text) {
  std::string out;
  for (const char letter : DisplayText(text)) {
    switch (letter) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      case '\'':
        out += "&#39;";
        break;
      default:
        out += letter;
    }
  }
  return out;
}

std::string HtmlSvg(const std::string& document) {
  return document.substr(document.find("<svg"));
}

std::string HtmlPage(const HtmlPageParts& parts) {
  const std::string policy = std::string("default-src 'none'; style-src 'unsafe-inline'; base-uri 'none'; ") +
                             (parts.HasScripts ? "script-src 'unsafe-inline'; " : "") + "form-action 'none'";
  return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
         "<meta name=\"viewport\" content=\"width=device-width\">\n"
         "<meta http-equiv=\"Content-Security-Policy\" content=\"" +
         policy + "\">\n<title>" + HtmlText(parts.Title) + "</title>\n<style>\n" + TimelineStyle() + PageStyle() +
         parts.Style + "</style>\n</head>\n<body>\n" + parts.Body + "</body>\n</html>\n";
}

}  // namespace Tool
