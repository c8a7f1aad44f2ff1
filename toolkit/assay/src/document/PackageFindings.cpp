// SPDX-License-Identifier: BSD-3-Clause
#include "PackageFindings.h"

#include "base/Text.h"

namespace Assay {
namespace {

/// Whether the documents agree about the kind of package; the first that does not is told.
void FindFlavour(const Package& package, FindingList& findings) {
  const DocumentFile* first = nullptr;
  for (const DocumentFile& document : package.Documents) {
    if (document.Root() == nullptr) continue;
    if (first == nullptr) first = &document;
    if (document.IsInterop() == first->IsInterop()) continue;
    Add(findings, Finding(FindingID::PackageMixed), document.At(nullptr), first->IsInterop() ? "Interop" : "SMPTE",
        document.IsInterop() ? "Interop" : "SMPTE");
    return;
  }
  if (first != nullptr && first->IsInterop()) Add(findings, Finding(FindingID::PackageInterop), FolderPlace(package));
}

/// What cannot be read: where the package needs it an error.
void FindUnreadable(const Package& package, FindingList& findings) {
  std::map<std::string_view, const MapAsset*> behind;  // what stands in an asset's way
  for (const MapAsset& asset : package.MapAssets)
    if (!asset.Obstacle.empty()) behind.try_emplace(asset.Obstacle, &asset);
  for (const auto& [path, found] : package.Unreadable) {
    const auto obstacle = behind.find(path);
    const MapAsset* asset = obstacle == behind.end() ? package.FindMappedFile(path) : obstacle->second;
    const bool is_needed = asset != nullptr || path.empty() || IsMapName(path) || IsVolumeIndexName(path) ||
                           package.Files.contains(path);  // a document that was to be read
    FindingPlace place = FolderPlace(package);
    place.Document = path;
    if (asset != nullptr && asset->ID) place.Asset = *asset->ID;
    Add(findings, Finding(FindingID::FileUnreadable, is_needed ? FindingClass::Error : FindingClass::Warning), place,
        "", found);
  }
}

void FindFiles(const Package& package, FindingList& findings) {
  for (const auto& [path, file] : package.Files) {
    FindingPlace place = FolderPlace(package);
    place.Document = path;
    if (file.IsHidden) {
      Add(findings, Finding(FindingID::PackageHiddenFile), place);
      continue;
    }
    const bool is_known = package.MapAssets.empty() || IsMapName(path) || IsVolumeIndexName(path) ||
                          package.FindMappedFile(path) != nullptr;
    if (!is_known) Add(findings, Finding(FindingID::PackageForeignFile), place);
  }
  for (const std::string& folder : package.EmptyFolders) {
    FindingPlace place = FolderPlace(package);
    place.Document = folder;
    Add(findings, Finding(FindingID::PackageEmptyFolder), place);
  }
}

/// Whether each identifier is written alike in all documents.
class IDCase {
 public:
  void Look(const DocumentFile& document, const Node& node, FindingList& findings) {
    if (node.Children.empty() && node.Text.size() < 100) Look(document, node, TextOf(&node), findings);
    for (const Node& child : node.Children) Look(document, child, findings);
  }

 private:
  struct Written {
    std::string_view Digits;  // as they stand in the document
    const DocumentFile* Document;
  };

  void Look(const DocumentFile& document, const Node& node, std::string_view text, FindingList& findings) {
    const auto id = IDOf(&node);
    if (!id) return;
    const std::string_view digits = text.substr(text.find_last_of(':') + 1);
    const auto [known, is_new] = m_Known.try_emplace(*id, Written{digits, &document});
    if (is_new || known->second.Document == &document || known->second.Digits == digits || m_IsTold) return;
    if (ToLower(known->second.Digits) != ToLower(digits)) return;  // another form, which is told by itself
    m_IsTold = true;                                               // one stands for all
    FindingPlace place = AssetPlace(document, &node, id);
    Add(findings, Finding(FindingID::PackageIDCase), place, std::string(known->second.Digits), std::string(digits));
  }

  std::map<UUID, Written> m_Known;
  bool m_IsTold = false;
};

/// What is wrong with each document by itself. One that is malformed does not tell its identifier; the map does.
void FindInDocuments(const Package& package, FindingList& findings) {
  for (const DocumentFile& document : package.Documents) {
    const size_t first = findings.size();
    FindInDocument(document, findings);
    if (document.Parsed.Root) continue;
    const MapAsset* mapped = package.FindMappedFile(document.Path);
    if (mapped != nullptr && mapped->ID && first < findings.size()) findings[first].Place.Asset = *mapped->ID;
  }
}

}  // namespace

void FindInPackage(const Package& package, i64_t now, FindingList& findings) {
  FindInDocuments(package, findings);
  FindInAssetMap(package, findings);
  FindInPackingLists(package, now, findings);
  FindFlavour(package, findings);
  FindFiles(package, findings);
  FindUnreadable(package, findings);
  IDCase cases;
  for (const DocumentFile& document : package.Documents)
    if (document.Root() != nullptr) cases.Look(document, *document.Root(), findings);
}

}  // namespace Assay
