// SPDX-License-Identifier: BSD-3-Clause
#include "ShowFindings.h"

#include "TextForms.h"

#include <algorithm>
#include <array>

namespace {

// Rates that D-Cinema equipment plays (ST 428-11, 428-21).
constexpr std::array UsualRates = {24, 25, 30, 48, 50, 60, 96, 100, 120};

bool is_usual(const QUIRE::Rational& rate) {
  return rate.Denominator == 1 && std::find(UsualRates.begin(), UsualRates.end(), rate.Numerator) != UsualRates.end();
}

std::string name_of(const OutlineComposition& composition) {
  return composition.Title.empty() ? composition.ID.EncodeString() : composition.Title;
}

/// Looks one composition through.
class CompositionFindings {
 public:
  CompositionFindings(const OutlineComposition& composition, std::vector<Finding>& findings)
      : m_Composition(composition), m_Findings(findings) {}

  void Collect() {
    if (!m_Composition.Problem.empty()) {
      Finding& finding = Add(m_Composition.IsMissing ? Severity::Missing : Severity::Error, m_Composition.Problem);
      finding.AssetType = "composition";
      finding.AssetID = m_Composition.ID.EncodeString();
      finding.File = m_Composition.Path;
      return;
    }
    for (const OutlineReel& reel : m_Composition.Reels) {
      ++m_Reel;
      CheckReel(reel);
    }
    m_Reel = 0;
    CheckWhole();
  }

 private:
  Finding& Add(Severity severity, const std::string& message) {
    Finding& finding = m_Findings.emplace_back();
    finding.Level = severity;
    finding.Message = message;
    finding.Composition = name_of(m_Composition);
    finding.Reel = m_Reel;
    return finding;
  }

  Finding& Add(Severity severity, const std::string& message, const OutlineAsset& asset) {
    Finding& finding = Add(severity, message);
    finding.AssetType = AssetKindName(asset.Kind);
    finding.AssetID = asset.Asset.AssetID.EncodeString();
    if (asset.Found) finding.File = asset.Found->Info.RealFilename;
    return finding;
  }

  void CheckReel(const OutlineReel& reel) {
    if (reel.First(AssetKind::Picture) == nullptr) Add(Severity::Error, "The reel has no picture.");
    for (const OutlineAsset& asset : reel.Assets) {
      CheckPlace(asset);
      CheckLength(asset);
      if (!(asset.Asset.EditRate == m_Composition.EditRate)) {
        Finding& finding = Add(Severity::Error, "The edit rate is not the composition's.", asset);
        finding.Expected = RateText(m_Composition.EditRate);
        finding.Found = RateText(asset.Asset.EditRate);
      }
    }
  }

  void CheckPlace(const OutlineAsset& asset) {
    if (!asset.Found) {
      Add(Severity::Missing, "No store has this asset.", asset);
      return;
    }
    const Cairn::AssetRecord& record = *asset.Found;
    for (const std::string& reason : record.Reasons()) {
      const bool is_missing = (record.Problems & Cairn::AP_MISSING_FILE) != 0;
      const bool is_fatal = (record.Problems & Cairn::FatalAssetProblems) != 0;
      const Severity severity = is_missing ? Severity::Missing : is_fatal ? Severity::Error : Severity::Warning;
      Finding& finding = Add(severity, reason, asset);
      if ((record.Problems & Cairn::AP_WRONG_SIZE) == 0 || !record.HasListedSize) continue;
      finding.Expected = std::to_string(record.ListedSize) + " bytes";
      finding.Found = std::to_string(record.Info.FileSize) + " bytes";
    }
    const Cairn::SHA1& stated = asset.Asset.Digest;
    if (stated.HasValue() && record.Info.Digest.HasValue() && stated != record.Info.Digest) {
      Finding& finding = Add(Severity::Error, "The composition states another digest than the packing list.", asset);
      finding.Expected = stated.EncodeBase64();
      finding.Found = record.Info.Digest.EncodeBase64();
    }
  }

  void CheckLength(const OutlineAsset& asset) {
    const Ferro::ui64_t end = Ferro::ui64_t{asset.Asset.EntryPoint} + asset.Asset.Duration;
    if (end <= asset.Asset.IntrinsicDuration) return;
    Finding& finding = Add(Severity::Warning, "The composition plays more of the asset than it says there is.", asset);
    finding.Expected = std::to_string(end) + " edit units";
    finding.Found = std::to_string(asset.Asset.IntrinsicDuration) + " edit units";
  }

