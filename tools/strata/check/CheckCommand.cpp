// SPDX-License-Identifier: BSD-3-Clause
#include "CheckCommand.h"

#include "CheckOptions.h"
#include "CheckPage.h"
#include "CheckReport.h"
#include "EngineAnswer.h"
#include "PackageCheck.h"
#include "findings/AssetFindings.h"
#include "findings/FindingReport.h"
#include "findings/ShowFindings.h"
#include "keys/KeyOpening.h"
#include "show/Description.h"
#include "show/Inputs.h"
#include "show/ShowOutline.h"
#include "show/StoreProgress.h"
#include "terminal/Command.h"
#include "terminal/CommandError.h"
#include "terminal/Interrupt.h"
#include "terminal/LogView.h"
#include "terminal/Messages.h"
#include "terminal/ProgressBar.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <optional>

namespace Tool {

namespace {

/// Every asset of the show and the compositions themselves.
Cairn::UUIDList AssetsOf(const ShowOutline& outline) {
  Cairn::UUIDList ids;
  for (const OutlineComposition& composition : outline.Compositions()) {
    ids.push_back(composition.Found ? composition.Found->Info.ID : composition.ID);
    for (const OutlineReel& reel : composition.Reels)
      for (const OutlineAsset& asset : reel.Assets) ids.push_back(asset.Asset.AssetID);
  }
  return ids;
}

/// The length of the show by its documents, for one that the engine does not load.
Ferro::ui32_t SecondsOf(const ShowOutline& outline) {
  constexpr double Rounding = 1e-6;  // of sums of fractions of seconds
  double seconds = 0;
  for (const OutlineComposition& composition : outline.Compositions()) seconds += SecondsOf(composition);
  return static_cast<Ferro::ui32_t>(std::min(seconds + Rounding, 4e9));
}

/// Why the verification did not get to its end; what it found of single files, other findings tell.
std::optional<Finding> FindInVerification(const Cairn::AssetStore& store, const Cairn::Result_t& result) {
  if (result.Success() || result == Ferro::RESULT_CANCELLED) return std::nullopt;
  std::string reason = result.Label();
  if (result == Cairn::RESULT_CN_STORE) {
    const Cairn::StoreFailure failure = store.LastFailure();
    reason = "the asset index" + (failure.File.empty() ? "" : ' ' + failure.File) + ": " + failure.Reason;
  }
  Finding finding(FindingID::StoreUnverified);
  finding.Found = WithoutFullStop(reason);
  return finding;
}

/// What opens the show, and how far it is to be looked at.
struct CheckMeans {
  ShowKeys& Keys;
  const Sigil::KeyRing& Ring;
  bool Hash = false;
  bool Draws = false;
};

/// FindInFrames, while a progress bar tells how far it is.
VerifiedFiles VerifyEncrypted(const ShowOutline& outline, const Sigil::KeyRing& keys, FindingList& findings) {
  ProgressBar bar("Verifying frames", ProgressUnit::Frames);
  return FindInFrames(outline, keys, findings, [&](Ferro::ui64_t done, Ferro::ui64_t total) {
    bar.Update(done, total);
    return !Interrupt::Requested();
  });
}

/// The report on a show that was not looked at to its end.
CheckReport Interrupted(const ShowOutline& outline, CheckReport report) {
  report.Code = ExitCode::Interrupted;
  report.Hash = false;
  report.DurationSeconds = SecondsOf(outline);
  return report;
}

CheckReport MakeReport(const Inputs& inputs, const CheckMeans& means, const std::optional<Finding>& unverified) {
  const ShowOutline outline(inputs);
  const ShowSecurity security(means.Keys, outline);
  CheckReport report;
  report.Duration = outline.Duration();
  for (const OutlineComposition& composition : outline.Compositions())
    report.Compositions.push_back({composition.ID, composition.Title, composition.Path, composition.EditRate,
                                   composition.Start, composition.Duration, composition.Reels.size(),
                                   composition.Stereoscopic, Describe(TraitsOf(composition)),
                                   security.Answers[report.Compositions.size()]});
  report.Hash = means.Hash;
  // After a verification that was broken off, what it found is told all the same.
  report.Findings = Interrupt::Requested() ? FindingsOf(outline, {}, &security) : CheckShow(outline, &security);
  if (unverified) report.Findings.push_back(*unverified);
  if (!Interrupt::Requested()) report.Verified = VerifyEncrypted(outline, means.Ring, report.Findings);
  if (Interrupt::Requested()) return Interrupted(outline, std::move(report));
  const EngineAnswer answer = LoadShow(inputs);
  report.DurationSeconds = answer.Loads ? answer.DurationSeconds : SecondsOf(outline);
  // Where it is known already why the show does not play, the engine has nothing to add.
  if (ExitCodeFor(report.Findings) == ExitCode::Fine)
    report.Findings.insert(report.Findings.end(), answer.Findings.begin(), answer.Findings.end());
  report.Code = ExitCodeFor(report.Findings);
  if (means.Draws) report.Timelines.push_back(MakeTimelineModel(outline, &security, report.Findings));
  return report;
}

/// Appends what was found of one show to what was found of those before it.
void Append(const Candidate& show, const CheckReport& report, CheckReport& all) {
  const bool is_composition = show.Type == Cairn::FT_CPL && report.Compositions.size() == 1;
  all.Shows.push_back({show.Title.empty() ? show.ID.EncodeString() : show.Title, show.Path,
                       is_composition ? report.Compositions.front().Description : "", CheckVerdict(report), report.Code,
                       KeylessCount(report) > 0});
  for (CheckedComposition composition : report.Compositions) {
    composition.Start += all.Duration;
    all.Compositions.push_back(std::move(composition));
  }
  all.Findings.insert(all.Findings.end(), report.Findings.begin(), report.Findings.end());
  all.Timelines.insert(all.Timelines.end(), report.Timelines.begin(), report.Timelines.end());
  all.Duration += report.Duration;
  all.DurationSeconds += report.DurationSeconds;
  all.Verified.Files += report.Verified.Files;
  all.Verified.Frames += report.Verified.Frames;
  all.Hash = all.Hash && report.Hash;
  all.Code = report.Code == ExitCode::Interrupted ? report.Code : ExitCodeFor(all.Findings);
}

/// Verifies and checks the show that `inputs` mean.
CheckReport CheckOne(Inputs& inputs, const CheckMeans& means) {
  Cairn::Result_t verified = Ferro::RESULT_OK;
  if (means.Hash) verified = VerifyDigests(inputs.Store(), AssetsOf(ShowOutline(inputs)));
  return MakeReport(inputs, means, FindInVerification(inputs.Store(), verified));
}

/// Each of several shows by itself.
CheckReport CheckEach(Inputs& inputs, const CheckMeans& means) {
  CheckReport all;
  all.Hash = means.Hash;
  for (const Candidate& show : inputs.Choices()) {
    if (Interrupt::Requested()) all.Code = ExitCode::Interrupted;
    if (all.Code == ExitCode::Interrupted) break;
    inputs.Choose(show);
    Append(show, CheckOne(inputs, means), all);
  }
  return all;
}

ExitCode Check(const CheckOptions& options) {
  const QuietLog log;  // what is wrong is told in other words
  if (options.IsOfPackages()) return CheckPackages(options);
  Inputs inputs;
  const bool is_one = inputs.Open(options.Inputs);
  const bool is_folder = options.Inputs.Names.size() == 1 && !inputs.Choices().empty();
  if (!is_one && !is_folder) {
    TellError(inputs.Problem());
    return inputs.ProblemCode();
  }
  ShowKeys keys(options.Keys, options.Times, FoldersOf(options.Inputs));
  const Sigil::KeyRing ring = OpenKeys(options.Keys, keys.Messages());
  const CheckMeans means{keys, ring, options.Hash, !options.HtmlFile.empty()};
  const CheckReport report = is_one ? CheckOne(inputs, means) : CheckEach(inputs, means);
  if (report.Code == ExitCode::Interrupted) TellRemark("interrupted");
  if (!options.HtmlFile.empty() && report.Code != ExitCode::Interrupted) {
    const std::string page = CheckPage(PageContentOf(report, options.Inputs.Names));
    if (const std::string problem = WriteWholeFile(options.HtmlFile, page); !problem.empty()) {
      TellError(problem);
      return ExitCode::NotPlayable;
    }
  }
  std::fputs((options.AsJson ? CheckJson(report) : CheckText(report)).c_str(), stdout);
  return report.Code;
}

}  // namespace

namespace {

using ProfileChoice = std::optional<Assay::Profile>;
using DepthChoice = std::optional<Assay::Depth>;

void AddDepths(Command& command, CheckOptions& options) {
  using Assay::Depth;
  using Assay::Profile;
  command.Add("--hash", options.Hash, "Verify the digests of all files: reads the whole show");
  command.Add("--frames", options.Frames, "Look at every frame, sample and text of the packages");
  command.Add("--decode", options.Decode, "Decode every picture of the packages");
  command.AddChoice("--depth", options.Depth,
                    std::vector<std::pair<const char*, DepthChoice>>{{"documents", Depth::Documents},
                                                                     {"files", Depth::Files},
                                                                     {"frames", Depth::Frames},
                                                                     {"hash", Depth::Hash},
                                                                     {"decode", Depth::Decode}},
                    "Look at the packages as far as that: at documents alone, at headers of files, at every frame, at "
                    "digests, at decoded pictures; each with those before it");
  command.AddChoice(
      "--profile", options.Profile,
      std::vector<std::pair<const char*, ProfileChoice>>{
          {"plays", Profile::Plays}, {"smpte", Profile::SMPTE}, {"interop", Profile::Interop}, {"all", Profile::All}},
      "What counts of what is found in the packages: what keeps them from playing well, RDD 52 as well, of "
      "that what Interop packages can follow, or notes, too");
}

}  // namespace

void AddCheckCommand(Command& program) {
  const auto options = std::make_shared<CheckOptions>();
  Command& command = program.AddCommand("check", "Say whether a show will play, and what is wrong with it");
  options->Inputs.AddTo(command, "show", "A folder, an asset map, a playlist file or an identifier");
  options->Keys.AddTo(command);
  options->Times.AddTo(command);
  AddDepths(command, *options);
  command.Add("--html", options->HtmlFile, "Write a page into this file, to send on; it needs no other file")
      .Called("FILE");
  command.Add("--json", options->AsJson, "Print the report as JSON");
  command.SetFooter(
      "A folder without a show playlist may have several compositions: each is judged by itself, in one line.\n"
      "Key messages that lie beside the show are found. Without any, an encrypted show needs keys; with some, each "
      "composition\n"
      "needs one that is valid from its start to its end in the show that begins now, or at the time named.\n"
      "With keys, every frame of the encrypted files is verified.\n"
      "With --depth, --frames, --decode or --profile, the packages that lie in the folders named are looked at, each "
      "with\n"
      "its verdict; --frames, --hash and --decode combine, and read each file once. With --index FILE what was found "
      "in\n"
      "contents is kept in FILE.checked: such a check goes on where it stopped.\n"
      "Exit codes: 0 it plays, keys apart, 2 it does not, 3 assets are missing, 4 interrupted: it tells what it found\n"
      "until then. With --profile smpte, interop or all, it is 2 for warnings and departures, too, that the profile "
      "counts.\n"
      "Where the page cannot be written it is 2.\n"
      "Examples:\n"
      "  strata check show --hash --html check.html\n"
      "  strata check show --frames --hash --index checked.index\n"
      "  strata check secret --kdm kdm.xml --at '2026-03-05 20:00'\n"
      "  strata check show/Feature --store show --json");
  command.Does([options] { return Check(*options); });
}

}  // namespace Tool
