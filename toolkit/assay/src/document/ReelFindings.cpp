// SPDX-License-Identifier: BSD-3-Clause
#include "Composition.h"
#include "PackageFindings.h"

#include "base/LanguageNames.h"
#include "base/Text.h"

#include <algorithm>

namespace Assay {
namespace {

// Counts of edit units beyond this cannot be played; products with rates of 32 bits then fit 64.
constexpr ui64_t MaxEditUnits = 0xFFFF'FFFF;

bool IsShorterThanASecond(ui64_t units, const QUIRE::Rational& rate) {
  return units <= MaxEditUnits && units * static_cast<ui64_t>(rate.Denominator) < static_cast<ui64_t>(rate.Numerator);
}

/// Compares two lengths in seconds, each in its own units: below 0, 0, above 0 as in a difference.
int CompareLengths(const ReelAsset& first, const ReelAsset& second) {
  using Wide = long double;
  const auto seconds = [](const ReelAsset& asset) {
    return Wide(*asset.Duration) * asset.EditRate->Denominator / asset.EditRate->Numerator;
  };
  const ui64_t left = *first.Duration;
  const ui64_t right = *second.Duration;
  if (AreEqual(*first.EditRate, *second.EditRate)) return left < right ? -1 : left > right ? 1 : 0;
  const Wide difference = seconds(first) - seconds(second);
  return difference < 0 ? -1 : difference > 0 ? 1 : 0;
}

bool CanBeCompared(const ReelAsset& asset) {
  return asset.EditRate && asset.Duration && *asset.Duration <= MaxEditUnits;
}

/// What stands in one reel.
class ReelCheck {
 public:
  ReelCheck(const Composition& composition, const Reel& reel, const CompositionContext& context, FindingList& findings)
      : m_Composition(composition), m_Reel(reel), m_Context(context), m_Findings(findings) {}

  void Run() {
    const ReelAsset* picture = m_Reel.Find(AssetRole::Picture);
    if (picture == nullptr) Say(FindingID::ReelPictureMissing, m_Reel.Element, nullptr);
    FindShort();
    for (const ReelAsset& asset : m_Reel.Assets) {
      FindNumbers(asset);
      if (!asset.IsFile()) continue;
      FindEntry(asset);
      FindHash(asset);
      if (picture != nullptr && &asset != picture) FindAgainst(*picture, asset);
      if (asset.Role == AssetRole::Picture) FindFrameRate(asset);
      if (asset.IsText() && !m_Composition.IsInterop() && asset.Entry != 0U)
        Say(FindingID::ReelTextEntry, asset.Element, &asset, "0",
            asset.Entry ? std::to_string(*asset.Entry) : "no EntryPoint");
    }
  }

 private:
  void Say(FindingID id, const Node* node, const ReelAsset* asset, std::string expected = {}, std::string found = {}) {
    Add(m_Findings, Finding(id), m_Composition.At(node, &m_Reel, asset), std::move(expected), std::move(found));
  }

  /// Numbers that have the right form and cannot be counted all the same.
  void FindNumbers(const ReelAsset& asset) {
    if (asset.Role == AssetRole::Other) return;
    for (const char* name : {"IntrinsicDuration", "EntryPoint", "Duration"}) {
      const Node* element = asset.Element->Child(name);
      if (element != nullptr && HasForm(ValueForm::Long, element->Text) &&
          CountOf(element).value_or(MaxEditUnits + 1) > MaxEditUnits)
        Say(FindingID::CplSchema, element, &asset, "0 to " + std::to_string(MaxEditUnits),
            std::string(name) + " is " + Quoted(TextOf(element)));
    }
    const Node* rate = asset.Element->Child("EditRate");
    if (rate != nullptr && HasForm(ValueForm::Rational, rate->Text) && !asset.EditRate)
      Say(FindingID::CplSchema, rate, &asset, "two numbers above 0", "EditRate is " + Quoted(TextOf(rate)));
  }

  void FindShort() {
    for (const ReelAsset& asset : m_Reel.Assets) {
      if (!asset.IsFile() || !asset.EditRate || !asset.Duration || !asset.Intrinsic) continue;
      const ui64_t least = std::min(*asset.Duration, *asset.Intrinsic);
      if (!IsShorterThanASecond(least, *asset.EditRate)) continue;
      return Say(FindingID::ReelShort, asset.Element, &asset, "a second at least",
                 std::to_string(least) + " edit units at " + EditRateText(*asset.EditRate));
    }
  }

  void FindEntry(const ReelAsset& asset) {
    const ui64_t entry = asset.Entry.value_or(0);
    if (!asset.Intrinsic || !asset.Duration) return;
    if (entry <= *asset.Intrinsic && *asset.Duration <= *asset.Intrinsic - entry) return;
    Say(FindingID::ReelEntryBeyond, asset.Element, &asset, std::to_string(*asset.Intrinsic) + " edit units",
        std::to_string(*asset.Duration) + " from " + std::to_string(entry) + " on");
  }

