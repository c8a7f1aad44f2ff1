// SPDX-License-Identifier: BSD-3-Clause
#include "InfoFolder.h"

#include "show/AssetUses.h"
#include "show/Description.h"
#include "show/DocumentTitle.h"
#include "show/InfoKinds.h"
#include "show/MappedPath.h"
#include "show/StoreProgress.h"
#include "terminal/ReasonText.h"
#include "terminal/TextForms.h"

#include <Cairn/AssetStore.h>
#include <Cairn/InitObjectWithFile.h>

#include <filesystem>
#include <set>

namespace Tool {

namespace {

std::string DescriptionOf(const Cairn::AssetInfo& info) {
  if (IsMXF(info.FileType)) return Describe(ReadTrackFileFacts(info.RealFilename, info.FileType));
  if (info.FileType != Cairn::FT_CPL) return "";
  Cairn::CompositionPlaylist composition;
  return Cairn::InitObjectWithFile(composition, info.RealFilename).Success() ? Describe(TraitsOf(composition)) : "";
}

/// What there is to tell of the files of a folder.
class AssetTeller {
 public:
  AssetTeller(const Cairn::AssetStore& store, const std::string& folder, InfoItem& item)
      : m_Uses(store), m_Folder(folder), m_Item(item) {}

  InfoFacts Tell(const Cairn::AssetRecord& record) {
    return record.Info.RealFilename.empty() ? TellMissing(record) : TellFile(record);
  }

 private:
  InfoFacts TellMissing(const Cairn::AssetRecord& record) {
    InfoFacts facts;
    const std::string path = m_Paths.Of(record);
    const AssetUse* use = m_Uses.Find(record.Info.ID);
    const std::string used = use == nullptr ? "" : use->Text();
    facts.Set("kind", "missing file");
    facts.Set("id", record.Info.ID.EncodeString());
    facts.Set("missing_file", path);
    facts.Add("use", used);
    facts.Set("size", record.Info.FileSize);
    facts.Line =
        "missing file, " + Below(path) + (used.empty() ? "" : ", of " + used) + ", " + record.Info.ID.EncodeString();
    AddProblems(record, path + ": " + (used.empty() ? "" : used + ": "));
    return facts;
  }

  InfoFacts TellFile(const Cairn::AssetRecord& record) {
    InfoFacts facts;
    const Cairn::AssetInfo& info = record.Info;
    const std::string title = DocumentTitle(info.FileType, info.RealFilename);
    const std::string description = DescriptionOf(info);
    facts.Set("kind", FileKindName(info.FileType));
    facts.Set("id", info.ID.EncodeString());
    facts.Add("file", info.RealFilename);
    facts.Add("title", title);
    facts.Add("description", description);
    facts.Set("size", info.FileSize);
    facts.Line = std::string(FileKindName(info.FileType)) + ", " + Below(info.RealFilename) +
                 (title.empty() ? "" : ", \"" + title + '"') + (description.empty() ? "" : ", " + description) + ", " +
                 BytesText(info.FileSize) + ", " + info.ID.EncodeString();
    AddProblems(record, info.RealFilename + ": ");
    return facts;
  }

  void AddProblems(const Cairn::AssetRecord& record, const std::string& start) {
    for (const std::string& reason : record.Reasons()) m_Item.AddProblem(start + reason);
  }

  /// A path as it is seen from the folder.
  [[nodiscard]] std::string Below(const std::string& path) const {
    return path.starts_with(m_Folder + '/') ? path.substr(m_Folder.size() + 1) : path;
  }

  AssetUses m_Uses;
  MappedPaths m_Paths;
  std::string m_Folder;
  InfoItem& m_Item;
};

void TellPackages(const Cairn::AssetStore& store, InfoItem& item) {
  InfoList& packages = item.Facts.List("packages");
  for (const Cairn::PackageRecord& package : store.Packages()) {
    InfoFacts facts;
    const size_t lists = package.PackingLists.size();
    facts.Set("folder", package.Folder);
    facts.Add("asset_map", package.AssetMapID);
    facts.Set("packing_lists", lists);
    facts.Line = package.Folder + ": " + std::to_string(lists) + (lists == 1 ? " packing list" : " packing lists") +
                 (package.AssetMapID.HasValue() ? ", asset map " + package.AssetMapID.EncodeString() : "");
    packages.emplace_back(std::move(facts));
    for (const Cairn::PackageFinding& finding : package.Findings)
      item.AddProblem(package.Folder + ": " + finding.Reason());
  }
}

}  // namespace

void DescribeFolder(const std::string& path, InfoItem& item) {
  Cairn::AssetStore store;
  auto result = store.Open();
  if (result.Success()) result = ScanFolder(store, path);
  if (result.Failure()) return item.AddProblem("The folder cannot be read: " + ReasonText(result) + '.');

  TellPackages(store, item);
  Ferro::ui64_t size = 0;
  std::set<std::string> told;
  std::error_code error;
  AssetTeller teller(store, std::filesystem::canonical(path, error).string(), item);
  InfoList assets;
  for (const Cairn::AssetRecord& record : store.Assets()) {
    size += record.Info.FileSize;
    told.insert(record.Info.RealFilename);
    assets.emplace_back(teller.Tell(record));
  }
  for (const Cairn::UnreadableEntry& entry : store.Unreadable())
    if (!told.contains(entry.Path)) item.AddProblem(entry.Path + ": It cannot be opened: " + entry.Reason + '.');
  const bool is_empty = assets.empty();
  item.Facts.Set("total_size", {size, BytesText(size)}).ShownAs(BytesText(size));
  item.Facts.Set("assets", std::move(assets));
  if (is_empty && store.Unreadable().empty()) item.AddProblem("Nothing in this folder is of digital cinema.");
}

}  // namespace Tool
