// SPDX-License-Identifier: BSD-3-Clause
#include "CompositionFindings.h"

#include "TrackFileFacts.h"
#include "show/MappedPath.h"
#include "terminal/Interrupt.h"
#include "terminal/TextForms.h"

#include <algorithm>
#include <array>
#include <map>

namespace Tool {

namespace {

// Rates that D-Cinema equipment plays (ST 428-11, 428-21).
constexpr std::array UsualRates = {24, 25, 30, 48, 50, 60, 96, 100, 120};

constexpr char CopyAgain[] = "Copy the package again from its source.";
constexpr char AskAgain[] = "The package was made wrong: ask for a corrected one.";
constexpr char NameStore[] = "Copy the package that holds it, or name its folder with --store.";

bool IsUsual(const QUIRE::Rational& rate) {
  return rate.Denominator == 1 && std::find(UsualRates.begin(), UsualRates.end(), rate.Numerator) != UsualRates.end();
}

const char* ContentName(Cairn::FileType_t type) {
  switch (type) {
    case Cairn::FT_QUIRE_MPEG2_VES:
    case Cairn::FT_QUIRE_JP2K_J2C:
    case Cairn::FT_QUIRE_JP2K_J2C_S:
      return "picture";
    case Cairn::FT_QUIRE_PCM:
      return "sound";
    case Cairn::FT_QUIRE_TIMED_TEXT:
    case Cairn::FT_TI_SUBTITLE:
      return "text";
    case Cairn::FT_QUIRE_DCDATA:
    case Cairn::FT_QUIRE_ATMOS:
      return "auxiliary data";
    default:
      return "";
  }
}

std::string ContentName(AssetKind kind) {
  const bool is_text = kind == AssetKind::OnScreenText || kind == AssetKind::OffScreenText;
  return is_text ? "text" : AssetKindName(kind);
}

bool IsText(const OutlineAsset& asset) {
  return asset.Kind == AssetKind::OnScreenText || asset.Kind == AssetKind::OffScreenText;
}

std::string EditUnits(Ferro::ui64_t count) {
  return std::to_string(count) + " edit units";
}

const char* AdviceFor(const Cairn::AssetRecord& record) {
  const Ferro::ui32_t problems = record.Problems;
  if (!record.OpenFailure.empty()) return AllowReading;
  if ((problems & (Cairn::AP_BAD_PATH | Cairn::AP_SPLIT)) != 0) return AskAgain;
  return (problems & Cairn::FatalAssetProblems) != 0 ? CopyAgain : "";
}

class CompositionFindings {
 public:
  CompositionFindings(const OutlineComposition& composition, const Cairn::AssetStore& store, FindingMemory& memory,
                      std::vector<Finding>& findings)
      : m_Composition(composition), m_Store(store), m_Memory(memory), m_Findings(findings) {}

  void Collect() {
    if (!CheckDocument()) return;
    for (const OutlineReel& reel : m_Composition.Reels) {
      if (Interrupt::Requested()) return;
      ++m_Reel;
      if (reel.First(AssetKind::Picture) == nullptr) Add(Severity::Error, "The reel has no picture.").Advice = AskAgain;
      for (const OutlineAsset& asset : reel.Assets) CheckAsset(asset);
    }
    m_Reel = 0;
    CheckWhole();
  }

 private:
  Finding& Add(Severity severity, const std::string& message) {
    Finding& finding = m_Findings.emplace_back();
    finding.Level = severity;
    finding.Message = message;
    finding.Composition = CompositionName(m_Composition);
    finding.Reel = m_Reel;
    return finding;
  }

  Finding& Add(Severity severity, const std::string& message, const OutlineAsset& asset) {
    Finding& finding = Add(severity, message);
    finding.AssetType = AssetKindName(asset.Kind);
    finding.AssetID = asset.Asset.AssetID.EncodeString();
    if (asset.Found) finding.File = asset.Found->Info.RealFilename;
    if (severity == Severity::Error) finding.Advice = AskAgain;
    return finding;
  }

