// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Export.h>
#include <QUIRE/MXF/IndexTableSegment.h>

#include <array>
#include <deque>
#include <vector>

namespace QUIRE::MXF {

/// Where each edit unit of one essence stream begins: 11 bytes for each edit unit of variable size, nothing for those of
/// constant size. Looking one up takes constant time. Any number of threads may look up at once.
class QUIRE_API IndexTable {
 public:
  /// Builds the table from the segments of one stream, in any order; of segments with one start position the later counts.
  /// Where segments overlap, the one that starts later counts; where duration and number of entries differ, the smaller.
  /// @return RESULT_OK; RESULT_FORMAT with one log line, the table then being empty, when they leave a gap or change the
  /// size of an edit unit.
  [[nodiscard]] Result_t Build(const std::vector<IndexTableSegment>& segments);
  /// A table of `duration` edit units of `edit_unit_byte_count` bytes each.
  void SetConstant(const Rational& edit_rate, ui32_t edit_unit_byte_count, ui64_t duration);
  /// Adds an edit unit at the end of a table that is empty or of variable size.
  void Append(const IndexEntry& entry);
  /// Moves all entries of a table of variable size so that the first one leads to `stream_start`.
  void Rebase(ui64_t stream_start);

  [[nodiscard]] const Rational& EditRate() const { return m_EditRate; }
  void SetEditRate(const Rational& edit_rate) { m_EditRate = edit_rate; }
  /// Edit units the index covers; 0 for a constant size without a stated duration.
  [[nodiscard]] ui64_t Duration() const { return m_EditUnitByteCount != 0 ? m_Duration : m_Entries.size(); }
  /// Bytes of each edit unit, key and length included; 0 when they vary.
  [[nodiscard]] ui32_t EditUnitByteCount() const { return m_EditUnitByteCount; }
  [[nodiscard]] bool IsEmpty() const { return m_EditUnitByteCount == 0 && m_Entries.empty(); }

  /// Finds an edit unit.
  /// @return RESULT_OK; RESULT_RANGE, `entry` being unchanged, beyond the duration (constant size without duration:
  /// beyond what 64 bits can count).
  [[nodiscard]] Result_t Lookup(ui64_t edit_unit, IndexEntry& entry) const;

 private:
  Rational m_EditRate;
  ui32_t m_EditUnitByteCount = 0;
  ui64_t m_Duration = 0;  // of a constant size
  // As they stand in the file: hours of pictures have a million. A deque grows without a second copy of them all.
  std::deque<PackedIndexEntry> m_Entries;
};

}  // namespace QUIRE::MXF
