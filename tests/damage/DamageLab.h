// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Damage.h"
#include "PackageFacts.h"
#include "TemporaryFolder.h"

#include <Assay/Check.h>
#include <Sigil/KeyRing.h>

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace testsupport {

/// How a damaged package is looked at.
enum class DamageMode {
  AsDamaged,   ///< sizes and digests are those of the sound package, and digests are checked
  Recomputed,  ///< sizes and digests fit the damage, and contents are checked
};
/// "as damaged", "recomputed".
[[nodiscard]] const char* DamageModeName(DamageMode mode);

/// What came of one damage.
struct DamageCase {
  uint32_t Seed = 0;
  DamageMode Mode = DamageMode::AsDamaged;
  std::string Package;  ///< "smpte Feature"
  Damage Done;
  std::set<Difference> Differences;
  std::set<std::string> Told;  ///< "error pkl-asset-hash": findings that the sound package does not have
  std::string Failure;         ///< "crashed", "hung"; empty: none

  /// True where errors or warnings are among what is told.
  [[nodiscard]] bool IsSpokenAgainst() const;
  /// "seed 7, smpte Feature, CPL.xml: element Duration removed".
  [[nodiscard]] std::string Line() const;
};

/// Damages packages of small sample shows and holds what a check says of them against what an audience gets of them.
class DamageLab {
 public:
  DamageLab();

  /// What checks look at in that mode.
  [[nodiscard]] static Assay::DepthSet DepthsOf(DamageMode mode);
  /// The package and its damage, without looking at it.
  [[nodiscard]] DamageCase Make(uint32_t seed, DamageMode mode, PackageFiles& files) const;
  /// Looks at it in a process of its own.
  [[nodiscard]] DamageCase Run(uint32_t seed, DamageMode mode) const;

 private:
  struct Sound {
    std::string Name;
    PackageFiles Files;
    PackageFacts Facts;
    std::set<std::string> Findings[2];  // by mode
  };

  void AddShow(bool is_interop);
  /// The kind of file that is damaged with that seed, all kinds being as frequent, and a package that has it.
  [[nodiscard]] std::pair<FileKind, const Sound*> ChoiceOf(uint32_t seed) const;
  [[nodiscard]] std::set<std::string> FindingsIn(DamageMode mode) const;
  void Look(const Sound& sound, DamageMode mode, int output) const;

  TemporaryFolder m_Folder;
  std::string m_Case;  // the folder of the package that is looked at
  std::vector<Sound> m_Sound;
  Sigil::KeyRing m_Keys;
};

}  // namespace testsupport
