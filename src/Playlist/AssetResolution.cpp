// SPDX-License-Identifier: BSD-3-Clause
#include "Playlist/AssetResolution.h"

#include <Ferro/Assert.h>
#include <Ferro/ILogSink.h>

namespace Strata {

Result_t get_info_map_item(const UUID& id, AssetInfoMap::const_iterator& out_i, AssetInfoMap& PLInfoMap,
                           const Cairn::IAssetLookup& lookup) {
  const auto known = PLInfoMap.find(id);
  if (known != PLInfoMap.end()) {
    out_i = known;
    return Ferro::RESULT_OK;
  }
  Cairn::AssetInfo info;
  const Result_t result = lookup.GetInfoForAssetID(id, info, true);
  if (!(result == Ferro::RESULT_OK)) {
    Ferro::DefaultLogSink().Error("Playlist %s not found in store.\n", id.EncodeString().c_str());
    return result.Failure() ? result : Ferro::RESULT_NOT_FOUND;
  }
  out_i = PLInfoMap.try_emplace(id, info).first;
  FERRO_ASSERT(out_i != PLInfoMap.end());
  return Ferro::RESULT_OK;
}

}  // namespace Strata
