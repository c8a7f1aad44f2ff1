// SPDX-License-Identifier: BSD-3-Clause
#include "FolderScan.h"

#include <Ferro/LogSink.h>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace Cairn {

namespace {

struct DirectoryCloser {
  void operator()(DIR* directory) const { closedir(directory); }
};
using Directory = std::unique_ptr<DIR, DirectoryCloser>;

Result_t result_of(int error) {
  if (error == ENOENT) return Ferro::RESULT_NOT_FOUND;
  if (error == EACCES) return Ferro::RESULT_NO_PERM;
  if (error == ENOTDIR) return Ferro::RESULT_NOTAFILE;
  return Ferro::RESULT_FILEOPEN;
}

bool link_leads_inside(const std::string& path, const std::string& folder) {
  char target[PATH_MAX];
  if (realpath(path.c_str(), target) == nullptr) return false;
  return std::string_view(target).starts_with(folder + '/');
}

FileStamp stamp_of(const struct stat& status) {
  return {static_cast<fsize_t>(status.st_size), i64_t{status.st_mtim.tv_sec} * 1'000'000'000 + status.st_mtim.tv_nsec};
}

/// Adds the files of one folder, and its subfolders to those still to be scanned.
void scan_one(DIR* directory, const std::string& path, const std::string& top, FileStamps& files,
              std::vector<std::string>& pending) {
  while (const dirent* entry = readdir(directory)) {
    const std::string_view name = entry->d_name;
    if (name == "." || name == "..") continue;
    const std::string full = path + '/' + entry->d_name;
    struct stat status = {};
    if (fstatat(dirfd(directory), entry->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0) continue;  // gone meanwhile
    if (S_ISLNK(status.st_mode) &&
        (stat(full.c_str(), &status) != 0 || S_ISDIR(status.st_mode) || !link_leads_inside(full, top)))
      continue;
    if (S_ISDIR(status.st_mode)) pending.push_back(full);
    if (S_ISREG(status.st_mode)) files.emplace(full, stamp_of(status));
  }
}

}  // namespace

bool StampFile(const std::string& path, FileStamp& stamp) {
  struct stat status = {};
  if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
  stamp = stamp_of(status);
  return true;
}

Result_t ScanFolder(const std::string& folder, FileStamps& files) {
  std::vector<std::string> pending{folder};
  while (!pending.empty()) {
    const std::string path = std::move(pending.back());
    pending.pop_back();
    const Directory directory(opendir(path.c_str()));
    if (directory != nullptr) {
      scan_one(directory.get(), path, folder, files, pending);
      continue;
    }
    const int error = errno;
    if (path == folder) return result_of(error);
    Ferro::DefaultLogSink().Warn("%s: folder left out: %s\n", path.c_str(), std::strerror(error));
  }
  return Ferro::RESULT_OK;
}

}  // namespace Cairn
