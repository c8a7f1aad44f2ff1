// SPDX-License-Identifier: BSD-3-Clause
#include "TextUse.h"

#include "base/LanguageNames.h"
#include "base/LanguageSubtags.h"
#include "base/Text.h"
#include "document/PackageFindings.h"
#include "document/TitleConvention.h"

#include <algorithm>
#include <set>
#include <utility>

namespace Assay {
namespace {

constexpr double LeastBefore = 4;  // seconds of a composition without text

std::string RateText(const QUIRE::Rational& rate) {
  return std::to_string(rate.Numerator) + ' ' + std::to_string(rate.Denominator);
}

double Seconds(i64_t units, const QUIRE::Rational& rate) {
  return static_cast<double>(units) * rate.Denominator / rate.Numerator;
}

/// A text where it is played.
struct TextUse {
  const AssetFile* Asset = nullptr;
  const TextFile* Text = nullptr;  // read
  size_t Index = 0;                // among the texts of its role in the reel
  double ReelStart = 0;            // seconds from the composition's

  [[nodiscard]] AssetRole Role() const { return Asset->Asset->Role; }
};

class TextUses {
 public:
  TextUses(const CompositionFiles& composition, TextFiles& texts, FindingList& findings)
      : m_Composition(composition), m_Texts(texts), m_Findings(findings) {}

  void Run() {
    for (const AssetFile& asset : m_Composition.Assets)
      if (asset.Asset->IsText()) Look(asset);
    for (const TextUse& use : m_Uses) LookAtUse(use);
    FindFirst(AssetRole::Subtitle);
    FindFirst(AssetRole::Caption);
    FindLanguages();
    FindTitle();
  }

 private:
  void Look(const AssetFile& asset) {
    const TextFile* text = m_Texts.Read(asset);
    if (text == nullptr) return;
    m_Texts.Tell(asset, m_Findings);
    FindFlavour(asset, *text);
    if (!text->IsRead) return;
    TextUse& use = m_Uses.emplace_back();
    use.Asset = &asset;
    use.Text = text;
    for (const AssetFile& other : m_Composition.Assets) {
      if (&other == &asset) break;
      if (other.Reel == asset.Reel && other.Asset->Role == asset.Asset->Role) ++use.Index;
    }
    use.ReelStart = StartOf(*asset.Reel);
  }

  [[nodiscard]] double StartOf(const Reel& reel) const {
    double start = 0;
    for (const Reel& earlier : m_Composition.Composition->Reels) {
      if (&earlier == &reel) break;
      start += SecondsOf(earlier);
    }
    return start;
  }

  /// The place of an asset in the composition; with `child` the line of its element of that name, where it has one.
  [[nodiscard]] FindingPlace Here(const AssetFile& asset, const char* child = nullptr) const {
    const Node* element = child == nullptr ? nullptr : asset.Asset->Element->Child(child);
    return m_Composition.Composition->At(element == nullptr ? asset.Asset->Element : element, asset.Reel, asset.Asset);
  }

  void FindFlavour(const AssetFile& asset, const TextFile& text) {
    const bool is_interop = m_Composition.Composition->IsInterop();
    const bool is_track_file = asset.File != nullptr;
    if (is_track_file && asset.File->As<QUIRE::TimedText::TimedTextDescriptor>() == nullptr) return;  // told elsewhere
    const bool has_other_document = text.IsRead && (text.Head.DCPFormat == Cairn::DFT_Interop) != is_interop;
    if (is_track_file != is_interop && !has_other_document) return;
    const auto name = [](bool interop, bool track_file) {
      return std::string(interop ? "Interop" : "SMPTE") + (track_file ? " text in a track file" : " document");
    };
    const bool is_interop_text = text.IsRead ? text.Head.DCPFormat == Cairn::DFT_Interop : !is_track_file;
    Add(m_Findings, Finding(FindingID::TextFlavour), Here(asset), name(is_interop, !is_interop),
        name(is_interop_text, is_track_file));
  }

  /// A place in the text, of its use in the composition.
  template <class WhereT>
  [[nodiscard]] FindingPlace At(const TextUse& use, const WhereT& where) const {
    FindingPlace place = use.Text->At(where);
    const FindingPlace here = Here(*use.Asset);
    place.Composition = here.Composition;
    place.CompositionTitle = here.CompositionTitle;
    place.Reel = here.Reel;
    place.Asset = here.Asset;
    return place;
  }

