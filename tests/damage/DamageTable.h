// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "DamageLab.h"

#include <array>
#include <map>
#include <string>
#include <vector>

namespace testsupport {

/// What came of many cases of one mode, by kinds of files.
class DamageTable {
 public:
  explicit DamageTable(DamageMode mode) : m_Mode(mode) {}

  /// Counts a case. Returns what is to be said of it at once: failures, and silent differences; else nothing.
  std::string Add(const DamageCase& damage);

  /// True where nothing failed and every silent difference has a reason.
  [[nodiscard]] bool IsGood() const { return m_Unexplained == 0 && m_Failures == 0; }
  /// As a table in Markdown, with the reasons below it.
  [[nodiscard]] std::string Text() const;

 private:
  struct Counts {
    size_t Cases = 0;
    size_t Differs = 0;  ///< of these
    size_t Against = 0;  ///< of those that differ, errors or warnings are told
    size_t Milder = 0;   ///< of those that differ, nothing but notes and what is outside RDD 52
    size_t Silent = 0;   ///< of those that differ, nothing
    size_t Same = 0;     ///< nothing differs, errors or warnings are told
  };

  static void AddRow(const std::string& name, const Counts& counts, std::string& text);

  DamageMode m_Mode;
  std::array<Counts, FileKindCount> m_Kinds;
  Counts m_All;
  std::map<std::string, std::vector<uint32_t>> m_Reasons;  // seeds of silent cases
  size_t m_Unexplained = 0;
  size_t m_Failures = 0;
};

}  // namespace testsupport
