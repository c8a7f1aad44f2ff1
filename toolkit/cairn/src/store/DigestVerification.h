// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "FolderScan.h"

#include <Cairn/AssetStore.h>

#include <set>
#include <string>
#include <vector>

namespace Cairn {

/// One file whose digest is wanted, and what came of it.
struct DigestJob {
  std::string Path;
  fsize_t Size = 0;     ///< expected, for the progress
  FileStamp Stamp;      ///< receives the file's, taken before it was read
  SHA1 Computed;        ///< receives the digest; no value when the file could not be read
  std::string Failure;  ///< receives why it could not be read, without a full stop
};

/// Which assets a verification is about.
class VerificationPlan {
 public:
  /// @param ids  all assets when empty.
  explicit VerificationPlan(const UUIDList& ids) : m_Wanted(ids.begin(), ids.end()) {}

  /// What is to be read: each file once, and none whose digest is known.
  [[nodiscard]] std::vector<DigestJob> Jobs(const std::vector<AssetRecord>& assets) const;
  /// True when all wanted assets are there, and all listed digests are those of their files.
  [[nodiscard]] bool AreVerified(const std::vector<AssetRecord>& assets) const;

 private:
  [[nodiscard]] bool Concerns(const AssetRecord& asset) const;

  const std::set<UUID> m_Wanted;
};

/// Computes the digests of files, several at once. The callbacks are called by one thread at a time; they must not throw.
/// @param threads   at least 1.
/// @param interval_ms  between two reports of the progress; 0: after each piece.
/// @param finished  called with each file when it was read, or could not be; false from it ends the work.
/// @param progress  called every now and then and at the end; false from it ends the work as soon as each thread has
///                  finished its piece. May be empty.
/// @return RESULT_OK; RESULT_CANCELLED; RESULT_ALLOC, with some files not read. Files that could not be read are logged.
[[nodiscard]] Result_t ComputeDigests(std::vector<DigestJob>& jobs, ui32_t threads, ui32_t interval_ms,
                                      Ferro::FunctionRef<bool(const DigestJob&)> finished,
                                      AssetStore::OnVerify progress);

}  // namespace Cairn