  // One sentence for each problem that a store sees of a file, and what the sizes are.
  void AddProblems(const Cairn::AssetRecord& record, const Finding& place) {
    const bool is_missing = (record.Problems & Cairn::AP_MISSING_FILE) != 0;
    const bool is_fatal = (record.Problems & Cairn::FatalAssetProblems) != 0;
    for (const std::string& reason : record.Reasons()) {
      Finding finding = place;
      finding.Level = is_missing ? Severity::Missing : is_fatal ? Severity::Error : Severity::Warning;
      finding.Message = reason;
      finding.Advice = AdviceFor(record);
      if (record.Info.RealFilename.empty()) finding.File = MappedPath(record);
      if ((record.Problems & Cairn::AP_WRONG_SIZE) != 0 && record.HasListedSize) {
        finding.Expected = std::to_string(record.ListedSize) + " bytes";
        finding.Found = std::to_string(record.Info.FileSize) + " bytes";
      }
      m_Findings.push_back(finding);
      if (is_fatal) return;  // the rest follows from it
    }
  }

  bool CheckDocument() {
    Finding place;
    place.Composition = CompositionName(m_Composition);
    place.AssetType = "composition";
    place.AssetID = m_Composition.ID.EncodeString();
    place.File = m_Composition.Path;
    // Why a document cannot be understood is known better from reading it.
    constexpr Ferro::ui32_t told = Cairn::FatalAssetProblems & ~Ferro::ui32_t{Cairn::AP_UNREADABLE};
    const auto& found = m_Composition.Found;
    if (found && ((found->Problems & told) != 0 || !found->OpenFailure.empty())) {
      AddProblems(*found, place);
      return false;
    }
    if (m_Composition.Problem.empty()) return true;
    place.Level = m_Composition.IsMissing ? Severity::Missing : Severity::Error;
    place.Message = m_Composition.Problem;
    place.Advice = m_Composition.IsMissing ? NameStore : CopyAgain;
    m_Findings.push_back(place);
    return false;
  }

  void CheckAsset(const OutlineAsset& asset) {
    if (!asset.Found) {
      Add(Severity::Missing, "No store has this asset.", asset).Advice = NameStore;
      return;
    }
    Finding place;
    place.Composition = CompositionName(m_Composition);
    place.Reel = m_Reel;
    place.AssetType = AssetKindName(asset.Kind);
    place.AssetID = asset.Asset.AssetID.EncodeString();
    place.File = asset.Found->Info.RealFilename;
    const bool is_usable = (asset.Found->Problems & Cairn::FatalAssetProblems) == 0;
    const size_t before = m_Findings.size();
    if (is_usable) CheckFile(asset);
    const auto is_error = [](const Finding& finding) { return finding.Level != Severity::Warning; };
    if (std::any_of(m_Findings.begin() + static_cast<std::ptrdiff_t>(before), m_Findings.end(), is_error)) return;
    if (!TellOfWrongPath(asset)) AddProblems(*asset.Found, place);
  }

  // Where the asset map leads nowhere but the file was found by what it says of itself, the path has to be told of.
  bool TellOfWrongPath(const OutlineAsset& asset) {
    const Cairn::AssetRecord& record = *asset.Found;
    if ((record.Problems & Cairn::AP_NOT_LISTED) == 0) return false;
    for (const Cairn::AssetRecord& other : m_Store.FindAsset(record.Info.ID)) {
      if (other.Package != record.Package || !other.Info.RealFilename.empty()) continue;
      const bool leaves = (other.Problems & Cairn::AP_BAD_PATH) != 0;
      Finding& finding = Add(
          Severity::Warning,
          std::string(leaves ? "The asset map's path leaves the package." : "The asset map's path leads to no file.") +
              " The file was found without it.",
          asset);
      finding.Expected = MappedPath(other);
      finding.Found = record.Info.RealFilename;
      finding.Advice = AskAgain;
      return true;
    }
    return false;
  }

