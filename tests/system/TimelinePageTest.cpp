// SPDX-License-Identifier: BSD-3-Clause
// The page of strata timeline in a browser.
#include "BrokenShow.h"
#include "Browser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;
using Json = nlohmann::json;

namespace {

/// Follows every finding as the keyboard does.
constexpr char Probe[] = R"js(
  const findings = [...document.querySelectorAll('ul.findings a')].map(link => {
    link.focus();
    const hasFocus = document.activeElement === link;
    link.click();
    const details = document.querySelector('.details');
    return {text: link.textContent, told: details.hidden ? '' : details.textContent, hasFocus};
  });
  const row = document.querySelector('table.list a');
  row.click();
  const labels = [...document.querySelectorAll('svg.drawing text.number')].map(text => text.getBoundingClientRect());
  labels.sort((a, b) => a.left - b.left);
  return {
    width: window.innerWidth, scrolled: document.documentElement.scrollWidth,
    headline: document.querySelector('h1').textContent,
    findings, row: document.querySelector('.details').textContent,
    touching: labels.filter((box, i) => i > 0 && box.left < labels[i - 1].right).length};
)js";

std::string PageOf(const BrokenShow& show) {
  StrataProgram program({"timeline", show.Path(), "--html", show.Beside("page.html")});
  program.Wait();
  return show.Beside("page.html");
}

TEST(TimelinePage, FindingsLeadToWhatTheyAreAboutOnNarrowAndWideScreens) {
  const BrokenShow show;
  show.Remove("Feature/sound-2.mxf");
  show.Remove("Trailer/CPL.xml");
  const std::string page = PageOf(show);
  for (const unsigned width : {400U, 1600U}) {
    const Json report = ProbePage(page, Probe, {.Width = width}, show.Beside(""));
    ASSERT_TRUE(report.is_object());
    EXPECT_EQ(report["width"], width);
    EXPECT_LE(report["scrolled"], width) << "it scrolls sideways";
    EXPECT_EQ(report["headline"], "2 missing: 1 composition, 1 sound.");
    EXPECT_EQ(report["touching"], 0) << "labels of the time";
    const Json& findings = report["findings"];
    ASSERT_EQ(findings.size(), 3U);
    for (const Json& finding : findings) EXPECT_EQ(finding["hasFocus"], true);
    EXPECT_THAT(findings[0]["text"].get<std::string>(), StartsWith("missing: Trailer: "));
    EXPECT_THAT(findings[0]["told"].get<std::string>(), StartsWith("TrailerA file of the package is missing."));
    EXPECT_THAT(findings[1]["text"].get<std::string>(), StartsWith("missing: SampleFeature, reel 2, sound: "));
    EXPECT_THAT(findings[1]["told"].get<std::string>(),
                AllOf(StartsWith("Sound: SampleFeature, reel 2 of 3A file of the package is missing."),
                      HasSubstr("Languageen")));
    EXPECT_THAT(findings[2]["told"].get<std::string>(),
                AllOf(StartsWith("SampleEncrypted"), HasSubstr("96\u00d764, 24 fps, 5.1, en, SMPTE, OV, encrypted")));
    EXPECT_THAT(report["row"].get<std::string>(), StartsWith("Trailer"));
  }
}

}  // namespace
