// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TableLookup.h"
#include "TemporaryFolder.h"
#include "TrackFileMaker.h"

#include <Strata/ShowPlaylist.h>

#include <Cairn/CompositionPlaylist.h>

#include <string>

namespace testsupport {

/// A folder of track files and documents with the table that finds them. Digests in the table are made up.
class PackageMaker {
 public:
  TableLookup Lookup;

  /// Writes a track file; `spec.AssetID` is not looked at.
  Cairn::AssetInfo Track(TrackKind kind, TrackFileSpec spec = {});
  /// Writes an Interop subtitle document.
  Cairn::AssetInfo InteropText();
  /// Writes a document, or anything else, and puts it into the table.
  Cairn::AssetInfo Document(const Ferro::UUID& id, Cairn::FileType_t type, const std::string& content);
  Cairn::AssetInfo Composition(const Cairn::CompositionPlaylist& cpl);
  Cairn::AssetInfo Show(const Strata::ShowPlaylist& spl);

  [[nodiscard]] static std::string Encode(const Cairn::CompositionPlaylist& cpl);
  [[nodiscard]] static std::string Encode(const Strata::ShowPlaylist& spl);

 private:
  Cairn::AssetInfo Register(const Ferro::UUID& id, Cairn::FileType_t type, const std::string& path);

  TemporaryFolder m_Folder;
  unsigned m_Count = 0;
};

/// A use of an asset in a reel: `duration` edit units of 24 per second from the file's start, with its digest.
template <class AssetT>
AssetT AssetOf(const Cairn::AssetInfo& info, Ferro::ui32_t duration = 5) {
  AssetT asset;
  asset.AssetID = info.ID;
  asset.Digest = info.Digest;
  asset.EditRate = QUIRE::EditRate_24;
  asset.IntrinsicDuration = 5;
  asset.Duration = duration;
  return asset;
}

/// A reel with that picture and nothing else.
[[nodiscard]] Cairn::Reel ReelOf(const Cairn::AssetInfo& picture, Ferro::ui32_t duration = 5);
/// A SMPTE composition with all that its document requires but reels.
[[nodiscard]] Cairn::CompositionPlaylist EmptyComposition(const std::string& title);

}  // namespace testsupport
