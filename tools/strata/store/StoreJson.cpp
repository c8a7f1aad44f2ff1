// SPDX-License-Identifier: BSD-3-Clause
#include "StoreReports.h"
#include "findings/FindingJson.h"
#include "findings/FindingReport.h"
#include "show/InfoKinds.h"

namespace Tool {

namespace {

const char* DigestStateName(DigestState state) {
  switch (state) {
    case DigestState::Verified:
      return "verified";
    case DigestState::Different:
      return "different";
    case DigestState::Unknown:
      return "unknown";
    case DigestState::Unlisted:
      return "unlisted";
  }
  return "";
}

Json MessagesJson(const FindingList& findings) {
  Json messages = Json::Array();
  for (const Finding& finding : findings) messages.push_back(SentenceOf(finding));
  return messages;
}

Json PackageJson(const ListedPackage& listed) {
  Json json{{"folder", listed.Package.Folder}};
  if (listed.Package.AssetMapID.HasValue()) json["asset_map"] = listed.Package.AssetMapID.EncodeString();
  json["packing_lists"] = Json::Array();
  for (const Cairn::UUID& id : listed.Package.PackingLists) json["packing_lists"].push_back(id.EncodeString());
  json["findings"] = MessagesJson(listed.Findings);
  return json;
}

Json AssetJson(const ListedAsset& asset) {
  const Cairn::AssetRecord& record = asset.Record;
  const bool is_missing = record.Info.RealFilename.empty();
  Json json{{"id", record.Info.ID.EncodeString()},
            {"kind", is_missing ? "missing file" : FileKindName(record.Info.FileType)}};
  AddUnlessEmpty(json, is_missing ? "use" : "title", asset.Title);
  AddUnlessEmpty(json, "description", asset.Description);
  json["package"] = record.Package;
  AddUnlessEmpty(json, "file", record.Info.RealFilename);
  if (is_missing) AddUnlessEmpty(json, "missing_file", asset.File);
  json["size"] = record.Info.FileSize;
  if (record.HasListedSize) json["listed_size"] = record.ListedSize;
  json["digest"] = DigestStateName(DigestStateOf(record));
  json["usable"] = (record.Problems & Cairn::FatalAssetProblems) == 0;
  json["problems"] = MessagesJson(asset.Findings);
  return json;
}

}  // namespace

std::string StoreListJson(const StoreList& list) {
  Json json = NewJsonReport("store-list");
  json["index"] = list.Index;
  for (const char* part : {"folders", "packages", "assets"}) json[part] = Json::Array();
  for (const ListedFolder& folder : list.Folders)
    json["folders"].push_back(Json{{"folder", folder.Folder}, {"present", folder.IsPresent}});
  for (const ListedPackage& package : list.Packages) json["packages"].push_back(PackageJson(package));
  for (const ListedAsset& asset : list.Assets) json["assets"].push_back(AssetJson(asset));
  json["bytes"] = list.Bytes;
  json["with_problems"] = list.WithProblems;
  return JsonText(json);
}

std::string StoreVerifyJson(const StoreVerification& verification) {
  Json json = NewJsonReport("store-verify");
  json["index"] = verification.Index;
  json["exit_code"] = static_cast<int>(verification.Code);
  json["interrupted"] = verification.Code == ExitCode::Interrupted;
  json["hash"] = verification.Hash;
  json["assets"] = verification.Assets;
  json["bytes"] = verification.Bytes;
  json["digests"] = Json{{"verified", verification.Digests.Verified},
                         {"different", verification.Digests.Different},
                         {"unknown", verification.Digests.Unknown},
                         {"unlisted", verification.Digests.Unlisted}};
  json["findings"] = FindingsJson(verification.Findings);
  json["verdict"] = StoreVerdict(verification);
  return JsonText(json);
}

}  // namespace Tool
