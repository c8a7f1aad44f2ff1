// SPDX-License-Identifier: BSD-3-Clause
#include "CheckReport.h"
#include "findings/FindingReport.h"
#include "keys/KeyReport.h"
#include "keys/Moment.h"
#include "terminal/DisplayText.h"
#include "terminal/TextForms.h"

#include <algorithm>

namespace Tool {

namespace {

std::string CompositionLine(const CheckedComposition& composition) {
  return TimeCodeText(composition.Start, composition.EditRate) + "  " + DisplayText(composition.Title) + "  (" +
         DisplayText(composition.Description) + ")\n";
}

/// Whether keys are there, where that is not said by a finding alone.
std::string KeyLines(const CheckedComposition& composition) {
  std::string text;
  for (const KeyAnswer& answer : composition.Keys)
    if (answer.Choice.Best != nullptr || composition.Keys.size() > 1) text += "    " + KeyAnswerText(answer) + '\n';
  return text;
}

/// Until when the keys of all encrypted compositions are valid; empty where there are none.
std::string KeysUntil(const CheckReport& report) {
  const Ferro::Timestamp* until = nullptr;
  for (const CheckedComposition& composition : report.Compositions) {
    if (composition.Keys.empty() || composition.Keys.back().Choice.Best == nullptr) continue;
    const Ferro::Timestamp& end = composition.Keys.back().Choice.Best->Message.NotAfter;
    if (until == nullptr || end < *until) until = &end;
  }
  return until == nullptr ? "" : " Its keys are valid until " + LocalText(*until) + '.';
}

/// What was verified with keys; empty where nothing was.
std::string VerifiedText(const VerifiedFiles& verified) {
  if (verified.Files == 0) return "";
  return " All " + std::to_string(verified.Frames) + " frames of " + std::to_string(verified.Files) +
         (verified.Files == 1 ? " encrypted file" : " encrypted files") + " are as they were written.";
}

std::string FineVerdict(const CheckReport& report) {
  const size_t keyless = KeylessCount(report);
  const std::string duration = DurationText(report.DurationSeconds);
  const std::string keys = "This show needs keys for " + std::to_string(keyless) +
                           (keyless == 1 ? " composition: " : " compositions: ") + duration + '.';
  if (report.Hash)
    return (keyless > 0 ? keys : "This show will play: " + duration + '.') +
           " All files are as their packing lists say." + VerifiedText(report.Verified) + KeysUntil(report);
  return (keyless > 0 ? keys + " Nothing else speaks against it."
                      : "Nothing speaks against this show: " + duration + '.') +
         " Contents were not read: --hash finds damage." + VerifiedText(report.Verified) + KeysUntil(report);
}

std::string VerdictOfAll(const std::vector<CheckedShow>& shows) {
  const auto bad =
      std::count_if(shows.begin(), shows.end(), [](const CheckedShow& show) { return show.Code != ExitCode::Fine; });
  const auto keyless =
      std::count_if(shows.begin(), shows.end(), [](const CheckedShow& show) { return show.NeedsKeys; });
  const std::string keys = keyless == 0   ? ""
                           : keyless == 1 ? " One needs keys."
                                          : ' ' + std::to_string(keyless) + " need keys.";
  if (bad == 0) return "Nothing speaks against any of the " + std::to_string(shows.size()) + "." + keys;
  const auto worst =
      std::find_if(shows.begin(), shows.end(), [](const CheckedShow& show) { return show.Code != ExitCode::Fine; });
  return std::to_string(bad) + " of " + std::to_string(shows.size()) +
         " will not play. What is wrong with one: strata check '" + DisplayText(worst->File) + "'";
}

}  // namespace

size_t KeylessCount(const CheckReport& report) {
  const auto is_keyless = [](const Finding& finding) {
    return finding.ID == FindingID::KdmNone && SeverityOf(finding) == Severity::Note;
  };
  return static_cast<size_t>(std::count_if(report.Findings.begin(), report.Findings.end(), is_keyless));
}

std::string CheckVerdict(const CheckReport& report) {
  if (report.Code == ExitCode::Interrupted) return "Interrupted: this is what was found until then.";
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
    if (composition.Reels > 0)
      text += CompositionLine(composition) + KeyLines(composition);  // of others a finding says what is wrong
  text += FindingsText(report.Findings, stdout);
  return text + CheckVerdict(report) + '\n';
}

}  // namespace Tool
