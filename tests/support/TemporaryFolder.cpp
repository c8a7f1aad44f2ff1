// SPDX-License-Identifier: BSD-3-Clause
#include "TemporaryFolder.h"

#include <Ferro/Assert.h>

#include <cstdlib>
#include <fstream>
#include <system_error>

namespace testsupport {

TemporaryFolder::TemporaryFolder() {
  std::string name = (std::filesystem::temp_directory_path() / "strata_test_XXXXXX").string();
  const char* made = ::mkdtemp(name.data());
  FERRO_ASSERT(made);
  m_Folder = name;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(m_Folder, ignored);
}

std::string TemporaryFolder::Write(const std::string& name, std::string_view content) const {
  std::ofstream file(Path(name), std::ios::binary);
  file << content;
  file.close();
  FERRO_ASSERT(file);
  return Path(name);
}

std::set<std::string> TemporaryFolder::Names() const {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(m_Folder)) names.insert(entry.path().filename());
  return names;
}

}  // namespace testsupport
