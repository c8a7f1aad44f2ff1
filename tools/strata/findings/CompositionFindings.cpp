// SPDX-License-Identifier: BSD-3-Clause
#include "CompositionFindings.h"

#include "AssetFindings.h"
#include "show/TrackFileFacts.h"
#include "terminal/TextForms.h"

#include <algorithm>
#include <array>
#include <map>

namespace Tool {

namespace {

// Rates that D-Cinema equipment plays (ST 428-11, 428-21).
constexpr std::array UsualRates = {24, 25, 30, 48, 50, 60, 96, 100, 120};

bool IsUsual(const QUIRE::Rational& rate) {
  return rate.Denominator == 1 && std::find(UsualRates.begin(), UsualRates.end(), rate.Numerator) != UsualRates.end();
}

bool IsText(AssetKind kind) {
  return kind == AssetKind::OnScreenText || kind == AssetKind::OffScreenText;
}

/// What a track file or subtitle can be used for, all texts alike.
Assay::ReelUse ContentOf(Assay::ReelUse use) {
  return use == Assay::ReelUse::Caption ? Assay::ReelUse::Subtitle : use;
}

std::string EditUnits(Ferro::ui64_t count) {
  return std::to_string(count) + " edit units";
}

/// What keeps a track file from being used.
Finding FindingOf(const TrackFileFacts& facts) {
  Finding damaged(FindingID::FileDamaged);
  Finding text(FindingID::TextSchema);
  switch (facts.Problem) {
    case TrackFileProblem::None:
    case TrackFileProblem::NotATrackFile:
      damaged.Found = "no track file";
      return damaged;
    case TrackFileProblem::CannotBeOpened:
      damaged.Found = facts.Reason;
      return damaged;
    case TrackFileProblem::FrameUnreadable:
      damaged.Found = "edit unit " + std::to_string(facts.EditUnit) + " of the file: " + facts.Reason;
      return damaged;
    case TrackFileProblem::ResourceUnreadable:
      damaged.Found = "font or image " + facts.Resource + ": " + facts.Reason;
      return damaged;
    case TrackFileProblem::TextUnreadable:
    case TrackFileProblem::SubtitleUnreadable:
      text.Found = facts.Reason;
      return text;
    case TrackFileProblem::TextIsNotXML:
      text.Found = "no well-formed XML";
      return text;
  }
  return damaged;
}

class CompositionFindings {
 public:
  CompositionFindings(const OutlineComposition& composition, const Cairn::AssetStore& store, FindingMemory& memory,
                      FindingList& findings)
      : m_Composition(composition), m_Store(store), m_Memory(memory), m_Findings(findings) {}

  void Collect(const std::function<bool()>& go_on) {
    if (!CheckDocument()) return;
    for (const OutlineReel& reel : m_Composition.Reels) {
      if (go_on && !go_on()) return;
      ++m_Reel;
      if (reel.First(AssetKind::Picture) == nullptr) Add(FindingID::ReelPictureMissing);
      const size_t before = m_Findings.size();
      for (const OutlineAsset& asset : reel.Assets) CheckAsset(asset);
      if (!HasErrorSince(before)) CheckDurations(reel);
    }
    m_Reel = 0;
    CheckWhole();
  }

 private:
  Finding& Add(Finding finding) {
    finding.Place.Composition = m_Composition.ID;
    finding.Place.CompositionTitle = m_Composition.Title;
    finding.Place.Reel = m_Reel;
    return m_Findings.emplace_back(std::move(finding));
  }
  Finding& Add(FindingID id) { return Add(Finding(id)); }

  Finding& Add(Finding finding, const OutlineAsset& asset) {
    const std::string file = asset.Found ? asset.Found->Info.RealFilename : "";
    if (PathOf(finding.Place).empty() && !file.empty()) finding.Place = PlaceOf(file, asset.Found->Package);
    finding.Place.Asset = asset.Asset.AssetID;
    finding.Place.Use = UseOf(asset.Kind);
    return Add(std::move(finding));
  }
  Finding& Add(FindingID id, const OutlineAsset& asset) { return Add(Finding(id), asset); }

  void Add(FindingID id, const OutlineAsset& asset, const std::string& expected, const std::string& found) {
    Finding& finding = Add(id, asset);
    finding.Expected = expected;
    finding.Found = found;
  }

