// SPDX-License-Identifier: BSD-3-Clause
#include "TextUse.h"

#include "TextResources.h"
#include "document/PackageFindings.h"

#include <Ferro/FileText.h>
#include <Ferro/Path.h>

#include <utility>

namespace Assay {
namespace {

void Append(const FindingList& from, FindingList& findings) {
  findings.insert(findings.end(), from.begin(), from.end());
}

/// What the header of a file told already of its damage explains that its text cannot be read.
void FindSameDamage(FindingList& findings, size_t first) {
  for (size_t i = first; i < findings.size(); ++i) {
    if (findings[i].ID != FindingID::FileDamaged) continue;
    for (size_t told = 0; told < first && !findings[i].Cause; ++told)
      if (findings[told].ID == FindingID::FileDamaged && findings[told].Place.Package == findings[i].Place.Package &&
          findings[told].Place.Document == findings[i].Place.Document)
        findings[i].Cause = told;
  }
}

std::string FullPath(const DocumentPlace& place) {
  return place.Package.empty() ? place.Path : Ferro::PathJoin(place.Package, place.Path);
}

}  // namespace

TextFile TextFiles::ReadDocument(const AssetFile& asset) const {
  const DocumentPlace& place = *asset.Document;
  const UUID id = asset.Asset->ID.value_or(UUID());
  const QUIRE::Rational edit_rate = asset.Asset->EditRate.value_or(QUIRE::Rational(0, 0));
  std::string xml;
  const Ferro::Result_t result = Ferro::ReadFileIntoString(FullPath(place), xml, MaxTextDocument);
  if (result.Failure()) return UnreadText(place, id, result);
  for (const Package& package : m_Packages)
    if (package.Folder == place.Package)
      for (const DocumentFile& document : package.Documents)
        if (document.Path == place.Path) return ReadText(document, xml, id, edit_rate, m_Look);
  // What no package has read: the document of a store, and a long one.
  const DocumentFile document = DocumentFile::FromText(place.Package, place.Path, xml);
  TextFile text = ReadText(document, xml, id, edit_rate, m_Look);
  FindInDocument(document, text.Findings);
  return text;
}

TextFiles::Entry* TextFiles::Find(const AssetFile& asset) {
  if (asset.File == nullptr && asset.Document == nullptr) return nullptr;
  Key key;
  if (asset.File != nullptr) {
    key.Path = asset.File->FullPath();
  } else {
    const QUIRE::Rational rate = asset.Asset->EditRate.value_or(QUIRE::Rational(0, 0));
    key = {FullPath(*asset.Document), asset.Asset->ID.value_or(UUID()), rate.Numerator, rate.Denominator};
  }
  const auto [known, is_new] = m_Files.try_emplace(key);
  Entry& entry = known->second;
  if (is_new) entry.Text = asset.File != nullptr ? ReadText(*asset.File, m_Look) : ReadDocument(asset);
  return &entry;
}

const TextFile* TextFiles::Read(const AssetFile& asset) {
  const Entry* entry = Find(asset);
  return entry == nullptr ? nullptr : &entry->Text;
}

void TextFiles::Tell(const AssetFile& asset, FindingList& findings) {
  Entry* entry = Find(asset);
  if (entry == nullptr) return;
  if (!std::exchange(entry->IsTold, true)) {
    const size_t first = findings.size();
    Append(entry->Text.Findings, findings);
    FindSameDamage(findings, first);
  }
  const bool is_caption = asset.Asset->Role == AssetRole::Caption;
  bool& is_told = is_caption ? entry->IsToldAsCaption : entry->IsToldAsSubtitle;
  if (!std::exchange(is_told, true))
    Append(is_caption ? entry->Text.CaptionFindings : entry->Text.SubtitleFindings, findings);
}

}  // namespace Assay
