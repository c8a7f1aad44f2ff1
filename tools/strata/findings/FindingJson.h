// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Finding.h"
#include "terminal/JsonReport.h"

#include <vector>

namespace Tool {

/// The findings as reports have them; keys that do not apply are left out.
/// @param show  the identifiers of the compositions, by whose order they are numbered; empty: they are not.
[[nodiscard]] Json FindingsJson(const FindingList& findings, const std::vector<Cairn::UUID>& show = {});

}  // namespace Tool
