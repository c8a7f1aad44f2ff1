// SPDX-License-Identifier: BSD-3-Clause
#include "PackageFiles.h"

#include <Ferro/Assert.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>
#include <utility>

namespace testsupport {

namespace fs = std::filesystem;

const char* FileKindName(FileKind kind) {
  static constexpr std::array<const char*, FileKindCount> Names = {
      "asset map", "volume index",    "packing list", "composition", "picture", "sound",
      "text",      "immersive audio", "Interop text", "font",        "image"};
  return Names[static_cast<size_t>(kind)];
}

FileKind KindOfFile(const std::string& path) {
  static constexpr std::pair<std::string_view, FileKind> Beginnings[] = {
      {"ASSETMAP", FileKind::AssetMap},   {"VOLINDEX", FileKind::VolumeIndex},
      {"PKL", FileKind::PackingList},     {"CPL", FileKind::Composition},
      {"picture", FileKind::Picture},     {"sound", FileKind::Sound},
      {"immersive", FileKind::Immersive}, {"font", FileKind::Font},
      {"image", FileKind::Image},         {"text.xml", FileKind::InteropText}};
  const std::string name = fs::path(path).filename();
  for (const auto& [beginning, kind] : Beginnings)
    if (name.starts_with(beginning)) return kind;
  return FileKind::Text;
}

bool IsDocument(FileKind kind) {
  return kind <= FileKind::Composition || kind == FileKind::InteropText;
}

PackageFiles ReadPackage(const std::string& folder) {
  PackageFiles files;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (!entry.is_regular_file()) continue;
    std::ifstream file(entry.path(), std::ios::binary);
    files[fs::relative(entry.path(), folder).string()] = {std::istreambuf_iterator<char>(file),
                                                          std::istreambuf_iterator<char>()};
  }
  return files;
}

void WritePackage(const PackageFiles& files, const std::string& folder) {
  fs::remove_all(folder);
  for (const auto& [path, bytes] : files) {
    const fs::path target = fs::path(folder) / path;
    fs::create_directories(target.parent_path());
    std::ofstream file(target, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    FERRO_ASSERT(file.flush().good());
  }
}

}  // namespace testsupport
