// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "findings/Finding.h"
#include "terminal/ExitCode.h"

#include <QUIRE/Rational.h>

#include <string>
#include <vector>

namespace Tool {

/// A composition of the show that was checked.
struct CheckedComposition {
  Cairn::UUID ID;
  std::string Title;
  std::string File;
  QUIRE::Rational EditRate;
  Ferro::ui32_t Start = 0;     ///< edit units from the start of the show
  Ferro::ui32_t Duration = 0;  ///< edit units
  size_t Reels = 0;            ///< 0: it could not be read
  bool Stereoscopic = false;
};

/// What `strata check` found out.
struct CheckReport {
  std::vector<CheckedComposition> Compositions;
  Ferro::ui32_t Duration = 0;         ///< edit units
  Ferro::ui32_t DurationSeconds = 0;  ///< as the engine loads the show; 0 where it does not load
  std::vector<Finding> Findings;
  ExitCode Code = ExitCode::Fine;  ///< what the findings come to
};

/// The outcome in one sentence.
[[nodiscard]] std::string CheckVerdict(const CheckReport& report);
/// The report as lines of text.
[[nodiscard]] std::string CheckText(const CheckReport& report);
/// The report as JSON, schema strata-check-1.
[[nodiscard]] std::string CheckJson(const CheckReport& report);

}  // namespace Tool
