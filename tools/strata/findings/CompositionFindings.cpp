// SPDX-License-Identifier: BSD-3-Clause
#include "CompositionFindings.h"

#include "AssetFindings.h"
#include "show/DocumentFault.h"
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

/// What a track file or subtitle can be used for.
enum class Content { Unknown, Picture, Sound, Text, AuxData };

Content ContentOf(Cairn::FileType_t type) {
  switch (type) {
    case Cairn::FT_QUIRE_MPEG2_VES:
    case Cairn::FT_QUIRE_JP2K_J2C:
    case Cairn::FT_QUIRE_JP2K_J2C_S:
      return Content::Picture;
    case Cairn::FT_QUIRE_PCM:
      return Content::Sound;
    case Cairn::FT_QUIRE_TIMED_TEXT:
    case Cairn::FT_TI_SUBTITLE:
      return Content::Text;
    case Cairn::FT_QUIRE_DCDATA:
    case Cairn::FT_QUIRE_ATMOS:
      return Content::AuxData;
    default:
      return Content::Unknown;
  }
}

bool IsText(AssetKind kind) {
  return kind == AssetKind::OnScreenText || kind == AssetKind::OffScreenText;
}

Content ContentOf(AssetKind kind) {
  if (IsText(kind)) return Content::Text;
  return kind == AssetKind::Picture ? Content::Picture : kind == AssetKind::Sound ? Content::Sound : Content::AuxData;
}

const char* ContentName(Content content) {
  static constexpr std::array Names = {"unknown", "picture", "sound", "text", "auxiliary data"};
  return Names[static_cast<size_t>(content)];
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
      damaged.Message = "The file is no track file: it is damaged, or something else has its name.";
      return damaged;
    case TrackFileProblem::CannotBeOpened:
      damaged.Message = "The track file is damaged and cannot be opened: " + facts.Reason + '.';
      return damaged;
    case TrackFileProblem::FrameUnreadable:
      damaged.Message = "The track file is damaged or was cut short: edit unit " + std::to_string(facts.EditUnit) +
                        " cannot be read: " + facts.Reason + '.';
      return damaged;
    case TrackFileProblem::ResourceUnreadable:
      damaged.Message = "A font or image of the text cannot be read: " + facts.Resource + ": " + facts.Reason + '.';
      return damaged;
    case TrackFileProblem::TextUnreadable:
      text.Message = "The text in the track file cannot be read: " + facts.Reason + '.';
      return text;
    case TrackFileProblem::TextIsNotXML:
      text.Message = "The text in the track file is not a well-formed XML document.";
      return text;
    case TrackFileProblem::SubtitleUnreadable:
      text.Message = "The subtitle document cannot be read: " + facts.Reason + '.';
      return text;
  }
  return damaged;
}

