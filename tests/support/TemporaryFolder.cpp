// SPDX-License-Identifier: BSD-3-Clause
#include "TemporaryFolder.h"

#include <Ferro/Assert.h>

#include <cstdlib>
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

}  // namespace testsupport
