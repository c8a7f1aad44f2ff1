// SPDX-License-Identifier: BSD-3-Clause
#include "PackedEntry.h"
#include "base/FormatError.h"
#include "metadata/FieldCodec.h"
#include "metadata/SetCodec.h"

#include <QUIRE/Dictionary.h>
#include <QUIRE/MXF/IndexTableSegment.h>
#include <QUIRE/MXF/KLV.h>

#include <Ferro/Assert.h>

#include <tuple>
#include <utility>

namespace QUIRE::MXF {
namespace {

constexpr ui64_t EntryLength = std::tuple_size_v<PackedIndexEntry>;
constexpr ui64_t DeltaLength = 6;

// A segment is a local set: items of tag (2 bytes), length (2), value. An array's value is the number of its items (4),
// the bytes of each (4), then the items, which may be longer than what is known of them (ST 377-1, 11.2):
//
//   delta   position table index (1), slice (1), offset of the element within the slice (4)
//   entry   temporal offset (1), key frame offset (1), flags (1), stream offset (8), then slice offsets and positions
//
// The tags of a segment are fixed; no primer is consulted (ST 377-1, 11.2.1).
enum Tag : ui16_t {
  InstanceUIDTag = 0x3c0a,
  EditUnitByteCountTag = 0x3f05,
  IndexSIDTag = 0x3f06,
  BodySIDTag = 0x3f07,
  SliceCountTag = 0x3f08,
  DeltaEntryArrayTag = 0x3f09,
  IndexEntryArrayTag = 0x3f0a,
  IndexEditRateTag = 0x3f0b,
  IndexStartPositionTag = 0x3f0c,
  IndexDurationTag = 0x3f0d,
  PosTableCountTag = 0x3f0e,
  ExtStartOffsetTag = 0x3f0f,
  VBEByteCountTag = 0x3f10,
};

// Calls take(item) for each item of an array whose items have at least `length` bytes; false when they do not fit.
template <class Take>
bool ReadArray(std::span<const ui8_t> bytes, ui64_t length, Take take) {
  if (bytes.size() < 8) return false;
  const ui64_t count = LoadBE<ui32_t>(bytes.data());
  const ui64_t size = LoadBE<ui32_t>(bytes.data() + 4);
  if (count != 0 && (size < length || count > (bytes.size() - 8) / size)) return false;
  for (ui64_t i = 0; i < count; ++i) take(bytes.data() + 8 + i * size);
  return true;
}

template <class T>
bool ReadField(std::span<const ui8_t> bytes, T& field) {
  return FieldCodec<T>::Read(bytes, field);
}

bool ReadOptional(std::span<const ui8_t> bytes, std::optional<ui64_t>& field) {
  return ReadField(bytes, field.emplace());
}

bool ReadDeltas(std::span<const ui8_t> bytes, std::vector<DeltaEntry>& deltas) {
  deltas.clear();
  return ReadArray(bytes, DeltaLength, [&](const ui8_t* item) {
    deltas.push_back({static_cast<i8_t>(item[0]), item[1], LoadBE<ui32_t>(item + 2)});
  });
}

bool ReadEntries(std::span<const ui8_t> bytes, std::vector<IndexEntry>& entries) {
  entries.clear();
  return ReadArray(bytes, EntryLength, [&](const ui8_t* item) { entries.push_back(UnpackEntry(item)); });
}

bool TakeItem(const SetItem& item, IndexTableSegment& segment) {
  if (item.Value.empty()) return true;
  switch (item.Tag) {
    case InstanceUIDTag:
      return ReadField(item.Value, segment.InstanceUID);
    case EditUnitByteCountTag:
      return ReadField(item.Value, segment.EditUnitByteCount);
    case IndexSIDTag:
      return ReadField(item.Value, segment.IndexSID);
    case BodySIDTag:
      return ReadField(item.Value, segment.BodySID);
    case SliceCountTag:
      return ReadField(item.Value, segment.SliceCount);
    case PosTableCountTag:
      return ReadField(item.Value, segment.PosTableCount);
    case IndexEditRateTag:
      return ReadField(item.Value, segment.IndexEditRate);
    case IndexStartPositionTag:
      return ReadField(item.Value, segment.IndexStartPosition);
    case IndexDurationTag:
      return ReadField(item.Value, segment.IndexDuration);
    case ExtStartOffsetTag:
      return ReadOptional(item.Value, segment.ExtStartOffset);
    case VBEByteCountTag:
      return ReadOptional(item.Value, segment.VBEByteCount);
    case DeltaEntryArrayTag:
      return ReadDeltas(item.Value, segment.DeltaEntryArray);
    case IndexEntryArrayTag:
      return ReadEntries(item.Value, segment.IndexEntryArray);
    default:
      return true;
  }
}

template <class T>
void AppendItem(std::vector<ui8_t>& out, Tag tag, const T& value) {
  AppendBE(out, static_cast<ui16_t>(tag));
  AppendBE(out, static_cast<ui16_t>(FieldCodec<T>::Length));
  FieldCodec<T>::Write(value, out);
}

void AppendArrayHead(std::vector<ui8_t>& out, Tag tag, size_t count, ui64_t length) {
  AppendBE(out, static_cast<ui16_t>(tag));
  AppendBE(out, static_cast<ui16_t>(8 + count * length));
  AppendBE(out, static_cast<ui32_t>(count));
  AppendBE(out, static_cast<ui32_t>(count == 0 ? 0 : length));
}

void AppendArrays(std::vector<ui8_t>& out, const IndexTableSegment& segment) {
  if (!segment.DeltaEntryArray.empty()) {
    AppendArrayHead(out, DeltaEntryArrayTag, segment.DeltaEntryArray.size(), DeltaLength);
    for (const DeltaEntry& delta : segment.DeltaEntryArray) {
      AppendBE(out, delta.PosTableIndex);
      AppendBE(out, delta.Slice);
      AppendBE(out, delta.ElementDelta);
    }
  }
  AppendArrayHead(out, IndexEntryArrayTag, segment.IndexEntryArray.size(), EntryLength);
  for (const IndexEntry& entry : segment.IndexEntryArray) AppendBytes(out, PackEntry(entry));
}

}  // namespace

ui64_t IndexTableSegment::ArchiveLength() const {
  constexpr ui64_t fixed = KLHeaderLength + 102;  // the single items and the head of the entry array
  const ui64_t deltas = DeltaEntryArray.empty() ? 0 : 12 + DeltaLength * DeltaEntryArray.size();
  const ui64_t optional = (ExtStartOffset ? 12u : 0u) + (VBEByteCount ? 12u : 0u);
  return fixed + deltas + optional + EntryLength * IndexEntryArray.size();
}

void IndexTableSegment::Write(std::vector<ui8_t>& out) const {
  FERRO_ASSERT(IndexEntryArray.size() <= MaxEntries && SliceCount == 0 && PosTableCount == 0);
  AppendKL(out, DefaultSMPTEDict().ul(MDD_IndexTableSegment), ArchiveLength() - KLHeaderLength);
  AppendItem(out, InstanceUIDTag, InstanceUID);
  AppendItem(out, IndexEditRateTag, IndexEditRate);
  AppendItem(out, IndexStartPositionTag, IndexStartPosition);
  AppendItem(out, IndexDurationTag, IndexDuration);
  AppendItem(out, EditUnitByteCountTag, EditUnitByteCount);
  AppendItem(out, IndexSIDTag, IndexSID);
  AppendItem(out, BodySIDTag, BodySID);
  AppendItem(out, SliceCountTag, SliceCount);
  AppendItem(out, PosTableCountTag, PosTableCount);
  if (ExtStartOffset) AppendItem(out, ExtStartOffsetTag, *ExtStartOffset);
  if (VBEByteCount) AppendItem(out, VBEByteCountTag, *VBEByteCount);
  AppendArrays(out, *this);
}

Result_t IndexTableSegment::Read(std::span<const ui8_t> value, ui64_t offset) {
  IndexTableSegment read;
  while (!value.empty()) {
    SetItem item;
    const Result_t result = NextItem(value, offset, item);
    if (result.Failure()) return result;
    if (!TakeItem(item, read))
      return FormatError(item.Offset, "item %04x of an index segment with a malformed value of %zu bytes", item.Tag,
                         item.Value.size());
  }
  *this = std::move(read);
  return Ferro::RESULT_OK;
}

}  // namespace QUIRE::MXF
