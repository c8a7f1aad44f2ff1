// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/Finding.h>

#include <QUIRE/CinemaProfile.h>

#include <string>

namespace Assay {

/// What a codestream that breaks a rule of its profile is, as a finding.
struct ProfileMeaning {
  FindingID ID;
  FindingClass Class;
  std::string Expected;
  std::string Found;
};

/// @param headers  that the finding is about.
[[nodiscard]] ProfileMeaning MeaningOf(const QUIRE::JP2K::ProfileFinding& finding,
                                       const QUIRE::JP2K::CodestreamHeaders& headers);

}  // namespace Assay
