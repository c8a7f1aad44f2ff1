// SPDX-License-Identifier: BSD-3-Clause
#include "CompositionFindings.h"
#include "SecurityFindings.h"
#include "keys/FrameIntegrity.h"

#include <set>

namespace Tool {

namespace {

/// An encrypted file, at its first use in the show.
struct FileUse {
  const OutlineComposition& Composition;
  size_t CompositionNumber;  ///< from 1
  size_t Reel;               ///< from 1
  const OutlineAsset& Asset;
};

std::vector<FileUse> EncryptedFilesOf(const ShowOutline& outline) {
  std::vector<FileUse> uses;
  std::set<std::string> seen;
  size_t number = 0;
  for (const OutlineComposition& composition : outline.Compositions()) {
    ++number;
    for (size_t reel = 0; reel < composition.Reels.size(); ++reel)
      for (const OutlineAsset& asset : composition.Reels[reel].Assets) {
        const bool is_there = asset.Asset.KeyID.HasValue() && asset.Found && !asset.Found->Info.RealFilename.empty();
        if (is_there && seen.insert(asset.Found->Info.RealFilename).second)
          uses.push_back({composition, number, reel + 1, asset});
      }
  }
  return uses;
}

Finding FindingOf(const FileUse& use, std::string message) {
  Finding finding(FindingID::MicInvalid);
  finding.Message = std::move(message);
  finding.Composition = CompositionName(use.Composition);
  finding.CompositionNumber = static_cast<Ferro::ui32_t>(use.CompositionNumber);
  finding.Reel = static_cast<Ferro::ui32_t>(use.Reel);
  finding.What = SubjectOf(use.Asset.Kind);
  finding.AssetID = use.Asset.Asset.AssetID;
  finding.File = use.Asset.Found->Info.RealFilename;
  return finding;
}

void Judge(const FileUse& use, const FrameIntegrity& integrity, std::vector<Finding>& findings) {
  if (integrity.Bad > 0)
    findings.push_back(
        FindingOf(use, std::to_string(integrity.Bad) + " of " + std::to_string(integrity.Frames) +
                           " encrypted frames are not as they were written, the first of them edit unit " +
                           std::to_string(integrity.FirstBad) + ": " + integrity.Reason));
  if (integrity.HasStandardSequence) return;
  Finding finding = FindingOf(use, "The frames of the two eyes are numbered by another rule than the standard's.");
  finding.Level = Severity::Warning;
  finding.Advice.clear();
  findings.push_back(std::move(finding));
}

}  // namespace

VerifiedFiles FindInFrames(const ShowOutline& outline, const Sigil::KeyRing& keys, std::vector<Finding>& findings,
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
