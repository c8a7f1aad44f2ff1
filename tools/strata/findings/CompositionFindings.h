// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Finding.h"
#include "SecurityFindings.h"
#include "show/MappedPath.h"
#include "show/ShowOutline.h"

#include <functional>
#include <set>
#include <string>

namespace Tool {

/// What to call a composition: its title, or its identifier where it has none.
[[nodiscard]] std::string CompositionName(const OutlineComposition& composition);

/// What findings have been about so far, so that one cause is told once.
struct FindingMemory {
  std::set<std::string> UnlistedPackages;  ///< folders of packages whose packing list is missing
  std::set<Cairn::UUID> Compositions;      ///< those that were looked at
  MappedPaths Paths;
  ToldCertificates Certificates;
};

/// Checks one composition, its files included, and appends what is wrong or unusual. Of an asset only the first cause is
/// told that keeps it from playing. `go_on` is asked before each reel; false ends the work.
void FindInComposition(const OutlineComposition& composition, const Cairn::AssetStore& store, FindingMemory& memory,
                       FindingList& findings, const std::function<bool()>& go_on = {});

}  // namespace Tool
