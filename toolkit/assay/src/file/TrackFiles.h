// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TrackFile.h"

#include "document/Composition.h"
#include "document/Package.h"

#include <functional>
#include <map>
#include <set>

namespace Cairn {
class IAssetLookup;
}

namespace Assay {

/// What compositions play of files: of each asset the last edit unit, or none where the composition does not say.
using PlayedUnits = std::map<UUID, std::optional<ui64_t>>;

/// Where a file lies that is no track file: an Interop subtitle document.
struct DocumentPlace {
  std::string Package;  ///< folder of the package; empty where the store has it
  std::string Path;     ///< from the package's folder on; a whole path where Package is empty

  [[nodiscard]] std::string FullPath() const;
};

/// The track files of the packages of a check and, for assets of compositions that no package has, of a store. Files stay
/// where they are as long as this lives.
class TrackFiles {
 public:
  /// Finds the files. Packages must outlive the call only.
  /// @param store  may be null.
  TrackFiles(const std::deque<Package>& packages, const PlayedUnits& played, const Cairn::IAssetLookup* store);
  TrackFiles(const TrackFiles&) = delete;
  TrackFiles& operator=(const TrackFiles&) = delete;

  /// Reads them, each once, several at once.
  /// @param go_on  asked before each file, by any thread; false ends the reading.
  void Read(const std::function<bool()>& go_on);

  /// The track file of an asset, that of the package named first; null where none was found.
  [[nodiscard]] const TrackFile* Find(const UUID& id, const std::string& package) const;
  /// Where the subtitle document of an asset lies; null as above.
  [[nodiscard]] const DocumentPlace* FindDocument(const UUID& id, const std::string& package) const;
  [[nodiscard]] const std::deque<TrackFile>& All() const { return m_Files; }

 private:
  void AddPackage(const Package& package, const PlayedUnits& played);
  void AddFromStore(const UUID& id, const Cairn::IAssetLookup& store);

  std::deque<TrackFile> m_Files;
  std::vector<std::optional<ui64_t>> m_LastPlayed;  // of each of them
  std::multimap<UUID, const TrackFile*> m_ByID;
  std::multimap<UUID, DocumentPlace> m_Documents;
};

}  // namespace Assay
