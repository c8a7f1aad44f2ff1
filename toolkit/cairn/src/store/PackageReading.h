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

/// A file of a folder, as found and inspected.
struct ScannedFile {
  FileStamp Stamp;
  bool Readable = true;
  FileContent Content;  ///< of a readable file
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
/// RootOf, and all packages around that one: their asset maps may name the file too.
[[nodiscard]] std::vector<std::string> PackagesAround(std::string_view path,
                                                      const std::vector<std::string>& sorted_roots);

/// Works out a package's assets from its asset map, its packing lists and what its files say of themselves. Documents
/// that cannot be understood are findings of the package; their files serve all the same. What the files alone tell, that
/// one cannot be read or is another asset, is not among the problems yet.
/// @param root  the folder that PackageRoots named, or a folder of loose files.
/// @param own   the files that belong to it.
/// @param all   every file of the store's folder. Those below `root` are what the asset map's paths may name; a path
///              that names none of them is refused or missing, whatever lies there.
[[nodiscard]] PackageReading ReadPackage(const std::string& root, const ScannedFiles& own, const ScannedFiles& all);

}  // namespace Cairn
