// SPDX-License-Identifier: BSD-3-Clause
// Writes files of kept results, without the digests at their ends, into the folder given.
#include "frames/KeptResults.h"

#include <Ferro/FileText.h>
#include <Ferro/Path.h>
#include <Ferro/SHA1Digest.h>

int main(int argc, char** argv) {
  using namespace Assay;
  if (argc != 2) return 2;
  KeptResults kept;
  for (int count = 0; count < 3; ++count) {
    std::vector<ui8_t> bytes = kept.Encode();
    bytes.resize(bytes.size() - SHA1::Size);
    const std::string text(bytes.begin(), bytes.end());
    if (Ferro::WriteStringIntoFile(Ferro::PathJoin(argv[1], std::to_string(count)), text).Failure()) return 1;
    PassFile file;
    file.Path = "/package/file" + std::to_string(count);
    file.LookedAt = {Depth::Frames, Depth::Hash};
    file.Digest = Ferro::DigestText("file");
    Finding finding(FindingID::J2KMarker);
    finding.Place.EditUnit = 7;
    finding.Found = "no EOC";
    file.Findings = {finding, Finding(FindingID::J2KUndecodable)};
    file.Findings[1].Cause = 0;
    file.Figures.emplace().Picture = PictureFigures{1, 2, 3, 250, 1, {1.0F, 2.0F}};
    file.Figures->Channels = {{"L", -20.0}};
    kept.Put(file, {1000, 2000});
  }
  return 0;
}
