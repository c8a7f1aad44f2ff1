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
constexpr Ferro::i32_t Widest2K = 2048;

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
    const std::optional<PictureFormat>& format = m_Context.Picture;
    if (format)
      FindSize(*format);
    else
      FindAspect(picture->Element->Child("ScreenAspectRatio"));
    const bool is_3d = format ? format->IsStereoscopic : m_Composition.IsStereoscopic();
    if (m_Claims.Is3D && *m_Claims.Is3D != is_3d)
      Say(FindingID::Title3D, *m_Claims.Is3D ? "3D" : "2D", is_3d ? "3D" : "2D");
    const auto rate = format ? std::optional(format->EditRate) : picture->EditRate;
    if (m_Claims.Rate && rate && i64_t{*m_Claims.Rate} * rate->Denominator != rate->Numerator)
      Say(FindingID::TitleRate, std::to_string(*m_Claims.Rate),
          std::to_string(rate->Numerator) + ' ' + std::to_string(rate->Denominator));
  }

  /// Aspect and resolution against the file.
  void FindSize(const PictureFormat& format) {
    const std::string found = std::to_string(format.Width) + 'x' + std::to_string(format.Height);
    if (format.Height != 0) FindRatio(double(format.Width) / format.Height, found);
    if (!m_Claims.Resolution.empty() && format.Is4K() != (m_Claims.Resolution == "4K"))
      Say(FindingID::TitleResolution, m_Claims.Resolution, found);
  }

  void FindRatio(double ratio, const std::string& found) {
    const double claimed = m_Claims.Aspect == 'F' ? 1.85 : m_Claims.Aspect == 'S' ? 2.39 : 1.90;
    if (m_Claims.Aspect != '\0' && std::abs(ratio - claimed) > AspectTolerance)
      Say(FindingID::TitleAspect, std::string(1, m_Claims.Aspect), found);
  }

  /// The same against what the composition says.
  void FindAspect(const Node* element) {
    const auto ratio = AspectOf(element);
    if (!ratio) return;
    const std::string written = Quoted(TextOf(element));
    FindRatio(ratio->Quotient(), written);
    const bool has_pixels = ratio->Denominator > 100 && Words(TextOf(element)).size() == 2;
    const bool is_4k = ratio->Numerator > Widest2K;
    if (has_pixels && !m_Claims.Resolution.empty() && is_4k != (m_Claims.Resolution == "4K"))
      Say(FindingID::TitleResolution, m_Claims.Resolution, written);
  }

  void FindParts() {
    if (m_Claims.IsInterop && *m_Claims.IsInterop != m_Composition.IsInterop())
      Say(FindingID::TitleStandard, *m_Claims.IsInterop ? "IOP" : "SMPTE",
          m_Composition.IsInterop() ? "Interop" : "SMPTE");
    Compare(FindingID::TitleSubtitle, m_Claims.HasSubtitles, m_Composition.Has(AssetRole::Subtitle), "subtitles");
    Compare(FindingID::TitleCaption, m_Claims.HasCaptions, m_Composition.Has(AssetRole::Caption), "closed captions");
    Compare(FindingID::TitleImmersive, m_Claims.HasImmersive,
            m_Context.HasImmersiveSound.value_or(m_Composition.Has(AssetRole::AuxData)), "immersive sound");
  }

  void Compare(FindingID id, const std::optional<bool>& claimed, bool has, const std::string& what) {
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
