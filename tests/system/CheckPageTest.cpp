// SPDX-License-Identifier: BSD-3-Clause
// The page of strata check in a browser.
#include "BrokenShow.h"
#include "Browser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using Json = nlohmann::json;

namespace {

/// Every text that is seen, with what makes it legible: the size of its letters, its contrast by WCAG 2.1, and whether all
/// of it lies within what holds it. What a text in a drawing stands on is what is painted below it; a halo counts as that.
constexpr char Probe[] = R"js(
  const parse = colour => (colour.match(/[\d.]+/g) || []).map(Number);
  const isSolid = colour => /^rgb/.test(colour) && (parse(colour).length < 4 || parse(colour)[3] === 1);
  const luminance = colour => parse(colour).slice(0, 3).map(value => value / 255)
      .map(value => value <= 0.03928 ? value / 12.92 : ((value + 0.055) / 1.055) ** 2.4)
      .reduce((sum, value, index) => sum + value * [0.2126, 0.7152, 0.0722][index], 0);
  const contrast = (a, b) => (Math.max(luminance(a), luminance(b)) + 0.05) / (Math.min(luminance(a), luminance(b)) + 0.05);
  const style = element => window.getComputedStyle(element);
  const below = (element, x, y) => {
    if (style(element).stroke !== 'none' && element instanceof window.SVGTextElement) return style(element).stroke;
    for (const each of document.elementsFromPoint(x, y)) {
      const colour = each instanceof window.SVGElement && !(each instanceof window.SVGSVGElement) ?
          style(each).fill : style(each).backgroundColor;
      if (isSolid(colour) && !(each instanceof window.SVGTextElement)) return colour;
    }
    return 'rgb(255, 255, 255)';
  };
  const texts = [], boxes = new Map();
  const walker = document.createTreeWalker(document.body, window.NodeFilter.SHOW_TEXT);
  for (let node = walker.nextNode(); node; node = walker.nextNode()) {
    const element = node.parentElement, range = document.createRange();
    range.selectNodeContents(node);
    const box = range.getBoundingClientRect();
    if (!node.data.trim() || box.width === 0) continue;
    const svg = element.closest('svg');
    const frame = (svg || document.body).getBoundingClientRect();
    const scale = svg ? frame.width / svg.viewBox.baseVal.width : 1;
    const isDrawn = element instanceof window.SVGTextElement;
    texts.push({text: node.data.trim(), size: parseFloat(style(element).fontSize) * scale,
      contrast: contrast(isDrawn ? style(element).fill : style(element).color, below(element, box.x + box.width / 2, box.y + box.height / 2)),
      isCut: box.left < frame.left - 1 || box.right > frame.right + 1 || box.top < frame.top - 1 || box.bottom > frame.bottom + 1});
    if (svg) boxes.set(svg, [...boxes.get(svg) || [], {box, text: node.data.trim()}]);
  }
  const touching = [];
  for (const all of boxes.values())
    for (const [i, a] of all.entries())
      for (const b of all.slice(i + 1))
        if (Math.min(a.box.right, b.box.right) - Math.max(a.box.left, b.box.left) > 1 &&
            Math.min(a.box.bottom, b.box.bottom) - Math.max(a.box.top, b.box.top) > 4)
          touching.push(a.text + ' | ' + b.text);
  return {width: window.innerWidth, scrolled: document.documentElement.scrollWidth,
    isDark: window.matchMedia('(prefers-color-scheme: dark)').matches,
    paper: style(document.body).backgroundColor, requests: window.performance.getEntriesByType('resource').length,
    scripts: document.scripts.length, headline: document.querySelector('h1').textContent,
    headings: [...document.querySelectorAll('h2')].map(each => each.textContent),
    drawings: [...document.querySelectorAll('.drawing svg')].filter(each => each.clientWidth > 0).length,
    findings: [...document.querySelectorAll('.finding h4')].map(each => each.textContent),
    texts, touching};
)js";

/// The page that strata check writes of a show.
std::string PageOf(const BrokenShow& show, std::vector<std::string> options = {}) {
  std::vector<std::string> arguments = {"check", show.Path(), "--html", show.Beside("page.html")};
  arguments.insert(arguments.end(), options.begin(), options.end());
  StrataProgram program(arguments);
  program.Wait();
  return show.Beside("page.html");
}

void ExpectLegible(const Json& report, const BrowserView& view) {
  EXPECT_EQ(report["width"], view.Width);
  EXPECT_LE(report["scrolled"], view.Width) << "it scrolls sideways";
  EXPECT_EQ(report["isDark"], view.IsDark);
  EXPECT_EQ(report["paper"], view.IsDark ? "rgb(21, 25, 30)" : "rgb(255, 255, 255)");
  EXPECT_EQ(report["requests"], 0);
  EXPECT_EQ(report["scripts"], 0);
  EXPECT_THAT(report["touching"], ElementsAre());
  EXPECT_GT(report["texts"].size(), 20U);
  for (const Json& text : report["texts"]) {
    EXPECT_GE(text["contrast"], 4.5) << text;
    EXPECT_GE(text["size"], 10) << text;
    EXPECT_FALSE(text["isCut"]) << text;
  }
}

class CheckPageInABrowser : public testing::TestWithParam<BrowserView> {};

TEST_P(CheckPageInABrowser, OfASoundShow) {
  const BrokenShow show;
  const Json report = ProbePage(PageOf(show), Probe, GetParam(), show.Beside(""));
  ASSERT_TRUE(report.is_object());
  ExpectLegible(report, GetParam());
  EXPECT_THAT(report["headline"].get<std::string>(), StartsWith("This show needs keys for 1 composition"));
  EXPECT_EQ(report["drawings"], 1);
}

TEST_P(CheckPageInABrowser, OfPackagesWhoseFramesWereRead) {
  const BrokenShow show;
  const Json report = ProbePage(PageOf(show, {"--frames", "--profile", "all"}), Probe, GetParam(), show.Beside(""));
  ASSERT_TRUE(report.is_object());
  ExpectLegible(report, GetParam());
  EXPECT_THAT(report["headline"].get<std::string>(), StartsWith("It is not as the profile all asks: 7 warnings, "));
  EXPECT_THAT(report["headings"].get<std::vector<std::string>>(), testing::Contains("Packages"));
  EXPECT_GT(report["drawings"], 1);
}

TEST_P(CheckPageInABrowser, OfABrokenShow) {
  const BrokenShow show;
  show.Remove("Feature/sound-2.mxf");
  show.Remove("Trailer/CPL.xml");
  const Json report = ProbePage(PageOf(show), Probe, GetParam(), show.Beside(""));
  ASSERT_TRUE(report.is_object());
  ExpectLegible(report, GetParam());
  EXPECT_THAT(report["headline"].get<std::string>(), StartsWith("This show will not play"));
  ASSERT_FALSE(report["findings"].empty());
  EXPECT_THAT(report["findings"][0].get<std::string>(), StartsWith("error"));
}

INSTANTIATE_TEST_SUITE_P(AsPeopleSeeIt, CheckPageInABrowser,
                         testing::Values(BrowserView{400, false}, BrowserView{400, true}, BrowserView{1600, false},
                                         BrowserView{1600, true}),
                         [](const testing::TestParamInfo<BrowserView>& view) {
                           return (view.param.IsDark ? "Dark" : "Light") + std::to_string(view.param.Width);
                         });

}  // namespace