  void CheckFile(const OutlineAsset& asset) {
    const Cairn::AssetRecord& record = *asset.Found;
    const std::string content = ContentName(record.Info.FileType);
    if (!content.empty() && content != ContentName(asset.Kind)) {
      Finding& finding = Add(Severity::Error, "The file holds another kind of essence.", asset);
      finding.Expected = ContentName(asset.Kind);
      finding.Found = content;
      return;
    }
    const Ferro::ui64_t end = Ferro::ui64_t{asset.Asset.EntryPoint} + asset.Asset.Duration;
    const auto last = static_cast<Ferro::ui32_t>(std::clamp<Ferro::ui64_t>(end, 1, 0xFFFFFFFF) - 1);
    const TrackFileFacts facts = ReadTrackFileFacts(record.Info.RealFilename, record.Info.FileType, last);
    if (!facts.Problem.empty()) {
      Add(Severity::Error, facts.Problem, asset).Advice = CopyAgain;
      return;
    }
    if (!CheckDigest(asset) || !CheckRate(asset, facts) || !CheckKey(asset, facts)) return;
    CheckLength(asset, facts, end);
    if (asset.Kind == AssetKind::Sound && !CheckSound(asset, facts)) return;
    CheckSameAsBefore(asset, facts);
    if (!facts.Remark.empty()) Add(Severity::Warning, "The track file is out of order: " + facts.Remark, asset);
    if (!facts.MissingResource.empty())
      Add(Severity::Warning, "A font or image of the text is missing: text may look wrong or not show.", asset).Found =
          "no " + facts.MissingResource;
  }

  bool CheckDigest(const OutlineAsset& asset) {
    const Cairn::SHA1& stated = asset.Asset.Digest;
    const Cairn::SHA1& listed = asset.Found->Info.Digest;
    if (!stated.HasValue() || stated == listed) return true;
    if (listed.HasValue()) {
      Finding& finding = Add(Severity::Error, "The composition states another digest than the packing list.", asset);
      finding.Expected = stated.EncodeBase64();
      finding.Found = listed.EncodeBase64();
    } else if (m_Memory.UnlistedPackages.insert(asset.Found->Package).second) {
      Finding& finding = m_Findings.emplace_back();
      finding.Message =
          "The packing list of this package is missing or damaged, so that nothing vouches for its files.";
      finding.Composition = CompositionName(m_Composition);
      finding.AssetType = "packing list";
      finding.File = asset.Found->Package;
      finding.Advice = CopyAgain;
    }
    return false;
  }

  // Every asset of a composition that has one wrong rate may differ from it: the first is told.
  bool CheckRate(const OutlineAsset& asset, const TrackFileFacts& facts) {
    const QUIRE::Rational& rate = m_Composition.EditRate;
    if (m_RateTold || rate.Numerator == 0) return true;
    const bool stated_differs = !(asset.Asset.EditRate == rate);
    if (!stated_differs && (!facts.HasLength || facts.EditRate == rate)) return true;
    m_RateTold = true;
    Finding& finding = Add(Severity::Error,
                           stated_differs ? "The edit rate is not the composition's: they must not be mixed."
                                          : "The file runs at another edit rate than the composition says.",
                           asset);
    finding.Expected = RateText(rate);
    finding.Found = RateText(stated_differs ? asset.Asset.EditRate : facts.EditRate);
    return false;
  }

  bool CheckKey(const OutlineAsset& asset, const TrackFileFacts& facts) {
    const Cairn::UUID& stated = asset.Asset.KeyID;
    if (facts.Encrypted && !stated.HasValue()) {
      Add(Severity::Error, "The file is encrypted, but the composition names no key: no key delivery fits.", asset);
      return false;
    }
    if (facts.Encrypted && stated != facts.KeyID) {
      Finding& finding =
          Add(Severity::Error, "The file is encrypted with another key than the composition names.", asset);
      finding.Expected = stated.EncodeString();
      finding.Found = facts.KeyID.EncodeString();
      return false;
    }
    if (!facts.Encrypted && stated.HasValue() && facts.HasLength)
      Add(Severity::Warning, "The composition names a key, but the file is not encrypted.", asset);
    return true;
  }

