// SPDX-License-Identifier: BSD-3-Clause
#include "TrackFile.h"

#include <Ferro/Path.h>

namespace Assay {

std::string TrackFile::FullPath() const {
  return Package.empty() ? Path : Ferro::PathJoin(Package, Path);
}

FindingPlace TrackFile::At() const {
  FindingPlace place;
  place.Package = Package;
  place.Document = Path;
  place.Asset = ID;
  return place;
}

}  // namespace Assay
