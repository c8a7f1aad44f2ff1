// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/MXF/IndexTable.h>

#include <deque>
#include <memory>

namespace QUIRE::MXF {

/// Makes a table of the segments of one stream. What it keeps of a segment is little more than its bytes in the file, and
/// is freed while the table grows: a long index is never held twice.
class IndexBuilder {
 public:
  /// Takes the next segment in the order of the file. One without entries or constant size tells nothing and is left out.
  void Add(IndexTableSegment&& segment);
  /// Segments that were kept.
  [[nodiscard]] size_t Count() const { return m_Pieces.size(); }
  /// Joins the segments, by the rules and with the results of IndexTable::Build, and keeps none.
  [[nodiscard]] Result_t Build(IndexTable& table);

 private:
  struct Piece {
    i64_t Start = 0;     // edit units
    i64_t Duration = 0;  // edit units, of a constant size
    Rational EditRate;
    ui32_t EditUnitByteCount = 0;
    ui32_t EntryCount = 0;
    std::unique_ptr<PackedIndexEntry[]> Entries;
  };

  void SortByStart();
  [[nodiscard]] Result_t Join(IndexTable& table);
  [[nodiscard]] Result_t JoinConstant(IndexTable& table) const;
  [[nodiscard]] Result_t JoinEntries(IndexTable& table);

  std::deque<Piece> m_Pieces;
};

}  // namespace QUIRE::MXF
