// SPDX-License-Identifier: BSD-3-Clause
#include "Paths.h"

#include <sys/stat.h>

#include <cstdlib>

namespace Tool {

namespace {

mode_t TypeOf(const std::string& path) {
  struct stat facts {};
  return stat(path.c_str(), &facts) == 0 ? facts.st_mode & S_IFMT : 0;
}

}  // namespace

bool PathExists(const std::string& path) {
  return TypeOf(path) != 0;
}

bool IsFolder(const std::string& path) {
  return TypeOf(path) == S_IFDIR;
}

bool IsRegularFile(const std::string& path) {
  return TypeOf(path) == S_IFREG;
}

std::string CanonicalPath(const std::string& path) {
  char* const found = realpath(path.c_str(), nullptr);
  const std::string canonical = found == nullptr ? "" : found;
  std::free(found);
  return canonical;
}

}  // namespace Tool
