// SPDX-License-Identifier: BSD-3-Clause
#include "InfoFolder.h"

#include "show/InfoKinds.h"
#include "show/StoreProgress.h"
#include "terminal/TextForms.h"

#include <Cairn/AssetStore.h>

#include <set>

namespace Tool {

namespace {

Json AssetJson(const Cairn::AssetRecord& record, Json& item) {
  Json json{{"kind", FileKindName(record.Info.FileType)}, {"id", record.Info.ID.EncodeString()}};
  AddFact(json, "file", record.Info.RealFilename);
  json["size"] = record.Info.FileSize;
  for (const std::string& reason : record.Reasons()) {
    const std::string& name = record.Info.RealFilename;
    AddProblem(item, (name.empty() ? "Asset " + record.Info.ID.EncodeString() : name) + ": " + reason);
  }
  return json;
}

}  // namespace

void DescribeFolder(const std::string& path, Json& item) {
  Cairn::AssetStore store;
  auto result = store.Open();
  if (result.Success()) result = ScanFolder(store, path);
  if (result.Failure()) return AddProblem(item, std::string("The folder cannot be read: ") + result.Label());

  item["packages"] = Json::array();
  for (const Cairn::PackageRecord& package : store.Packages()) {
    Json json{{"folder", package.Folder}};
    AddFact(json, "asset_map", package.AssetMapID);
    json["packing_lists"] = package.PackingLists.size();
    item["packages"].push_back(json);
    for (const Cairn::PackageFinding& finding : package.Findings)
      AddProblem(item, package.Folder + ": " + finding.Reason());
  }
  Ferro::ui64_t size = 0;
  std::set<std::string> told;
  Json assets = Json::array();
  for (const Cairn::AssetRecord& record : store.Assets()) {
    size += record.Info.FileSize;
    told.insert(record.Info.RealFilename);
    assets.push_back(AssetJson(record, item));
  }
  for (const Cairn::UnreadableEntry& entry : store.Unreadable())
    if (!told.contains(entry.Path)) AddProblem(item, entry.Path + ": It cannot be opened: " + entry.Reason + '.');
  item["total_size"] = size;
  item["total_size_text"] = BytesText(size);
  item["assets"] = assets;
  if (assets.empty() && store.Unreadable().empty()) AddProblem(item, "Nothing in this folder is of digital cinema.");
}

}  // namespace Tool
