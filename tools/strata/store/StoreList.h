// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "StoreSession.h"
#include "terminal/Report.h"

namespace Tool {

/// What `strata store list` reports of the folders and assets selected, schema strata-store-list-1.
[[nodiscard]] Json StoreListReport(const StoreSession& session, const Cairn::AssetStore& store,
                                   const StoreSelection& selection);
[[nodiscard]] std::string StoreListText(const Json& report);

/// What is known of an asset's digest: "verified", "different", "unknown", "unlisted".
[[nodiscard]] const char* DigestState(const Cairn::AssetRecord& record);

/// What an asset is; "missing file" where there is none to tell.
[[nodiscard]] std::string StoreKindName(const Cairn::AssetRecord& record);

}  // namespace Tool
