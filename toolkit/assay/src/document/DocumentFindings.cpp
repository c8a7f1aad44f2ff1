// SPDX-License-Identifier: BSD-3-Clause
#include "DocumentFile.h"
#include "PackageFindings.h"

#include "base/Text.h"

#include <utility>

namespace Assay {
namespace {

/// Where a fault of form has a finding of its own, which says better what follows from it.
struct OwnFinding {
  DocumentKind Kind;
  const char* Name;  ///< of the element or attribute concerned
  FaultKind Fault;
  FindingID ID;
};

constexpr OwnFinding OwnFindings[] = {
    {DocumentKind::PackingList, "IssueDate", FaultKind::WrongValue, FindingID::PklIssueDate},
    {DocumentKind::Composition, "IssueDate", FaultKind::WrongValue, FindingID::CplIssueDate},
    {DocumentKind::Composition, "ContentVersion", FaultKind::MissingElement, FindingID::CplContentVersion},
    {DocumentKind::Composition, "LabelText", FaultKind::MissingElement, FindingID::CplContentVersion},
    {DocumentKind::Composition, "Reel", FaultKind::MissingElement, FindingID::CplNoReel},
    {DocumentKind::Composition, "ReelList", FaultKind::MissingElement, FindingID::CplNoReel},
    {DocumentKind::Composition, "Language", FaultKind::WrongValue, FindingID::CplLanguage},
    {DocumentKind::Composition, "language", FaultKind::WrongValue, FindingID::CplLanguage},
    {DocumentKind::Composition, "xml:lang", FaultKind::WrongValue, FindingID::CplLanguage},
    {DocumentKind::Composition, "Agency", FaultKind::WrongValue, FindingID::CplRatingAgency},
    {DocumentKind::Composition, "VersionNumber", FaultKind::WrongValue, FindingID::MetaVersion},
    {DocumentKind::Composition, "FullContentTitleText", FaultKind::MissingElement, FindingID::MetaTitle},
    {DocumentKind::Composition, "MainSubtitleLanguageList", FaultKind::WrongValue, FindingID::MetaLanguage},
    {DocumentKind::Composition, "MainSoundConfiguration", FaultKind::MissingElement, FindingID::MetaSoundConfiguration},
    {DocumentKind::Composition, "MainSoundSampleRate", FaultKind::MissingElement, FindingID::MetaSoundRate},
    {DocumentKind::Composition, "MainPictureStoredArea", FaultKind::MissingElement, FindingID::MetaStoredArea},
    {DocumentKind::Composition, "MainPictureActiveArea", FaultKind::MissingElement, FindingID::MetaActiveArea},
    {DocumentKind::Composition, "Luminance", FaultKind::WrongValue, FindingID::MetaLuminance},
};

FindingID SchemaFindingOf(DocumentKind kind) {
  switch (kind) {
    case DocumentKind::AssetMap:
    case DocumentKind::Other:
      return FindingID::AmSchema;
    case DocumentKind::VolumeIndex:
      return FindingID::ViIndex;
    case DocumentKind::PackingList:
      return FindingID::PklSchema;
    case DocumentKind::Composition:
      return FindingID::CplSchema;
    case DocumentKind::SMPTEText:
    case DocumentKind::InteropText:
      return FindingID::TextSchema;
  }
  return FindingID::AmSchema;
}

/// Whether a fault is one that the rules about the element's value find themselves, and tell better.
bool IsToldByRules(DocumentKind kind, const FormFault& fault) {
  if (fault.Kind != FaultKind::WrongValue || kind != DocumentKind::AssetMap) return false;
  if (fault.Name == "VolumeCount" || fault.Name == "VolumeIndex") return HasForm(ValueForm::Integer, fault.Found);
  return fault.Name == "Path";
}

FindingID FindingOf(DocumentKind kind, const FormFault& fault) {
  const bool is_id = fault.Name == "Id" || fault.Name == "IconId" || fault.Name == "GroupId" || fault.Name == "KeyId";
  if (fault.Kind == FaultKind::WrongValue && is_id && IDOf(fault.Element)) return FindingID::AmIDForm;
  for (const OwnFinding& own : OwnFindings)
    if (own.Kind == kind && own.Fault == fault.Kind && own.Name == fault.Name) return own.ID;
  return SchemaFindingOf(kind);
}

/// Where in a document a fault of form lies.
class FaultPlace {
 public:
  explicit FaultPlace(const DocumentFile& document) : m_Root(*document.Root()), m_Place(document.At(nullptr)) {
    if (document.Kind() != DocumentKind::Composition) return;
    m_Place.Composition = IDOf(m_Root.Child("Id")).value_or(UUID());
    m_Place.CompositionTitle = TextOf(m_Root.Child("ContentTitleText"));
  }

