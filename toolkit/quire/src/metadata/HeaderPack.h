// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/MXF/Partition.h>

#include <Ferro/FileReader.h>

#include <vector>

namespace QUIRE::MXF {

/// The header partition pack, and what was read of the file along with it: the bytes from the pack on.
struct HeaderPack {
  Partition Pack;
  std::vector<ui8_t> Bytes;
};

/// Finds the header partition pack without a log line: reads `first_read` bytes at the start of the file and, where it
/// is not among them, after a run-in. `bytes` receives what was read from the pack on, `run_in` the bytes before it.
/// @return RESULT_OK; RESULT_NOT_FOUND; what the reader returns.
[[nodiscard]] Result_t LocateHeaderPack(const Ferro::FileReader& file, size_t first_read, std::vector<ui8_t>& bytes,
                                        ui64_t& run_in);

/// Finds and reads the header partition pack at the start of the file or after a run-in of at most 65535 bytes (ST 377-1, 6.5), in one
/// read where there is no run-in.
/// @return RESULT_OK; RESULT_FORMAT with one log line; what the reader returns.
[[nodiscard]] Result_t ReadHeaderPack(const Ferro::FileReader& file, HeaderPack& pack);

/// Reads the header metadata of the pack's partition; takes what was read already, and the rest in one read. `offset`
/// receives where they lie.
/// @return RESULT_OK; RESULT_FORMAT with one log line where the file or our limit is smaller; what the reader returns.
[[nodiscard]] Result_t ReadHeaderMetadata(const Ferro::FileReader& file, const HeaderPack& pack,
                                          std::vector<ui8_t>& metadata, ui64_t& offset);

}  // namespace QUIRE::MXF
