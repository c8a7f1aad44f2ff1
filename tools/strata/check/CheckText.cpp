// SPDX-License-Identifier: BSD-3-Clause
#include "CheckReport.h"
#include "findings/FindingReport.h"
#include "terminal/DisplayText.h"
#include "terminal/TextForms.h"

namespace Tool {

namespace {

std::string CompositionLine(const CheckedComposition& composition) {
  return TimeCodeText(composition.Start, composition.EditRate) + "  " + DisplayText(composition.Title) + "  (" +
         std::to_string(composition.Reels) + (composition.Reels == 1 ? " reel, " : " reels, ") +
         RateText(composition.EditRate) + " fps" + (composition.Stereoscopic ? ", stereoscopic" : "") + ")\n";
}

}  // namespace

std::string CheckVerdict(const CheckReport& report) {
  switch (report.Code) {
    case ExitCode::Fine:
      return "This show will play: " + DurationText(report.DurationSeconds) + ".";
    case ExitCode::AssetsMissing:
      return "This show will not play: missing " + MissingText(report.Findings) + ".";
    default:
      return "This show will not play.";
  }
}

std::string CheckText(const CheckReport& report) {
  std::string text;
  for (const CheckedComposition& composition : report.Compositions)
    if (composition.Reels > 0) text += CompositionLine(composition);  // of others a finding says what is wrong
  for (const Finding& finding : report.Findings) text += FindingText(finding);
  return text + CheckVerdict(report) + '\n';
}

}  // namespace Tool