  [[nodiscard]] FindingPlace Of(const FormFault& fault) const {
    FindingPlace place = m_Place;
    place.Line = fault.Line;
    Descend(m_Root, fault.Element != nullptr ? fault.Element : fault.Parent, place);
    return place;
  }

 private:
  /// Notes the reel and the asset on the way to a node; false where it does not lie below.
  static bool Descend(const Node& from, const Node* to, FindingPlace& place) {
    if (&from == to) return true;
    ui32_t number = 0;
    for (const Node& child : from.Children) {
      ++number;
      if (!Descend(child, to, place)) continue;
      if (from.Name == "ReelList") place.Reel = number;
      if (from.Name == "AssetList") place.Asset = IDOf(child.Child("Id")).value_or(UUID());
      return true;
    }
    return false;
  }

  const Node& m_Root;
  FindingPlace m_Place;
};

void FindForm(const DocumentFile& document, FindingList& findings) {
  const size_t first = findings.size();
  size_t more = 0;  // of a text, which has the same fault in each of its lines
  bool has_volume_finding = false;
  const FaultPlace place(document);
  for (const FormFault& fault : CheckForm(*document.Root(), *document.Grammar)) {
    if (IsToldByRules(document.Kind(), fault)) continue;
    const FindingID id = FindingOf(document.Kind(), fault);
    if (id == FindingID::ViIndex && std::exchange(has_volume_finding, true)) continue;
    if (id == FindingID::TextSchema && findings.size() > first) {
      ++more;
      continue;
    }
    Finding& finding = findings.emplace_back(id);
    finding.Place = place.Of(fault);
    finding.Expected = fault.Expected;
    finding.Found = DescribeFault(fault);
  }
  if (more > 0) findings[first].Found += ", " + std::to_string(more) + " more";
}

/// The value of a pseudo-attribute of the XML declaration: version, encoding, standalone. Empty where there is none.
std::string_view DeclaredValue(std::string_view declaration, std::string_view name) {
  const size_t at = declaration.find(name);
  if (at == std::string_view::npos) return {};
  const size_t open = declaration.find_first_of("\"'", at);
  if (open == std::string_view::npos) return {};
  const size_t close = declaration.find(declaration[open], open + 1);
  return close == std::string_view::npos ? std::string_view() : declaration.substr(open + 1, close - open - 1);
}

}  // namespace

std::string FindCharactersFault(std::string_view text) {
  if (text.starts_with("\xEF\xBB\xBF")) return "a byte order mark";
  if (!text.starts_with("<?xml")) return "no XML declaration in UTF-8";
  const std::string_view declaration = text.substr(0, text.find("?>"));
  if (DeclaredValue(declaration, "version") != "1.0") return "another version than 1.0";
  const std::string_view encoding = DeclaredValue(declaration, "encoding");
  if (!encoding.empty() && ToLower(encoding) != "utf-8") return "encoding " + Quoted(encoding);
  if (DeclaredValue(declaration, "standalone") == "yes") return "standalone=\"yes\"";
  for (size_t at = text.find('\r'); at != std::string_view::npos; at = text.find('\r', at + 1))
    if (at + 1 == text.size() || text[at + 1] != '\n') return "a carriage return without line feed";
  return {};
}

void FindInDocument(const DocumentFile& document, FindingList& findings) {
  if (!document.Parsed.Root) {
    Finding& finding = findings.emplace_back(FindingID::XmlMalformed);
    finding.Place = document.At(nullptr);
    finding.Place.Line = document.Parsed.ErrorLine;
    finding.Found = document.Parsed.Error;
    return;
  }
  if (document.Grammar == nullptr) {
    if (document.Parsed.Root->Name == "CompositionPlaylist")
      Add(findings, Finding(FindingID::CplSchema), document.At(&*document.Parsed.Root),
          "a composition in a known namespace", Quoted(document.Parsed.Root->Namespace));
    return;
  }
  if (!document.CharactersFault.empty()) {
    Finding& finding = findings.emplace_back(FindingID::XmlConstraints);
    finding.Place = document.At(nullptr);
    finding.Expected = "UTF-8 with a declaration of XML 1.0";
    finding.Found = document.CharactersFault;
  }
  FindForm(document, findings);
}

}  // namespace Assay
