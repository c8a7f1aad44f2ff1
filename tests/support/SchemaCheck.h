// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>
#include <vector>

namespace testsupport {

/// The folder of the standards' schemas, from the environment (STRATA_SCHEMAS); empty when it is not given.
std::string SchemaFolder();

/// Validates files with xmllint, all in one run.
/// @return what xmllint says of the invalid ones; empty when all are valid. A missing xmllint is reported like an invalid
/// file.
std::string ValidateFiles(const std::string& schema, const std::vector<std::string>& files);
/// The same for documents' texts.
std::string ValidateDocuments(const std::string& schema, const std::vector<std::string>& documents);

}  // namespace testsupport
