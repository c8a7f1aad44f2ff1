// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <map>
#include <string>

namespace testsupport {

/// What a file of a package is, by its name.
enum class FileKind {
  AssetMap,
  VolumeIndex,
  PackingList,
  Composition,
  Picture,
  Sound,
  Text,  ///< a track file of text
  Immersive,
  InteropText,
  Font,
  Image,
};
inline constexpr size_t FileKindCount = static_cast<size_t>(FileKind::Image) + 1;

/// "asset map", "picture".
[[nodiscard]] const char* FileKindName(FileKind kind);
/// By the names that sample shows give their files.
[[nodiscard]] FileKind KindOfFile(const std::string& path);
/// True for what is XML by itself.
[[nodiscard]] bool IsDocument(FileKind kind);

/// The files of a package by their paths in it, each with its bytes.
using PackageFiles = std::map<std::string, std::string>;

[[nodiscard]] PackageFiles ReadPackage(const std::string& folder);
/// Writes into a folder, which is made, and emptied first.
void WritePackage(const PackageFiles& files, const std::string& folder);

}  // namespace testsupport
