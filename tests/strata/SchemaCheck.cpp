// SPDX-License-Identifier: BSD-3-Clause
#include "SchemaCheck.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace StrataTest {

std::string SchemaMessages(const std::string& schema, const std::vector<std::string>& documents) {
  std::string folder = testing::TempDir() + "schema-XXXXXX";
  if (mkdtemp(folder.data()) == nullptr) return "cannot make " + folder;
  std::string command = "xmllint --nonet --noout --schema '" + schema + "'";
  for (size_t i = 0; i < documents.size(); ++i) {
    const std::string name = folder + "/" + std::to_string(i) + ".xml";
    std::ofstream(name, std::ios::binary) << documents[i];
    command += " '" + name + "'";
  }
  std::string messages;
  FILE* output = popen((command + " 2>&1").c_str(), "r");
  std::array<char, 4096> buffer;
  while (std::fgets(buffer.data(), static_cast<int>(buffer.size()), output) != nullptr) messages += buffer.data();
  const int status = pclose(output);
  std::filesystem::remove_all(folder);
  if (status == 0) return {};
  return messages.empty() ? "xmllint ended with status " + std::to_string(status) : messages;
}

}  // namespace StrataTest
