// SPDX-License-Identifier: BSD-3-Clause
#include "Browser.h"

#include "Judges.h"

#include <Ferro/FileText.h>

#include <gtest/gtest.h>

#include <vector>

using Json = nlohmann::json;

namespace {

/// The page in a frame as wide as asked for and as high as it is; the answer, in ASCII, in the only `pre`.
std::string Frame(const std::string& page, const std::string& probe, unsigned width) {
  return "<!DOCTYPE html><meta charset=\"utf-8\"><style>:root { color-scheme: light dark; "
         "}</style><pre></pre>\n<script>\n"
         "function probe(window, document) {\n" +
         probe +
         "\n}\n"
         "function probed(frame) {\n"
         "  frame.height = frame.contentDocument.documentElement.scrollHeight;\n"
         "  setTimeout(() => {\n"
         "    const text = JSON.stringify(probe(frame.contentWindow, frame.contentDocument));\n"
         "    document.querySelector('pre').textContent = text.replace(/[<>&\\u007f-\\uffff]/g,\n"
         "        letter => '\\\\u' + letter.charCodeAt(0).toString(16).padStart(4, '0'));\n"
         "  }, 200);\n"
         "}\n</script>\n<iframe src=\"file://" +
         page + "\" height=\"900\" width=\"" + std::to_string(width) +
         "\" style=\"border: 0\" onload=\"probed(this)\"></iframe>\n";
}

}  // namespace

Json ProbePage(const std::string& page, const std::string& probe, const BrowserView& view, const std::string& folder) {
  const std::string around = folder + "/around.html";
  EXPECT_TRUE(Ferro::WriteStringIntoFile(around, Frame(page, probe, view.Width)).Success());
  const std::string dumped = testsupport::RunJudge(
      {"chromium", "--headless", "--no-sandbox", "--disable-gpu", "--user-data-dir=" + folder + "/browser",
       "--allow-file-access-from-files", "--window-size=1700,1000",
       std::string("--blink-settings=preferredColorScheme=") + (view.IsDark ? "0" : "1"), "--virtual-time-budget=5000",
       "--dump-dom", "file://" + around});
  const size_t start = dumped.find("<pre>") + 5;
  Json answer = Json::parse(dumped.substr(start, dumped.find("</pre>") - start), nullptr, false);
  EXPECT_FALSE(answer.is_discarded()) << dumped;
  return answer.is_discarded() ? Json() : answer;
}
