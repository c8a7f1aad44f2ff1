// SPDX-License-Identifier: BSD-3-Clause
#include "SchemaCheck.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace CairnTest {

std::string SchemaFolder() {
  const char* folder = std::getenv("STRATA_SCHEMAS");
  return folder == nullptr ? std::string() : folder;
}

std::string ValidateFiles(const std::string& schema, const std::vector<std::string>& files) {
  std::string command = "xmllint --nonet --noout --schema '" + SchemaFolder() + "/" + schema + "'";
  for (const std::string& file : files) command += " '" + file + "'";
  FILE* pipe = popen((command + " 2>&1").c_str(), "r");
  if (pipe == nullptr) return "xmllint cannot be started";
  std::string said;
  for (int c = 0; (c = std::fgetc(pipe)) != EOF;) said += static_cast<char>(c);
  return pclose(pipe) == 0 ? std::string() : "xmllint failed: " + said;
}

TemporaryFolder::TemporaryFolder() {
  std::string name = (std::filesystem::temp_directory_path() / "cairn-test-XXXXXX").string();
  const char* made = mkdtemp(name.data());
  if (made == nullptr) throw std::runtime_error("no temporary folder");
  m_Path = made;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(m_Path, ignored);
}

std::string TemporaryFolder::Write(const std::string& name, const std::string& content) const {
  const std::string path = m_Path + "/" + name;
  std::ofstream(path, std::ios::binary) << content;
  return path;
}

}  // namespace CairnTest
