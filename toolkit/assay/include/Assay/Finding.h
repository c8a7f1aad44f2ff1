// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/FindingRule.h>
#include <Assay/Types.h>

#include <QUIRE/Rational.h>

#include <optional>
#include <string>
#include <vector>

namespace Assay {

/// What a reel has an asset for.
enum class ReelUse : ui8_t { None, Picture, Sound, Subtitle, Caption, AuxData };

/// "picture", "sound", "subtitle", "closed caption", "auxiliary data"; empty for None. Never null.
[[nodiscard]] ASSAY_API const char* ReelUseName(ReelUse use);

/// Where something was found. What does not apply is empty, without value, or 0.
struct FindingPlace {
  std::string Package;   ///< its folder
  std::string Document;  ///< path of the document or file, from the package's folder on
  ui64_t Line = 0;       ///< in the document, from 1
  UUID Composition;      ///< its identifier
  std::string CompositionTitle;
  ui32_t Reel = 0;  ///< within the composition, from 1
  UUID Asset;
  ReelUse Use = ReelUse::None;     ///< of the asset, in that reel
  std::optional<ui64_t> EditUnit;  ///< from the start of the asset's use in its reel
  QUIRE::Rational EditRate;        ///< of EditUnit; 0/0 without
  ui32_t Channel = 0;              ///< of sound, from 1

  friend bool operator==(const FindingPlace&, const FindingPlace&) = default;
};

/// One thing that is wrong or unusual. A plain value.
struct Finding {
  /// With the rule's usual class.
  explicit Finding(FindingID id) : ID(id), Class(RuleOf(id).Classes.Usual()) {}
  /// With another of the rule's classes.
  ASSAY_API Finding(FindingID id, FindingClass value);

  FindingID ID;
  FindingClass Class;
  FindingPlace Place;
  std::string Expected;  ///< value, limit or form; may be empty
  std::string Found;     ///< may be empty
  /// Of the same list, the finding that this one follows from: it is shown below that one, and does not count.
  std::optional<size_t> Cause;

  /// One sentence for users.
  [[nodiscard]] const char* Sentence() const { return RuleOf(ID).Sentence; }
  /// What to do.
  [[nodiscard]] const char* Advice() const { return RuleOf(ID).Advice; }

  friend bool operator==(const Finding&, const Finding&) = default;
};

using FindingList = std::vector<Finding>;

/// Whose rules count.
enum class Profile : ui8_t {
  Plays,    ///< errors and warnings
  SMPTE,    ///< RDD 52 as well
  Interop,  ///< errors and warnings, and of RDD 52 what Interop packages can follow
  All,      ///< notes as well
};

/// "plays", "smpte", "interop", "all". Never null.
[[nodiscard]] ASSAY_API const char* ProfileName(Profile profile);
/// Whether a finding speaks against a package by that profile. What follows from another never does.
[[nodiscard]] ASSAY_API bool Counts(Profile profile, const Finding& finding);
/// The worst class of the findings that count; no value where none does.
[[nodiscard]] ASSAY_API std::optional<FindingClass> WorstClass(Profile profile, const FindingList& findings);

}  // namespace Assay
