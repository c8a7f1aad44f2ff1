// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/MXF/IndexTable.h>

#include "base/FormatError.h"

#include <Ferro/CheckedMath.h>
#include <Ferro/ILogSink.h>

#include <algorithm>
#include <utility>

namespace QUIRE::MXF {
namespace {

constexpr ui8_t RandomAccess = 0x80;

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

// Later segments of the file are better: they were written when more was known.
void SortByStart(std::vector<IndexTableSegment>& segments) {
  const auto start = [](const IndexTableSegment& segment) { return segment.IndexStartPosition; };
  std::reverse(segments.begin(), segments.end());
  std::stable_sort(segments.begin(), segments.end(), [&](const auto& a, const auto& b) { return start(a) < start(b); });
  const auto duplicates =
      std::unique(segments.begin(), segments.end(), [&](const auto& a, const auto& b) { return start(a) == start(b); });
  segments.erase(duplicates, segments.end());
}

}  // namespace

Result_t IndexTable::Build(std::vector<IndexTableSegment>&& segments) {
  *this = IndexTable();
  const auto is_constant = [](const IndexTableSegment& segment) { return segment.EditUnitByteCount != 0; };
  std::erase_if(segments,
                [&](const auto& segment) { return !is_constant(segment) && segment.IndexEntryArray.empty(); });
  if (segments.empty()) return Ferro::RESULT_OK;
  SortByStart(segments);
  const bool constant = is_constant(segments.front());
  for (const IndexTableSegment& segment : segments)
    if (segment.EditUnitByteCount != segments.front().EditUnitByteCount)
      return Unusable("change the size of an edit unit", segment.IndexStartPosition);
  const Rational rate = segments.front().IndexEditRate;
  if (constant) {
    const ui32_t size = segments.front().EditUnitByteCount;
    ui64_t duration = 0;
    const Result_t result = ConstantDuration(segments, duration);
    if (result.Success()) SetConstant(rate, size, duration);
    return result;
  }
  std::vector<IndexEntry> entries;
  const Result_t result = JoinEntries(segments, entries);
  if (result.Success()) SetEntries(rate, std::move(entries));
  return result;
}

Result_t IndexTable::ConstantDuration(const std::vector<IndexTableSegment>& segments, ui64_t& duration) {
  duration = 0;
  for (const IndexTableSegment& segment : segments) {
    if (segment.IndexStartPosition < 0 || segment.IndexDuration < 0 ||
        static_cast<ui64_t>(segment.IndexStartPosition) > duration)
      return Unusable("leave a gap", segment.IndexStartPosition);
    // Neither term exceeds 2^63 - 1.
    const ui64_t end = static_cast<ui64_t>(segment.IndexStartPosition) + static_cast<ui64_t>(segment.IndexDuration);
    if (segment.IndexDuration == 0) {
      duration = 0;  // to the end
      return Ferro::RESULT_OK;
    }
    duration = std::max(duration, end);
  }
  return Ferro::RESULT_OK;
}

Result_t IndexTable::JoinEntries(std::vector<IndexTableSegment>& segments, std::vector<IndexEntry>& entries) {
  ui64_t total = 0;
  for (IndexTableSegment& segment : segments) {
    Reconcile(segment);
    total += segment.IndexEntryArray.size();
  }
  entries.reserve(total);
  for (IndexTableSegment& segment : segments) {
    const auto start = Ferro::CheckedCast<ui64_t>(segment.IndexStartPosition);
    if (!start || *start > entries.size()) return Unusable("leave a gap", segment.IndexStartPosition);
    entries.resize(*start);
    entries.insert(entries.end(), segment.IndexEntryArray.begin(), segment.IndexEntryArray.end());
    segment.IndexEntryArray = {};
  }
  return Ferro::RESULT_OK;
}

void IndexTable::SetConstant(const Rational& edit_rate, ui32_t edit_unit_byte_count, ui64_t duration) {
  *this = IndexTable();
  m_EditRate = edit_rate;
  m_EditUnitByteCount = edit_unit_byte_count;
  m_Duration = duration;
}

void IndexTable::SetEntries(const Rational& edit_rate, std::vector<IndexEntry>&& entries) {
  *this = IndexTable();
  m_EditRate = edit_rate;
  m_Entries = std::move(entries);
  m_Entries.shrink_to_fit();
  m_Duration = m_Entries.size();
}

Result_t IndexTable::Lookup(ui64_t edit_unit, IndexEntry& entry) const {
  if (m_EditUnitByteCount == 0) {
    if (edit_unit >= m_Entries.size()) return RESULT_RANGE;
    entry = m_Entries[edit_unit];
    return Ferro::RESULT_OK;
  }
  const auto offset = Ferro::CheckedMul<ui64_t>(edit_unit, m_EditUnitByteCount);
  if (!offset || (m_Duration != 0 && edit_unit >= m_Duration)) return RESULT_RANGE;
  entry = IndexEntry{*offset, 0, 0, RandomAccess};
  return Ferro::RESULT_OK;
}

}  // namespace QUIRE::MXF
