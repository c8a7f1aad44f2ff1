// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/Check.h>

#include <set>
#include <vector>

namespace Assay {

/// What a composition consists of: its own identifier and those of its assets.
struct CompositionParts {
  std::set<UUID> Inside;   ///< its package has them
  std::set<UUID> Outside;  ///< they are others'
};

/// Ends a check after all was found: puts the findings in order, each composition's behind its package's own, links them
/// to their causes, and says of each package and composition what is the worst about it.
/// @param parts  of each composition of the report.
void Conclude(Profile profile, const std::vector<CompositionParts>& parts, CheckReport& report);

}  // namespace Assay
