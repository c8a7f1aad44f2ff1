// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/Check.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace Tool {

/// How many findings there are of each class. What follows from others is not counted.
class FindingCounts {
 public:
  void Add(const Assay::Finding& finding) {
    if (!finding.Cause) ++m_Counts[static_cast<size_t>(finding.Class)];
  }
  void Add(const FindingCounts& others) {
    for (size_t index = 0; index < m_Counts.size(); ++index) m_Counts[index] += others.m_Counts[index];
  }
  [[nodiscard]] size_t Of(Assay::FindingClass value) const { return m_Counts[static_cast<size_t>(value)]; }

 private:
  std::array<size_t, 4> m_Counts{};
};

/// "2 errors, 1 warning, 1 note"; "nothing" for none.
[[nodiscard]] std::string CountsText(const FindingCounts& counts);
/// The class of CSS that goes with a worst class: "alarmed", "caution", "verdict".
[[nodiscard]] const char* StandingStyle(std::optional<Assay::FindingClass> worst);

/// For each finding the one that it goes back to, over all causes; itself where it has none.
[[nodiscard]] std::vector<size_t> RootsOf(const Assay::FindingList& findings);

/// "Feature, reel 2, channel 3, edit unit 48 (0:02): sound.mxf", what there is of it.
/// @param with_package  whether to name the package's folder, too.
[[nodiscard]] std::string PagePlaceText(const Assay::FindingPlace& place, bool with_package);

/// All findings, worst class first, each kind once with all its places, and below each what follows from it. HTML.
[[nodiscard]] std::string PageFindings(const Assay::CheckReport& report, Assay::Profile profile);

/// More places of one kind are counted, not listed.
inline constexpr size_t MaxPagePlaces = 200;

}  // namespace Tool
