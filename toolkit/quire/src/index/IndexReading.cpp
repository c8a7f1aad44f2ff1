// SPDX-License-Identifier: BSD-3-Clause
#include "IndexBuilder.h"
#include "base/FormatError.h"
#include "klv/KLVScanner.h"
#include "klv/PartitionBounds.h"

#include <QUIRE/Dictionary.h>
#include <QUIRE/MXF/FileStructure.h>

#include <algorithm>
#include <array>
#include <utility>

namespace QUIRE::MXF {
namespace {

// A segment's items have lengths of 16 bits: no segment of ours or anyone's is longer than this.
constexpr ui64_t BlockRead = 1 << 20;
// Nearly a hundred hours at 24 edit units per second.
constexpr size_t MaxIndexEntries = 1 << 23;
constexpr size_t MaxSegments = 1 << 18;

/// Collects the segments of one stream.
class SegmentCollector {
 public:
  SegmentCollector(const OP1aHeader& header, ui32_t body_sid) : m_BodySID(body_sid) {
    for (const auto& object : header.Objects())
      if (const auto* data = dynamic_cast<const EssenceContainerData*>(object.get()))
        if (data->BodySID == body_sid) m_IndexSID = data->IndexSID.value_or(0);
  }

  /// Takes the segments that lie within [offset, offset + length) of the file.
  Result_t Read(const Ferro::FileReader& file, ui64_t offset, ui64_t length) {
    const ui64_t end = offset + length;
    std::vector<ui8_t> block;
    while (offset < end) {
      block.resize(std::min(BlockRead, end - offset));
      Result_t result = file.ReadAt(offset, block);
      if (result.Failure()) return result;
      ui64_t taken = 0;
      result = TakeBlock(block, offset, end, taken);
      if (result.Failure()) return result;
      offset += taken;
    }
    return Ferro::RESULT_OK;
  }

  IndexBuilder Segments;

 private:
  // Takes the whole KLVs at the start of `block`; `taken` receives their length. A KLV longer than a block is passed over.
  Result_t TakeBlock(std::span<const ui8_t> block, ui64_t offset, ui64_t end, ui64_t& taken) {
    while (taken < block.size()) {
      const auto packet = ParseKLV(block.subspan(taken), offset + taken, end);
      if (!packet) {
        if (taken != 0 && end - offset > block.size()) return Ferro::RESULT_OK;  // the block's end cuts it
        return FormatError(offset + taken, "index with something that is no whole KLV");
      }
      const ui64_t length = packet->HeaderLength + packet->ValueLength;
      const bool whole = length <= block.size() - taken;
      if (!whole && taken != 0) return Ferro::RESULT_OK;
      if (whole && DefaultSMPTEDict().Is(packet->Key, MDD_IndexTableSegment)) {
        const auto value = block.subspan(taken + packet->HeaderLength, packet->ValueLength);
        const Result_t result = TakeSegment(value, packet->ValueOffset());
        if (result.Failure()) return result;
      }
      taken += length;
    }
    return Ferro::RESULT_OK;
  }

  Result_t TakeSegment(std::span<const ui8_t> value, ui64_t offset) {
    IndexTableSegment segment;
    const Result_t result = segment.Read(value, offset);
    if (result.Failure()) return result;
    const bool other_body = segment.BodySID != 0 && segment.BodySID != m_BodySID;
    const bool other_index = m_IndexSID != 0 && segment.IndexSID != 0 && segment.IndexSID != m_IndexSID;
    if (other_body || other_index) return Ferro::RESULT_OK;
    m_EntryCount += segment.IndexEntryArray.size();
    if (m_EntryCount > MaxIndexEntries || Segments.Count() == MaxSegments)
      return FormatError(offset, "index with too many entries or segments");
    Segments.Add(std::move(segment));
    return Ferro::RESULT_OK;
  }

  ui32_t m_BodySID;
  ui32_t m_IndexSID = 0;
  size_t m_EntryCount = 0;
};

/// Finds the edit units of a stream by reading the keys of its elements.
class IndexRebuilder {
 public:
  IndexRebuilder(const Ferro::FileReader& file, ui32_t elements) : m_Scanner(file), m_Elements(elements) {}

  Result_t Scan(const EssenceRun& run) {
    const ui64_t end = run.FileOffset + run.Length;
    ui64_t at = run.FileOffset;
    while (const auto packet = m_Scanner.At(at, end)) {
      at = packet->End();
      if (!IsEssenceKey(packet->Key)) continue;
      const ui64_t start = run.StreamOffset + (packet->Offset - run.FileOffset);
      if (m_Count++ % m_Elements == 0) m_UnitStart = start;
      if (m_Count % m_Elements == 0) m_Units.Append({m_UnitStart, 0, 0, 0x80});
      m_StreamEnd = start + (packet->End() - packet->Offset);
      if (m_Units.Duration() > MaxIndexEntries) return FormatError(packet->Offset, "too many edit units");
    }
    return m_Scanner.LastRead();
  }