  bool CheckDocument() {
    // Why a document cannot be understood is known better from reading it.
    constexpr Ferro::ui32_t told = Cairn::FatalAssetProblems & ~Ferro::ui32_t{Cairn::AP_UNREADABLE};
    const auto& found = m_Composition.Found;
    if (found && ((found->Problems & told) != 0 || !found->OpenFailure.empty())) {
      const Finding finding = OfComposition(FindingsOfAsset(*found, m_Memory.Paths).front());
      const bool is_known = m_Composition.Problem == CompositionProblem::CannotBeRead &&
                            (finding.ID == FindingID::FileDamaged || m_Composition.Format == Cairn::DFT_IMF);
      if (!is_known) {
        AddDocument(finding);
        return false;
      }
    }
    if (found && m_Composition.Problem == CompositionProblem::None)
      for (const Finding& finding : FindingsOfAsset(*found, m_Memory.Paths))
        if (finding.ID != FindingID::PklUnlisted || !LacksPackingList(found->Package))
          AddDocument(OfComposition(finding));
    switch (m_Composition.Problem) {
      case CompositionProblem::None:
        return true;
      case CompositionProblem::Missing:
        AddDocument(Finding(FindingID::ShowCompositionMissing)).Found = m_Composition.ID.EncodeString();
        break;
      case CompositionProblem::FileMissing:
        AddDocument(Finding(FindingID::PklAssetMissing));
        break;
      case CompositionProblem::CannotBeRead:
        AddUnreadable();
        break;
      case CompositionProblem::HasNoReels:
        AddDocument(Finding(FindingID::CplNoReel));
        break;
      case CompositionProblem::TooLong:
        AddDocument(Finding(FindingID::CplSchema)).Found = "more edit units than can be counted";
        break;
    }
    return false;
  }

  void AddUnreadable() {
    Finding& finding = AddDocument(Finding(FindingID::CplSchema));
    const bool is_master = m_Composition.Format == Cairn::DFT_IMF;
    if (is_master) finding.Expected = "a digital cinema package";
    finding.Found = is_master ? "an IMF package, which cinema servers do not play" : m_Composition.Reason;
  }

  /// What the finding about a file is called where the file is the composition.
  static Finding OfComposition(const Finding& finding) {
    const bool is_id = finding.ID == FindingID::FileID;
    if (!is_id && finding.ID != FindingID::PklAssetHash) return finding;
    Finding of_composition(is_id ? FindingID::CplID : FindingID::CplHash);
    of_composition.Place = finding.Place;
    return of_composition;
  }

  Finding& AddDocument(Finding finding) {
    if (PathOf(finding.Place).empty())
      finding.Place = PlaceOf(m_Composition.Path, m_Composition.Found ? m_Composition.Found->Package : "");
    finding.Place.Asset = {};
    return Add(std::move(finding));
  }

  void CheckAsset(const OutlineAsset& asset) {
    if (!asset.Found) {
      Add(FindingID::CplAssetExternal, asset);
      return;
    }
    const bool is_usable = (asset.Found->Problems & Cairn::FatalAssetProblems) == 0;
    const size_t before = m_Findings.size();
    if (is_usable) CheckFile(asset);
    if (HasErrorSince(before)) return;
    if (CheckPath(asset)) AddProblems(asset);
  }

  [[nodiscard]] bool HasErrorSince(size_t before) const {
    return std::any_of(m_Findings.begin() + static_cast<std::ptrdiff_t>(before), m_Findings.end(),
                       [](const Finding& finding) { return SeverityOf(finding) > Severity::Warning; });
  }

  // Sound and data are as long as the picture, and so is Interop text; SMPTE text may end early (ST 429-2, 9.4).
  void CheckDurations(const OutlineReel& reel) {
    for (const OutlineAsset& asset : reel.Assets) {
      const bool may_differ = IsText(asset.Kind) && m_Composition.Format != Cairn::DFT_Interop;
      if (may_differ || asset.Asset.Duration == reel.Duration) continue;
      Add(FindingID::ReelDurations, asset, EditUnits(reel.Duration), EditUnits(asset.Asset.Duration));
    }
  }

