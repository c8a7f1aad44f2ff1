// SPDX-License-Identifier: BSD-3-Clause
#include "StoreList.h"

#include "show/DocumentTitle.h"
#include "show/InfoKinds.h"
#include "terminal/DisplayText.h"
#include "terminal/TextForms.h"

#include <Ferro/Path.h>

#include <cstdio>
#include <filesystem>

namespace Tool {

namespace {

std::string Counted(size_t count, const std::string& thing) {
  return std::to_string(count) + ' ' + thing + (count == 1 ? "" : "s");
}

Json FoldersJson(const Cairn::AssetStore& store, const StoreSelection& selection) {
  Json folders = Json::array();
  std::error_code error;
  for (const std::string& folder : store.Folders())
    if (selection.HasFolder(folder))
      folders.push_back(Json{{"folder", folder}, {"present", std::filesystem::is_directory(folder, error)}});
  return folders;
}

Json PackagesJson(const Cairn::AssetStore& store, const StoreSelection& selection) {
  Json packages = Json::array();
  for (const Cairn::PackageRecord& package : store.Packages()) {
    if (!selection.HasFolder(package.Folder)) continue;
    Json json{{"folder", package.Folder}};
    if (package.AssetMapID.HasValue()) json["asset_map"] = package.AssetMapID.EncodeString();
    json["packing_lists"] = Json::array();
    for (const Cairn::UUID& id : package.PackingLists) json["packing_lists"].push_back(id.EncodeString());
    json["findings"] = Json::array();
    for (const Cairn::PackageFinding& finding : package.Findings) json["findings"].push_back(finding.Reason());
    packages.push_back(json);
  }
  return packages;
}

Json AssetJson(const Cairn::AssetRecord& record) {
  Json json{{"id", record.Info.ID.EncodeString()}, {"kind", StoreKindName(record)}};
  const std::string title = DocumentTitle(record.Info.FileType, record.Info.RealFilename);
  if (!title.empty()) json["title"] = title;
  json["package"] = record.Package;
  if (!record.Info.RealFilename.empty()) json["file"] = record.Info.RealFilename;
  json["size"] = record.Info.FileSize;
  if (record.HasListedSize) json["listed_size"] = record.ListedSize;
  json["digest"] = DigestState(record);
  json["usable"] = (record.Problems & Cairn::FatalAssetProblems) == 0;
  json["problems"] = record.Reasons();
  return json;
}

std::string AssetText(const Json& asset) {
  const std::string file = asset.value("file", std::string());
  const std::string package = asset["package"];
  char start[96];
  std::snprintf(start, sizeof start, "  %-28s %8s  %s  ", asset["kind"].get<std::string>().c_str(),
                BytesText(asset["size"].get<Ferro::ui64_t>()).c_str(), asset["id"].get<std::string>().c_str());
  std::string line = start + DisplayText(IsInside(file, package) ? file.substr(package.size() + 1) : file);
  if (asset.contains("title")) line += "  \"" + DisplayText(asset["title"].get<std::string>()) + '"';
  line += '\n';
  for (const Json& problem : asset["problems"]) line += "      " + problem.get<std::string>() + '\n';
  return line;
}

}  // namespace

std::string StoreKindName(const Cairn::AssetRecord& record) {
  return record.Info.RealFilename.empty() ? "missing file" : FileKindName(record.Info.FileType);
}

const char* DigestState(const Cairn::AssetRecord& record) {
  if (!record.Info.Digest.HasValue()) return "unlisted";
  if ((record.Problems & Cairn::AP_DIGEST_MISMATCH) != 0) return "different";
  return record.DigestVerified ? "verified" : "unknown";
}

Json StoreListReport(const StoreSession& session, const Cairn::AssetStore& store, const StoreSelection& selection) {
  Json report = NewReport("store-list");
  report["index"] = session.IndexFile();
  report["folders"] = FoldersJson(store, selection);
  report["packages"] = PackagesJson(store, selection);
  report["assets"] = Json::array();
  Ferro::ui64_t bytes = 0;
  size_t with_problems = 0;
  for (const Cairn::AssetRecord& record : selection.Assets(store)) {
    report["assets"].push_back(AssetJson(record));
    bytes += record.Info.FileSize;
    with_problems += record.Problems != 0 ? 1 : 0;
  }
  report["bytes"] = bytes;
  report["with_problems"] = with_problems;
  return report;
}

std::string StoreListText(const Json& report) {
  std::string text = "Index " + report["index"].get<std::string>() + '\n';
  for (const Json& folder : report["folders"])
    text += "Folder " + DisplayText(folder["folder"].get<std::string>()) +
            (folder["present"].get<bool>() ? "\n" : "  (not there now)\n");
  std::string package;
  for (const Json& asset : report["assets"]) {
    if (asset["package"] != package) {
      package = asset["package"];
      text += '\n' + DisplayText(package) + '\n';
      for (const Json& known : report["packages"])
        if (known["folder"] == package)
          for (const Json& finding : known["findings"]) text += "  " + finding.get<std::string>() + '\n';
    }
    text += AssetText(asset);
  }
  if (!report["assets"].empty()) text += '\n';
  text += Counted(report["assets"].size(), "asset") + ", " + BytesText(report["bytes"].get<Ferro::ui64_t>());
  if (report["with_problems"].get<size_t>() > 0)
    text += "; " + std::to_string(report["with_problems"].get<size_t>()) +
            " with problems: `strata store verify` tells what to do";
  return text + ".\n";
}

}  // namespace Tool
