// SPDX-License-Identifier: BSD-3-Clause
#include "InfoFolder.h"

#include "show/InfoKinds.h"
#include "show/MappedPath.h"
#include "show/StoreProgress.h"
#include "terminal/TextForms.h"

#include <Cairn/AssetStore.h>

#include <set>

namespace Tool {

namespace {

InfoFacts AssetFacts(const Cairn::AssetRecord& record, MappedPaths& paths, InfoItem& item) {
  InfoFacts facts;
  facts.Set("kind", FileKindName(record.Info.FileType));
  facts.Set("id", record.Info.ID.EncodeString());
  facts.Add("file", record.Info.RealFilename);
  facts.Set("size", record.Info.FileSize);
  const std::string& file = record.Info.RealFilename;
  for (const std::string& reason : record.Reasons())
    item.AddProblem((file.empty() ? paths.Of(record) : file) + ": " + reason);
  return facts;
}

}  // namespace

void DescribeFolder(const std::string& path, InfoItem& item) {
  Cairn::AssetStore store;
  auto result = store.Open();
  if (result.Success()) result = ScanFolder(store, path);
  if (result.Failure()) return item.AddProblem(std::string("The folder cannot be read: ") + result.Label());

  InfoList& packages = item.Facts.List("packages");
  for (const Cairn::PackageRecord& package : store.Packages()) {
    InfoFacts facts;
    facts.Set("folder", package.Folder);
    facts.Add("asset_map", package.AssetMapID);
    facts.Set("packing_lists", package.PackingLists.size());
    packages.emplace_back(std::move(facts));
    for (const Cairn::PackageFinding& finding : package.Findings)
      item.AddProblem(package.Folder + ": " + finding.Reason());
  }
  Ferro::ui64_t size = 0;
  std::set<std::string> told;
  MappedPaths paths;
  InfoList assets;
  for (const Cairn::AssetRecord& record : store.Assets()) {
    size += record.Info.FileSize;
    told.insert(record.Info.RealFilename);
    assets.emplace_back(AssetFacts(record, paths, item));
  }
  for (const Cairn::UnreadableEntry& entry : store.Unreadable())
    if (!told.contains(entry.Path)) item.AddProblem(entry.Path + ": It cannot be opened: " + entry.Reason + '.');
  const bool is_empty = assets.empty();
  item.Facts.Set("total_size", {size, BytesText(size)});
  item.Facts.Set("assets", std::move(assets));
  if (is_empty && store.Unreadable().empty()) item.AddProblem("Nothing in this folder is of digital cinema.");
}

}  // namespace Tool
