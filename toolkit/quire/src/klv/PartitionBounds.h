// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "KLVScanner.h"

#include <QUIRE/MXF/Partition.h>

namespace QUIRE::MXF {

/// Where the parts of a partition begin in the file.
struct PartitionContent {
  ui64_t IndexOffset = 0;
  ui64_t IndexLength = 0;
  ui64_t EssenceOffset = 0;  ///< of the first KLV that is no fill
};

/// Computes the places from the pack; counts that reach past `end` count as 0. The header and index byte counts start after
/// fill that follows the pack (ST 377-1, 7.1).
[[nodiscard]] inline PartitionContent ContentOf(KLVScanner& scanner, const Partition& partition, ui64_t end) {
  const ui64_t pack_end = partition.FileOffset + partition.PackLength;
  const auto within = [end](ui64_t at, ui64_t count) { return at <= end && count <= end - at ? count : 0; };
  PartitionContent content;
  const ui64_t start = scanner.SkipFill(pack_end, end);
  content.IndexOffset = start + within(start, partition.HeaderByteCount);
  content.IndexLength = within(content.IndexOffset, partition.IndexByteCount);
  content.EssenceOffset = scanner.SkipFill(content.IndexOffset + content.IndexLength, end);
  return content;
}

}  // namespace QUIRE::MXF