  // Of problems that keep the asset from being used, only the first: the rest follows from it.
  void AddProblems(const OutlineAsset& asset) {
    for (const Finding& finding : FindingsOfAsset(*asset.Found, m_Memory.Paths)) {
      Add(finding, asset);
      if (SeverityOf(finding) > Severity::Warning) return;
    }
  }

  // Where the asset map leads nowhere but the file was found by what it says of itself, the path has to be told.
  bool CheckPath(const OutlineAsset& asset) {
    const Cairn::AssetRecord& record = *asset.Found;
    if ((record.Problems & Cairn::AP_NOT_LISTED) == 0) return true;
    for (const Cairn::AssetRecord& other : m_Store.FindAsset(record.Info.ID)) {
      if (other.Package != record.Package || !other.Info.RealFilename.empty()) continue;
      Finding& finding = Add(Finding(FindingID::AmPath, FindingClass::Warning), asset);
      finding.Expected = m_Memory.Paths.Of(other);
      finding.Found = record.Info.RealFilename;
      return false;
    }
    return true;
  }

  void CheckFile(const OutlineAsset& asset) {
    const Cairn::AssetRecord& record = *asset.Found;
    const Assay::ReelUse content = ContentOf(UseOf(record.Info.FileType));
    const Assay::ReelUse use = ContentOf(UseOf(asset.Kind));
    if (content != Assay::ReelUse::None && content != use)
      return Add(FindingID::ReelAssetKind, asset, Assay::ReelUseName(use), Assay::ReelUseName(content));
    const Ferro::ui64_t end = Ferro::ui64_t{asset.Asset.EntryPoint} + asset.Asset.Duration;
    const auto last = static_cast<Ferro::ui32_t>(std::clamp<Ferro::ui64_t>(end, 1, 0xFFFFFFFF) - 1);
    const TrackFileFacts facts = ReadTrackFileFacts(record.Info.RealFilename, record.Info.FileType, last);
    if (facts.Problem != TrackFileProblem::None) {
      Add(FindingOf(facts), asset);
      return;
    }
    if (!CheckDigest(asset) || !CheckRate(asset, facts) || !CheckKey(asset, facts)) return;
    CheckLength(asset, facts, end);
    if (asset.Kind == AssetKind::Sound && !CheckSound(asset, facts)) return;
    CheckSameAsBefore(asset, facts);
    if (facts.IsIncomplete) Add(FindingID::FileIncomplete, asset);
    if (!facts.MissingFont.empty()) Add(FindingID::TextFontMissing, asset, facts.MissingFont, "");
    if (!facts.MissingImage.empty()) Add(FindingID::TextImageMissing, asset, facts.MissingImage, "");
  }

  bool CheckDigest(const OutlineAsset& asset) {
    const Cairn::SHA1& stated = asset.Asset.Digest;
    const Cairn::SHA1& listed = asset.Found->Info.Digest;
    if (!stated.HasValue() || stated == listed) return true;
    if (listed.HasValue()) {
      Add(FindingID::ReelHash, asset, stated.EncodeBase64(), listed.EncodeBase64());
    } else if (LacksPackingList(asset.Found->Package)) {
      if (!m_Memory.UnlistedPackages.insert(asset.Found->Package).second) return false;
      Finding& finding = Add(FindingID::PklMissing);
      finding.Place.Reel = 0;
      finding.Place.Package = asset.Found->Package;
    }  // what is not listed is told of the file
    return false;
  }

  [[nodiscard]] bool LacksPackingList(const std::string& folder) const {
    const std::vector<Cairn::PackageRecord> packages = m_Store.Packages();
    const auto package = std::find_if(packages.begin(), packages.end(),
                                      [&](const Cairn::PackageRecord& other) { return other.Folder == folder; });
    return package == packages.end() || package->Has(Cairn::PP_NO_PACKING_LIST) ||
           package->Has(Cairn::PP_PACKING_LIST_UNREADABLE);
  }

  // Every asset of a composition that has one wrong rate may differ from it: the first is told.
  bool CheckRate(const OutlineAsset& asset, const TrackFileFacts& facts) {
    const QUIRE::Rational& rate = m_Composition.EditRate;
    if (m_RateTold || rate.Numerator == 0) return true;
    const bool stated_differs = !(asset.Asset.EditRate == rate);
    if (!stated_differs && (!facts.HasLength || facts.EditRate == rate)) return true;
    m_RateTold = true;
    Add(stated_differs ? FindingID::ReelEditRate : FindingID::ReelRateFile, asset, RateText(rate),
        RateText(stated_differs ? asset.Asset.EditRate : facts.EditRate));
    return false;
  }