  void FindHash(const ReelAsset& asset) {
    if (asset.Hash.empty()) {
      const FindingClass value = asset.KeyID ? FindingClass::Warning : FindingClass::Profile;
      Add(m_Findings, Finding(FindingID::ReelHashMissing, value), m_Composition.At(asset.Element, &m_Reel, &asset));
      return;
    }
    const ListAsset* listed =
        m_Context.Package == nullptr || !asset.ID ? nullptr : m_Context.Package->FindListed(*asset.ID);
    // An entry without digest is as bad as another one: servers that compare them refuse both.
    if (listed != nullptr && listed->Hash != asset.Hash)
      Say(FindingID::ReelHash, asset.Element->Child("Hash"), &asset,
          listed->Hash.empty() ? "none in the packing list" : Quoted(listed->Hash), Quoted(asset.Hash));
  }

  void FindAgainst(const ReelAsset& picture, const ReelAsset& asset) {
    if (!CanBeCompared(picture) || !CanBeCompared(asset)) return;
    if (asset.Role == AssetRole::Sound && !AreEqual(*picture.EditRate, *asset.EditRate))
      return Say(FindingID::ReelEditRate, asset.Element->Child("EditRate"), &asset, EditRateText(*picture.EditRate),
                 EditRateText(*asset.EditRate));
    const int difference = CompareLengths(asset, picture);
    if (difference == 0) return;
    const bool may_end_early = asset.IsText() && !m_Composition.IsInterop() && difference < 0;
    const FindingClass value = may_end_early ? FindingClass::Profile : FindingClass::Warning;
    Add(m_Findings, Finding(FindingID::ReelDurations, value), m_Composition.At(asset.Element, &m_Reel, &asset),
        std::to_string(*picture.Duration) + " edit units", std::to_string(*asset.Duration));
  }

  void FindFrameRate(const ReelAsset& picture) {
    const Node* element = picture.Element->Child("FrameRate");
    const auto rate = RateOf(element);
    if (!rate || !picture.EditRate) return;
    const i64_t eyes = picture.IsStereoscopic ? 2 : 1;
    if (i64_t{rate->Numerator} * picture.EditRate->Denominator ==
        eyes * picture.EditRate->Numerator * rate->Denominator)
      return;
    Say(FindingID::ReelFrameRate, element, &picture,
        (picture.IsStereoscopic ? "twice " : "") + EditRateText(*picture.EditRate), EditRateText(*rate));
  }

  const Composition& m_Composition;
  const Reel& m_Reel;
  const CompositionContext& m_Context;
  FindingList& m_Findings;
};

/// The first reel that has not what `reel` tells of the others; null where all are alike.
template <class FunctionT>
const Reel* FindOddReel(const Composition& composition, FunctionT value_of) {
  for (const Reel& reel : composition.Reels)
    if (value_of(reel) != value_of(composition.Reels.front())) return &reel;
  return nullptr;
}

void FindBetweenReels(const Composition& composition, FindingList& findings) {
  const auto say = [&](FindingID id, const Reel* reel) {
    if (reel != nullptr) Add(findings, Finding(id), composition.At(reel->Element, reel));
  };
  const auto has = [](AssetRole role) { return [role](const Reel& reel) { return reel.Find(role) != nullptr; }; };
  const auto is_encrypted = [](const Reel& reel) {
    return std::ranges::any_of(reel.Assets, [](const ReelAsset& asset) { return asset.KeyID.has_value(); });
  };
  if (!composition.Has(AssetRole::Sound))
    Add(findings, Finding(FindingID::CplSoundMissing), composition.At(composition.Root().Child("ReelList")));
  say(FindingID::ReelSoundSome, FindOddReel(composition, has(AssetRole::Sound)));
  say(FindingID::ReelSubtitleSome, FindOddReel(composition, has(AssetRole::Subtitle)));
  say(FindingID::ReelCaptionCount,
      FindOddReel(composition, [](const Reel& reel) { return reel.Count(AssetRole::Caption); }));
  say(FindingID::ReelEncryptionSome, FindOddReel(composition, is_encrypted));
}

/// The languages of texts, by their place among those of their kind, against those of the first reel that has one.
void FindTextLanguages(const Composition& composition, FindingList& findings) {
  std::map<std::pair<AssetRole, size_t>, std::string> languages;
  for (const Reel& reel : composition.Reels) {
    std::map<AssetRole, size_t> counts;
    for (const ReelAsset& asset : reel.Assets) {
      if (!asset.IsText()) continue;
      const std::string language = LanguageTagOf(asset.Language);
      if (language.empty() && !asset.Language.empty()) continue;  // a name that is not known
      const auto [known, is_new] = languages.try_emplace({asset.Role, counts[asset.Role]++}, language);
      if (!is_new && known->second != language)
        Add(findings, Finding(FindingID::ReelTextLanguage), composition.At(asset.Element, &reel, &asset),
            Quoted(known->second), Quoted(asset.Language));
    }
  }
}

}  // namespace

void FindInReels(const Composition& composition, const CompositionContext& context, FindingList& findings) {
  if (composition.Reels.empty()) return;
  for (const Reel& reel : composition.Reels) ReelCheck(composition, reel, context, findings).Run();
  FindBetweenReels(composition, findings);
  FindTextLanguages(composition, findings);
}

}  // namespace Assay