  void CheckWhole() {
    const auto lacks_sound = [](const OutlineReel& reel) { return reel.First(AssetKind::Sound) == nullptr; };
    const auto& reels = m_Composition.Reels;
    if (!reels.empty() && std::all_of(reels.begin(), reels.end(), lacks_sound))
      Add(Severity::Warning, "The composition has no sound: some equipment stops there.");
    else if (std::any_of(reels.begin(), reels.end(), lacks_sound))
      Add(Severity::Warning, "Some reels have no sound and will play silence.");
    if (!reels.empty() && !is_usual(m_Composition.EditRate))
      Add(Severity::Warning, "The edit rate is unusual: not all equipment plays it.").Found =
          RateText(m_Composition.EditRate);
    const bool encrypted = std::any_of(reels.begin(), reels.end(), [](const OutlineReel& reel) {
      return std::any_of(reel.Assets.begin(), reel.Assets.end(),
                         [](const OutlineAsset& asset) { return asset.Asset.KeyID.HasValue(); });
    });
    if (encrypted) Add(Severity::Warning, "The composition is encrypted: it plays only with its keys.");
  }

  const OutlineComposition& m_Composition;
  std::vector<Finding>& m_Findings;
  Ferro::ui32_t m_Reel = 0;
};

}  // namespace

const char* SeverityName(Severity severity) {
  switch (severity) {
    case Severity::Warning:
      return "warning";
    case Severity::Missing:
      return "missing";
    case Severity::Error:
      return "error";
  }
  return "";
}

ExitCode ExitCodeFor(const std::vector<Finding>& findings) {
  const auto has = [&](Severity severity) {
    return std::any_of(findings.begin(), findings.end(), [&](const Finding& f) { return f.Level == severity; });
  };
  if (has(Severity::Error)) return NotPlayable;
  return has(Severity::Missing) ? AssetsMissing : Fine;
}

std::vector<Finding> FindingsOf(const ShowOutline& outline) {
  std::vector<Finding> findings;
  for (const std::string& problem : outline.Problems()) findings.emplace_back().Message = problem;
  const OutlineComposition* previous = nullptr;
  for (const OutlineComposition& composition : outline.Compositions()) {
    CompositionFindings(composition, findings).Collect();
    if (composition.Reels.empty()) continue;
    if (previous != nullptr && !(previous->EditRate == composition.EditRate)) {
      Finding& finding = findings.emplace_back();
      finding.Level = Severity::Warning;
      finding.Message = "The edit rate changes from the composition before: some projectors blank the screen.";
      finding.Composition = name_of(composition);
      finding.Expected = RateText(previous->EditRate);
      finding.Found = RateText(composition.EditRate);
    }
    previous = &composition;
  }
  return findings;
}

Json FindingToJson(const Finding& finding) {
  Json json{{"severity", SeverityName(finding.Level)}, {"message", finding.Message}};
  const auto add = [&](const char* key, const std::string& value) {
    if (!value.empty()) json[key] = value;
  };
  add("composition", finding.Composition);
  if (finding.Reel != 0) json["reel"] = finding.Reel;
  add("asset_type", finding.AssetType);
  add("asset_id", finding.AssetID);
  add("file", finding.File);
  add("expected", finding.Expected);
  add("found", finding.Found);
  return json;
}

std::string FindingText(const Json& finding) {
  const auto text = [&](const char* key) { return finding.value(key, std::string()); };
  std::string place = text("composition");
  if (finding.contains("reel")) place += ", reel " + std::to_string(finding["reel"].get<unsigned>());
  if (finding.contains("asset_type")) place += (place.empty() ? "" : ", ") + text("asset_type");

  std::string line = text("severity") + ": " + (place.empty() ? "" : place + ": ") + text("message");
  if (finding.contains("expected"))
    line += " Expected " + text("expected") + ", found " + text("found") + ".";
  else if (finding.contains("found"))
    line += " Found " + text("found") + ".";
  if (finding.contains("asset_id")) line += "\n    asset " + text("asset_id");
  if (finding.contains("file")) line += "\n    file  " + text("file");
  return line + '\n';
}
