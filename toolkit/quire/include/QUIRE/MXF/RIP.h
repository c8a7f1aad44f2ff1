// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Export.h>
#include <QUIRE/Result.h>
#include <QUIRE/Types.h>

#include <Ferro/FileReader.h>

#include <span>
#include <vector>

namespace QUIRE::MXF {

/// The random index pack: where a file's partitions lie (ST 377-1, 12).
struct QUIRE_API RIP {
  struct Pair {
    ui32_t BodySID = 0;
    ui64_t ByteOffset = 0;  ///< of the partition pack, from the header partition pack
    friend bool operator==(const Pair&, const Pair&) = default;
  };
  /// One pair for each partition, in file order.
  std::vector<Pair> PairArray;
  /// Bytes of the whole KLV as it was found; set by reading only.
  ui64_t PackLength = 0;

  /// Bytes of the pack as Write appends it.
  [[nodiscard]] ui64_t ArchiveLength() const { return 24 + 12 * ui64_t(PairArray.size()); }
  void Write(std::vector<ui8_t>& out) const;
  /// Reads the whole pack, key first. `offset` is its place in the file. On failure nothing changes.
  /// @return RESULT_OK; RESULT_FORMAT with one log line.
  [[nodiscard]] Result_t Read(std::span<const ui8_t> bytes, ui64_t offset);
  /// Finds the pack by the last four bytes of the file and reads it, in one read when it is of ordinary size.
  /// @return RESULT_OK; RESULT_NOT_FOUND, without a log line, when the file does not end in such a pack; what the reader
  /// returns.
  [[nodiscard]] Result_t ReadFromFile(const Ferro::FileReader& file);
};

}  // namespace QUIRE::MXF
