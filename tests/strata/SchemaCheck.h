// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>
#include <vector>

namespace StrataTest {

/// Has xmllint validate documents with a schema file, without network. The messages of xmllint are the result: empty
/// when all documents are valid. A missing xmllint or schema is a message, too.
std::string SchemaMessages(const std::string& schema, const std::vector<std::string>& documents);

}  // namespace StrataTest
