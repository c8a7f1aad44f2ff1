// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "file/TrackFiles.h"
#include "frames/DigestFindings.h"

#include <Assay/Check.h>

namespace Assay {

/// What a check makes of the contents of files: which are looked at, and where what was found belongs.
class ContentsCheck {
 public:
  /// @param packages  must live as long, as files and request must.
  ContentsCheck(const CheckRequest& request, const std::deque<Package>& packages, const TrackFiles& files);

  /// Looks at the files as the request says; nothing where it asks for none of their contents. Where the check was ended
  /// before, it looks at none of them. Fills in Figures, LeftOuts, Kept and IsCancelled, and adds to LookedAt.
  void Run(CheckReport& report);

  /// Adds what was found in the files of a package, or with null in those of the store, and the digests that its packing
  /// lists have wrong, to what was found in its documents.
  void FindInPackage(const Package* package, FindingList& findings) const;
  /// Adds what digests of files tell of a composition.
  void FindInComposition(const Composition& composition, const Package* package, FindingList& findings) const;

 private:
  [[nodiscard]] DepthSet Contents() const;
  void AddTrackFiles();
  void AddListedFiles();
  void FindWithoutKey(const std::string& folder, FindingList& findings) const;
  [[nodiscard]] FileDigest DigestOf(const UUID& id, const std::string& package) const;

  const CheckRequest& m_Request;
  const std::deque<Package>& m_Packages;
  const TrackFiles& m_TrackFiles;
  PassFiles m_Files;
};

}  // namespace Assay
