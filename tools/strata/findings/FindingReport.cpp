// SPDX-License-Identifier: BSD-3-Clause
#include "FindingReport.h"

#include "ShowFindings.h"
#include "terminal/DisplayText.h"
#include "terminal/Interrupt.h"
#include "terminal/Messages.h"
#include "terminal/ProgressBar.h"

#include <algorithm>
#include <map>
#include <tuple>

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

/// FindingText without what to do.
std::string BareText(const Finding& finding, std::FILE* stream) {
  const Severity severity = SeverityOf(finding);
  const std::string name = std::string(SeverityName(severity)) + ':';
  const Tone tone = severity == Severity::Warning ? Tone::Warning : Tone::Error;
  std::string text = severity < Severity::Warning ? name : InTone(name, tone, stream);
  text += ' ' + FindingLine(finding);
  if (finding.Place.Asset.HasValue()) text += "\n    asset " + finding.Place.Asset.EncodeString();
  const std::string path = PathOf(finding.Place);
  const std::string line = finding.Place.Line == 0 ? "" : ", line " + std::to_string(finding.Place.Line);
  if (!path.empty()) text += "\n    file  " + DisplayText(path) + line;
  return text + '\n';
}

std::string AdviceText(FindingID id) {
  return std::string("    ") + Assay::RuleOf(id).Advice + '\n';
}

/// Findings in the order in which they are shown.
class FindingOrder {
 public:
  explicit FindingOrder(const FindingList& findings) : m_Findings(findings) {
    std::map<FindingID, size_t> first;  // of each kind
    for (size_t i = 0; i < findings.size(); ++i) {
      if (IsConsequence(i)) {
        m_Consequences[*findings[i].Cause].push_back(i);
        continue;
      }
      m_Roots.push_back(i);
      first.try_emplace(findings[i].ID, i);
    }
    const auto rank = [&](size_t i) {
      return std::tuple(-static_cast<int>(SeverityOf(findings[i])), first.at(findings[i].ID), i);
    };
    std::sort(m_Roots.begin(), m_Roots.end(), [&](size_t a, size_t b) { return rank(a) < rank(b); });
  }

  [[nodiscard]] std::string Text(std::FILE* stream) const {
    std::string text;
    for (size_t i = 0; i < m_Roots.size(); ++i) {
      const Finding& finding = m_Findings[m_Roots[i]];
      text += BareText(finding, stream) + ConsequencesOf(m_Roots[i]);
      if (i + 1 == m_Roots.size() || m_Findings[m_Roots[i + 1]].ID != finding.ID) text += AdviceText(finding.ID);
    }
    return text;
  }

 private:
  /// A cause stands before what follows from it, so that no two are each other's.
  [[nodiscard]] bool IsConsequence(size_t i) const { return m_Findings[i].Cause && *m_Findings[i].Cause < i; }

  [[nodiscard]] std::string ConsequencesOf(size_t cause) const {
    std::string text;
    const auto found = m_Consequences.find(cause);
    if (found == m_Consequences.end()) return text;
    for (const size_t i : found->second) text += "    so: " + FindingLine(m_Findings[i]) + '\n' + ConsequencesOf(i);
    return text;
  }

  const FindingList& m_Findings;
  std::vector<size_t> m_Roots;
  std::map<size_t, std::vector<size_t>> m_Consequences;
};

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
  return BareText(finding, stream) + AdviceText(finding.ID);
}

std::string FindingsText(const FindingList& findings, std::FILE* stream) {
  return FindingOrder(findings).Text(stream);
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
