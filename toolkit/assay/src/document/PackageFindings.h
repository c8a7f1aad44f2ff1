// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Package.h"

#include <string>

namespace Assay {

// What makes up FindInPackage.

inline void Add(FindingList& findings, Finding finding, const FindingPlace& place, std::string expected = {},
                std::string found = {}) {
  finding.Place = place;
  finding.Expected = std::move(expected);
  finding.Found = std::move(found);
  findings.push_back(std::move(finding));
}

[[nodiscard]] inline FindingPlace FolderPlace(const Package& package) {
  FindingPlace place;
  place.Package = package.Folder;
  return place;
}

[[nodiscard]] inline FindingPlace AssetPlace(const DocumentFile& document, const Node* node,
                                             const std::optional<UUID>& id) {
  FindingPlace place = document.At(node);
  if (id) place.Asset = *id;
  return place;
}

/// am-*, vi-*
void FindInAssetMap(const Package& package, FindingList& findings);
/// pkl-*
void FindInPackingLists(const Package& package, i64_t now, FindingList& findings);

}  // namespace Assay
