// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Export.h>
#include <QUIRE/MXF/DataTypes.h>
#include <QUIRE/Rational.h>
#include <QUIRE/Result.h>
#include <QUIRE/Types.h>

#include <array>
#include <optional>
#include <span>
#include <vector>

namespace QUIRE::MXF {

/// One edit unit of an index (ST 377-1, 11.2). 16 bytes.
struct IndexEntry {
  ui64_t StreamOffset = 0;  ///< bytes from the first essence key of the stream
  i8_t TemporalOffset = 0;  ///< from display to stored order, in edit units
  i8_t KeyFrameOffset = 0;  ///< to the key frame, in edit units
  ui8_t Flags = 0;          ///< 0x80 random access, 0x40 sequence header, 0x20 forward, 0x10 backward prediction
  friend bool operator==(const IndexEntry&, const IndexEntry&) = default;
};

/// An entry as it stands in a segment, big-endian: temporal offset, key frame offset, flags (one byte each), stream offset
/// (8 bytes). Slice offsets and position tables, which may follow there, are left out.
using PackedIndexEntry = std::array<ui8_t, 11>;

/// One entry of the delta array (ST 377-1, 11.2.3); tells nothing for a container of a single element.
struct DeltaEntry {
  i8_t PosTableIndex = 0;
  ui8_t Slice = 0;
  ui32_t ElementDelta = 0;
  friend bool operator==(const DeltaEntry&, const DeltaEntry&) = default;
};

/// An index table segment (ST 377-1, 11.2).
struct QUIRE_API IndexTableSegment {
  /// Entries that fit an item of 65535 bytes, and the number we write to a segment.
  static constexpr ui32_t MaxEntries = 5957;
  static constexpr ui32_t EntriesPerSegment = 5000;

  UUID InstanceUID;
  Rational IndexEditRate;
  i64_t IndexStartPosition = 0;  ///< edit units
  i64_t IndexDuration = 0;       ///< edit units; 0 with a constant size: to the end
  ui32_t EditUnitByteCount = 0;  ///< 0: variable size
  ui32_t IndexSID = 0;
  ui32_t BodySID = 0;
  ui8_t SliceCount = 0;
  ui8_t PosTableCount = 0;
  /// Written when not empty.
  std::vector<DeltaEntry> DeltaEntryArray;
  /// Always written, also when empty. Slice offsets and position tables of the entries are passed over.
  std::vector<IndexEntry> IndexEntryArray;
  std::optional<ui64_t> ExtStartOffset;
  std::optional<ui64_t> VBEByteCount;

  /// Bytes of the segment as Write appends it, the key included.
  [[nodiscard]] ui64_t ArchiveLength() const;
  /// Appends the segment with the item order of ST 377-1. At most MaxEntries entries, SliceCount and PosTableCount 0.
  void Write(std::vector<ui8_t>& out) const;
  /// Reads the set's value, which lies at `offset`. On failure nothing changes.
  /// @return RESULT_OK; RESULT_FORMAT with one log line.
  [[nodiscard]] Result_t Read(std::span<const ui8_t> value, ui64_t offset);
};

}  // namespace QUIRE::MXF
