// SPDX-License-Identifier: BSD-3-Clause
#include "CheckCommand.h"

#include "findings/ShowFindings.h"
#include "show/Inputs.h"
#include "show/ShowOutline.h"
#include "terminal/Command.h"
#include "terminal/ExitCode.h"
#include "terminal/Interrupt.h"
#include "terminal/LogView.h"
#include "terminal/ProgressBar.h"
#include "terminal/Report.h"
#include "terminal/TextForms.h"

#include <Strata/IPlaylist.h>

#include <algorithm>
#include <map>
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
  Strata::Result_t Result = Ferro::RESULT_OK;
  std::vector<Finding> Findings;
  Ferro::ui32_t DurationSeconds = 0;
};

// What the engine logs, and why it refuses the show.
EngineAnswer LoadShow(const Inputs& inputs, QuietLog& log) {
  EngineAnswer answer;
  static_cast<void>(log.Take());
  {
    Ferro::mem_ptr<Strata::IPlaylist> playlist;
    answer.Result = Strata::NewPlaylist(playlist);
    if (answer.Result.Success()) answer.Result = inputs.Load(*playlist);
    answer.DurationSeconds = playlist->GetDurationSeconds();
  }
  std::string reason = answer.Result.Label();
  for (const Ferro::LogEntry& entry : log.Take()) {
    if (entry.Level == Ferro::LogLevel::Error && answer.Result.Failure()) {
      reason = entry.Message;
      continue;
    }
    Finding& finding = answer.Findings.emplace_back();
    finding.Level = Severity::Warning;
    finding.Message = entry.Message;
  }
  if (answer.Result.Failure()) answer.Findings.emplace_back().Message = "The engine refuses the show: " + reason;
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

/// False when the user stopped it.
bool Verify(Inputs& inputs) {
  ProgressBar bar("Verifying");
  const auto progress = [&](const Cairn::VerifyProgress& now) {
    bar.Update(now.BytesDone, now.BytesTotal);
    return !Interrupt::Requested();
  };
  const Cairn::UUIDList ids = AssetsOf(ShowOutline(inputs));
  return ids.empty() || !(inputs.Store().VerifyDigests(ids, 0, progress) == Ferro::RESULT_CANCELLED);
}

Json CompositionJson(const OutlineComposition& composition) {
  return Json{{"id", composition.ID.EncodeString()},
              {"title", composition.Title},
              {"file", composition.Path},
              {"edit_rate", composition.EditRate.EncodeString()},
              {"start", composition.Start},
              {"duration", composition.Duration},
              {"reels", composition.Reels.size()},
              {"stereoscopic", composition.Stereoscopic}};
}

// Where it is known already why the show does not play, the engine has nothing to add; nor about a file that is told of.
void AddEngineFindings(const EngineAnswer& answer, std::vector<Finding>& findings) {
  const bool explained = ExitCodeFor(findings) != ExitCode::Fine;
  std::vector<Finding> added;
  for (const Finding& finding : answer.Findings) {
    const bool is_told = std::any_of(findings.begin(), findings.end(), [&](const Finding& other) {
      return !other.Found.empty() && finding.Message.find(other.Found) != std::string::npos;
    });
    if (!explained && !is_told) added.push_back(finding);
  }
  findings.insert(findings.end(), added.begin(), added.end());
}

std::string VerdictText(const std::vector<Finding>& findings, const EngineAnswer& answer, ExitCode code) {
  if (code == ExitCode::Fine) return "This show will play: " + DurationText(answer.DurationSeconds) + ".";
  if (code == ExitCode::NotPlayable) return "This show will not play.";
  std::map<std::string, unsigned> missing;
  for (const Finding& finding : findings)
    if (finding.Level == Severity::Missing) ++missing[finding.AssetType];
  std::string text = "This show will not play: missing";
  const char* separator = " ";
  for (const auto& [kind, count] : missing) {
    const bool is_plural = count > 1 && kind != AssetKindName(AssetKind::AuxData);
    text += separator + std::to_string(count) + " " + kind + (is_plural ? "s" : "");
    separator = ", ";
  }
  return text + ".";
}

Json MakeReport(const ShowOutline& outline, const std::vector<Finding>& findings, const EngineAnswer& answer,
                ExitCode code) {
  Json report = NewReport("check");
  report["playable"] = code == ExitCode::Fine;
  report["exit_code"] = static_cast<int>(code);
  report["duration"] = outline.Duration();
  report["duration_seconds"] = answer.DurationSeconds;
  report["compositions"] = Json::array();
  for (const OutlineComposition& composition : outline.Compositions())
    report["compositions"].push_back(CompositionJson(composition));
  report["findings"] = Json::array();
  for (const Finding& finding : findings) report["findings"].push_back(FindingToJson(finding));
  report["verdict"] = VerdictText(findings, answer, code);
  return report;
}

std::string Render(const Json& report) {
  std::string text;
  for (const Json& composition : report["compositions"]) {
    QUIRE::Rational rate;
    static_cast<void>(rate.DecodeString(composition["edit_rate"].get<std::string>()));
    const auto reels = composition["reels"].get<size_t>();
    if (reels == 0) continue;  // it could not be read: a finding says why
    text += TimeCodeText(composition["start"].get<unsigned>(), rate) + "  " + composition["title"].get<std::string>() +
            "  (" + std::to_string(reels) + (reels == 1 ? " reel, " : " reels, ") + RateText(rate) + " fps" +
            (composition["stereoscopic"].get<bool>() ? ", stereoscopic" : "") + ")\n";
  }
  for (const Json& finding : report["findings"]) text += FindingText(finding);
  return text + report["verdict"].get<std::string>() + '\n';
}

ExitCode Check(const CheckOptions& options) {
  QuietLog log;
  Inputs inputs;
  if (!inputs.Open(options.Inputs)) {
    std::fprintf(stderr, "strata: %s\n", inputs.Problem().c_str());
    return inputs.ProblemCode();
  }
  if (options.Hash && !Verify(inputs)) {
    std::fputs("strata: interrupted\n", stderr);
    return ExitCode::Interrupted;
  }
  const ShowOutline outline(inputs);
  std::vector<Finding> findings = FindingsOf(outline);
  if (Interrupt::Requested()) {
    std::fputs("strata: interrupted\n", stderr);
    return ExitCode::Interrupted;
  }
  const EngineAnswer answer = LoadShow(inputs, log);
  AddEngineFindings(answer, findings);
  const ExitCode code = ExitCodeFor(findings);
  PrintReport(MakeReport(outline, findings, answer, code), options.AsJson, Render);
  return code;
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
