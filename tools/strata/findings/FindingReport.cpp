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

std::vector<Finding> CheckShow(const ShowOutline& outline, const ShowSecurity* security) {
  ProgressBar bar("Checking", ProgressUnit::Compositions);
  const auto progress = [&](size_t done, size_t total) {
    bar.Update(done, total);
    return !Interrupt::Requested();
  };
  return FindingsOf(outline, progress, security);
}

ExitCode ExitCodeFor(const std::vector<Finding>& findings) {
  const auto has = [&](Severity severity) {
    return std::any_of(findings.begin(), findings.end(), [&](const Finding& f) { return f.Level == severity; });
  };
  if (has(Severity::Error)) return ExitCode::NotPlayable;
  return has(Severity::Missing) ? ExitCode::AssetsMissing : ExitCode::Fine;
}

const char* SeverityName(Severity severity) {
  switch (severity) {
    case Severity::Note:
      return "note";
    case Severity::Warning:
      return "warning";
    case Severity::Missing:
      return "missing";
    case Severity::Error:
      return "error";
  }
  return "";
}

std::string FindingLine(const Finding& finding) {
  std::string line = finding.Composition;
  const auto add_place = [&](const std::string& place) { line += (line.empty() || place.empty() ? "" : ", ") + place; };
  if (finding.Reel != 0) add_place("reel " + std::to_string(finding.Reel));
  add_place(AssetTypeOf(finding));
  line += (line.empty() ? "" : ": ") + finding.Message;
  if (!finding.Expected.empty())
    line += " Expected " + finding.Expected + ", found " + finding.Found + '.';
  else if (!finding.Found.empty())
    line += " Found " + finding.Found + '.';
  return DisplayText(line);
}

std::string FindingText(const Finding& finding, std::FILE* stream) {
  const Tone tone = finding.Level == Severity::Warning ? Tone::Warning : Tone::Error;
  const std::string name = std::string(SeverityName(finding.Level)) + ':';
  std::string text = finding.Level == Severity::Note ? name : InTone(name, tone, stream);
  text += ' ' + FindingLine(finding);
  if (finding.AssetID.HasValue()) text += "\n    asset " + finding.AssetID.EncodeString();
  if (!finding.File.empty()) text += "\n    file  " + DisplayText(finding.File);
  if (!finding.Advice.empty()) text += "\n    " + finding.Advice;
  return text + '\n';
}

std::string MissingText(const std::vector<Finding>& findings) {
  std::map<std::string, std::pair<Subject, size_t>> missing;  // by name
  for (const Finding& finding : findings)
    if (finding.Level == Severity::Missing) {
      auto& [subject, count] = missing[SubjectName(finding.What)];
      subject = finding.What;
      ++count;
    }
  std::string text;
  for (const auto& [name, counted] : missing)
    text += (text.empty() ? "" : ", ") + CountedSubject(counted.second, counted.first);
  return text;
}

}  // namespace Tool
