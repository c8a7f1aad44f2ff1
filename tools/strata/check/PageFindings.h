// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/Check.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace Tool {

/// How many findings there are of each class, those that count and those that do not. What follows from others is in
/// neither.
class FindingCounts {
 public:
  void Add(const Assay::Finding& finding, Assay::Profile profile);
  void Add(const FindingCounts& others);
  [[nodiscard]] size_t Of(Assay::FindingClass value, bool is_counted) const {
    return m_Counts[is_counted ? 1 : 0][static_cast<size_t>(value)];
  }

 private:
  std::array<std::array<size_t, 4>, 2> m_Counts{};
};

/// "2 errors, 1 warning": those that count; "nothing" for none.
[[nodiscard]] std::string CountsText(const FindingCounts& counts);
/// "5 departures from RDD 52, 1 note": those that do not count; empty for none.
[[nodiscard]] std::string UncountedText(const FindingCounts& counts);
/// The class of CSS that goes with a worst class: "alarmed", "caution", "verdict".
[[nodiscard]] const char* StandingStyle(std::optional<Assay::FindingClass> worst);

/// For each finding the one that it goes back to, over all causes; itself where it has none.
[[nodiscard]] std::vector<size_t> RootsOf(const Assay::FindingList& findings);

/// "Feature, reel 2, channel 3, edit unit 48 (0:02): sound.mxf", what there is of it.
/// @param with_package  whether to name the package's folder, too.
[[nodiscard]] std::string PagePlaceText(const Assay::FindingPlace& place, bool with_package);

/// All findings that the profile counts, or all others; worst class first, each kind once with all its places, and below
/// each what follows from it. HTML; empty where there are none.
[[nodiscard]] std::string PageFindings(const Assay::CheckReport& report, Assay::Profile profile, bool is_counted);

/// More places of one kind are counted, not listed.
inline constexpr size_t MaxPagePlaces = 200;

}  // namespace Tool
