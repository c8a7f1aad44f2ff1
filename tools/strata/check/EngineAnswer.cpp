// SPDX-License-Identifier: BSD-3-Clause
#include "EngineAnswer.h"

#include "findings/AssetFindings.h"
#include "terminal/LogView.h"

#include <Strata/IPlaylist.h>

namespace Tool {

EngineAnswer LoadShow(const Inputs& inputs) {
  QuietLog log;
  EngineAnswer answer;
  Ferro::mem_ptr<Strata::IPlaylist> playlist;
  Strata::Result_t result = Strata::NewPlaylist(playlist);
  if (result.Success()) {
    result = inputs.Load(*playlist);
    answer.DurationSeconds = playlist->GetDurationSeconds();
  }
  answer.Loads = result.Success();
  std::string reason = result.Label();
  for (const Ferro::LogEntry& entry : log.Take()) {
    if (entry.Level == Ferro::LogLevel::Error && !answer.Loads)
      reason = entry.Message;
    else
      answer.Findings.emplace_back(FindingID::ShowRemark).Found = WithoutFullStop(entry.Message);
  }
  if (!answer.Loads) answer.Findings.emplace_back(FindingID::ShowRefused).Found = WithoutFullStop(reason);
  return answer;
}

}  // namespace Tool
