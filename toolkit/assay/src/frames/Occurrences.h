// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/Finding.h>

#include <string>
#include <vector>

namespace Assay {

/// What is found in many edit units of a file, each kind told once: where it is first, and how many more there are. Takes
/// as much memory as there are kinds.
class Occurrences {
 public:
  /// Of the first edit unit that it is found in.
  struct Texts {
    std::vector<std::string> Expected;
    std::vector<std::string> Found;
    /// Adds to them what is not in them yet.
    void Add(const std::string& expected, const std::string& found);
  };

  /// Notes a kind of finding in an edit unit, which is the one noted last or a later one.
  /// @return what is to be filled with the texts, where it is the first such edit unit; else null.
  Texts* Note(FindingID id, FindingClass value, ui64_t edit_unit);
  void Note(FindingID id, FindingClass value, ui64_t edit_unit, const std::string& expected, const std::string& found);
  void Note(FindingID id, ui64_t edit_unit, const std::string& expected, const std::string& found) {
    Note(id, RuleOf(id).Classes.Usual(), edit_unit, expected, found);
  }

  /// Adds them all as findings, in the order in which they were noted first.
  /// @param at  the file's place; edit unit and rate are put in.
  void AddTo(FindingList& findings, const FindingPlace& at, const QUIRE::Rational& edit_rate) const;

 private:
  struct Entry {
    FindingID ID;
    FindingClass Class;
    ui64_t First;
    ui64_t Last;
    ui64_t More;
    Texts Said;
  };

  std::vector<Entry> m_Entries;
};

/// "1302096 bytes, edit unit 17, 3 more"
[[nodiscard]] std::string OccurrenceText(const std::string& found, ui64_t edit_unit, ui64_t more);

}  // namespace Assay
