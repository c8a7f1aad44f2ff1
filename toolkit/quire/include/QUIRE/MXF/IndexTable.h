// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Export.h>
#include <QUIRE/MXF/IndexTableSegment.h>

#include <vector>

namespace QUIRE::MXF {

/// Where each edit unit of one essence stream begins: 16 bytes for each edit unit of variable size, nothing for those of
/// constant size. Looking one up takes constant time. Any number of threads may look up at once.
class QUIRE_API IndexTable {
 public:
  /// Builds the table from the segments of one stream, in any order; of segments with one start position the later counts.
  /// Where segments overlap, the one that starts later counts; where duration and number of entries differ, the smaller.
  /// The segments are used up.
  /// @return RESULT_OK; RESULT_FORMAT with one log line, the table then being empty, when they leave a gap or change the
  /// size of an edit unit.
  [[nodiscard]] Result_t Build(std::vector<IndexTableSegment>&& segments);
  /// A table of `duration` edit units of `edit_unit_byte_count` bytes each.
  void SetConstant(const Rational& edit_rate, ui32_t edit_unit_byte_count, ui64_t duration);
  /// A table of these entries.
  void SetEntries(const Rational& edit_rate, std::vector<IndexEntry>&& entries);

  [[nodiscard]] const Rational& EditRate() const { return m_EditRate; }
  void SetEditRate(const Rational& edit_rate) { m_EditRate = edit_rate; }
  /// Edit units the index covers; 0 for a constant size without a stated duration.
  [[nodiscard]] ui64_t Duration() const { return m_Duration; }
  /// Bytes of each edit unit, key and length included; 0 when they vary.
  [[nodiscard]] ui32_t EditUnitByteCount() const { return m_EditUnitByteCount; }
  [[nodiscard]] bool IsEmpty() const { return m_EditUnitByteCount == 0 && m_Entries.empty(); }
  /// The entries of an index of variable size.
  [[nodiscard]] std::span<const IndexEntry> Entries() const { return m_Entries; }

  /// Finds an edit unit.
  /// @return RESULT_OK; RESULT_RANGE, `entry` being unchanged, beyond the duration (constant size without duration:
  /// beyond what 64 bits can count).
  [[nodiscard]] Result_t Lookup(ui64_t edit_unit, IndexEntry& entry) const;

 private:
  static Result_t ConstantDuration(const std::vector<IndexTableSegment>& segments, ui64_t& duration);
  static Result_t JoinEntries(std::vector<IndexTableSegment>& segments, std::vector<IndexEntry>& entries);

  Rational m_EditRate;
  ui32_t m_EditUnitByteCount = 0;
  ui64_t m_Duration = 0;
  std::vector<IndexEntry> m_Entries;
};

}  // namespace QUIRE::MXF