  void LookAtUse(const TextUse& use) {
    FindID(use);
    FindReel(use);
    FindRate(use);
    FindOverrun(use);
    FindPictures(use);
    FindOwnLanguage(use);
  }

  void FindID(const TextUse& use) {
    const auto& id = use.Text->Head.ID;
    const auto& asset = use.Asset->Asset->ID;
    if (use.Text->IsInTrackFile || !id.IsPresent() || !asset || id.Value == *asset) return;
    Add(m_Findings, Finding(FindingID::TextID), At(use, id.Line), asset->EncodeString(), id.Value.EncodeString());
  }

  void FindReel(const TextUse& use) {
    const auto& number = use.Text->Head.ReelNumber;
    if (number.IsPresent() && number.Value != use.Asset->Reel->Number)
      Add(m_Findings, Finding(FindingID::TextReel), At(use, number.Line), std::to_string(use.Asset->Reel->Number),
          std::to_string(number.Value));
  }

  void FindRate(const TextUse& use) {
    const auto& rate = use.Text->Head.EditRate;
    const bool is_told = std::ranges::any_of(use.Text->Findings,
                                             [](const Finding& finding) { return finding.ID == FindingID::TextRate; });
    if (!rate.IsPresent() || is_told) return;
    const ReelAsset* picture = use.Asset->Reel->Find(AssetRole::Picture);
    for (const ReelAsset* asset : {use.Asset->Asset, picture})
      if (asset != nullptr && asset->EditRate && !AreEqual(*asset->EditRate, rate.Value))
        return Add(m_Findings, Finding(FindingID::TextRate), At(use, rate.Line),
                   RateText(*asset->EditRate) + (asset == picture ? " of the picture" : " of the composition"),
                   RateText(rate.Value));
  }

  void FindOverrun(const TextUse& use) {
    const ReelAsset& asset = *use.Asset->Asset;
    if (!use.Text->Last || !asset.Duration || !asset.EditRate) return;
    const auto end = static_cast<double>(use.Text->Head.EditUnits(use.Text->Last->Time, *asset.EditRate));
    const double reel_end = static_cast<double>(asset.Entry.value_or(0)) + static_cast<double>(*asset.Duration);
    if (end > reel_end)
      Add(m_Findings, Finding(FindingID::TextOverrun), At(use, *use.Text->Last),
          std::to_string(static_cast<ui64_t>(reel_end)) + " edit units at most",
          std::to_string(static_cast<ui64_t>(end)));
  }

  void FindPictures(const TextUse& use) {
    for (const AssetFile& other : m_Composition.Assets) {
      const auto* picture =
          other.Reel == use.Asset->Reel && other.IsOpen() ? other.File->As<QUIRE::JP2K::PictureDescriptor>() : nullptr;
      if (picture == nullptr) continue;
      const auto& widest = use.Text->Widest;
      const auto& tallest = use.Text->Tallest;
      const bool is_wide = widest && widest->Width > picture->StoredWidth;
      const bool is_tall = tallest && tallest->Height > picture->StoredHeight;
      if (!is_wide && !is_tall) return;
      const TextPicture& large = is_wide ? *widest : *tallest;
      const auto size = [](ui32_t width, ui32_t height) {
        return std::to_string(width) + 'x' + std::to_string(height);
      };
      return Add(m_Findings, Finding(FindingID::TextImageMissing, FindingClass::Warning), At(use, large.At),
                 size(picture->StoredWidth, picture->StoredHeight) + " at most", size(large.Width, large.Height));
    }
  }

  /// What the composition says of a text's language, against what the text says.
  void FindOwnLanguage(const TextUse& use) {
    const auto& language = use.Text->Head.Language;
    const std::string said = LanguageTagOf(use.Asset->Asset->Language);
    const std::string own = language.IsPresent() ? LanguageTagOf(language.Value) : std::string();
    if (said.empty() || own.empty() || CanBeSameLanguage(said, own)) return;
    Add(m_Findings, Finding(FindingID::ReelTextLanguage), Here(*use.Asset, "Language"),
        Quoted(language.Value) + " as in the text", Quoted(use.Asset->Asset->Language));
  }

