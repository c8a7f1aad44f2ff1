// SPDX-License-Identifier: BSD-3-Clause
#include "CheckCommand.h"

#include "CheckReport.h"
#include "findings/FindingReport.h"
#include "show/Inputs.h"
#include "show/ShowOutline.h"
#include "show/StoreProgress.h"
#include "terminal/Command.h"
#include "terminal/Interrupt.h"
#include "terminal/LogView.h"

#include <Strata/IPlaylist.h>

#include <cstdio>
#include <memory>

namespace Tool {

namespace {

struct CheckOptions {
  InputOptions Inputs;
  bool Hash = false;
  bool AsJson = false;
};

/// What the engine says of the show when it loads it.
struct EngineAnswer {
  bool Loads = false;
  std::vector<Finding> Findings;
  Ferro::ui32_t DurationSeconds = 0;
};

/// What the engine logs, and why it refuses the show.
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
      answer.Findings.emplace_back(FindingID::ShowRemark).Message = entry.Message;
  }
  if (!answer.Loads) answer.Findings.emplace_back(FindingID::ShowRefused).Message += " " + reason;
  return answer;
}

/// Every asset of the show and the compositions themselves.
Cairn::UUIDList AssetsOf(const ShowOutline& outline) {
  Cairn::UUIDList ids;
  for (const OutlineComposition& composition : outline.Compositions()) {
    ids.push_back(composition.ID);
    for (const OutlineReel& reel : composition.Reels)
      for (const OutlineAsset& asset : reel.Assets) ids.push_back(asset.Asset.AssetID);
  }
  return ids;
}

CheckReport MakeReport(const Inputs& inputs) {
  const ShowOutline outline(inputs);
  CheckReport report;
  report.Duration = outline.Duration();
  for (const OutlineComposition& composition : outline.Compositions())
    report.Compositions.push_back({composition.ID, composition.Title, composition.Path, composition.EditRate,
                                   composition.Start, composition.Duration, composition.Reels.size(),
                                   composition.Stereoscopic});
  report.Findings = CheckShow(outline);
  if (Interrupt::Requested()) return report;
  const EngineAnswer answer = LoadShow(inputs);
  report.DurationSeconds = answer.DurationSeconds;
  // Where it is known already why the show does not play, the engine has nothing to add.
  if (ExitCodeFor(report.Findings) == ExitCode::Fine)
    report.Findings.insert(report.Findings.end(), answer.Findings.begin(), answer.Findings.end());
  report.Code = ExitCodeFor(report.Findings);
  return report;
}

ExitCode Check(const CheckOptions& options) {
  const QuietLog log;  // what is wrong is told in other words
  Inputs inputs;
  if (!inputs.Open(options.Inputs)) {
    std::fprintf(stderr, "strata: %s\n", inputs.Problem().c_str());
    return inputs.ProblemCode();
  }
  if (options.Hash) static_cast<void>(VerifyDigests(inputs.Store(), AssetsOf(ShowOutline(inputs))));
  const CheckReport report = Interrupt::Requested() ? CheckReport() : MakeReport(inputs);
  if (Interrupt::Requested()) {
    std::fputs("strata: interrupted\n", stderr);
    return ExitCode::Interrupted;
  }
  std::fputs((options.AsJson ? CheckJson(report) : CheckText(report)).c_str(), stdout);
  return report.Code;
}

}  // namespace

void AddCheckCommand(Command& program) {
  const auto options = std::make_shared<CheckOptions>();
  Command& command = program.AddCommand("check", "Say whether a show will play, and what is wrong with it");
  options->Inputs.AddTo(command, "show", "A folder, an asset map, a playlist file or an identifier");
  command.Add("--hash", options->Hash, "Verify the digests of all files: reads the whole show");
  command.Add("--json", options->AsJson, "Print the report as JSON");
  command.SetFooter(
      "Exit codes: 0 it plays, 2 it does not, 3 assets are missing, 4 interrupted.\n"
      "Examples:\n"
      "  strata check show --hash\n"
      "  strata check show/Feature --store show --json");
  command.Does([options] { return Check(*options); });
}

}  // namespace Tool
