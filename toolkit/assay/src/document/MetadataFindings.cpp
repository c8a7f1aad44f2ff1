// SPDX-License-Identifier: BSD-3-Clause
#include "Composition.h"
#include "PackageFindings.h"

#include "base/LanguageSubtags.h"
#include "base/LanguageTag.h"
#include "base/Text.h"

#include <algorithm>
#include <utility>

namespace Assay {
namespace {

constexpr char AreaScope[] = "http://www.smpte-ra.org/schemas/429-16/2014/CPL-Metadata#scope/release-territory/UNM49";
// How a package says that it follows RDD 52.
constexpr char ProfileScope[] = "http://isdcf.com/ns/cplmd/app";
constexpr char ProfileExtension[] = "Application";
constexpr char ProfileProperty[] = "DCP Constraints Profile";
constexpr char ProfileValue[] = "SMPTE-RDD-52:2020-Bv2.1";

/// What the composition says of its metadata: null, with the finding, unless it stands once, in the first reel.
const Node* TheMetadata(const Composition& composition, FindingList& findings) {
  std::vector<std::pair<const Reel*, const Node*>> all;
  for (const Reel& reel : composition.Reels)
    for (const ReelAsset& asset : reel.Assets)
      if (asset.Role == AssetRole::Metadata) all.emplace_back(&reel, asset.Element);
  if (all.size() == 1 && all.front().first->Number == 1) return all.front().second;
  const Reel* reel = all.empty() ? &composition.Reels.front() : all.back().first;
  Add(findings, Finding(FindingID::MetaMissing), composition.At(all.empty() ? reel->Element : all.back().second, reel),
      "once, in the first reel",
      all.empty() ? "none" : std::to_string(all.size()) + ", in reel " + std::to_string(reel->Number));
  return nullptr;
}

bool HasProfile(const Node& metadata) {
  const Node* list = metadata.Child("ExtensionMetadataList");
  if (list == nullptr) return false;
  for (const Node& extension : list->Children) {
    const std::string* scope = extension.Find("scope");
    const Node* properties = extension.Child("PropertyList");
    if (scope == nullptr || *scope != ProfileScope || TextOf(extension.Child("Name")) != ProfileExtension) continue;
    if (properties == nullptr) continue;
    for (const Node& property : properties->Children)
      if (TextOf(property.Child("Name")) == ProfileProperty && TextOf(property.Child("Value")) == ProfileValue)
        return true;
  }
  return false;
}

class MetadataCheck {
 public:
  MetadataCheck(const Composition& composition, const Node& metadata, FindingList& findings)
      : m_Composition(composition), m_Metadata(metadata), m_Findings(findings) {}

  void Run() {
    const Node* title = m_Metadata.Child("FullContentTitleText");
    if (title != nullptr && TextOf(title).empty()) Say(FindingID::MetaTitle, title);
    if (m_Metadata.Child("VersionNumber") == nullptr) Say(FindingID::MetaVersion, &m_Metadata);
    FindActiveArea();
    FindLanguages();
    FindLuminance();
    if (!HasProfile(m_Metadata)) Say(FindingID::MetaExtension, &m_Metadata);
  }

 private:
  void Say(FindingID id, const Node* node, const std::string& expected = {}, const std::string& found = {}) {
    Add(m_Findings, Finding(id), m_Composition.At(node, &m_Composition.Reels.front()), expected, found);
  }

  void FindActiveArea() {
    const Node* stored = m_Metadata.Child("MainPictureStoredArea");
    const Node* active = m_Metadata.Child("MainPictureActiveArea");
    if (stored == nullptr || active == nullptr) return;
    for (const char* side : {"Width", "Height"}) {
      const auto size = CountOf(active->Child(side));
      const auto most = CountOf(stored->Child(side));
      if (!size || !most || (*size % 2 == 0 && *size <= *most)) continue;
      return Say(FindingID::MetaActiveArea, active, "even, and at most " + std::to_string(*most),
                 std::string(side) + ' ' + std::to_string(*size));
    }
  }

  void FindLanguages() {
    const Node* list = m_Metadata.Child("MainSubtitleLanguageList");
    for (const std::string_view tag : Words(TextOf(list)))
      if (HasForm(ValueForm::Language, tag) && (!IsLanguageTag(tag) || !UnknownSubtag(tag).empty()))
        Say(FindingID::MetaLanguage, list, "a language tag", Quoted(tag));
    const Node* territory = m_Metadata.Child("ReleaseTerritory");
    if (territory == nullptr) return;
    const std::string* scope = territory->Find("scope");
    const std::string_view region = TextOf(territory);
    const bool is_number = region.size() == 3 && std::ranges::all_of(region, IsDigit);
    if ((scope == nullptr || *scope == AreaScope) && !is_number)
      Say(FindingID::MetaLanguage, territory, "three digits of UN M.49, such as 001", Quoted(region));
  }

  void FindLuminance() {
    const Node* luminance = m_Metadata.Child("Luminance");
    const std::string* units = luminance == nullptr ? nullptr : luminance->Find("units");
    if (units == nullptr || !HasForm(ValueForm::PositiveDecimal, luminance->Text)) return;
    const bool is_metric = Trim(*units) == "candela-per-square-metre";
    const auto [value, is_more] = HundredthsOf(TextOf(luminance));
    const ui64_t least = is_metric ? 1'000 : 300;
    const ui64_t most = is_metric ? 5'500 : 1'600;
    if (value < least || value > most || (value == most && is_more))
      Say(FindingID::MetaLuminance, luminance, is_metric ? "10 to 55 cd/m2" : "3 to 16 foot-lambert",
          Quoted(TextOf(luminance)));
  }

  /// A positive decimal in whole hundredths, and whether it has more behind them.
  static std::pair<ui64_t, bool> HundredthsOf(std::string_view text) {
    constexpr ui64_t Largest = 1'000'000;
    ui64_t value = 0;
    int decimals = -1;
    bool is_more = false;
    for (const char c : text) {
      if (c == '.')
        decimals = 0;
      else if (IsDigit(c) && decimals < 2) {
        value = std::min(value * 10 + static_cast<ui64_t>(c - '0'), Largest);
        if (decimals >= 0) ++decimals;
      } else if (c != '0' && c != '+')
        is_more = true;
    }
    for (decimals = std::max(decimals, 0); decimals < 2; ++decimals) value = std::min(value * 10, Largest);
    return {value, is_more};
  }

  const Composition& m_Composition;
  const Node& m_Metadata;
  FindingList& m_Findings;
};

}  // namespace

void FindInMetadata(const Composition& composition, FindingList& findings) {
  if (composition.IsInterop() || composition.Reels.empty()) return;
  if (const Node* metadata = TheMetadata(composition, findings)) MetadataCheck(composition, *metadata, findings).Run();
}

}  // namespace Assay
