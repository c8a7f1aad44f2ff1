// SPDX-License-Identifier: BSD-3-Clause
#include "PackageSearch.h"

#include "document/Package.h"

#include <algorithm>
#include <filesystem>
#include <set>

namespace Assay {
namespace {

namespace fs = std::filesystem;

constexpr int MaxDepth = 8;             // folders inside each other that are searched for packages
constexpr size_t MaxPackages = 10'000;  // of one check

/// Adds the packages of a folder: itself where it has an asset map, else those below it.
bool AddPackages(const fs::path& folder, int depth, std::vector<std::string>& packages) {
  std::error_code error;
  std::vector<fs::path> below;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
    if (IsMapName(entry.path().filename().string())) {
      packages.push_back(folder.string());
      return true;
    }
    if (entry.is_directory(error) && !entry.is_symlink(error)) below.push_back(entry.path());
  }
  std::ranges::sort(below);
  bool has = false;
  for (const fs::path& path : below)
    if (depth < MaxDepth && packages.size() < MaxPackages) has |= AddPackages(path, depth + 1, packages);
  return has;
}

}  // namespace

Result_t FindPackages(const std::vector<std::string>& folders, std::vector<std::string>& packages) {
  for (const std::string& folder : folders) {
    std::error_code error;
    if (!fs::is_directory(folder, error)) return Ferro::RESULT_NOT_FOUND;
    if (!AddPackages(folder, 0, packages)) packages.push_back(folder);
  }
  std::set<fs::path> known;
  std::erase_if(packages, [&](const std::string& folder) {
    std::error_code error;
    return !known.insert(fs::weakly_canonical(folder, error)).second && !error;
  });
  return Ferro::RESULT_OK;
}

}  // namespace Assay
