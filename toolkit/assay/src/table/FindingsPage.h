// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>

namespace Assay {

/// The page about every finding for people, docs/findings.md, from the table that the findings are made with.
[[nodiscard]] std::string FindingsPage();

}  // namespace Assay
