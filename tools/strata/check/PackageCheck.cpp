// SPDX-License-Identifier: BSD-3-Clause
#include "PackageCheck.h"

#include "CheckPage.h"
#include "EngineAnswer.h"
#include "findings/AssetFindings.h"
#include "findings/FindingReport.h"
#include "keys/KeyOpening.h"
#include "keys/Moment.h"
#include "keys/ShowKeys.h"
#include "show/Description.h"
#include "show/Paths.h"
#include "terminal/CommandError.h"
#include "terminal/Interrupt.h"
#include "terminal/Messages.h"
#include "terminal/ProgressBar.h"

#include <Ferro/Path.h>
#include <Strata/Version.h>

#include <algorithm>
#include <cstdio>
#include <optional>
#include <string_view>

namespace Tool {

namespace {

using Assay::CheckPhase;
using Assay::Profile;

constexpr char KeptSuffix[] = ".checked";  // of the file beside the index

/// A bar for each phase of the check.
class PhaseBar {
 public:
  /// False where the user stops the check.
  bool Update(const Assay::CheckProgress& now) {
    if (!m_Bar || m_Phase != now.Phase) Begin(now.Phase);
    switch (now.Phase) {
      case CheckPhase::Documents:
        m_Bar->Update(now.PackagesDone, now.PackageCount);
        break;
      case CheckPhase::Files:
        m_Bar->Update(now.FilesDone, now.FileCount);
        break;
      case CheckPhase::Contents:
        m_Bar->Update(now.BytesDone, now.BytesTotal);
        break;
    }
    return !Interrupt::Requested();
  }

 private:
  void Begin(CheckPhase phase) {
    m_Phase = phase;
    if (phase == CheckPhase::Documents)
      m_Bar.emplace("Reading documents", ProgressUnit::Packages);
    else if (phase == CheckPhase::Files)
      m_Bar.emplace("Reading headers", ProgressUnit::Files);
    else
      m_Bar.emplace("Checking contents", ProgressUnit::Bytes);
  }

  CheckPhase m_Phase = CheckPhase::Documents;
  std::optional<ProgressBar> m_Bar;
};

/// Where the packages are: also those of compositions and shows that were named by their identifiers.
std::vector<std::string> PackageFoldersOf(const InputOptions& options, const Inputs& inputs) {
  InputOptions names;
  names.Names = options.Names;
  std::vector<std::string> folders = FoldersOf(names);
  if (folders.size() < options.Names.size())
    for (const Candidate& show : inputs.Shows()) folders.push_back(Ferro::PathDirname(show.Path));
  return folders;
}

/// Whether what could not be found out of the names ends the check: it is no folder whose packages can be looked at.
bool IsFinal(const Inputs& inputs, const InputOptions& options) {
  if (inputs.ProblemCode() == ExitCode::Interrupted) return true;
  return inputs.ProblemCode() == ExitCode::Usage && !std::ranges::all_of(options.Names, IsFolder);
}

class PackageChecker {
 public:
  explicit PackageChecker(const CheckOptions& options) : m_Options(options) {
    m_Report.Profile = options.Profile.value_or(Profile::Plays);
    m_Report.Asked = options.Depths();
  }

  ExitCode Run() {
    m_IsOne = m_Inputs.OpenStores(m_Options.Inputs);
    if (!m_IsOne) return Refuse();
    m_IsOne = m_Inputs.FindShow(m_Options.Inputs);
    if (!m_IsOne && m_Inputs.Choices().empty() && IsFinal(m_Inputs, m_Options.Inputs)) return Refuse();
    Check();
    if (!m_Report.Checked.IsCancelled) LookAtShow();
    const bool is_stopped = m_Report.Checked.IsCancelled || Interrupt::Requested();
    m_Report.Checked.IsCancelled = is_stopped;
    m_Report.Code = is_stopped ? ExitCode::Interrupted : ExitCodeFor(Findings(), m_Report.Profile);
    TellOfKept();
    return Tell();
  }

 private:
  [[nodiscard]] FindingList& Findings() { return m_Report.Checked.Findings; }

  ExitCode Refuse() const {
    TellError(m_Inputs.Problem());
    return m_Inputs.ProblemCode();
  }

  void Check() {
    const std::vector<std::string> folders = PackageFoldersOf(m_Options.Inputs, m_Inputs);
    ShowKeys keys(m_Options.Keys, m_Options.Times, FoldersOf(m_Options.Inputs));
    const Sigil::KeyRing ring = OpenKeys(m_Options.Keys, keys.Messages());
    PhaseBar bar;
    Assay::CheckRequest request;
    keys.SetUp(request);
    request.Keys = &ring;
    request.Folders = folders;
    request.Store = &m_Inputs.Store();
    request.Profile = m_Report.Profile;
    request.Depths = m_Report.Asked;
    request.OnProgress = [&bar](const Assay::CheckProgress& now) { return bar.Update(now); };
    if (!m_Options.Inputs.Index.empty()) request.KeptResults = m_Options.Inputs.Index + KeptSuffix;
    if (m_IsOne) request.Starts = Starts();
    if (const Assay::Result_t result = Assay::Check(request, m_Report.Checked); result.Failure())
      throw CommandError(ExitCode::NotPlayable, result.Label());
  }

