// SPDX-License-Identifier: BSD-3-Clause
#include "DigestFindings.h"

#include "base/Text.h"
#include "document/PackageFindings.h"

#include <Ferro/TextEncoding.h>

#include <algorithm>
#include <set>

namespace Assay {
namespace {

std::string Base64(const SHA1& digest) {
  return Ferro::base64encode(digest.Bytes());
}

bool IsComposition(const Package& package, const std::string& path) {
  return std::ranges::any_of(package.Compositions,
                             [&](const DocumentFile* document) { return document->Path == path; });
}

}  // namespace

void PassFiles::Add(PassFile file) {
  if (m_ByPlace.try_emplace({file.Package, file.Document}, m_Files.size()).second) m_Files.push_back(std::move(file));
}

const PassFile* PassFiles::Find(const std::string& package, const std::string& document) const {
  const auto found = m_ByPlace.find({package, document});
  return found == m_ByPlace.end() ? nullptr : &m_Files[found->second];
}

void FindByDigests(const Package& package, const PassFiles& files, FindingList& findings) {
  for (const ListFile& list : package.Lists) {
    std::set<UUID> seen;
    for (const ListAsset& asset : list.Assets) {
      const MapAsset* mapped = asset.ID && seen.insert(*asset.ID).second ? package.FindMapped(*asset.ID) : nullptr;
      if (mapped == nullptr || asset.Hash.empty() || IsComposition(package, mapped->File)) continue;
      const PassFile* file = files.Find(package.Folder, mapped->File);
      if (file == nullptr || !file->Digest.HasValue() || Base64(file->Digest) == asset.Hash) continue;
      Add(findings, Finding(FindingID::PklAssetHash), AssetPlace(*list.Document, asset.Element, asset.ID),
          Quoted(asset.Hash), Base64(file->Digest));
    }
  }
}

void FindByDigests(const Composition& composition, const Package* package,
                   const std::function<FileDigest(const UUID&)>& find, FindingList& findings) {
  for (const Reel& reel : composition.Reels)
    for (const ReelAsset& asset : reel.Assets) {
      if (!asset.ID || asset.Hash.empty() || !asset.IsFile()) continue;
      const ListAsset* listed = package == nullptr ? nullptr : package->FindListed(*asset.ID);
      if (listed != nullptr && !listed->Hash.empty()) continue;  // documents and the list tell
      const FileDigest digest = find(*asset.ID);
      const bool is_told = !digest.Listed.empty() && digest.Listed == asset.Hash;
      if (!digest.Computed.HasValue() || is_told || Base64(digest.Computed) == asset.Hash) continue;
      Add(findings, Finding(FindingID::ReelHash), composition.At(asset.Element->Child("Hash"), &reel, &asset),
          Base64(digest.Computed), Quoted(asset.Hash));
    }
}

}  // namespace Assay
