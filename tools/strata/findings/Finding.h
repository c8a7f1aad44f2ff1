// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "terminal/ExitCode.h"
#include "terminal/Report.h"

#include <Ferro/Types.h>

#include <string>
#include <vector>

namespace Tool {

/// How much a finding matters for playing the show.
enum class Severity { Warning, Missing, Error };

/// One thing that is wrong or unusual, and where. Texts that do not apply are empty.
struct Finding {
  Severity Level = Severity::Error;
  std::string Message;
  std::string Composition;  ///< its title, or its identifier
  Ferro::ui32_t Reel = 0;   ///< within the composition, from 1; 0: not of one reel
  std::string AssetType;
  std::string AssetID;
  std::string File;
  std::string Expected;
  std::string Found;
  std::string Advice;  ///< what to do about it
};

/// The advice for what cannot be opened.
inline constexpr char AllowReading[] = "Allow this user to read it, or copy it again.";

/// What they come to: NotPlayable with an error, else AssetsMissing where something is missing, else Fine.
[[nodiscard]] ExitCode ExitCodeFor(const std::vector<Finding>& findings);

/// "warning", "missing", "error".
[[nodiscard]] const char* SeverityName(Severity severity);
[[nodiscard]] Json FindingToJson(const Finding& finding);
/// The lines of a report from FindingToJson's model.
[[nodiscard]] std::string FindingText(const Json& finding);

}  // namespace Tool