  // Text that ends early shows nothing from there on; all else is needed to its end.
  void CheckLength(const OutlineAsset& asset, const TrackFileFacts& facts, Ferro::ui64_t end) {
    const Ferro::ui32_t stated = asset.Asset.IntrinsicDuration;
    if (facts.HasLength && end > facts.Duration) {
      Finding& finding = Add(IsText(asset) ? Severity::Warning : Severity::Error,
                             "The composition plays beyond the end of the file.", asset);
      finding.Expected = EditUnits(end);
      finding.Found = EditUnits(facts.Duration);
    } else if (end > stated) {
      Finding& finding =
          Add(Severity::Warning, "The composition plays more of the asset than it says there is.", asset);
      finding.Expected = EditUnits(end);
      finding.Found = EditUnits(stated);
    } else if (facts.HasLength && stated != facts.Duration) {
      Finding& finding = Add(Severity::Warning, "The composition says that the file has another length.", asset);
      finding.Expected = EditUnits(stated);
      finding.Found = EditUnits(facts.Duration);
    }
  }

  bool CheckSound(const OutlineAsset& asset, const TrackFileFacts& facts) {
    const auto refuse = [&](const char* message, const char* expected, const std::string& found) {
      Finding& finding = Add(Severity::Error, message, asset);
      finding.Expected = expected;
      finding.Found = found;
      return false;
    };
    if (!(facts.SamplingRate == QUIRE::SampleRate_48k) && !(facts.SamplingRate == QUIRE::SampleRate_96k))
      return refuse("Cinemas cannot play sound with this sampling rate.", "48000 or 96000 Hz",
                    RateText(facts.SamplingRate) + " Hz");
    if (facts.SampleBits != 24)
      return refuse("Cinemas cannot play sound with samples of this size.", "24 bits",
                    std::to_string(facts.SampleBits) + " bits");
    if (facts.Channels == 0) return refuse("The sound has no channels.", "at least 1", "0");
    return true;
  }

  void CheckSameAsBefore(const OutlineAsset& asset, const TrackFileFacts& facts) {
    std::string now;
    if (asset.Kind == AssetKind::Picture)
      now = std::to_string(facts.Width) + "x" + std::to_string(facts.Height) + " pixels";
    if (asset.Kind == AssetKind::Sound)
      now = std::to_string(facts.Channels) + " channels at " + RateText(facts.SamplingRate) + " Hz";
    if (now.empty()) return;
    std::string& before = m_Before[asset.Kind];
    if (!before.empty() && before != now) {
      Finding& finding =
          Add(Severity::Warning, "The format changes from the reel before: some equipment stumbles.", asset);
      finding.Expected = before;
      finding.Found = now;
    }
    before = now;
  }

  void CheckWhole() {
    const auto lacks_sound = [](const OutlineReel& reel) { return reel.First(AssetKind::Sound) == nullptr; };
    const auto& reels = m_Composition.Reels;
    if (std::all_of(reels.begin(), reels.end(), lacks_sound))
      Add(Severity::Warning, "The composition has no sound: some equipment stops there.");
    else if (std::any_of(reels.begin(), reels.end(), lacks_sound))
      Add(Severity::Warning, "Some reels have no sound and will play silence.");
    if (m_Composition.EditRate.Numerator != 0 && !IsUsual(m_Composition.EditRate))
      Add(Severity::Warning, "The edit rate is unusual: not all equipment plays it.").Found =
          RateText(m_Composition.EditRate);
    const bool encrypted = std::any_of(reels.begin(), reels.end(), [](const OutlineReel& reel) {
      return std::any_of(reel.Assets.begin(), reel.Assets.end(),
                         [](const OutlineAsset& asset) { return asset.Asset.KeyID.HasValue(); });
    });
    if (encrypted) Add(Severity::Warning, "The composition is encrypted: it plays only with its keys.");
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
                       std::vector<Finding>& findings) {
  CompositionFindings(composition, store, memory, findings).Collect();
}

}  // namespace Tool
