// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "../support/TemporaryFolder.h"

#include <fstream>
#include <iterator>
#include <string>

namespace Ferro::Test {

using testsupport::TemporaryFolder;

inline void MakeFile(const std::string& filename, const std::string& bytes) {
  std::ofstream(filename, std::ios::binary) << bytes;
}

inline std::string BytesOf(const std::string& filename) {
  std::ifstream stream(filename, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace Ferro::Test
