// SPDX-License-Identifier: BSD-3-Clause
#include "CompositionFiles.h"

namespace Assay {

CompositionFiles::CompositionFiles(const Assay::Composition& composition, const TrackFiles& files)
    : Composition(&composition) {
  const std::string& package = composition.Document->Package;
  for (const Assay::Reel& reel : composition.Reels)
    for (const ReelAsset& asset : reel.Assets) {
      if (!asset.IsFile()) continue;
      AssetFile& file = Assets.emplace_back();
      file.Reel = &reel;
      file.Asset = &asset;
      if (!asset.ID) continue;
      file.File = files.Find(*asset.ID, package);
      if (asset.IsText() && file.File == nullptr) file.Document = files.FindDocument(*asset.ID, package);
    }
}

FindingPlace CompositionFiles::At(const AssetFile& asset, const char* child) const {
  const Node* element = child == nullptr ? nullptr : asset.Asset->Element->Child(child);
  return Composition->At(element == nullptr ? asset.Asset->Element : element, asset.Reel, asset.Asset);
}

}  // namespace Assay
