// SPDX-License-Identifier: BSD-3-Clause
#include "FolderScan.h"

#include <Ferro/ILogSink.h>

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

Result_t ResultOf(int error) {
  if (error == ENOENT) return Ferro::RESULT_NOT_FOUND;
  if (error == EACCES) return Ferro::RESULT_NO_PERM;
  if (error == ENOTDIR) return Ferro::RESULT_NOTAFILE;
  return Ferro::RESULT_FILEOPEN;
}

bool LinkLeadsInside(const std::string& path, const std::string& folder) {
  char target[PATH_MAX];
  if (realpath(path.c_str(), target) == nullptr) return false;
  return std::string_view(target).starts_with(folder + '/');
}

FileStamp StampOf(const struct stat& status) {
  return {static_cast<fsize_t>(status.st_size), i64_t{status.st_mtim.tv_sec} * 1'000'000'000 + status.st_mtim.tv_nsec};
}

const char* NameOf(UnreadableKind_t kind) {
  switch (kind) {
    case UK_FILE:
      return "file";
    case UK_FOLDER:
      return "folder";
    case UK_LINK:
      return "link";
    case UK_ENTRY:
      break;
  }
  return "entry";
}

void LeaveOut(UnreadableKind_t kind, const std::string& path, int error, UnreadableEntries& unreadable) {
  Ferro::DefaultLogSink().Warn("%s: %s left out: %s\n", path.c_str(), NameOf(kind), std::strerror(error));
  unreadable.try_emplace(path, UnreadableEntry{path, kind, std::strerror(error)});
}

/// What is known of one folder and those around it.
struct Scan {
  const std::string& Top;
  FileStamps& Files;
  UnreadableEntries& Unreadable;
  std::vector<std::string> Pending;  ///< folders still to be scanned
};

// A link to a folder could lead round in a circle, one to a file elsewhere to what is no part of a package.
void ScanEntry(int directory, const char* name, const std::string& full, Scan& scan) {
  struct stat status = {};
  if (fstatat(directory, name, &status, AT_SYMLINK_NOFOLLOW) != 0) {
    if (errno != ENOENT) LeaveOut(UK_ENTRY, full, errno, scan.Unreadable);  // else gone meanwhile
    return;
  }
  if (S_ISLNK(status.st_mode)) {
    if (stat(full.c_str(), &status) != 0) return LeaveOut(UK_LINK, full, errno, scan.Unreadable);
    if (S_ISDIR(status.st_mode) || !LinkLeadsInside(full, scan.Top)) return;
  }
  if (S_ISDIR(status.st_mode)) scan.Pending.push_back(full);
  if (S_ISREG(status.st_mode)) scan.Files.emplace(full, StampOf(status));
}

void ScanOne(DIR* directory, const std::string& path, Scan& scan) {
  while (const dirent* entry = readdir(directory)) {
    const std::string_view name = entry->d_name;
    if (name == "." || name == "..") continue;
    ScanEntry(dirfd(directory), entry->d_name, path + '/' + entry->d_name, scan);
  }
}

}  // namespace

bool StampFile(const std::string& path, FileStamp& stamp) {
  struct stat status = {};
  if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
  stamp = StampOf(status);
  return true;
}

bool MayBeRead(const std::string& path) {
  return faccessat(AT_FDCWD, path.c_str(), R_OK, AT_EACCESS) == 0;
}

std::string OpenFailureOf(const std::string& path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (file < 0) return std::strerror(errno);
  close(file);
  return {};
}

Result_t ScanFolder(const std::string& folder, FileStamps& files, UnreadableEntries& unreadable) {
  Scan scan{folder, files, unreadable, {folder}};
  while (!scan.Pending.empty()) {
    const std::string path = std::move(scan.Pending.back());
    scan.Pending.pop_back();
    const Directory directory(opendir(path.c_str()));
    if (directory != nullptr) {
      ScanOne(directory.get(), path, scan);
      continue;
    }
    const int error = errno;
    if (path == folder) return ResultOf(error);
    if (!path.ends_with("/lost+found")) LeaveOut(UK_FOLDER, path, error, unreadable);
  }
  return Ferro::RESULT_OK;
}

}  // namespace Cairn
