// SPDX-License-Identifier: BSD-3-Clause
#include "Composition.h"

#include "base/Text.h"

#include <algorithm>

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

/// A whole number up to a million; 0 for anything else.
Ferro::i32_t DigitsOf(std::string_view text) {
  Ferro::i32_t number = 0;
  for (const char c : text) {
    if (!IsDigit(c) || number > 100'000) return 0;
    number = number * 10 + (c - '0');
  }
  return number;
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

std::optional<QUIRE::Rational> AspectOf(const Node* node) {
  const std::vector<std::string_view> words = Words(TextOf(node));
  QUIRE::Rational ratio(0, 1);
  if (words.size() == 2) {
    ratio = {DigitsOf(words[0]), DigitsOf(words[1])};
  } else if (words.size() == 1) {
    const size_t point = std::min(words[0].find('.'), words[0].size());
    std::string digits(words[0].substr(0, point));
    for (const char c : words[0].substr(std::min(point + 1, words[0].size())).substr(0, 4)) {  // more says nothing
      digits += c;
      ratio.Denominator *= 10;
    }
    ratio.Numerator = DigitsOf(digits);
  }
  return ratio.Numerator > 0 && ratio.Denominator > 0 ? std::optional(ratio) : std::nullopt;
}

std::string EditRateText(const QUIRE::Rational& rate) {
  return std::to_string(rate.Numerator) + ' ' + std::to_string(rate.Denominator);
}

double SecondsOf(const Reel& reel) {
  const auto seconds = [](const ReelAsset& asset) {
    return static_cast<double>(*asset.Duration) * asset.EditRate->Denominator / asset.EditRate->Numerator;
  };
  const auto has_length = [](const ReelAsset& asset) { return asset.IsFile() && asset.Duration && asset.EditRate; };
  const ReelAsset* picture = reel.Find(AssetRole::Picture);
  if (picture != nullptr && has_length(*picture)) return seconds(*picture);
  const auto found = std::ranges::find_if(reel.Assets, has_length);
  return found == reel.Assets.end() ? 0 : seconds(*found);
}

bool AreEqual(const QUIRE::Rational& first, const QUIRE::Rational& second) {
  return i64_t{first.Numerator} * second.Denominator == i64_t{second.Numerator} * first.Denominator;
}

}  // namespace Assay
