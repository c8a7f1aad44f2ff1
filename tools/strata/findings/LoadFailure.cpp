// SPDX-License-Identifier: BSD-3-Clause
#include "LoadFailure.h"

#include "FindingReport.h"
#include "show/ShowOutline.h"
#include "terminal/LogView.h"
#include "terminal/Messages.h"

#include <cstdio>

namespace Tool {

ExitCode ReportLoadFailure(const Inputs& inputs) {
  QuietLog log;
  const FindingList findings = CheckShow(ShowOutline(inputs));
  bool is_told = false;
  for (const Finding& finding : findings)
    if (SeverityOf(finding) > Severity::Warning || finding.ID == FindingID::FileUnreadable) {
      std::fputs(FindingText(finding, stderr).c_str(), stderr);
      is_told |= SeverityOf(finding) > Severity::Warning;
    }
  TellError(std::string("this show cannot be played") + (is_told ? "" : "; `strata check` says what is wrong with it"));
  const ExitCode code = ExitCodeFor(findings);
  return code == ExitCode::Fine ? ExitCode::NotPlayable : code;
}

}  // namespace Tool
