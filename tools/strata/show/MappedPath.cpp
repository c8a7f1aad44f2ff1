// SPDX-License-Identifier: BSD-3-Clause
#include "MappedPath.h"

#include "Paths.h"

#include <Cairn/AssetMap.h>
#include <Cairn/InitObjectWithFile.h>
#include <Ferro/Path.h>

namespace Tool {

namespace {

std::map<Cairn::UUID, std::string> PathsOf(const std::string& folder) {
  std::map<Cairn::UUID, std::string> paths;
  for (const char* name : {"ASSETMAP.xml", "ASSETMAP"}) {
    const std::string file = Ferro::PathJoin(folder, name);
    Cairn::AssetMap map;
    if (!PathExists(file) || Cairn::InitObjectWithFile(map, file).Failure()) continue;
    for (const auto& asset : map.AssetList) {
      if (asset.ChunkList.empty()) continue;
      const std::string& path = asset.ChunkList.front().Path;
      paths.try_emplace(asset.ID, path.starts_with('/') ? path : Ferro::PathJoin(folder, path));
    }
  }
  return paths;
}

}  // namespace

std::string MappedPaths::Of(const Cairn::AssetRecord& record) {
  const auto [package, is_new] = m_Packages.try_emplace(record.Package);
  if (is_new) package->second = PathsOf(record.Package);
  const auto path = package->second.find(record.Info.ID);
  return path == package->second.end() ? record.Package : path->second;
}

}  // namespace Tool
