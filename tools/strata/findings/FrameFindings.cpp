// SPDX-License-Identifier: BSD-3-Clause
#include "AssetFindings.h"
#include "SecurityFindings.h"
#include "keys/FrameIntegrity.h"

#include <set>

namespace Tool {

namespace {

/// An encrypted file, at its first use in the show.
struct FileUse {
  const OutlineComposition& Composition;
  size_t Reel;  ///< from 1
  const OutlineAsset& Asset;
};

std::vector<FileUse> EncryptedFilesOf(const ShowOutline& outline) {
  std::vector<FileUse> uses;
  std::set<std::string> seen;
  for (const OutlineComposition& composition : outline.Compositions()) {
    for (size_t reel = 0; reel < composition.Reels.size(); ++reel)
      for (const OutlineAsset& asset : composition.Reels[reel].Assets) {
        const bool is_there = asset.Asset.KeyID.HasValue() && asset.Found && !asset.Found->Info.RealFilename.empty();
        if (is_there && seen.insert(asset.Found->Info.RealFilename).second)
          uses.push_back({composition, reel + 1, asset});
      }
  }
  return uses;
}

Finding FindingOf(const FileUse& use, FindingClass value, std::string found) {
  Finding finding(FindingID::MicInvalid, value);
  finding.Found = std::move(found);
  finding.Place = PlaceOf(use.Asset.Found->Info.RealFilename, use.Asset.Found->Package);
  finding.Place.Composition = use.Composition.ID;
  finding.Place.CompositionTitle = use.Composition.Title;
  finding.Place.Reel = static_cast<Ferro::ui32_t>(use.Reel);
  finding.Place.Asset = use.Asset.Asset.AssetID;
  finding.Place.Use = UseOf(use.Asset.Kind);
  return finding;
}

void Judge(const FileUse& use, const FrameIntegrity& integrity, FindingList& findings) {
  if (integrity.Bad > 0)
    findings.push_back(FindingOf(use, FindingClass::Error,
                                 std::to_string(integrity.Bad) + " of " + std::to_string(integrity.Frames) +
                                     " frames, the first of them edit unit " + std::to_string(integrity.FirstBad) +
                                     " of the file: " + WithoutFullStop(integrity.Reason)));
  if (!integrity.HasStandardSequence)
    findings.push_back(
        FindingOf(use, FindingClass::Warning, "the two eyes are numbered by another rule than ST 429-6's"));
}

}  // namespace

VerifiedFiles FindInFrames(const ShowOutline& outline, const Sigil::KeyRing& keys, FindingList& findings,
                           const std::function<bool(Ferro::ui64_t, Ferro::ui64_t)>& go_on) {
  VerifiedFiles verified;
  if (keys.Size() == 0) return verified;
  const std::vector<FileUse> uses = EncryptedFilesOf(outline);
  std::vector<EncryptedFile> files;
  for (const FileUse& use : uses) files.push_back({use.Asset.Found->Info.RealFilename, use.Asset.Found->Info.FileType});
  const std::vector<FrameIntegrity> outcomes = VerifyFrames(files, keys, go_on);
  for (size_t i = 0; i < outcomes.size(); ++i) {
    if (!outcomes[i].WasVerified()) continue;
    ++verified.Files;
    verified.Frames += outcomes[i].Frames;
    Judge(uses[i], outcomes[i], findings);
  }
  return verified;
}

}  // namespace Tool