  bool CheckKey(const OutlineAsset& asset, const TrackFileFacts& facts) {
    const Cairn::UUID& stated = asset.Asset.KeyID;
    if (!facts.Encrypted) {
      if (stated.HasValue() && facts.HasLength) Add(FindingID::ReelKeyNeedless, asset);
      return true;
    }
    if (stated == facts.KeyID && stated.HasValue()) return true;
    Finding& finding = Add(FindingID::ReelKeyMissing, asset);
    if (stated.HasValue()) finding.Expected = stated.EncodeString();
    finding.Found = facts.KeyID.EncodeString();
    return false;
  }

  void CheckLength(const OutlineAsset& asset, const TrackFileFacts& facts, Ferro::ui64_t end) {
    const Ferro::ui32_t stated = asset.Asset.IntrinsicDuration;
    if (facts.HasLength && end > facts.Duration)
      Add(FindingID::ReelEntryBeyond, asset, EditUnits(facts.Duration), EditUnits(end));
    else if (end > stated)
      Add(FindingID::ReelEntryBeyond, asset, EditUnits(stated), EditUnits(end));
    else if (facts.HasLength && stated != facts.Duration)
      Add(FindingID::ReelIntrinsic, asset, EditUnits(facts.Duration), EditUnits(stated));
  }

  bool CheckSound(const OutlineAsset& asset, const TrackFileFacts& facts) {
    const size_t before = m_Findings.size();
    if (!(facts.SamplingRate == QUIRE::SampleRate_48k) && !(facts.SamplingRate == QUIRE::SampleRate_96k))
      Add(FindingID::SoundRate, asset, "48000 or 96000 Hz", RateText(facts.SamplingRate) + " Hz");
    else if (facts.SampleBits != 24)
      Add(FindingID::SoundBits, asset, "24 bits", std::to_string(facts.SampleBits) + " bits");
    else if (facts.Channels == 0)
      Add(FindingID::SoundChannels, asset, "at least 1", "0");
    return m_Findings.size() == before;
  }

  void CheckSameAsBefore(const OutlineAsset& asset, const TrackFileFacts& facts) {
    const bool is_picture = asset.Kind == AssetKind::Picture;
    if (!is_picture && asset.Kind != AssetKind::Sound) return;
    const std::string now =
        is_picture ? std::to_string(facts.Width) + "x" + std::to_string(facts.Height) + " pixels"
                   : std::to_string(facts.Channels) + " channels at " + RateText(facts.SamplingRate) + " Hz";
    std::string& before = m_Before[asset.Kind];
    if (!before.empty() && before != now)
      Add(is_picture ? FindingID::PictureChanges : FindingID::SoundChanges, asset, before, now);
    before = now;
  }

  void CheckWhole() {
    const auto lacks_sound = [](const OutlineReel& reel) { return reel.First(AssetKind::Sound) == nullptr; };
    const auto& reels = m_Composition.Reels;
    if (std::all_of(reels.begin(), reels.end(), lacks_sound))
      Add(FindingID::CplSoundMissing);
    else if (std::any_of(reels.begin(), reels.end(), lacks_sound))
      Add(FindingID::ReelSoundSome);
    if (m_Composition.EditRate.Numerator != 0 && !IsUsual(m_Composition.EditRate))
      Add(FindingID::PictureRate).Found = RateText(m_Composition.EditRate);
  }

  const OutlineComposition& m_Composition;
  const Cairn::AssetStore& m_Store;
  FindingMemory& m_Memory;
  FindingList& m_Findings;
  Ferro::ui32_t m_Reel = 0;
  bool m_RateTold = false;
  std::map<AssetKind, std::string> m_Before;  // the format of the reel before
};

}  // namespace

std::string CompositionName(const OutlineComposition& composition) {
  return composition.Title.empty() ? composition.ID.EncodeString() : composition.Title;
}

void FindInComposition(const OutlineComposition& composition, const Cairn::AssetStore& store, FindingMemory& memory,
                       FindingList& findings, const std::function<bool()>& go_on) {
  CompositionFindings(composition, store, memory, findings).Collect(go_on);
}

}  // namespace Tool
