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

void leave_out(const char* kind, const std::string& path, int error, OpenFailures& unopened) {
  Ferro::DefaultLogSink().Warn("%s: %s left out: %s\n", path.c_str(), kind, std::strerror(error));
  unopened.emplace(path, std::strerror(error));
}

/// What is known of one folder and those around it.
struct Scan {
  const std::string& Top;
  FileStamps& Files;
  OpenFailures& Unopened;
  std::vector<std::string> Pending;  ///< folders still to be scanned
};

void scan_entry(int directory, const char* name, const std::string& full, Scan& scan) {
  struct stat status = {};
  if (fstatat(directory, name, &status, AT_SYMLINK_NOFOLLOW) != 0) {
    if (errno != ENOENT) leave_out("entry", full, errno, scan.Unopened);  // else gone meanwhile
    return;
  }
  if (S_ISLNK(status.st_mode)) {
    if (stat(full.c_str(), &status) != 0) return leave_out("link", full, errno, scan.Unopened);
    if (S_ISDIR(status.st_mode) || !link_leads_inside(full, scan.Top)) return;
  }
  if (S_ISDIR(status.st_mode)) scan.Pending.push_back(full);
  if (S_ISREG(status.st_mode)) scan.Files.emplace(full, stamp_of(status));
}

void scan_one(DIR* directory, const std::string& path, Scan& scan) {
  while (const dirent* entry = readdir(directory)) {
    const std::string_view name = entry->d_name;
    if (name == "." || name == "..") continue;
    scan_entry(dirfd(directory), entry->d_name, path + '/' + entry->d_name, scan);
  }
}

}  // namespace

bool StampFile(const std::string& path, FileStamp& stamp) {
  struct stat status = {};
  if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
  stamp = stamp_of(status);
  return true;
}

std::string OpenFailureOf(const std::string& path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (file < 0) return std::strerror(errno);
  close(file);
  return {};
}

Result_t ScanFolder(const std::string& folder, FileStamps& files, OpenFailures& unopened) {
  Scan scan{folder, files, unopened, {folder}};
  while (!scan.Pending.empty()) {
    const std::string path = std::move(scan.Pending.back());
    scan.Pending.pop_back();
    const Directory directory(opendir(path.c_str()));
    if (directory != nullptr) {
      scan_one(directory.get(), path, scan);
      continue;
    }
    const int error = errno;
    if (path == folder) return result_of(error);
    if (!path.ends_with("/lost+found")) leave_out("folder", path, error, unopened);
  }
  return Ferro::RESULT_OK;
}

}  // namespace Cairn
