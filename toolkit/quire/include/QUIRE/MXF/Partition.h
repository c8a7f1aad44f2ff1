// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Export.h>
#include <QUIRE/MXF/KLV.h>
#include <QUIRE/Result.h>
#include <QUIRE/Types.h>
#include <QUIRE/UL.h>

#include <optional>
#include <span>
#include <vector>

namespace QUIRE::MXF {

/// Byte 14 of a partition pack's key; a generic stream partition (ST 410) is told by byte 15.
enum class PartitionKind : ui8_t { Header = 2, Body = 3, Footer = 4, GenericStream = 0x11 };
/// "header", "body", "footer", "generic stream". Never null.
[[nodiscard]] QUIRE_API const char* PartitionKindName(PartitionKind kind);

/// Byte 15: open while metadata may still change, incomplete while values are missing (ST 377-1, 6.2.3).
enum class PartitionStatus : ui8_t { OpenIncomplete = 1, ClosedIncomplete = 2, OpenComplete = 3, ClosedComplete = 4 };

/// A partition pack (ST 377-1, 7.1). Offsets count from the first byte of the header partition pack.
struct QUIRE_API Partition {
  PartitionKind Kind = PartitionKind::Header;
  PartitionStatus Status = PartitionStatus::ClosedComplete;  // not used by generic stream partitions
  ui16_t MajorVersion = 1;
  ui16_t MinorVersion = 2;
  ui32_t KAGSize = 1;
  ui64_t ThisPartition = 0;
  ui64_t PreviousPartition = 0;
  ui64_t FooterPartition = 0;
  ui64_t HeaderByteCount = 0;  ///< primer, sets and trailing fill
  ui64_t IndexByteCount = 0;   ///< index segments and their trailing fill
  ui32_t IndexSID = 0;         ///< 0: no index here
  ui64_t BodyOffset = 0;       ///< of this partition's first essence byte within its stream
  ui32_t BodySID = 0;          ///< 0: no essence here
  UL OperationalPattern;
  std::vector<UL> EssenceContainers;

  // Where the pack was found; set by reading only.
  ui64_t FileOffset = 0;  ///< from the first byte of the file, run-in included
  ui64_t PackLength = 0;  ///< bytes of the whole KLV

  [[nodiscard]] UL Key() const;
  /// Bytes of the pack as Write appends it: 108 + 16 for each essence container label.
  [[nodiscard]] ui64_t ArchiveLength() const { return 108 + 16 * ui64_t(EssenceContainers.size()); }
  void Write(std::vector<ui8_t>& out) const;

  /// Reads the pack, key first, from the start of `bytes`, which lie at `offset` in the file. The caller compares
  /// ThisPartition with the place. On failure nothing changes.
  /// @return RESULT_OK; RESULT_FORMAT with one log line.
  [[nodiscard]] Result_t Read(std::span<const ui8_t> bytes, ui64_t offset);

  friend bool operator==(const Partition& lhs, const Partition& rhs) = default;
};

/// True for the key of any partition pack, whatever its registry version.
[[nodiscard]] QUIRE_API bool IsPartitionKey(const UL& key);

}  // namespace QUIRE::MXF
