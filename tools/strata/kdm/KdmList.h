// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "terminal/JsonReport.h"

#include <Sigil/KeyMessageStore.h>

#include <string>
#include <vector>

namespace Tool {

class Command;

/// `strata kdm list`: what key messages say.
void AddKdmList(Command& kdm);

/// What cannot be read of a store: "problem: file: reason", a line each; and as JSON.
[[nodiscard]] std::string ProblemLines(const std::vector<Sigil::KeyMessageStore::Problem>& problems);
[[nodiscard]] Json ProblemsJson(const std::vector<Sigil::KeyMessageStore::Problem>& problems);

}  // namespace Tool
