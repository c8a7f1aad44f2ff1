// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>
#include <vector>

namespace CairnTest {

/// The folder of the standards' schemas, from the environment (STRATA_SCHEMAS); empty when it is not given.
std::string SchemaFolder();

/// Validates files with xmllint, all in one run.
/// @return what xmllint says of the invalid ones; empty when all are valid. A missing xmllint is reported like an invalid
/// file.
std::string ValidateFiles(const std::string& schema, const std::vector<std::string>& files);

/// A folder that is removed with the object.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  /// Writes a file there and gives its path.
  std::string Write(const std::string& name, const std::string& content) const;
  [[nodiscard]] const std::string& Path() const { return m_Path; }

 private:
  std::string m_Path;
};

}  // namespace CairnTest
