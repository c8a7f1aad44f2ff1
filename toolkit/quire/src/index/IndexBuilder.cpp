// SPDX-License-Identifier: BSD-3-Clause
#include "IndexBuilder.h"

#include "PackedEntry.h"
#include "base/FormatError.h"

#include <Ferro/ILogSink.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace QUIRE::MXF {
namespace {

Result_t Unusable(const char* reason, i64_t position) {
  Ferro::DefaultLogSink().Error("%s: index segments %s at edit unit %lld.\n", CurrentLogSubject(), reason,
                                static_cast<long long>(position));
  return RESULT_FORMAT;
}

// Makes entries and duration agree. A last entry beyond the duration marks the end of the essence; some writers make two
// entries for each edit unit.
void Reconcile(IndexTableSegment& segment) {
  std::vector<IndexEntry>& entries = segment.IndexEntryArray;
  const ui64_t count = entries.size();
  const ui64_t duration = segment.IndexDuration > 0 ? static_cast<ui64_t>(segment.IndexDuration) : count;
  if (duration > 1 && (count == 2 * duration || count == 2 * duration + 1))
    for (ui64_t i = 0; i < duration; ++i) entries[i] = entries[2 * i];
  entries.resize(std::min(count, duration));
}

}  // namespace

void IndexBuilder::Add(IndexTableSegment&& segment) {
  if (segment.EditUnitByteCount == 0 && segment.IndexEntryArray.empty()) return;
  Reconcile(segment);
  Piece piece{
      segment.IndexStartPosition, segment.IndexDuration, segment.IndexEditRate, segment.EditUnitByteCount, 0, nullptr};
  if (piece.EditUnitByteCount == 0) {
    piece.EntryCount = static_cast<ui32_t>(segment.IndexEntryArray.size());
    piece.Entries = std::make_unique<PackedIndexEntry[]>(piece.EntryCount);
    std::transform(segment.IndexEntryArray.begin(), segment.IndexEntryArray.end(), piece.Entries.get(), PackEntry);
  }
  m_Pieces.push_back(std::move(piece));
}

Result_t IndexBuilder::Build(IndexTable& table) {
  table = IndexTable();
  if (m_Pieces.empty()) return Ferro::RESULT_OK;
  SortByStart();
  const Result_t result = Join(table);
  if (result.Failure()) table = IndexTable();
  m_Pieces.clear();
  return result;
}

// Later segments of the file are better: they were written when more was known.
void IndexBuilder::SortByStart() {
  std::reverse(m_Pieces.begin(), m_Pieces.end());
  std::stable_sort(m_Pieces.begin(), m_Pieces.end(), [](const Piece& a, const Piece& b) { return a.Start < b.Start; });
  const auto duplicates =
      std::unique(m_Pieces.begin(), m_Pieces.end(), [](const Piece& a, const Piece& b) { return a.Start == b.Start; });
  m_Pieces.erase(duplicates, m_Pieces.end());
}

Result_t IndexBuilder::Join(IndexTable& table) {
  const ui32_t size = m_Pieces.front().EditUnitByteCount;
  for (const Piece& piece : m_Pieces)
    if (piece.EditUnitByteCount != size) return Unusable("change the size of an edit unit", piece.Start);
  return size != 0 ? JoinConstant(table) : JoinEntries(table);
}

Result_t IndexBuilder::JoinConstant(IndexTable& table) const {
  const Piece& first = m_Pieces.front();
  ui64_t duration = 0;
  for (const Piece& piece : m_Pieces) {
    if (piece.Start < 0 || piece.Duration < 0 || static_cast<ui64_t>(piece.Start) > duration)
      return Unusable("leave a gap", piece.Start);
    // Neither term exceeds 2^63 - 1.
    const ui64_t end = static_cast<ui64_t>(piece.Start) + static_cast<ui64_t>(piece.Duration);
    duration = piece.Duration == 0 ? 0 : std::max(duration, end);
    if (duration == 0) break;  // to the end
  }
  table.SetConstant(first.EditRate, first.EditUnitByteCount, duration);
  return Ferro::RESULT_OK;
}

// Each segment reaches to the start of the next one:
//
//   |0 ... 4999|           |0 ... 2499|
//        |2500 ... 9999|          |2500 ... 9999|
Result_t IndexBuilder::JoinEntries(IndexTable& table) {
  table.SetEditRate(m_Pieces.front().EditRate);
  ui64_t end = 0;  // of the segment before
  for (size_t i = 0; i < m_Pieces.size(); ++i) {
    Piece& piece = m_Pieces[i];
    if (piece.Start < 0 || static_cast<ui64_t>(piece.Start) > end) return Unusable("leave a gap", piece.Start);
    end = static_cast<ui64_t>(piece.Start) + piece.EntryCount;
    ui64_t count = piece.EntryCount;
    if (i + 1 < m_Pieces.size()) count = std::min(count, static_cast<ui64_t>(m_Pieces[i + 1].Start - piece.Start));
    for (ui64_t n = 0; n < count; ++n) table.Append(UnpackEntry(piece.Entries[n].data()));
    piece.Entries.reset();
  }
  return Ferro::RESULT_OK;
}

}  // namespace QUIRE::MXF
