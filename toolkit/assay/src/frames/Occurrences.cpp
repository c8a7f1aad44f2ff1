// SPDX-License-Identifier: BSD-3-Clause
#include "Occurrences.h"

#include <algorithm>

namespace Assay {

namespace {

void AddOnce(std::vector<std::string>& texts, const std::string& text) {
  if (!text.empty() && std::ranges::find(texts, text) == texts.end()) texts.push_back(text);
}

std::string Joined(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts) joined += (joined.empty() ? "" : ", ") + text;
  return joined;
}

}  // namespace

void Occurrences::Texts::Add(const std::string& expected, const std::string& found) {
  AddOnce(Expected, expected);
  AddOnce(Found, found);
}

Occurrences::Texts* Occurrences::Note(FindingID id, FindingClass value, ui64_t edit_unit) {
  const auto known =
      std::ranges::find_if(m_Entries, [&](const Entry& entry) { return entry.ID == id && entry.Class == value; });
  if (known == m_Entries.end()) {
    m_Entries.push_back({id, value, edit_unit, edit_unit, 0, {}});
    return &m_Entries.back().Said;
  }
  if (known->Last != edit_unit) {
    known->Last = edit_unit;
    ++known->More;
  }
  return known->First == edit_unit ? &known->Said : nullptr;
}

void Occurrences::Note(FindingID id, FindingClass value, ui64_t edit_unit, const std::string& expected,
                       const std::string& found) {
  if (Texts* texts = Note(id, value, edit_unit); texts != nullptr) texts->Add(expected, found);
}

void Occurrences::AddTo(FindingList& findings, const FindingPlace& at, const QUIRE::Rational& edit_rate) const {
  for (const Entry& entry : m_Entries) {
    Finding& finding = findings.emplace_back(entry.ID, entry.Class);
    finding.Place = at;
    finding.Place.EditUnit = entry.First;
    finding.Place.EditRate = edit_rate;
    finding.Expected = Joined(entry.Said.Expected);
    finding.Found = OccurrenceText(Joined(entry.Said.Found), entry.First, entry.More);
  }
}

std::string OccurrenceText(const std::string& found, ui64_t edit_unit, ui64_t more) {
  std::string text = found.empty() ? "" : found + ", ";
  text += "edit unit " + std::to_string(edit_unit);
  if (more > 0) text += ", " + std::to_string(more) + " more";
  return text;
}

}  // namespace Assay
