// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <filesystem>
#include <set>
#include <string>
#include <string_view>

namespace testsupport {

/// A new folder for a test's files; removed, with all that is in it, at the end.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  [[nodiscard]] std::string Path(const std::string& name) const { return (m_Folder / name).string(); }
  /// Writes a file there. Returns its path.
  std::string Write(const std::string& name, std::string_view content) const;
  [[nodiscard]] const std::filesystem::path& Folder() const { return m_Folder; }
  /// The names of what lies in the folder.
  [[nodiscard]] std::set<std::string> Names() const;

 private:
  std::filesystem::path m_Folder;
};

}  // namespace testsupport
