// SPDX-License-Identifier: BSD-3-Clause
#include "SchemaCheck.h"

#include "TemporaryFolder.h"

#include <cstdio>
#include <cstdlib>

namespace testsupport {

std::string SchemaFolder() {
  const char* folder = std::getenv("STRATA_SCHEMAS");
  return folder == nullptr ? std::string() : folder;
}

std::string ValidateFiles(const std::string& schema, const std::vector<std::string>& files) {
  std::string command = "xmllint --nonet --noout --schema '" + schema + "'";
  for (const std::string& file : files) command += " '" + file + "'";
  FILE* pipe = popen((command + " 2>&1").c_str(), "r");
  if (pipe == nullptr) return "xmllint cannot be started";
  std::string said;
  for (int c = 0; (c = std::fgetc(pipe)) != EOF;) said += static_cast<char>(c);
  return pclose(pipe) == 0 ? std::string() : "xmllint failed: " + said;
}

std::string ValidateDocuments(const std::string& schema, const std::vector<std::string>& documents) {
  const TemporaryFolder folder;
  std::vector<std::string> files;
  for (const std::string& document : documents)
    files.push_back(folder.Write(std::to_string(files.size()) + ".xml", document));
  return ValidateFiles(schema, files);
}

}  // namespace testsupport
