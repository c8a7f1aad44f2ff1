// SPDX-License-Identifier: BSD-3-Clause
#include "MappedPath.h"

#include <Cairn/AssetMap.h>
#include <Cairn/InitObjectWithFile.h>
#include <Ferro/Path.h>

namespace Tool {

std::string MappedPath(const Cairn::AssetRecord& record) {
  for (const char* name : {"ASSETMAP.xml", "ASSETMAP"}) {
    Cairn::AssetMap map;
    if (Cairn::InitObjectWithFile(map, Ferro::PathJoin(record.Package, name)).Failure()) continue;
    for (const auto& asset : map.AssetList) {
      if (asset.ID != record.Info.ID || asset.ChunkList.empty()) continue;
      const std::string& path = asset.ChunkList.front().Path;
      return path.starts_with('/') ? path : Ferro::PathJoin(record.Package, path);
    }
  }
  return record.Package;
}

}  // namespace Tool