  IndexTable Table() {
    if (m_Count % m_Elements != 0) m_StreamEnd = m_UnitStart;  // the file breaks off within an edit unit
    if (m_Units.IsEmpty()) return {};
    const ui64_t size = SizeOf(0);
    const ui64_t count = m_Units.Duration();
    bool constant = StartOf(0) == 0 && size <= 0xffffffff;
    for (ui64_t i = 0; constant && i < count; ++i) constant = SizeOf(i) == size;
    if (constant) m_Units.SetConstant({}, static_cast<ui32_t>(size), count);
    return std::move(m_Units);
  }

 private:
  // The stream's end for the edit unit after the last.
  ui64_t StartOf(ui64_t i) const {
    IndexEntry entry;
    return m_Units.Lookup(i, entry).Success() ? entry.StreamOffset : m_StreamEnd;
  }
  ui64_t SizeOf(ui64_t i) const { return StartOf(i + 1) - StartOf(i); }

  KLVScanner m_Scanner;
  ui32_t m_Elements;
  ui64_t m_Count = 0;      // of elements
  ui64_t m_UnitStart = 0;  // of the latest edit unit, which may still lack elements
  ui64_t m_StreamEnd = 0;
  IndexTable m_Units;  // the whole ones
};

// The key alone is looked at: one element with a damaged length does not make the index wrong for all others.
bool IsEssenceAt(const Ferro::FileReader& file, const std::vector<EssenceRun>& runs, ui64_t stream_offset) {
  const auto offset = FilePosition(runs, stream_offset);
  std::array<ui8_t, KeyLength> key{};
  return offset && file.ReadAt(*offset, key).Success() && (IsEssenceKey(UL(key)) || IsSystemItemKey(UL(key)));
}

// Looks at the second edit unit of a constant size, and at the first and the last of a variable one.
bool LeadsToEssence(const Ferro::FileReader& file, const std::vector<EssenceRun>& runs, const IndexTable& index) {
  if (index.EditUnitByteCount() == 0) {
    IndexEntry first;
    IndexEntry last;
    return index.Lookup(0, first).Success() && index.Lookup(index.Duration() - 1, last).Success() &&
           IsEssenceAt(file, runs, first.StreamOffset) && IsEssenceAt(file, runs, last.StreamOffset);
  }
  const ui64_t second = runs.front().StreamOffset + index.EditUnitByteCount();
  return IsEssenceAt(file, runs, runs.front().StreamOffset) &&
         (!FilePosition(runs, second) || IsEssenceAt(file, runs, second));
}

}  // namespace

bool IsEssenceKey(const UL& key) {
  const Dictionary& dictionary = DefaultSMPTEDict();
  if (dictionary.Is(key, MDD_CryptEssence) || dictionary.Is(key, MDD_IADataEssence)) return true;
  const auto begins_like = [&key](MDD_t entry, size_t length) {
    const UL label = DefaultSMPTEDict().ul(entry);
    for (size_t i = 0; i < length; ++i)
      if (i != 7 && key.Value()[i] != label.Value()[i]) return false;
    return true;
  };
  return begins_like(MDD_WAVEssence, 12) || begins_like(MDD_GenericStream_DataElement, 11);
}

Result_t FileStructure::ReadIndex(const Ferro::FileReader& file, ui32_t body_sid, IndexTable& index) const {
  index = IndexTable();
  KLVScanner scanner(file);
  SegmentCollector collector(Header, body_sid);
  for (size_t i = 0; i < Partitions.size(); ++i) {
    if (Partitions[i].IndexByteCount == 0) continue;
    const PartitionContent content = ContentOf(scanner, Partitions[i], EndOf(file, i));
    const Result_t result = collector.Read(file, content.IndexOffset, content.IndexLength);
    if (result.Failure()) return result;
  }
  return collector.Segments.Build(index);
}

Result_t FileStructure::ReadOrRebuildIndex(const Ferro::FileReader& file, const std::vector<EssenceRun>& runs,
                                           ui32_t body_sid, ui32_t elements, IndexTable& index) const {
  const Result_t result = ReadIndex(file, body_sid, index);
  if (result.Failure() && result != RESULT_FORMAT) return result;
  if (runs.empty()) return Ferro::RESULT_OK;
  if (result.Success() && !index.IsEmpty()) {
    if (LeadsToEssence(file, runs, index)) return Ferro::RESULT_OK;
    if (index.EditUnitByteCount() == 0) {
      index.Rebase(runs.front().StreamOffset);
      if (LeadsToEssence(file, runs, index)) return Ferro::RESULT_OK;
    }
  }
  const Rational edit_rate = index.EditRate();
  index = IndexTable();  // not two of them at once
  IndexRebuilder rebuilder(file, std::max<ui32_t>(elements, 1));
  for (const EssenceRun& run : runs) {
    const Result_t scanned = rebuilder.Scan(run);
    if (scanned.Failure()) return scanned;
  }
  index = rebuilder.Table();
  index.SetEditRate(edit_rate);
  return Ferro::RESULT_OK;
}

}  // namespace QUIRE::MXF
