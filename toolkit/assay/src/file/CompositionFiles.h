// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TrackFiles.h"

#include "document/Composition.h"

#include <vector>

namespace Assay {

/// An asset of a reel with the file that it plays.
struct AssetFile {
  const Assay::Reel* Reel = nullptr;
  const ReelAsset* Asset = nullptr;
  const TrackFile* File = nullptr;          ///< null where none is at hand, or it is a document
  const DocumentPlace* Document = nullptr;  ///< of Interop text: where the document lies; else null

  /// Whether the file was opened, so that there is something to compare.
  [[nodiscard]] bool IsOpen() const { return File != nullptr && File->IsOpen(); }
};

/// A composition with its files, in the order of its reels and their assets; markers and metadata have none and are left
/// out. A plain value that points to the composition and the files.
struct CompositionFiles {
  const Assay::Composition* Composition = nullptr;
  std::vector<AssetFile> Assets;

  CompositionFiles() = default;
  CompositionFiles(const Assay::Composition& composition, const TrackFiles& files);

  /// The place of an asset's use; with `child` the line is that of its element of that name, where it has one.
  [[nodiscard]] FindingPlace At(const AssetFile& asset, const char* child = nullptr) const;
};

}  // namespace Assay
