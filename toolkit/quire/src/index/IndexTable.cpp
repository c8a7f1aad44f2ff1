// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/MXF/IndexTable.h>

#include "IndexBuilder.h"
#include "PackedEntry.h"

#include <Ferro/Assert.h>
#include <Ferro/CheckedMath.h>

namespace QUIRE::MXF {
namespace {

constexpr ui8_t RandomAccess = 0x80;

}  // namespace

Result_t IndexTable::Build(const std::vector<IndexTableSegment>& segments) {
  IndexBuilder builder;
  for (const IndexTableSegment& segment : segments) builder.Add(IndexTableSegment(segment));
  return builder.Build(*this);
}

void IndexTable::SetConstant(const Rational& edit_rate, ui32_t edit_unit_byte_count, ui64_t duration) {
  *this = IndexTable();
  m_EditRate = edit_rate;
  m_EditUnitByteCount = edit_unit_byte_count;
  m_Duration = duration;
}

void IndexTable::Append(const IndexEntry& entry) {
  FERRO_ASSERT(m_EditUnitByteCount == 0);
  m_Entries.push_back(PackEntry(entry));
}

// Wraps where the offsets of a damaged index do.
void IndexTable::Rebase(ui64_t stream_start) {
  if (m_Entries.empty()) return;
  const ui64_t first = UnpackEntry(m_Entries.front().data()).StreamOffset;
  for (PackedIndexEntry& packed : m_Entries) {
    IndexEntry entry = UnpackEntry(packed.data());
    entry.StreamOffset = entry.StreamOffset - first + stream_start;
    packed = PackEntry(entry);
  }
}

Result_t IndexTable::Lookup(ui64_t edit_unit, IndexEntry& entry) const {
  if (m_EditUnitByteCount == 0) {
    if (edit_unit >= m_Entries.size()) return RESULT_RANGE;
    entry = UnpackEntry(m_Entries[edit_unit].data());
    return Ferro::RESULT_OK;
  }
  const auto offset = Ferro::CheckedMul<ui64_t>(edit_unit, m_EditUnitByteCount);
  if (!offset || (m_Duration != 0 && edit_unit >= m_Duration)) return RESULT_RANGE;
  entry = IndexEntry{*offset, 0, 0, RandomAccess};
  return Ferro::RESULT_OK;
}

}  // namespace QUIRE::MXF
