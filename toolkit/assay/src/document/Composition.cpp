// SPDX-License-Identifier: BSD-3-Clause
#include "Composition.h"

#include <algorithm>
#include <limits>

namespace Assay {
namespace {

AssetRole RoleOf(const Node& element) {
  struct Row {
    const char* Name;
    AssetRole Role;
  };
  static constexpr Row Rows[] = {
      {"MainPicture", AssetRole::Picture},
      {"MainStereoscopicPicture", AssetRole::Picture},
      {"MainSound", AssetRole::Sound},
      {"MainSubtitle", AssetRole::Subtitle},
      {"MainCaption", AssetRole::Subtitle},
      {"ClosedCaption", AssetRole::Caption},
      {"ClosedSubtitle", AssetRole::Caption},
      {"MainClosedCaption", AssetRole::Caption},
      {"AuxData", AssetRole::AuxData},
      {"MainMarkers", AssetRole::Markers},
      {"CompositionMetadataAsset", AssetRole::Metadata},
  };
  for (const Row& row : Rows)
    if (element.Name == row.Name) return row.Role;
  return AssetRole::Other;
}

ReelUse UseOf(AssetRole role) {
  switch (role) {
    case AssetRole::Picture:
      return ReelUse::Picture;
    case AssetRole::Sound:
      return ReelUse::Sound;
    case AssetRole::Subtitle:
      return ReelUse::Subtitle;
    case AssetRole::Caption:
      return ReelUse::Caption;
    case AssetRole::AuxData:
      return ReelUse::AuxData;
    case AssetRole::Markers:
    case AssetRole::Metadata:
    case AssetRole::Other:
      break;
  }
  return ReelUse::None;
}

ReelAsset ReadAsset(const Node& element) {
  ReelAsset asset;
  asset.Element = &element;
  asset.Role = RoleOf(element);
  asset.IsStereoscopic = element.Name == "MainStereoscopicPicture";
  asset.ID = IDOf(element.Child("Id"));
  asset.EditRate = RateOf(element.Child("EditRate"));
  asset.Intrinsic = CountOf(element.Child("IntrinsicDuration"));
  asset.Entry = CountOf(element.Child("EntryPoint"));
  const Node* duration = element.Child("Duration");
  asset.Duration = CountOf(duration);
  if (duration == nullptr && asset.Intrinsic)
    asset.Duration = *asset.Intrinsic - std::min(*asset.Intrinsic, asset.Entry.value_or(0));
  asset.KeyID = IDOf(element.Child("KeyId"));
  asset.Hash = HashOf(element.Child("Hash"));
  asset.Language = TextOf(element.Child("Language"));
  return asset;
}

}  // namespace

const ReelAsset* Reel::Find(AssetRole role) const {
  const auto found = std::ranges::find_if(Assets, [&](const ReelAsset& asset) { return asset.Role == role; });
  return found == Assets.end() ? nullptr : &*found;
}

size_t Reel::Count(AssetRole role) const {
  return static_cast<size_t>(std::ranges::count_if(Assets, [&](const ReelAsset& asset) { return asset.Role == role; }));
}

bool Composition::Has(AssetRole role) const {
  return std::ranges::any_of(Reels, [&](const Assay::Reel& reel) { return reel.Find(role) != nullptr; });
}

bool Composition::IsStereoscopic() const {
  return std::ranges::any_of(Reels, [](const Assay::Reel& reel) {
    return std::ranges::any_of(reel.Assets, [](const ReelAsset& asset) { return asset.IsStereoscopic; });
  });
}

const ReelAsset* Composition::Picture() const {
  return Reels.empty() ? nullptr : Reels.front().Find(AssetRole::Picture);
}

FindingPlace Composition::At(const Node* node, const Assay::Reel* reel, const ReelAsset* asset) const {
  FindingPlace place = Document->At(node);
  if (ID) place.Composition = *ID;
  place.CompositionTitle = Title;
  if (reel != nullptr) place.Reel = reel->Number;
  if (asset != nullptr && asset->ID) place.Asset = *asset->ID;
  if (asset != nullptr) place.Use = UseOf(asset->Role);
  return place;
}

Composition ReadComposition(const DocumentFile& document) {
  Composition composition;
  composition.Document = &document;
  const Node& root = *document.Root();
  composition.ID = IDOf(root.Child("Id"));
  composition.Title = TextOf(root.Child("ContentTitleText"));
  const Node* reels = root.Child("ReelList");
  if (reels == nullptr) return composition;
  for (const Node& element : reels->Children) {
    if (element.Name != "Reel") continue;
    Reel& reel = composition.Reels.emplace_back();
    reel.Element = &element;
    reel.Number = static_cast<ui32_t>(composition.Reels.size());
    reel.ID = IDOf(element.Child("Id"));
    const Node* assets = element.Child("AssetList");
    if (assets == nullptr) continue;
    for (const Node& asset : assets->Children) reel.Assets.push_back(ReadAsset(asset));
  }
  return composition;
}

bool AreEqual(const QUIRE::Rational& first, const QUIRE::Rational& second) {
  return i64_t{first.Numerator} * second.Denominator == i64_t{second.Numerator} * first.Denominator;
}

}  // namespace Assay
