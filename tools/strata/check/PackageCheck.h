// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "CheckOptions.h"
#include "drawing/TimelineModel.h"
#include "terminal/ExitCode.h"

#include <Assay/Check.h>

#include <map>
#include <string>
#include <vector>

// `strata check` of packages as they lie there, whatever a show plays of them.

namespace Tool {

/// What was found out of packages.
struct PackageReport {
  Assay::Profile Profile = Assay::Profile::Plays;
  Assay::DepthSet Asked;                            ///< how far they were to be looked at
  Assay::CheckReport Checked;                       ///< behind the packages' findings stand those of the show
  std::map<Cairn::UUID, std::string> Descriptions;  ///< of compositions, in the words of the trade
  std::vector<TimelineModel> Timelines;             ///< where they are to be drawn
  ExitCode Code = ExitCode::Fine;
};

/// Checks the packages that lie in the folders named, and in those of the documents named; and the show as one timeline
/// where they are one. Throws CommandError.
[[nodiscard]] ExitCode CheckPackages(const CheckOptions& options);

/// What the findings come to by the profile.
[[nodiscard]] ExitCode ExitCodeFor(const FindingList& findings, Assay::Profile profile);
/// How many compositions are encrypted and have no key message that serves.
[[nodiscard]] size_t WithoutKeys(const PackageReport& report);
/// The outcome on one line.
[[nodiscard]] std::string PackageOutcome(const PackageReport& report);
/// The same, and what was looked at and what was not.
[[nodiscard]] std::string PackageVerdict(const PackageReport& report);
/// The report as lines of text.
[[nodiscard]] std::string PackageText(const PackageReport& report);
/// The report as JSON, schema strata-check-packages-1.
[[nodiscard]] std::string PackageJson(const PackageReport& report);

}  // namespace Tool
