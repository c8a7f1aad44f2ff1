// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "findings/Finding.h"
#include "terminal/ExitCode.h"

#include <Cairn/AssetRecord.h>

#include <string>
#include <vector>

// What `strata store list` and `strata store verify` find out, and both its forms.

namespace Tool {

/// What is known of an asset's digest.
enum class DigestState {
  Verified,   ///< computed, and as listed
  Different,  ///< computed, and not as listed
  Unknown,    ///< listed, and not computed since the file last changed
  Unlisted,   ///< given by no packing list
};

[[nodiscard]] DigestState DigestStateOf(const Cairn::AssetRecord& record);

struct ListedFolder {
  std::string Folder;
  bool IsPresent = false;
};

struct ListedPackage {
  Cairn::PackageRecord Package;
  FindingList Findings;
};

struct ListedAsset {
  Cairn::AssetRecord Record;
  std::string Title;        ///< of a missing file: what it is of, "Feature, reel 2, sound"
  std::string Description;  ///< "Flat 2K 1998×1080, 24 fps, 0:10"; empty where there is none
  std::string File;         ///< the one that should be there, where it is missing
  FindingList Findings;
};

struct StoreList {
  std::string Index;
  std::vector<ListedFolder> Folders;
  std::vector<ListedPackage> Packages;
  std::vector<ListedAsset> Assets;
  Ferro::ui64_t Bytes = 0;  ///< of all assets
  size_t WithProblems = 0;  ///< how many assets
};

/// How many assets have digests in which state.
struct DigestCounts {
  size_t Verified = 0;
  size_t Different = 0;
  size_t Unknown = 0;
  size_t Unlisted = 0;
};

struct StoreVerification {
  std::string Index;
  ExitCode Code = ExitCode::Fine;
  bool Hash = false;
  size_t Assets = 0;
  Ferro::ui64_t Bytes = 0;
  DigestCounts Digests;
  FindingList Findings;
};

[[nodiscard]] std::string StoreListText(const StoreList& list);
/// Schema strata-store-list-1.
[[nodiscard]] std::string StoreListJson(const StoreList& list);
/// The outcome in one sentence.
[[nodiscard]] std::string StoreVerdict(const StoreVerification& verification);
[[nodiscard]] std::string StoreVerifyText(const StoreVerification& verification);
/// Schema strata-store-verify-1.
[[nodiscard]] std::string StoreVerifyJson(const StoreVerification& verification);

}  // namespace Tool
