// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/Result.h>
#include <Strata/Types.h>

#include <Cairn/AssetInfo.h>
#include <Cairn/IAssetLookup.h>

#include <map>

namespace Strata {

/// What the lookup answered so far, so that each asset is asked for once.
using AssetInfoMap = std::map<UUID, Cairn::AssetInfo>;

/// Finds a playlist's asset in the map, or asks the lookup and keeps its answer.
/// @param out_i  the entry; set on success only.
/// @return RESULT_OK; the lookup's failure; RESULT_NOT_FOUND where it answered without failing but has no such asset.
///         The latter two are logged.
[[nodiscard]] Result_t get_info_map_item(const UUID& id, AssetInfoMap::const_iterator& out_i, AssetInfoMap& PLInfoMap,
                                         const Cairn::IAssetLookup& lookup);

}  // namespace Strata
