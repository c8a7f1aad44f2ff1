// SPDX-License-Identifier: BSD-3-Clause
#include "DamageTable.h"

#include "SilenceReasons.h"

#include <cstdio>

namespace testsupport {
namespace {

std::string Share(size_t part, size_t whole) {
  if (whole == 0) return "–";
  char text[32];
  std::snprintf(text, sizeof text, "%.1f %%", 100.0 * static_cast<double>(part) / static_cast<double>(whole));
  return text;
}

}  // namespace

std::string DamageTable::Add(const DamageCase& damage) {
  for (Counts* counts : {&m_All, &m_Kinds[static_cast<size_t>(damage.Done.Kind)]}) {
    const bool differs = !damage.Differences.empty();
    ++counts->Cases;
    counts->Differs += differs;
    counts->Against += differs && damage.IsSpokenAgainst();
    counts->Milder += differs && !damage.IsSpokenAgainst() && !damage.Told.empty();
    counts->Silent += differs && damage.Told.empty();
    counts->Same += !differs && damage.IsSpokenAgainst();
  }
  if (!damage.Failure.empty()) {
    ++m_Failures;
    return damage.Line() + ": " + damage.Failure;
  }
  if (damage.Differences.empty() || !damage.Told.empty()) return "";
  std::string line = damage.Line() + "; differs:";
  for (const Difference difference : damage.Differences) line += std::string(" ") + DifferenceName(difference);
  const SilenceReason* reason = ReasonOf(damage);
  if (reason == nullptr) ++m_Unexplained;
  m_Reasons[reason == nullptr ? "no reason" : reason->Name].push_back(damage.Seed);
  return line + (reason == nullptr ? "; NOT TOLD, for no reason" : std::string("; ") + reason->Name);
}

void DamageTable::AddRow(const std::string& name, const Counts& counts, std::string& text) {
  text += "| " + name;
  for (const size_t number : {counts.Cases, counts.Differs, counts.Against, counts.Milder, counts.Silent})
    text += " | " + std::to_string(number);
  text += " | " + Share(counts.Differs - counts.Silent, counts.Differs) + " | " + std::to_string(counts.Same) + " |\n";
}

std::string DamageTable::Text() const {
  std::string depths;
  for (const Assay::Depth depth :
       {Assay::Depth::Documents, Assay::Depth::Files, Assay::Depth::Frames, Assay::Depth::Hash, Assay::Depth::Decode})
    if (DamageLab::DepthsOf(m_Mode).Has(depth))
      depths += (depths.empty() ? "" : ", ") + std::string(Assay::DepthName(depth));
  std::string text = "Looked at: " + depths +
                     ".\n\n"
                     "| damaged file | cases | something differs | error or warning | milder | silent | told of what "
                     "differs | told, nothing differs |\n"
                     "|---|---|---|---|---|---|---|---|\n";
  for (size_t kind = 0; kind < FileKindCount; ++kind)
    if (m_Kinds[kind].Cases > 0) AddRow(FileKindName(static_cast<FileKind>(kind)), m_Kinds[kind], text);
  AddRow("all", m_All, text);
  text += '\n';
  for (const auto& [name, seeds] : m_Reasons) {
    text += "- " + name + ", " + std::to_string(seeds.size()) + ":";
    for (const uint32_t seed : seeds) text += ' ' + std::to_string(seed);
    text += '\n';
  }
  if (m_Failures > 0) text += "- crashed or hung: " + std::to_string(m_Failures) + '\n';
  return text;
}

}  // namespace testsupport
