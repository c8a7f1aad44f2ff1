// SPDX-License-Identifier: BSD-3-Clause
#include "PackageFindings.h"

#include "base/Text.h"
#include "form/DateTime.h"

#include <algorithm>
#include <map>
#include <set>

namespace Assay {
namespace {

/// A type without the blanks around its separators, in lower case.
std::string Normal(std::string_view type) {
  std::string out;
  for (const char c : ToLower(type))
    if (c != ' ' && c != '\t') out += c;
  return out;
}

/// The types that an Interop packing list gives the assets of reels.
using InteropTypes = std::map<UUID, const char*>;

InteropTypes InteropTypesOf(const Package& package) {
  InteropTypes types;
  for (const DocumentFile* composition : package.Compositions) {
    const Node* reels = composition->Root()->Child("ReelList");
    if (reels == nullptr) continue;
    for (const Node& reel : reels->Children) {
      const Node* assets = reel.Child("AssetList");
      if (assets == nullptr) continue;
      for (const Node& asset : assets->Children) {
        const bool is_sound = asset.Name == "MainSound";
        const auto id = is_sound || asset.Name.ends_with("Picture") ? IDOf(asset.Child("Id")) : std::nullopt;
        if (id)
          types.try_emplace(
              *id, is_sound ? "application/x-smpte-mxf;asdcpkind=sound" : "application/x-smpte-mxf;asdcpkind=picture");
      }
    }
  }
  return types;
}

/// The same, of a file that was opened; empty where Interop has no name for it.
const char* InteropTypeOf(QUIRE::EssenceType_t essence) {
  switch (essence) {
    case QUIRE::ESS_PCM:
      return "application/x-smpte-mxf;asdcpkind=sound";
    case QUIRE::ESS_JPEG_2000:
    case QUIRE::ESS_JPEG_2000_S:
    case QUIRE::ESS_MPEG2_VES:
      return "application/x-smpte-mxf;asdcpkind=picture";
    default:
      return "";
  }
}

/// The type that fits a file, as far as it, its name and the documents tell; empty where they do not.
/// @param types  null where the packing list is not of Interop.
std::string FittingType(const Package& package, const InteropTypes* types, const MapAsset& mapped) {
  const bool is_interop = types != nullptr;
  const std::string name = ToLower(mapped.File);
  if (const DocumentFile* document = package.FindDocument(mapped.File); document != nullptr && document->Root()) {
    if (!is_interop) return "text/xml";
    if (document->Kind() == DocumentKind::Composition) return "text/xml;asdcpkind=cpl";
    return document->Kind() == DocumentKind::InteropText ? "text/xml;asdcpkind=subtitle" : "";
  }
  const bool is_open = mapped.Essence != QUIRE::ESS_UNKNOWN;
  if (is_open || name.ends_with(".mxf")) {
    if (!is_interop) return "application/mxf";
    if (is_open) return InteropTypeOf(mapped.Essence);
    const auto played = mapped.ID ? types->find(*mapped.ID) : types->end();
    return played == types->end() ? "" : played->second;
  }
  if (name.ends_with(".png")) return "image/png";
  return is_interop && name.ends_with(".ttf") ? "application/ttf" : "";
}

/// What a document is that a packing list calls an asset, or a composition, though it is none; empty for what may be one.
std::string StrangeKind(const DocumentFile& document, std::string_view type) {
  switch (document.Kind()) {
    case DocumentKind::AssetMap:
      return "an asset map";
    case DocumentKind::VolumeIndex:
      return "a volume index";
    case DocumentKind::PackingList:
      return "a packing list";
    case DocumentKind::Other: {
      const bool is_told = !document.Parsed.Root || document.Parsed.Root->Name == "CompositionPlaylist";
      return is_told || type != "text/xml;asdcpkind=cpl" ? "" : Quoted(document.Parsed.Root->Name);
    }
    default:
      return "";
  }
}

void FindFile(const Package& package, const InteropTypes* types, const ListFile& list, const ListAsset& asset,
              const MapAsset& mapped, FindingList& findings) {
  const auto file = package.Files.find(mapped.File);
  if (file == package.Files.end()) return;
  const DocumentFile* document = package.FindDocument(mapped.File);
  const bool is_composition = document != nullptr && document->Kind() == DocumentKind::Composition;
  const FindingPlace place = AssetPlace(*list.Document, asset.Element, asset.ID);
  if (is_composition && !asset.Hash.empty()) {
    const std::string text = document->Digest.EncodeBase64();
    if (text != asset.Hash) {
      Add(findings, Finding(FindingID::CplHash), place, Quoted(asset.Hash), text);
      return;
    }
  }
  if (asset.Size && *asset.Size != file->second.Size)
    Add(findings, Finding(FindingID::PklAssetSize), place, std::to_string(*asset.Size) + " bytes",
        std::to_string(file->second.Size) + " bytes");
  if (const std::string kind = document == nullptr ? "" : StrangeKind(*document, Normal(asset.Type)); !kind.empty()) {
    Add(findings, Finding(FindingID::PklAssetType), place, Quoted(asset.Type), kind);
    return;
  }
  const std::string fitting = FittingType(package, types, mapped);
  if (!fitting.empty() && Normal(asset.Type) != fitting)
    Add(findings, Finding(FindingID::PklAssetType), place, fitting, Quoted(asset.Type));
}

void FindAssets(const Package& package, const ListFile& list, FindingList& findings) {
  InteropTypes played;
  if (list.Document->IsInterop()) played = InteropTypesOf(package);
  const InteropTypes* types = list.Document->IsInterop() ? &played : nullptr;
  std::set<UUID> seen;
  for (const ListAsset& asset : list.Assets) {
    if (!asset.ID) continue;
    if (!seen.insert(*asset.ID).second) {
      Add(findings, Finding(FindingID::PklDuplicateID), AssetPlace(*list.Document, asset.Element, asset.ID));
      continue;
    }
    if (package.MapAssets.empty()) continue;  // what is wrong with the map is told
    const MapAsset* mapped = package.FindMapped(*asset.ID);
    if (mapped == nullptr)
      Add(findings, Finding(FindingID::PklAssetUnmapped), AssetPlace(*list.Document, asset.Element, asset.ID));
    else
      FindFile(package, types, list, asset, *mapped, findings);
  }
}

void FindHead(const Package& package, const ListFile& list, i64_t now, FindingList& findings) {
  const Node& root = *list.Document->Root();
  const MapAsset* mapped = package.FindMappedFile(list.Document->Path);
  if (mapped != nullptr && mapped->ID && list.ID && *mapped->ID != *list.ID)
    Add(findings, Finding(FindingID::PklID), list.Document->At(root.Child("Id")), mapped->ID->EncodeString(),
        list.ID->EncodeString());
  const Node* date = root.Child("IssueDate");
  const auto time = DateTime::FromText(TextOf(date));
  if (time && (!time->HasOffset || time->Seconds > now))
    Add(findings, Finding(FindingID::PklIssueDate), list.Document->At(date),
        time->HasOffset ? "a date that is not in the future" : "a date with its offset", Quoted(TextOf(date)));
}

void FindAnnotation(const Package& package, const ListFile& list, FindingList& findings) {
  const Node* annotation = list.Document->Root()->Child("AnnotationText");
  const std::string_view text = TextOf(annotation);
  const bool is_one = package.Compositions.size() == 1;
  for (const DocumentFile* composition : package.Compositions) {
    const std::string_view title = TextOf(composition->Root()->Child("ContentTitleText"));
    if (is_one ? text == title : !text.empty() && title.starts_with(text)) continue;
    Add(findings, Finding(FindingID::PklAnnotation, is_one ? FindingClass::Profile : FindingClass::Note),
        list.Document->At(annotation), Quoted(title), Quoted(text));
    return;
  }
}

void FindDisagreement(const Package& package, FindingList& findings) {
  for (const ListFile& list : package.Lists)
    for (const ListAsset& asset : list.Assets) {
      const ListAsset* first = asset.ID ? package.FindListed(*asset.ID) : nullptr;
      const bool is_here =
          first != nullptr && first >= list.Assets.data() && first < list.Assets.data() + list.Assets.size();
      if (first == nullptr || is_here || (first->Size == asset.Size && first->Hash == asset.Hash)) continue;
      Add(findings, Finding(FindingID::PklDisagree), AssetPlace(*list.Document, asset.Element, asset.ID));
    }
}

/// Compositions, and what they play of this package, that no packing list names.
void FindUnlisted(const Package& package, FindingList& findings) {
  if (package.Lists.empty()) return;
  for (const MapAsset& asset : package.MapAssets) {
    if (!asset.ID || asset.IsPackingList || asset.File.empty() || package.FindListed(*asset.ID) != nullptr) continue;
    const DocumentFile* document = package.FindDocument(asset.File);
    const bool is_composition = document != nullptr && document->Kind() == DocumentKind::Composition;
    if (is_composition || ToLower(asset.File).ends_with(".mxf"))
      Add(findings, Finding(FindingID::PklUnlisted), AssetPlace(*package.Map, asset.Element, asset.ID), "", asset.File);
  }
}

/// The assets whose paths were found to lead out of the package. The findings of the package are the last ones.
std::set<UUID> WithBadPath(const Package& package, const FindingList& findings) {
  std::set<UUID> assets;
  for (auto finding = findings.rbegin(); finding != findings.rend(); ++finding) {
    if (finding->Place.Package != package.Folder) break;
    if (finding->ID == FindingID::AmPath && finding->Class == FindingClass::Error) assets.insert(finding->Place.Asset);
  }
  return assets;
}

void FindMissing(const Package& package, FindingList& findings) {
  const std::set<UUID> with_bad_path = WithBadPath(package, findings);
  bool is_told = false;
  for (const MapAsset& asset : package.MapAssets) {
    if (!asset.File.empty() || asset.Written.empty()) continue;
    const bool is_list = asset.IsPackingList;
    if (!asset.Obstacle.empty()) {  // told as unreadable
      is_told |= is_list;
      continue;
    }
    if (asset.ID && with_bad_path.contains(*asset.ID)) continue;
    is_told |= is_list;
    Add(findings, Finding(is_list ? FindingID::PklMissing : FindingID::PklAssetMissing),
        AssetPlace(*package.Map, asset.Element, asset.ID), "", Quoted(asset.Written));
  }
  const bool has_list =
      !package.Lists.empty() || std::ranges::any_of(package.Documents, [](const DocumentFile& document) {
        return !document.Parsed.Root || document.Parsed.Root->Name == "PackingList";
      });
  if (!has_list && !is_told) Add(findings, Finding(FindingID::PklMissing), FolderPlace(package));
}

}  // namespace

void FindInPackingLists(const Package& package, i64_t now, FindingList& findings) {
  FindMissing(package, findings);
  for (const DocumentFile& document : package.Documents)
    if (document.Parsed.Root && document.Grammar == nullptr && document.Parsed.Root->Name == "PackingList")
      Add(findings, Finding(FindingID::PklSchema), document.At(&*document.Parsed.Root),
          "a packing list in a known namespace", Quoted(document.Parsed.Root->Namespace));
  for (const ListFile& list : package.Lists) {
    FindHead(package, list, now, findings);
    FindAnnotation(package, list, findings);
    FindAssets(package, list, findings);
  }
  FindDisagreement(package, findings);
  FindUnlisted(package, findings);
}

}  // namespace Assay
