// SPDX-License-Identifier: BSD-3-Clause
#include "Composition.h"
#include "PackageFindings.h"

#include "base/Text.h"

namespace Assay {
namespace {

constexpr char StandardLabels[] = "FFOC LFOC FFTC LFTC FFOI LFOI FFEC LFEC FFMC LFMC";

/// A marker with a label of the standard's.
struct PlacedMarker {
  std::string Label;
  std::optional<ui64_t> Offset;
  const Node* Element = nullptr;
};

std::vector<PlacedMarker> MarkersOf(const Reel& reel) {
  std::vector<PlacedMarker> markers;
  for (const ReelAsset& asset : reel.Assets) {
    const Node* list = asset.Role == AssetRole::Markers ? asset.Element->Child("MarkerList") : nullptr;
    if (list == nullptr) continue;
    for (const Node& element : list->Children) {
      const Node* label = element.Child("Label");
      if (label != nullptr && label->Find("scope") == nullptr)
        markers.push_back({std::string(TextOf(label)), CountOf(element.Child("Offset")), &element});
    }
  }
  return markers;
}

void FindInReel(const Composition& composition, const Reel& reel, FindingList& findings) {
  const ReelAsset* picture = reel.Find(AssetRole::Picture);
  for (const ReelAsset& asset : reel.Assets) {
    if (asset.Role != AssetRole::Markers) continue;
    if (asset.Element->Child("EntryPoint") != nullptr || asset.Element->Child("Duration") != nullptr)
      Add(findings, Finding(FindingID::MarkerEntry), composition.At(asset.Element, &reel, &asset));
    const Node* list = asset.Element->Child("MarkerList");
    if (list == nullptr || picture == nullptr || !picture->Duration) continue;
    for (const Node& element : list->Children) {
      const auto offset = CountOf(element.Child("Offset"));
      if (offset && *offset >= *picture->Duration)
        Add(findings, Finding(FindingID::MarkerRange), composition.At(&element, &reel, &asset),
            "below " + std::to_string(*picture->Duration), std::to_string(*offset));
    }
  }
  for (const PlacedMarker& marker : MarkersOf(reel))
    if (!HasForm(ValueForm::OneOf, marker.Label, StandardLabels))
      Add(findings, Finding(FindingID::MarkerUnknown), composition.At(marker.Element, &reel), StandardLabels,
          Quoted(marker.Label));
}

/// A marker that the reel has to have at one place.
void FindAt(const Composition& composition, const Reel& reel, const char* label, ui64_t offset, FindingID id,
            FindingList& findings) {
  const ReelAsset* picture = reel.Find(AssetRole::Picture);
  for (const PlacedMarker& marker : MarkersOf(reel)) {
    if (marker.Label != label) continue;
    const bool is_beyond = picture != nullptr && marker.Offset >= picture->Duration;  // which is told already
    if (marker.Offset != offset && !is_beyond)
      Add(findings, Finding(id), composition.At(marker.Element, &reel), std::to_string(offset),
          marker.Offset ? std::to_string(*marker.Offset) : "no offset");
    return;
  }
  Add(findings, Finding(id), composition.At(reel.Element, &reel), std::to_string(offset), "no marker");
}

void FindCredits(const Composition& composition, FindingList& findings) {
  if (ToLower(TextOf(composition.Root().Child("ContentKind"))) != "feature") return;
  std::string missing;
  for (const char* label : {"FFEC", "FFMC"}) {
    bool is_there = false;
    for (const Reel& reel : composition.Reels)
      for (const PlacedMarker& marker : MarkersOf(reel)) is_there |= marker.Label == label;
    if (!is_there) missing += (missing.empty() ? "no " : " and no ") + std::string(label);
  }
  if (!missing.empty())
    Add(findings, Finding(FindingID::MarkerCredits), composition.At(composition.Root().Child("ReelList")),
        "FFEC and FFMC", missing);
}

}  // namespace

void FindInMarkers(const Composition& composition, FindingList& findings) {
  if (composition.Reels.empty()) return;
  for (const Reel& reel : composition.Reels) FindInReel(composition, reel, findings);
  if (composition.IsInterop()) return;
  FindAt(composition, composition.Reels.front(), "FFOC", 1, FindingID::MarkerFFOC, findings);
  const ReelAsset* last = composition.Reels.back().Find(AssetRole::Picture);
  if (last != nullptr && last->Duration.value_or(0) > 0)
    FindAt(composition, composition.Reels.back(), "LFOC", *last->Duration - 1, FindingID::MarkerLFOC, findings);
  FindCredits(composition, findings);
}

}  // namespace Assay
