// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TrackFile.h"

#include "document/Composition.h"
#include "document/Package.h"

#include <deque>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace Cairn {
class IAssetLookup;
}

namespace Assay {

/// What compositions play: of each asset the last edit unit; the largest number where the composition does not say.
using PlayedUnits = std::map<UUID, ui64_t>;

/// Adds what a composition plays.
void NotePlayed(const Composition& composition, PlayedUnits& played);

/// Where a document lies that a composition plays: Interop subtitles.
struct DocumentPlace {
  std::string Package;  ///< folder of the package; empty where the store has it
  std::string Path;     ///< from the package's folder on; a whole path where Package is empty

  [[nodiscard]] std::string FullPath() const;
};

/// The track files of the packages of a check and, for assets of compositions that no package has, of a store. Files stay
/// where they are as long as this lives.
class TrackFiles {
 public:
  /// Finds the files. Of a package's files those count that its asset map leads to, whole, and that are played or are
  /// called .mxf.
  /// @param store  may be null.
  TrackFiles(const std::deque<Package>& packages, const PlayedUnits& played, const Cairn::IAssetLookup* store);
  TrackFiles(const TrackFiles&) = delete;
  TrackFiles& operator=(const TrackFiles&) = delete;

  /// Reads them, each once, several at once.
  /// @param go_on  asked by the calling thread now and then, with how many are done; false ends the reading.
  /// @return whether all were read.
  [[nodiscard]] bool Read(const std::function<bool(size_t done)>& go_on = {});

  /// The track file of an asset, that of the package named before others; null where there is none.
  [[nodiscard]] const TrackFile* Find(const UUID& id, const std::string& package) const;
  /// Where the document of an asset lies; null as above.
  [[nodiscard]] const DocumentPlace* FindDocument(const UUID& id, const std::string& package) const;
  [[nodiscard]] const std::deque<TrackFile>& All() const { return m_Files; }
  /// Whether the asset has a file or document.
  [[nodiscard]] bool Has(const UUID& id) const { return m_ByID.contains(id) || m_Documents.contains(id); }

 private:
  void AddPackage(const Package& package, const PlayedUnits& played);
  void AddFromStore(const UUID& id, const Cairn::IAssetLookup& store);
  TrackFile& AddFile(const UUID& id);

  std::deque<TrackFile> m_Files;
  std::map<UUID, std::vector<const TrackFile*>> m_ByID;
  std::map<UUID, std::vector<DocumentPlace>> m_Documents;
  PlayedUnits m_Played;
};

}  // namespace Assay
