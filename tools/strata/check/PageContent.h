// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "CheckReport.h"
#include "drawing/TimelineModel.h"

#include <Assay/Check.h>

#include <string>
#include <vector>

namespace Tool {

/// What the page of a check tells.
struct PageContent {
  std::string Title;    ///< of the show, or the folder that was checked
  std::string Verdict;  ///< the outcome in one sentence
  std::string Date;     ///< when it was checked, as people read it
  std::string Version;  ///< of this program
  Assay::Profile Profile = Assay::Profile::Plays;
  Assay::CheckReport Report;
  std::vector<TimelineModel> Shows;  ///< what plays as one timeline each; compositions are described from them
};

/// What was found out now of the shows that `names` name.
[[nodiscard]] PageContent PageContentOf(const CheckReport& report, const std::vector<std::string>& names);

}  // namespace Tool
