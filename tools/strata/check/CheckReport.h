// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "drawing/TimelineModel.h"
#include "findings/SecurityFindings.h"
#include "keys/KeyAnswer.h"
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
  std::string Description;      ///< "Flat 2K 1998×1080, 24 fps, 5.1, en, SMPTE, OV, 3 reels"
  std::vector<KeyAnswer> Keys;  ///< whether key messages serve it; empty where it needs none
};

/// One of several shows or compositions of a folder, each judged by itself.
struct CheckedShow {
  std::string Title;  ///< its identifier where it has none
  std::string File;
  std::string Description;  ///< of a composition; empty for a show playlist
  std::string Verdict;
  ExitCode Code = ExitCode::Fine;
  bool NeedsKeys = false;  ///< there are none, and it was not asked whether they fit
};

/// What `strata check` found out.
struct CheckReport {
  std::vector<CheckedShow> Shows;  ///< where each was judged by itself; empty for one show
  std::vector<CheckedComposition> Compositions;
  std::vector<TimelineModel> Timelines;  ///< of each show, where they are to be drawn
  Ferro::ui32_t Duration = 0;            ///< edit units
  Ferro::ui32_t DurationSeconds = 0;     ///< whole seconds
  FindingList Findings;
  VerifiedFiles Verified;          ///< with keys: encrypted files whose frames were verified
  bool Hash = false;               ///< digests were verified, and so all files read to their ends
  ExitCode Code = ExitCode::Fine;  ///< what the findings come to
};

/// How many compositions are encrypted while no key messages are there.
[[nodiscard]] size_t KeylessCount(const CheckReport& report);
/// The outcome in one sentence.
[[nodiscard]] std::string CheckVerdict(const CheckReport& report);
/// The report as lines of text.
[[nodiscard]] std::string CheckText(const CheckReport& report);
/// The report as JSON, schema strata-check-1.
[[nodiscard]] std::string CheckJson(const CheckReport& report);

}  // namespace Tool
