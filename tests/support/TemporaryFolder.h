// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <filesystem>
#include <string>

namespace testsupport {

/// A new folder for a test's files; removed, with all that is in it, at the end.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  [[nodiscard]] std::string Path(const std::string& name) const { return (m_Folder / name).string(); }
  [[nodiscard]] const std::filesystem::path& Folder() const { return m_Folder; }

 private:
  std::filesystem::path m_Folder;
};

}  // namespace testsupport
