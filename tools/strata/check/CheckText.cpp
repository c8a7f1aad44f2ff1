// SPDX-License-Identifier: BSD-3-Clause
#include "CheckReport.h"
#include "findings/FindingReport.h"
#include "terminal/DisplayText.h"
#include "terminal/TextForms.h"

#include <algorithm>

namespace Tool {

namespace {

std::string CompositionLine(const CheckedComposition& composition) {
  return TimeCodeText(composition.Start, composition.EditRate) + "  " + DisplayText(composition.Title) + "  (" +
         DisplayText(composition.Description) + ")\n";
}

std::string FineVerdict(const CheckReport& report) {
  const auto encrypted = std::count_if(report.Findings.begin(), report.Findings.end(),
                                       [](const Finding& finding) { return finding.ID == FindingID::KdmNone; });
  const std::string duration = DurationText(report.DurationSeconds);
  std::string text = !report.Hash     ? "Nothing speaks against this show: " + duration
                     : encrypted == 0 ? "This show will play: " + duration
                                      : "This show will play with its keys: " + duration;
  text +=
      report.Hash ? ". All files are as their packing lists say." : ". Contents were not read: --hash finds damage.";
  if (encrypted > 0)
    text += " Keys of " + std::to_string(encrypted) + (encrypted == 1 ? " composition" : " compositions") +
            " were not looked for.";
  return text;
}

std::string VerdictOfAll(const std::vector<CheckedShow>& shows) {
  const auto bad =
      std::count_if(shows.begin(), shows.end(), [](const CheckedShow& show) { return show.Code != ExitCode::Fine; });
  if (bad == 0) return "Nothing speaks against any of the " + std::to_string(shows.size()) + ".";
  const auto worst =
      std::find_if(shows.begin(), shows.end(), [](const CheckedShow& show) { return show.Code != ExitCode::Fine; });
  return std::to_string(bad) + " of " + std::to_string(shows.size()) +
         " will not play. What is wrong with one: strata check '" + DisplayText(worst->File) + "'";
}

}  // namespace

std::string CheckVerdict(const CheckReport& report) {
  if (!report.Shows.empty()) return VerdictOfAll(report.Shows);
  switch (report.Code) {
    case ExitCode::Fine:
      return FineVerdict(report);
    case ExitCode::AssetsMissing:
      return "This show will not play: missing " + MissingText(report.Findings) + ".";
    default:
      return "This show will not play.";
  }
}

std::string CheckText(const CheckReport& report) {
  std::string text;
  for (const CheckedShow& show : report.Shows)
    text += DisplayText(show.Title) + (show.Description.empty() ? "" : "  (" + DisplayText(show.Description) + ')') +
            ": " + show.Verdict + '\n';
  if (!report.Shows.empty()) return text + CheckVerdict(report) + '\n';
  for (const CheckedComposition& composition : report.Compositions)
    if (composition.Reels > 0) text += CompositionLine(composition);  // of others a finding says what is wrong
  for (const Finding& finding : report.Findings) text += FindingText(finding, stdout);
  return text + CheckVerdict(report) + '\n';
}

}  // namespace Tool
