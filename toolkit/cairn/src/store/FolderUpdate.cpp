// SPDX-License-Identifier: BSD-3-Clause
#include "FolderUpdate.h"

#include <Ferro/ILogSink.h>

#include <map>
#include <utility>

namespace Cairn {

namespace {

ScannedFile Inspect(const std::string& path, const FileStamp& stamp) {
  ScannedFile file;
  file.Stamp = stamp;
  const Result_t result = InspectFile(path, file.Content);
  file.Readable = result.Success();
  if (!file.Readable) Ferro::DefaultLogSink().Warn("%s: %s\n", path.c_str(), result.Label());
  return file;
}

// All files as they are after the update.
ScannedFiles FilesNow(const FolderUpdate& update, const ScannedFiles& known) {
  ScannedFiles files = known;
  for (const std::string& path : update.Removed) files.erase(path);
  for (const auto& [path, file] : update.Changed) files.insert_or_assign(path, file);
  return files;
}

// The packages that a change of files may alter: those around changed files, and those between which files moved because
// a package appeared or went.
std::set<std::string> TouchedPackages(const FolderUpdate& update, const ScannedFiles& known,
                                      const std::vector<std::string>& roots_before,
                                      const std::vector<std::string>& roots_now) {
  std::set<std::string> touched;
  const auto touch = [&](const std::string& path) {
    for (const auto* roots : {&roots_before, &roots_now})
      for (std::string& root : PackagesAround(path, *roots)) touched.insert(std::move(root));
  };
  for (const std::string& path : update.Removed) touch(path);
  for (const auto& [path, file] : update.Changed) touch(path);
  if (roots_before != roots_now)
    for (const auto& [path, file] : known)
      if (RootOf(path, roots_before) != RootOf(path, roots_now)) touch(path);
  return touched;
}

}  // namespace

std::optional<FolderUpdate> CompareFiles(const FileStamps& found, const ScannedFiles& known,
                                         AssetStore::OnScan progress) {
  FolderUpdate update;
  ScanProgress now{0, static_cast<ui32_t>(found.size())};
  for (const auto& [path, stamp] : found) {
    if (progress && !progress(now)) return std::nullopt;
    ++now.FilesDone;
    const auto before = known.find(path);
    const bool same = before != known.end() && before->second.Stamp == stamp;
    // Whether a file may be read does not show in its size or time.
    if (same && before->second.Readable && MayBeRead(path)) continue;
    ScannedFile file = Inspect(path, stamp);
    if (!file.Readable)
      if (std::string reason = OpenFailureOf(path); !reason.empty())
        update.Unreadable.try_emplace(path, UnreadableEntry{path, UK_FILE, std::move(reason)});
    if (!same || file.Readable != before->second.Readable) update.Changed.emplace(path, std::move(file));
  }
  for (const auto& [path, file] : known)
    if (!found.contains(path)) update.Removed.push_back(path);
  return update;
}

std::optional<FolderUpdate> CompareFolder(const FileStamps& found, const ScannedFiles& known,
                                          AssetStore::OnScan progress) {
  std::optional<FolderUpdate> result = CompareFiles(found, known, progress);
  if (!result || result->Empty()) return result;
  FolderUpdate& update = *result;
  const ScannedFiles files = FilesNow(update, known);
  const std::vector<std::string> roots = PackageRoots(files);
  update.StalePackages = TouchedPackages(update, known, PackageRoots(known), roots);

  std::map<std::string, ScannedFiles> packages;
  for (const auto& [path, file] : files)
    if (const std::string root = RootOf(path, roots); update.StalePackages.contains(root))
      packages[root].emplace(path, file);
  for (const auto& [root, own_files] : packages) update.Packages.push_back(ReadPackage(root, own_files, files));
  return result;
}

}  // namespace Cairn
