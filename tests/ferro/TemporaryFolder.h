// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

namespace Ferro::Test {

/// A fresh folder that goes with everything in it when the test ends.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string pattern = testing::TempDir() + "ferro-test-XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) ADD_FAILURE() << "no temporary folder: " << pattern;
    m_Path = pattern;
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_Path, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  [[nodiscard]] const std::string& Path() const { return m_Path; }
  [[nodiscard]] std::string operator/(const std::string& name) const { return m_Path + "/" + name; }
  /// The names of what lies in the folder.
  [[nodiscard]] std::set<std::string> Names() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(m_Path)) names.insert(entry.path().filename());
    return names;
  }

 private:
  std::string m_Path;
};

inline void MakeFile(const std::string& filename, const std::string& bytes) {
  std::ofstream(filename, std::ios::binary) << bytes;
}

inline std::string BytesOf(const std::string& filename) {
  std::ifstream stream(filename, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace Ferro::Test
