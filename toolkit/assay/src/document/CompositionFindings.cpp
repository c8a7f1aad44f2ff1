// SPDX-License-Identifier: BSD-3-Clause
#include "Composition.h"
#include "PackageFindings.h"

#include "base/LanguageSubtags.h"
#include "base/LanguageTag.h"
#include "base/Text.h"
#include "form/DateTime.h"

#include <algorithm>
#include <array>

namespace Assay {
namespace {

constexpr char StandardKinds[] = "feature trailer test teaser rating advertisement short transitional psa policy";
constexpr char MetadataKinds[] = "clip promo stereocard";
constexpr char OtherKinds[] = "episode highlights event";

struct KindScope {
  const char* Scope;
  const char* Kinds;
};
constexpr KindScope KindScopes[] = {
    {"http://www.smpte-ra.org/schemas/429-7/2006/CPL#standard-content", StandardKinds},
    {"http://www.digicine.com/PROTO-ASDCP-CPL-20040511#standard-content", StandardKinds},
    {"http://www.smpte-ra.org/schemas/429-16/2014/CPL-Metadata#scope/content-kind", MetadataKinds},
    {"http://www.smpte-ra.org/schemas/2067-3/2013#content-kind", OtherKinds},
};

void FindKind(const Composition& composition, FindingList& findings) {
  const Node* kind = composition.Root().Child("ContentKind");
  if (kind == nullptr) return;
  const std::string* scope = kind->Find("scope");
  const char* kinds = scope == nullptr ? StandardKinds : nullptr;
  for (const KindScope& row : KindScopes)
    if (scope != nullptr && *scope == row.Scope) kinds = row.Kinds;
  if (kinds == nullptr || HasForm(ValueForm::OneOf, kind->Text, kinds)) return;
  const bool is_known = HasForm(ValueForm::TokenOneOf, ToLower(kind->Text), kinds);
  Add(findings, Finding(FindingID::CplContentKind, is_known ? FindingClass::Note : FindingClass::Warning),
      composition.At(kind), DescribeForm(ValueForm::OneOf, kinds), Quoted(kind->Text));
}

void FindTexts(const Composition& composition, FindingList& findings) {
  const Node& root = composition.Root();
  const Node* title = root.Child("ContentTitleText");
  const Node* annotation = root.Child("AnnotationText");
  if (title != nullptr && composition.Title.empty())
    Add(findings, Finding(FindingID::CplTitleEmpty), composition.At(title));
  else if (TextOf(annotation) != composition.Title)
    Add(findings, Finding(FindingID::CplAnnotation), composition.At(annotation), Quoted(composition.Title),
        Quoted(TextOf(annotation)));
  const Node* label = root.Path({"ContentVersion", "LabelText"});
  if (!composition.IsInterop() && label != nullptr && TextOf(label).empty())
    Add(findings, Finding(FindingID::CplContentVersion), composition.At(label), "a label", "an empty one");
}

void FindDate(const Composition& composition, i64_t now, FindingList& findings) {
  const Node* date = composition.Root().Child("IssueDate");
  const auto time = DateTime::FromText(TextOf(date));
  if (time && (!time->HasOffset || time->Seconds > now))
    Add(findings, Finding(FindingID::CplIssueDate), composition.At(date),
        time->HasOffset ? "a date that is not in the future" : "a date with its offset", Quoted(TextOf(date)));
}

void FindAgencies(const Composition& composition, FindingList& findings) {
  const Node* ratings = composition.Root().Child("RatingList");
  if (ratings == nullptr) return;
  for (const Node& rating : ratings->Children) {
    const Node* agency = rating.Child("Agency");
    const std::string_view text = TextOf(agency);
    const bool is_absolute = text.find(':') < text.find_first_of("/?#");
    if (agency != nullptr && HasForm(ValueForm::URI, text) && !is_absolute)
      Add(findings, Finding(FindingID::CplRatingAgency), composition.At(agency), "a URI", Quoted(text));
  }
}

/// Tags of the right outer form that are no language tags all the same, or of no known language; the others are found
/// with the form.
void FindLanguages(const Composition& composition, const Node& node, FindingList& findings) {
  const auto look = [&](std::string_view tag) {
    tag = Trim(tag);
    if (HasForm(ValueForm::Language, tag) && (!IsLanguageTag(tag) || !UnknownSubtag(tag).empty()))
      Add(findings, Finding(FindingID::CplLanguage), composition.At(&node), "a language tag such as en or fr-CA",
          Quoted(tag));
  };
  if (node.Name == "Language" && node.Children.empty()) look(node.Text);
  for (const char* name : {"language", "xml:lang"})
    if (const std::string* tag = node.Find(name)) look(*tag);
  for (const Node& child : node.Children) FindLanguages(composition, child, findings);
}

void FindID(const Composition& composition, const CompositionContext& context, FindingList& findings) {
  if (context.Package == nullptr || !composition.ID) return;
  for (const MapAsset& asset : context.Package->MapAssets)
    if (asset.File == composition.Document->Path && asset.ID && *asset.ID != *composition.ID)
      Add(findings, Finding(FindingID::CplID), composition.At(composition.Root().Child("Id")), asset.ID->EncodeString(),
          composition.ID->EncodeString());
}

bool AreSameAsset(const ReelAsset& first, const ReelAsset& second) {
  const bool has_same_hash = first.Hash.empty() || second.Hash.empty() || first.Hash == second.Hash;
  return first.Role == second.Role && first.Intrinsic == second.Intrinsic && first.KeyID == second.KeyID &&
         has_same_hash;
}

/// Reels that share an identifier, and assets that share one with different content.
void FindDuplicates(const Composition& composition, FindingList& findings) {
  std::map<UUID, const ReelAsset*> assets;
  std::set<UUID> reels;
  for (const Reel& reel : composition.Reels) {
    if (reel.ID && !reels.insert(*reel.ID).second)
      Add(findings, Finding(FindingID::CplDuplicateID), composition.At(reel.Element, &reel), "", "the reel's");
    for (const ReelAsset& asset : reel.Assets) {
      if (!asset.ID || !asset.IsFile()) continue;
      const auto [known, is_new] = assets.try_emplace(*asset.ID, &asset);
      if (!is_new && !AreSameAsset(*known->second, asset))
        Add(findings, Finding(FindingID::CplDuplicateID), composition.At(asset.Element, &reel, &asset), "",
            "the asset's");
    }
  }
}

void FindExternal(const Composition& composition, const CompositionContext& context, FindingList& findings) {
  if (context.Known == nullptr) return;
  std::set<UUID> told;
  for (const Reel& reel : composition.Reels)
    for (const ReelAsset& asset : reel.Assets)
      if (asset.IsFile() && asset.ID && !context.Known->contains(*asset.ID) && told.insert(*asset.ID).second)
        Add(findings, Finding(FindingID::CplAssetExternal), composition.At(asset.Element, &reel, &asset));
}

}  // namespace

void FindInComposition(const Composition& composition, const CompositionContext& context, FindingList& findings) {
  FindID(composition, context, findings);
  FindTexts(composition, findings);
  FindDate(composition, context.Now, findings);
  FindKind(composition, findings);
  FindAgencies(composition, findings);
  FindLanguages(composition, composition.Root(), findings);
  FindDuplicates(composition, findings);
  FindExternal(composition, context, findings);
  FindInReels(composition, context, findings);
  FindInMarkers(composition, findings);
  FindInMetadata(composition, findings);
  FindInTitle(composition, context, findings);
}

}  // namespace Assay
