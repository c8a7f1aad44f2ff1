// SPDX-License-Identifier: BSD-3-Clause
#include "FindingReport.h"

#include "ShowFindings.h"
#include "terminal/DisplayText.h"
#include "terminal/Interrupt.h"
#include "terminal/Messages.h"
#include "terminal/ProgressBar.h"

#include <algorithm>
#include <map>

namespace Tool {

namespace {

/// What is missing, by its name.
std::string MissingThing(const Finding& finding) {
  switch (finding.ID) {
    case FindingID::ShowMissing:
      return "show playlist";
    case FindingID::ShowCompositionMissing:
      return "composition";
    default:
      break;
  }
  const std::string use = Assay::ReelUseName(finding.Place.Use);
  if (!use.empty()) return use;
  const bool is_composition = finding.Place.Composition.HasValue() && finding.Place.Reel == 0;
  return is_composition ? "composition" : "file";
}

std::string Counted(size_t count, const std::string& thing) {
  const bool has_plural = thing != Assay::ReelUseName(Assay::ReelUse::AuxData);
  return std::to_string(count) + ' ' + thing + (count != 1 && has_plural ? "s" : "");
}

}  // namespace

FindingList CheckShow(const ShowOutline& outline, const ShowSecurity* security) {
  ProgressBar bar("Checking", ProgressUnit::Compositions);
  const auto progress = [&](size_t done, size_t total) {
    bar.Update(done, total);
    return !Interrupt::Requested();
  };
  return FindingsOf(outline, progress, security);
}

ExitCode ExitCodeFor(const FindingList& findings) {
  const auto has = [&](Severity severity) {
    return std::any_of(findings.begin(), findings.end(),
                       [&](const Finding& finding) { return !finding.Cause && SeverityOf(finding) == severity; });
  };
  if (has(Severity::Error)) return ExitCode::NotPlayable;
  return has(Severity::Missing) ? ExitCode::AssetsMissing : ExitCode::Fine;
}

std::string SentenceOf(const Finding& finding) {
  std::string text = finding.Sentence();
  if (!finding.Expected.empty()) text += " Expected " + finding.Expected;
  if (!finding.Expected.empty() && !finding.Found.empty()) text += ", found " + finding.Found;
  if (finding.Expected.empty() && !finding.Found.empty()) text += " Found: " + finding.Found;
  return text.ends_with('.') || text.ends_with('!') ? text : text + '.';
}

std::string FindingLine(const Finding& finding) {
  const Assay::FindingPlace& place = finding.Place;
  std::string line = CompositionNameOf(place);
  const auto add_place = [&](const std::string& part) { line += (line.empty() || part.empty() ? "" : ", ") + part; };
  if (place.Reel != 0) add_place("reel " + std::to_string(place.Reel));
  add_place(Assay::ReelUseName(place.Use));
  if (place.Channel != 0) add_place("channel " + std::to_string(place.Channel));
  if (place.EditUnit) add_place("edit unit " + std::to_string(*place.EditUnit));
  return DisplayText(line + (line.empty() ? "" : ": ") + SentenceOf(finding));
}

std::string FindingText(const Finding& finding, std::FILE* stream) {
  const Severity severity = SeverityOf(finding);
  const std::string name = std::string(SeverityName(severity)) + ':';
  const Tone tone = severity == Severity::Warning ? Tone::Warning : Tone::Error;
  std::string text = severity < Severity::Warning ? name : InTone(name, tone, stream);
  text += ' ' + FindingLine(finding);
  if (finding.Place.Asset.HasValue()) text += "\n    asset " + finding.Place.Asset.EncodeString();
  const std::string path = PathOf(finding.Place);
  const std::string line = finding.Place.Line == 0 ? "" : ", line " + std::to_string(finding.Place.Line);
  if (!path.empty()) text += "\n    file  " + DisplayText(path) + line;
  return text + "\n    " + finding.Advice() + '\n';
}

std::string MissingText(const FindingList& findings) {
  std::map<std::string, size_t> missing;
  for (const Finding& finding : findings)
    if (!finding.Cause && SeverityOf(finding) == Severity::Missing) ++missing[MissingThing(finding)];
  std::string text;
  for (const auto& [thing, count] : missing) text += (text.empty() ? "" : ", ") + Counted(count, thing);
  return text;
}

}  // namespace Tool