  /// A text as it is seen first.
  struct FirstText {
    const TextUse* Use = nullptr;
    const TextSpan* Span = nullptr;
    double Seconds = 0;   // of the composition
    double EditUnit = 0;  // seconds
  };

  /// What a text shows first of what is played of it; without a span where it shows nothing.
  static FirstText FirstOf(const TextUse& use) {
    const ReelAsset& asset = *use.Asset->Asset;
    const QUIRE::Rational rate = asset.EditRate.value_or(use.Text->EditRate);
    constexpr ui64_t Most = 0xFFFF'FFFF;
    const auto entry = static_cast<i64_t>(std::min(asset.Entry.value_or(0), Most));
    const i64_t end = entry + static_cast<i64_t>(std::min(asset.Duration.value_or(Most), Most));
    for (const TextSpan& span : use.Text->Shown) {
      const i64_t begin = std::max(use.Text->Head.EditUnits(span.Begin.Time, rate), entry);
      if (begin >= end) break;
      if (use.Text->Head.EditUnits(span.End, rate) > begin)
        return {&use, &span, use.ReelStart + Seconds(begin - entry, rate), Seconds(1, rate)};
    }
    return {};
  }

  void FindFirst(AssetRole role) {
    FirstText earliest;
    for (const TextUse& use : m_Uses) {
      const FirstText first = use.Role() == role ? FirstOf(use) : FirstText();
      if (first.Span != nullptr && (earliest.Span == nullptr || first.Seconds < earliest.Seconds)) earliest = first;
    }
    // Lengths of reels add up to within half an edit unit.
    if (earliest.Span == nullptr || earliest.Seconds > LeastBefore - earliest.EditUnit / 2) return;
    Add(m_Findings, Finding(FindingID::TextFirst), At(*earliest.Use, earliest.Span->Begin), "4 seconds at least",
        std::to_string(static_cast<i64_t>(earliest.Seconds * 1000)) + " ms");
  }

  /// Texts of one place in all reels are of one language.
  void FindLanguages() {
    std::map<std::pair<AssetRole, size_t>, std::string> languages;
    for (const TextUse& use : m_Uses) {
      const auto& language = use.Text->Head.Language;
      if (use.Text->Head.DCPFormat != Cairn::DFT_DCI_SMPTE || !language.IsPresent() || language.Value.empty()) continue;
      const auto [known, is_new] = languages.try_emplace({use.Role(), use.Index}, ToLower(language.Value));
      if (!is_new && known->second != ToLower(language.Value))
        return Add(m_Findings, Finding(FindingID::TextLanguage), At(use, language.Line), Quoted(known->second),
                   Quoted(language.Value));
    }
  }

  /// The title names languages by two letters as tags do, and a few by letters of its own, which are not compared.
  void FindTitle() {
    const std::vector<std::string> claimed = ReadTitle(m_Composition.Composition->Title).SubtitleLanguages;
    const bool can_compare = std::ranges::all_of(
        claimed, [](const std::string& code) { return code.size() == 2 && UnknownSubtag(code).empty(); });
    if (claimed.empty() || !can_compare) return;
    for (const TextUse& use : m_Uses) {
      const auto& language = use.Text->Head.Language;
      const std::string tag = language.IsPresent() ? LanguageTagOf(language.Value) : std::string();
      const std::string primary = tag.substr(0, tag.find('-'));
      const bool is_norwegian = primary == "nb" || primary == "nn";
      const bool is_claimed = std::ranges::any_of(
          claimed, [&](const std::string& code) { return ToLower(code) == primary || (is_norwegian && code == "NO"); });
      if (use.Role() != AssetRole::Subtitle || primary.size() != 2 || is_claimed) continue;
      const Node* title = m_Composition.Composition->Root().Child("ContentTitleText");
      return Add(m_Findings, Finding(FindingID::TitleSubtitle), m_Composition.Composition->At(title),
                 "subtitles in " + claimed.front(), Quoted(language.Value));
    }
  }

  const CompositionFiles& m_Composition;
  TextFiles& m_Texts;
  FindingList& m_Findings;
  std::vector<TextUse> m_Uses;
};

}  // namespace

void FindInTexts(const CompositionFiles& composition, TextFiles& texts, FindingList& findings) {
  TextUses(composition, texts, findings).Run();
}

}  // namespace Assay
