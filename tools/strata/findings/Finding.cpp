// SPDX-License-Identifier: BSD-3-Clause
#include "Finding.h"

#include <Ferro/Path.h>

namespace Tool {

using Assay::ReelUse;

namespace {

bool IsOfMissing(FindingID id) {
  switch (id) {
    case FindingID::PklAssetMissing:
    case FindingID::CplAssetExternal:
    case FindingID::ShowMissing:
    case FindingID::ShowCompositionMissing:
    case FindingID::StoreFolderMissing:
      return true;
    default:
      return false;
  }
}

}  // namespace

Severity SeverityOf(const Finding& finding) {
  if (IsOfMissing(finding.ID)) return Severity::Missing;
  switch (finding.Class) {
    case FindingClass::Error:
      return Severity::Error;
    case FindingClass::Warning:
      return Severity::Warning;
    case FindingClass::Profile:
      return Severity::Profile;
    case FindingClass::Note:
      return Severity::Note;
  }
  return Severity::Error;
}

const char* SeverityName(Severity severity) {
  switch (severity) {
    case Severity::Note:
      return "note";
    case Severity::Profile:
      return "profile";
    case Severity::Warning:
      return "warning";
    case Severity::Missing:
      return "missing";
    case Severity::Error:
      return "error";
  }
  return "";
}

ReelUse UseOf(AssetKind kind) {
  switch (kind) {
    case AssetKind::Picture:
      return ReelUse::Picture;
    case AssetKind::Sound:
      return ReelUse::Sound;
    case AssetKind::OnScreenText:
      return ReelUse::Subtitle;
    case AssetKind::OffScreenText:
      return ReelUse::Caption;
    case AssetKind::AuxData:
      return ReelUse::AuxData;
  }
  return ReelUse::None;
}

ReelUse UseOf(Cairn::FileType_t type) {
  switch (type) {
    case Cairn::FT_QUIRE_MPEG2_VES:
    case Cairn::FT_QUIRE_JP2K_J2C:
    case Cairn::FT_QUIRE_JP2K_J2C_S:
      return ReelUse::Picture;
    case Cairn::FT_QUIRE_PCM:
      return ReelUse::Sound;
    case Cairn::FT_QUIRE_TIMED_TEXT:
    case Cairn::FT_TI_SUBTITLE:
      return ReelUse::Subtitle;
    case Cairn::FT_QUIRE_DCDATA:
    case Cairn::FT_QUIRE_ATMOS:
      return ReelUse::AuxData;
    default:
      return ReelUse::None;
  }
}

std::string PathOf(const Assay::FindingPlace& place) {
  if (place.Package.empty() || place.Document.empty()) return place.Document.empty() ? place.Package : place.Document;
  return Ferro::PathJoin(place.Package, place.Document);
}

Assay::FindingPlace PlaceOf(const std::string& path, const std::string& package) {
  Assay::FindingPlace place;
  const bool is_inside = !package.empty() && path.size() > package.size() && path.starts_with(package + '/');
  place.Package = is_inside || path == package ? package : "";
  place.Document = is_inside ? path.substr(package.size() + 1) : path == package ? "" : path;
  return place;
}

std::string CompositionNameOf(const Assay::FindingPlace& place) {
  if (!place.CompositionTitle.empty()) return place.CompositionTitle;
  return place.Composition.HasValue() ? place.Composition.EncodeString() : "";
}

}  // namespace Tool
