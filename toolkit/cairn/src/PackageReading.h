// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "FolderScan.h"

#include <Cairn/AssetRecord.h>
#include <Cairn/InspectFile.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace Cairn {

/// A file of a folder, as found and looked into.
struct ScannedFile {
  FileStamp Stamp;
  FileContent Content;
};

using ScannedFiles = std::map<std::string, ScannedFile>;

/// A package and its assets.
struct PackageReading {
  PackageRecord Package;
  std::vector<AssetRecord> Assets;
};

/// The folders that hold a package: those with an asset map, and those with a packing list that belong to no package
/// with an asset map.
[[nodiscard]] std::vector<std::string> PackageRoots(const ScannedFiles& files);
/// The package that a file belongs to, the innermost; the file's own folder when it is in none.
[[nodiscard]] std::string RootOf(std::string_view path, const std::vector<std::string>& sorted_roots);

/// Works out a package's assets from its asset map, its packing lists and what its files say of themselves. Documents
/// that cannot be understood are findings of the package; their files serve all the same.
/// @param root   the folder that PackageRoots named, or a folder of loose files.
/// @param files  the files that belong to it, and no others: a path of the asset map that names none of them is refused
///               or missing, whatever lies there.
[[nodiscard]] PackageReading ReadPackage(const std::string& root, const ScannedFiles& files);

}  // namespace Cairn