class CompositionFindings {
 public:
  CompositionFindings(const OutlineComposition& composition, const Cairn::AssetStore& store, FindingMemory& memory,
                      std::vector<Finding>& findings)
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
    finding.Composition = CompositionName(m_Composition);
    finding.Reel = m_Reel;
    return m_Findings.emplace_back(std::move(finding));
  }
  Finding& Add(FindingID id) { return Add(Finding(id)); }

  Finding& Add(Finding finding, const OutlineAsset& asset) {
    finding.What = SubjectOf(asset.Kind);
    finding.AssetID = asset.Asset.AssetID;
    if (asset.Found && finding.File.empty()) finding.File = asset.Found->Info.RealFilename;
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
        AddDocument(Finding(FindingID::ShowCompositionMissing));
        break;
      case CompositionProblem::FileMissing:
        AddDocument(Finding(FindingID::PklAssetMissing)).Advice = NameStore;
        break;
      case CompositionProblem::CannotBeRead:
        AddUnreadable();
        break;
      case CompositionProblem::HasNoReels:
        AddDocument(Finding(FindingID::CplNoReel));
        break;
      case CompositionProblem::TooLong:
        AddDocument(Finding(FindingID::CplSchema)).Message = "The composition is longer than can be counted.";
        break;
    }
    return false;
  }

  void AddUnreadable() {
    Finding& finding = AddDocument(Finding(FindingID::CplSchema));
    const bool is_master = m_Composition.Format == Cairn::DFT_IMF;
    finding.Message = is_master ? IMFPackage : "The composition cannot be read: " + m_Composition.Reason + '.';
    if (is_master) finding.Advice = "Ask for a digital cinema package of it.";
  }

  /// What the finding about a file is called where the file is the composition.
  static Finding OfComposition(const Finding& finding) {
    const bool is_id = finding.ID == FindingID::FileID;
    if (!is_id && finding.ID != FindingID::PklAssetHash) return finding;
    Finding of_composition(is_id ? FindingID::CplID : FindingID::CplHash);
    of_composition.File = finding.File;
    return of_composition;
  }

  Finding& AddDocument(Finding finding) {
    finding.What = Subject::Composition;
    finding.AssetID = m_Composition.ID;
    if (finding.File.empty()) finding.File = m_Composition.Path;
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
                       [](const Finding& finding) { return finding.Level > Severity::Warning; });
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
      if (finding.Level > Severity::Warning) return;
    }
  }

  // Where the asset map leads nowhere but the file was found by what it says of itself, the path has to be told.
  bool CheckPath(const OutlineAsset& asset) {
    const Cairn::AssetRecord& record = *asset.Found;
    if ((record.Problems & Cairn::AP_NOT_LISTED) == 0) return true;
    for (const Cairn::AssetRecord& other : m_Store.FindAsset(record.Info.ID)) {
      if (other.Package != record.Package || !other.Info.RealFilename.empty()) continue;
      const bool leaves = (other.Problems & Cairn::AP_BAD_PATH) != 0;
      Finding& finding = Add(FindingID::AmPath, asset);
      finding.Level = Severity::Warning;
      finding.Message =
          std::string(leaves ? "The asset map's path leaves the package." : "The asset map's path leads to no file.") +
          " The file was found without it.";
      finding.Expected = m_Memory.Paths.Of(other);
      finding.Found = record.Info.RealFilename;
      return false;
    }
    return true;
  }

  void CheckFile(const OutlineAsset& asset) {
    const Cairn::AssetRecord& record = *asset.Found;
    const Content content = ContentOf(record.Info.FileType);
    if (content != Content::Unknown && content != ContentOf(asset.Kind))
      return Add(FindingID::ReelAssetKind, asset, ContentName(ContentOf(asset.Kind)), ContentName(content));
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
    if (!facts.MissingFont.empty()) Add(FindingID::TextFontMissing, asset).Found = "no " + facts.MissingFont;
    if (!facts.MissingImage.empty()) Add(FindingID::TextImageMissing, asset).Found = "no " + facts.MissingImage;
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
      finding.Reel = 0;
      finding.What = Subject::PackingList;
      finding.File = asset.Found->Package;
    } else {
      Finding& finding = Add(FindingID::PklUnlisted, asset);
      finding.Level = Severity::Error;
      finding.Message = "The composition states a digest of the file, but no packing list names it.";
      finding.Advice = AskAgain;
    }
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
    if (!stated.HasValue()) return false;
    finding.Message = "The file is encrypted with another key than the composition names.";
    finding.Expected = stated.EncodeString();
    finding.Found = facts.KeyID.EncodeString();
    return false;
  }

  // Text that ends early shows nothing from there on; all else is needed to its end.
  void CheckLength(const OutlineAsset& asset, const TrackFileFacts& facts, Ferro::ui64_t end) {
    const Ferro::ui32_t stated = asset.Asset.IntrinsicDuration;
    if (facts.HasLength && end > facts.Duration) {
      Add(FindingID::ReelEntryBeyond, asset, EditUnits(end), EditUnits(facts.Duration));
      if (IsText(asset.Kind)) m_Findings.back().Level = Severity::Warning;
    } else if (end > stated) {
      Add(FindingID::ReelEntryBeyond, asset, EditUnits(end), EditUnits(stated));
      m_Findings.back().Level = Severity::Warning;
      m_Findings.back().Message = "The composition plays more of the asset than it says there is.";
    } else if (facts.HasLength && stated != facts.Duration) {
      Add(FindingID::ReelIntrinsic, asset, EditUnits(stated), EditUnits(facts.Duration));
    }
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
  std::vector<Finding>& m_Findings;
  Ferro::ui32_t m_Reel = 0;
  bool m_RateTold = false;
  std::map<AssetKind, std::string> m_Before;  // the format of the reel before
};

}  // namespace

std::string CompositionName(const OutlineComposition& composition) {
  return composition.Title.empty() ? composition.ID.EncodeString() : composition.Title;
}

void FindInComposition(const OutlineComposition& composition, const Cairn::AssetStore& store, FindingMemory& memory,
                       std::vector<Finding>& findings, const std::function<bool()>& go_on) {
  CompositionFindings(composition, store, memory, findings).Collect(go_on);
}

}  // namespace Tool
