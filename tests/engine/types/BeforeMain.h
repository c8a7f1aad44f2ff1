// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>
#include <vector>

namespace StrataTest {

/// What a constructor saw that ran before every other one of the program.
struct BeforeMain {
  std::string FirstResult;
  std::string LastResult;
  std::string FoundByValue;
  std::string Version;
  std::string ProtocolVersion;
  std::string CommandName;
  std::vector<std::string> Constants;
};

const BeforeMain& SeenBeforeMain();

}  // namespace StrataTest
