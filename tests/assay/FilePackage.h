// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "SamplePackage.h"
#include "TrackFileMaker.h"

#include <memory>

namespace testsupport {

/// A sound package whose track files are real ones, small but as long as its documents say: 240 edit units at 24 per second.
/// Files are written once for each spec in a program, and linked into the package's folder.
class FilePackage : public SamplePackage {
 public:
  explicit FilePackage(Kind kind = Kind::SMPTE);

  /// What the file of an asset is made from: of one that ends so ("12"), of picture, sound and so on.
  TrackFileSpec& SpecOf(const std::string& id) { return m_Tracks.at(id).Spec; }
  /// The same for the file of another kind.
  FilePackage& Make(const std::string& id, TrackKind kind) {
    m_Tracks.at(id).Kind = kind;
    return *this;
  }
  /// Cuts so many bytes from the end of the file.
  FilePackage& Cut(const std::string& id, size_t bytes) {
    m_Tracks.at(id).Cut = bytes;
    return *this;
  }
  /// Makes all pictures pairs of eyes, in the documents as well.
  FilePackage& MakePairs();
  /// Leaves the file out; Put may bring another.
  FilePackage& Drop(const std::string& id) {
    m_Tracks.erase(id);
    return *this;
  }
  /// Where the packing list and the map are to keep the size of the whole file.
  FilePackage& KeepSizes() {
    m_KeepsSizes = true;
    return *this;
  }

  /// Has a check look so far.
  FilePackage& LookInto(Assay::DepthSet depths) {
    m_Depths = depths;
    return *this;
  }

 protected:
  void Prepare(const std::string& folder, FileMap& files) const override;
  [[nodiscard]] Assay::DepthSet Depths() const override { return m_Depths; }

 private:
  struct Track {
    TrackKind Kind = TrackKind::Picture;
    TrackFileSpec Spec;
    size_t Cut = 0;
  };

  std::map<std::string, Track> m_Tracks;  // by the end of their identifier
  Assay::DepthSet m_Depths = Assay::DepthSet::UpTo(Assay::Depth::Files);
  bool m_IsInterop;
  bool m_KeepsSizes = false;
};

/// The identifier of the sample's asset that ends so.
[[nodiscard]] Ferro::UUID SampleID(const std::string& end);

/// The first finding of that kind; a failure of the test where there is none.
[[nodiscard]] Assay::Finding FindingOf(const Assay::CheckReport& report, Assay::FindingID id);

/// Names without those that begin so: what has tests of its own.
[[nodiscard]] std::vector<std::string> Without(std::vector<std::string> names, const std::string& prefix);

}  // namespace testsupport
