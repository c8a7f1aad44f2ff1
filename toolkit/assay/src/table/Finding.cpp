// SPDX-License-Identifier: BSD-3-Clause
#include <Assay/Finding.h>

#include <Ferro/Assert.h>

namespace Assay {

Finding::Finding(FindingID id, FindingClass value) : ID(id), Class(value) {
  FERRO_ASSERT(RuleOf(id).Classes.Has(value));
}

const char* ReelUseName(ReelUse use) {
  switch (use) {
    case ReelUse::None:
      return "";
    case ReelUse::Picture:
      return "picture";
    case ReelUse::Sound:
      return "sound";
    case ReelUse::Subtitle:
      return "subtitle";
    case ReelUse::Caption:
      return "closed caption";
    case ReelUse::AuxData:
      return "auxiliary data";
  }
  return "";
}

const char* ProfileName(Profile profile) {
  switch (profile) {
    case Profile::Plays:
      return "plays";
    case Profile::SMPTE:
      return "smpte";
    case Profile::Interop:
      return "interop";
    case Profile::All:
      return "all";
  }
  return "";
}

bool Counts(Profile profile, const Finding& finding) {
  if (finding.Cause) return false;
  if (finding.Class <= FindingClass::Warning || profile == Profile::All) return true;
  if (finding.Class == FindingClass::Note || profile == Profile::Plays) return false;
  return profile == Profile::SMPTE ||
         (RuleOf(finding.ID).Flavour != Flavour::SMPTE && finding.ID != FindingID::PackageInterop);
}

std::optional<FindingClass> WorstClass(Profile profile, const FindingList& findings) {
  std::optional<FindingClass> worst;
  for (const Finding& finding : findings)
    if (Counts(profile, finding) && (!worst || finding.Class < *worst)) worst = finding.Class;
  return worst;
}

}  // namespace Assay
