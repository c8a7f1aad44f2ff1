// SPDX-License-Identifier: BSD-3-Clause
#include "SetCodec.h"
#include "base/BigEndian.h"

#include <QUIRE/MXF/OP1aHeader.h>

namespace QUIRE::MXF {
namespace {

// The tags of index segments in the order in which the primers of track files list them after those of the sets.
constexpr MDD_t IndexEntries[] = {
    MDD_IndexTableSegment_IndexEditRate,   MDD_IndexTableSegment_IndexStartPosition,
    MDD_IndexTableSegment_IndexDuration,   MDD_IndexTableSegment_EditUnitByteCount,
    MDD_IndexTableSegment_IndexSID,        MDD_IndexTableSegment_BodySID,
    MDD_IndexTableSegment_SliceCount,      MDD_IndexTableSegment_PosTableCount,
    MDD_IndexTableSegment_DeltaEntryArray, MDD_IndexTableSegment_IndexEntryArray,
};

bool ListIndexTags(IndexTags tags, Primer& primer) {
  if (tags == IndexTags::None) return true;
  for (const MDD_t entry : IndexEntries) {
    if (entry == MDD_IndexTableSegment_DeltaEntryArray && tags == IndexTags::ConstantSize) continue;
    if (primer.TagFor(entry) == 0) return false;
  }
  return true;
}

}  // namespace

Result_t OP1aHeader::WriteSets(IndexTags tags, std::vector<ui8_t>& sets) {
  for (const auto& object : m_Objects) {
    const Result_t result = WriteSet(*object, Primer, sets);
    if (result.Failure()) return result;
  }
  return ListIndexTags(tags, Primer) ? Ferro::RESULT_OK : Ferro::RESULT_TOOLARGE;
}

Result_t OP1aHeader::MetadataLength(IndexTags tags, ui64_t& length) {
  std::vector<ui8_t> sets;
  const Result_t result = WriteSets(tags, sets);
  if (result.Success()) length = Primer.ArchiveLength() + sets.size();
  return result;
}

Result_t OP1aHeader::WriteMetadata(IndexTags tags, ui64_t header_byte_count, std::vector<ui8_t>& out) {
  std::vector<ui8_t> sets;
  const Result_t result = WriteSets(tags, sets);
  if (result.Failure()) return result;
  const ui64_t length = Primer.ArchiveLength() + sets.size();
  const ui64_t gap = header_byte_count - length;
  if (header_byte_count != 0 && (length > header_byte_count || (gap != 0 && gap < SmallestFill)))
    return Ferro::RESULT_TOOLARGE;
  Primer.Write(out);
  AppendBytes(out, sets);
  if (header_byte_count != 0 && gap != 0) AppendFill(out, gap);
  return Ferro::RESULT_OK;
}

}  // namespace QUIRE::MXF
