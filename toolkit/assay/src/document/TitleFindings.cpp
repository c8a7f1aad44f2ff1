// SPDX-License-Identifier: BSD-3-Clause
#include "Composition.h"
#include "PackageFindings.h"
#include "TitleConvention.h"

#include "base/Text.h"
#include "form/DateTime.h"

#include <algorithm>
#include <cmath>

namespace Assay {
namespace {

constexpr double AspectTolerance = 0.02;  // ratios are written with two decimals, often cut
constexpr ui32_t Widest2K = 2048;

struct KindName {
  const char* Title;
  const char* Kind;
};

// What the convention calls the kinds of content. An episode and a promotion have no kind without a scope.
constexpr KindName KindNames[] = {
    {"FTR", "feature"}, {"TLR", "trailer"},       {"TSR", "teaser"},       {"TST", "test"}, {"RTG", "rating"},
    {"SHR", "short"},   {"ADV", "advertisement"}, {"XSN", "transitional"}, {"PSA", "psa"},  {"POL", "policy"},
};

class TitleCheck {
 public:
  TitleCheck(const Composition& composition, const CompositionContext& context, FindingList& findings)
      : m_Composition(composition),
        m_Context(context),
        m_Findings(findings),
        m_Element(composition.Root().Child("ContentTitleText")),
        m_Claims(ReadTitle(composition.Title)) {}

  void Run() {
    for (const TitleFault& fault : m_Claims.Faults)
      Say(FindingID::TitleForm, fault.Expected, fault.Field + ": " + fault.Found);
    if (m_Composition.Reels.empty()) return;
    FindPicture();
    FindParts();
    FindKind();
    FindPackage();
    FindDate();
  }

 private:
  void Say(FindingID id, const std::string& expected, const std::string& found) { Say(Finding(id), expected, found); }
  void Say(const Finding& finding, const std::string& expected, const std::string& found) {
    Add(m_Findings, finding, m_Composition.At(m_Element), expected, found);
  }

  void FindPicture() {
    const ReelAsset* picture = m_Composition.Picture();
    if (picture == nullptr) return;
    FindAspect(TextOf(picture->Element->Child("ScreenAspectRatio")));
    const bool is_3d = m_Composition.IsStereoscopic();
    if (m_Claims.Is3D && *m_Claims.Is3D != is_3d)
      Say(FindingID::Title3D, *m_Claims.Is3D ? "3D" : "2D", is_3d ? "3D" : "2D");
    if (m_Claims.Rate && picture->EditRate &&
        i64_t{*m_Claims.Rate} * picture->EditRate->Denominator != picture->EditRate->Numerator)
      Say(FindingID::TitleRate, std::to_string(*m_Claims.Rate),
          std::to_string(picture->EditRate->Numerator) + ' ' + std::to_string(picture->EditRate->Denominator));
  }

  void FindAspect(std::string_view written) {
    const std::vector<std::string_view> words = Words(written);
    double numbers[2] = {0, 1};
    for (size_t i = 0; i < std::min<size_t>(words.size(), 2); ++i) numbers[i] = NumberOf(words[i]);
    if (words.empty() || !(numbers[0] > 0) || !(numbers[1] > 0)) return;
    const double claimed = m_Claims.Aspect == 'F' ? 1.85 : m_Claims.Aspect == 'S' ? 2.39 : 1.90;
    if (m_Claims.Aspect != '\0' && std::abs(numbers[0] / numbers[1] - claimed) > AspectTolerance)
      Say(FindingID::TitleAspect, std::string(1, m_Claims.Aspect), Quoted(written));
    const bool has_pixels = words.size() == 2 && numbers[1] > 100;
    const bool is_4k = numbers[0] > Widest2K;
    if (has_pixels && !m_Claims.Resolution.empty() && is_4k != (m_Claims.Resolution == "4K"))
      Say(FindingID::TitleResolution, m_Claims.Resolution, Quoted(written));
  }

  /// A decimal of at most nine digits; 0 for anything else.
  static double NumberOf(std::string_view text) {
    double number = 0;
    double scale = 0;
    if (text.size() > 10) return 0;
    for (const char c : text) {
      if (c == '.' && scale == 0)
        scale = 1;
      else if (IsDigit(c)) {
        number = number * 10 + (c - '0');
        scale *= 10;
      } else
        return 0;
    }
    return scale == 0 ? number : number / scale;
  }

  void FindParts() {
    if (m_Claims.IsInterop && *m_Claims.IsInterop != m_Composition.IsInterop())
      Say(FindingID::TitleStandard, *m_Claims.IsInterop ? "IOP" : "SMPTE",
          m_Composition.IsInterop() ? "Interop" : "SMPTE");
    Compare(FindingID::TitleSubtitle, m_Claims.HasSubtitles, AssetRole::Subtitle, "subtitles");
    Compare(FindingID::TitleCaption, m_Claims.HasCaptions, AssetRole::Caption, "closed captions");
    Compare(FindingID::TitleImmersive, m_Claims.HasImmersive, AssetRole::AuxData, "immersive sound");
  }

  void Compare(FindingID id, const std::optional<bool>& claimed, AssetRole role, const std::string& what) {
    const bool has = m_Composition.Has(role);
    if (claimed && *claimed != has) Say(id, (*claimed ? "" : "no ") + what, (has ? "" : "no ") + what);
  }

  void FindKind() {
    const Node* kind = m_Composition.Root().Child("ContentKind");
    const std::string written = ToLower(TextOf(kind));
    for (const KindName& name : KindNames)
      if (m_Claims.Kind == name.Title && kind != nullptr && kind->Find("scope") == nullptr && written != name.Kind)
        Say(FindingID::TitleKind, m_Claims.Kind, Quoted(written));
  }

  void FindPackage() {
    if (m_Context.Package == nullptr || m_Context.Package->MapAssets.empty() || !m_Claims.IsVersionFile) return;
    bool has_external = false;
    for (const Reel& reel : m_Composition.Reels)
      for (const ReelAsset& asset : reel.Assets)
        has_external |= asset.IsFile() && asset.ID && m_Context.Package->FindMapped(*asset.ID) == nullptr;
    if (has_external && !*m_Claims.IsVersionFile) Say(FindingID::TitlePackage, "OV", "files of another package");
    if (!has_external && *m_Claims.IsVersionFile)
      Say(Finding(FindingID::TitlePackage, FindingClass::Note), "VF", "all files in this package");
  }

  void FindDate() {
    if (!m_Claims.Date) return;
    if (m_Claims.Date->empty()) return Say(FindingID::TitleDate, "a date such as 20240301", "none");
    const auto issued = DateTime::FromText(TextOf(m_Composition.Root().Child("IssueDate")));
    if (!issued || issued->Year < 1000 || issued->Year > 9999) return;
    const int date = issued->Year * 10'000 + issued->Month * 100 + issued->Day;
    if (*m_Claims.Date > std::to_string(date)) Say(FindingID::TitleDate, *m_Claims.Date, std::to_string(date));
  }

  const Composition& m_Composition;
  const CompositionContext& m_Context;
  FindingList& m_Findings;
  const Node* m_Element;
  TitleClaims m_Claims;
};

}  // namespace

void FindInTitle(const Composition& composition, const CompositionContext& context, FindingList& findings) {
  if (!composition.Title.empty()) TitleCheck(composition, context, findings).Run();
}

}  // namespace Assay
