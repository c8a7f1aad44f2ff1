// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "FolderScan.h"
#include "PackageReading.h"

#include <Cairn/AssetStore.h>

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace Cairn {

/// What is to change in an index so that it tells what is in a folder now.
struct FolderUpdate {
  ScannedFiles Changed;  ///< new ones too
  std::vector<std::string> Removed;
  std::set<std::string> StalePackages;  ///< roots of packages that go, or are replaced
  std::vector<PackageReading> Packages;
  UnreadableEntries Unreadable;  ///< among the files there are; the index does not keep them

  [[nodiscard]] bool Empty() const { return Changed.empty() && Removed.empty(); }
};

/// Compares files alone. Those that are as they were are not opened, unless they could not be read then; the others are
/// inspected. Files that cannot be read are logged.
/// No value when `progress` cancelled it.
/// @param found  the files there are now.
/// @param known  what is known of the files that there were.
[[nodiscard]] std::optional<FolderUpdate> CompareFiles(const FileStamps& found, const ScannedFiles& known,
                                                       AssetStore::OnScan progress);

/// Compares a folder: its files, and the packages that a change of files touches. Otherwise as CompareFiles.
[[nodiscard]] std::optional<FolderUpdate> CompareFolder(const FileStamps& found, const ScannedFiles& known,
                                                        AssetStore::OnScan progress);

}  // namespace Cairn
