// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "FolderScan.h"

#include <Cairn/AssetStore.h>

#include <functional>
#include <string>
#include <vector>

namespace Cairn {

/// One file whose digest is wanted, and what came of it.
struct DigestJob {
  std::string Path;
  fsize_t Size = 0;  ///< expected, for the progress
  SHA1 Listed;
  FileStamp Stamp;  ///< receives the file's, taken before it was read
  SHA1 Computed;    ///< receives the digest; no value when the file could not be read
};

/// Computes the digests of files, several at once. `progress` is called by one thread at a time, every now and then and
/// at the end; false from it ends the work as soon as each thread has finished its piece.
/// @param threads  at least 1.
/// @return RESULT_OK, or RESULT_CANCELLED. Files that could not be read are logged.
[[nodiscard]] Result_t ComputeDigests(std::vector<DigestJob>& jobs, ui32_t threads,
                                      const std::function<bool(const VerifyProgress&)>& progress);

}  // namespace Cairn