  /// Where each composition of the show begins.
  [[nodiscard]] std::vector<Assay::CompositionStart> Starts() const {
    std::vector<Assay::CompositionStart> starts;
    double seconds = 0;
    const ShowOutline outline(m_Inputs);
    for (const OutlineComposition& composition : outline.Compositions()) {
      starts.push_back({composition.ID, seconds});
      seconds += SecondsOf(composition);
    }
    return starts;
  }

  /// The show as one timeline where it is one, then what compositions are.
  void LookAtShow() {
    FindingList of_packages = Findings();
    if (m_IsOne) {
      const ShowOutline outline(m_Inputs);
      FindInShow(outline);
      Describe(outline);
      if (!m_Options.HtmlFile.empty()) m_Report.Timelines.push_back(MakeTimelineModel(outline, nullptr, of_packages));
    } else if (m_Inputs.Choices().empty() && ExitCodeFor(Findings()) == ExitCode::Fine) {
      Findings().emplace_back(FindingID::ShowRefused).Found = WithoutFullStop(m_Inputs.Problem());
    }
    for (const Assay::CheckedComposition& composition : m_Report.Checked.Compositions) {
      if (Interrupt::Requested() || m_Report.Descriptions.contains(composition.ID)) continue;
      m_Inputs.Choose({Cairn::FT_CPL, composition.ID, composition.Title,
                       Ferro::PathJoin(composition.Package, composition.Document)});
      const ShowOutline outline(m_Inputs);
      Describe(outline);
      if (!m_Options.HtmlFile.empty() && !m_IsOne)
        m_Report.Timelines.push_back(MakeTimelineModel(outline, nullptr, of_packages));
    }
  }

  /// What only the show as a whole tells. Where it is known already why it does not play, the engine has nothing to add.
  void FindInShow(const ShowOutline& outline) {
    for (const Finding& finding : CheckShow(outline)) {
      const std::string_view name = Assay::RuleOf(finding.ID).Name;
      if (name.starts_with("show-") && !finding.Cause) Findings().push_back(finding);
    }
    if (Interrupt::Requested() || ExitCodeFor(Findings()) != ExitCode::Fine) return;
    const FindingList answer = LoadShow(m_Inputs).Findings;
    Findings().insert(Findings().end(), answer.begin(), answer.end());
  }

  void Describe(const ShowOutline& outline) {
    for (const OutlineComposition& composition : outline.Compositions())
      m_Report.Descriptions.try_emplace(composition.ID,
                                        composition.Reels.empty() ? "" : Tool::Describe(TraitsOf(composition)));
  }

  /// What became of the results that are kept beside the index.
  void TellOfKept() const {
    const std::string file = m_Options.Inputs.Index + KeptSuffix;
    if (m_Report.Checked.Kept == Assay::KeptState::Damaged)
      TellWarning(file + ": this is another file, or damaged: nothing was taken from it.");
    if (m_Report.Checked.Kept == Assay::KeptState::Unwritten)
      TellWarning(file + ": what was found cannot be kept there: the next check begins anew.");
  }

  ExitCode Tell() const {
    const bool is_stopped = m_Report.Code == ExitCode::Interrupted;
    if (is_stopped) TellRemark("interrupted");
    if (!m_Options.HtmlFile.empty() && !is_stopped)
      if (const std::string problem = WriteWholeFile(m_Options.HtmlFile, CheckPage(Page())); !problem.empty()) {
        TellError(problem);
        return ExitCode::NotPlayable;
      }
    std::fputs((m_Options.AsJson ? PackageJson(m_Report) : PackageText(m_Report)).c_str(), stdout);
    return m_Report.Code;
  }

  [[nodiscard]] PageContent Page() const {
    PageContent content;
    for (const std::string& name : m_Options.Inputs.Names) content.Title += (content.Title.empty() ? "" : ", ") + name;
    content.Verdict = PackageOutcome(m_Report);
    content.Date = LocalText(Ferro::Timestamp());
    content.Version = Strata::Version();
    content.Profile = m_Report.Profile;
    content.Report = m_Report.Checked;
    content.Shows = m_Report.Timelines;
    return content;
  }

  const CheckOptions& m_Options;
  Inputs m_Inputs;
  bool m_IsOne = false;  // the names mean one show
  PackageReport m_Report;
};

}  // namespace

ExitCode CheckPackages(const CheckOptions& options) {
  return PackageChecker(options).Run();
}

ExitCode ExitCodeFor(const FindingList& findings, Assay::Profile profile) {
  const ExitCode plays = ExitCodeFor(findings);
  if (profile == Profile::Plays || plays == ExitCode::NotPlayable) return plays;
  const bool departs = std::ranges::any_of(findings, [&](const Finding& finding) {
    const Severity severity = SeverityOf(finding);
    return Assay::Counts(profile, finding) && (severity == Severity::Warning || severity == Severity::Profile);
  });
  return departs ? ExitCode::NotPlayable : plays;
}

size_t WithoutKeys(const PackageReport& report) {
  return static_cast<size_t>(
      std::ranges::count_if(report.Checked.Compositions, [](const Assay::CheckedComposition& composition) {
        return composition.IsEncrypted() && !composition.Keys.back().Serves();
      }));
}

}  // namespace Tool
