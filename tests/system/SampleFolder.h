// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "SampleCopy.h"
#include "StrataProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

/// A sample show of seven seconds with small pictures, to be broken at will.
class SampleFolder : public testing::Test {
 protected:
  void SetUp() override { CopySampleShow(Show()); }

  [[nodiscard]] std::string Show() const { return m_Folder.Path("show"); }
  [[nodiscard]] std::string Show(const std::string& name) const { return Show() + '/' + name; }
  [[nodiscard]] std::string Beside(const std::string& name) const { return m_Folder.Path(name); }

  /// Every file of a folder and below, by its path in there.
  [[nodiscard]] static std::vector<std::string> FilesOf(const std::string& folder) {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
      if (entry.is_regular_file()) files.push_back(std::filesystem::relative(entry.path(), folder).string());
    std::sort(files.begin(), files.end());
    return files;
  }

  testsupport::TemporaryFolder m_Folder;
};
