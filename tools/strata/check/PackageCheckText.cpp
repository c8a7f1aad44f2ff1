// SPDX-License-Identifier: BSD-3-Clause
#include "PackageCheck.h"
#include "PageFindings.h"
#include "findings/FindingReport.h"
#include "keys/Moment.h"
#include "terminal/DisplayText.h"

#include <Ferro/Path.h>

#include <algorithm>
#include <cstdio>
#include <map>

namespace Tool {

namespace {

using Assay::Depth;
using Assay::FileFigures;
using Assay::LeftOutReason;

constexpr size_t MaxFigureLines = 3;  // of pictures, and of sounds

std::string Number(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f", value);
  return text;
}

std::string Counted(size_t count, const char* one, const char* many) {
  return std::to_string(count) + ' ' + (count == 1 ? one : many);
}

/// The findings that the profile counts, and below them what follows from them.
FindingList CountedFindings(const FindingList& findings, Assay::Profile profile) {
  const std::vector<size_t> roots = RootsOf(findings);
  std::map<size_t, size_t> places;  // where each that is kept stands
  FindingList counted;
  for (size_t i = 0; i < findings.size(); ++i) {
    if (!Assay::Counts(profile, findings[roots[i]])) continue;
    places[i] = counted.size();
    counted.push_back(findings[i]);
  }
  for (Finding& finding : counted) {
    if (!finding.Cause) continue;
    const auto cause = places.find(*finding.Cause);
    finding.Cause = cause == places.end() ? std::nullopt : std::optional(cause->second);
  }
  return counted;
}

FindingCounts CountsOf(const PackageReport& report) {
  FindingCounts counts;
  for (const Finding& finding : report.Checked.Findings) counts.Add(finding, report.Profile);
  return counts;
}

std::string StandingText(std::optional<FindingClass> worst, bool lacks_files) {
  if (worst == FindingClass::Error) return "It will not play.";
  if (lacks_files) return "It will not play: files are missing.";
  if (!worst) return "Nothing speaks against it.";
  if (worst == FindingClass::Warning) return "There are warnings.";
  return worst == FindingClass::Profile ? "It is outside RDD 52." : "There are notes.";
}

std::string KeyText(const Assay::KeyAnswer& answer) {
  const std::string moment = answer.IsNow ? "now: " : "at " + LocalText(answer.Begin) + ": ";
  if (!answer.HasMessage()) return moment + "no key message";
  return moment + DisplayText(answer.Source) + (answer.Serves() ? " serves" : " does not serve") + ", from " +
         WrittenText(answer.NotBefore) + " until " + WrittenText(answer.NotAfter);
}

class ReportText {
 public:
  explicit ReportText(const PackageReport& report) : m_Report(report), m_Checked(report.Checked) {}

  std::string Text() const {
    std::string text;
    for (const Assay::CheckedPackage& package : m_Checked.Packages) {
      text += DisplayText(package.Folder) + ": " + StandingText(package.Worst, LacksFiles(package)) + '\n';
      for (const Assay::CheckedComposition& composition : m_Checked.Compositions)
        if (composition.Package == package.Folder) text += CompositionText(composition);
    }
    text += FindingsText(CountedFindings(m_Checked.Findings, m_Report.Profile), stdout) + Uncounted();
    return text + Pictures() + Sounds() + PackageVerdict(m_Report) + '\n';
  }

 private:
  [[nodiscard]] bool LacksFiles(const Assay::CheckedPackage& package) const {
    return Lacks([&](const Finding& finding) { return finding.Place.Package == package.Folder; });
  }

  [[nodiscard]] bool Lacks(const auto& is_of) const {
    return std::ranges::any_of(m_Checked.Findings, [&](const Finding& finding) {
      return !finding.Cause && SeverityOf(finding) == Severity::Missing && is_of(finding);
    });
  }

  [[nodiscard]] std::string CompositionText(const Assay::CheckedComposition& composition) const {
    const bool lacks_files = Lacks([&](const Finding& finding) {
      return finding.Place.Composition == composition.ID && finding.Place.Package == composition.Package;
    });
    const auto description = m_Report.Descriptions.find(composition.ID);
    std::string text =
        "  " + DisplayText(composition.Title.empty() ? composition.ID.EncodeString() : composition.Title);
    if (description != m_Report.Descriptions.end() && !description->second.empty())
      text += "  (" + DisplayText(description->second) + ')';
    text += ": " + StandingText(composition.Worst, lacks_files);
    if (composition.IsEncrypted() && !composition.Keys.back().Serves()) text += " It needs keys.";
    text += '\n';
    for (const Assay::KeyAnswer& answer : composition.Keys)
      if (answer.HasMessage() || composition.Keys.size() > 1) text += "    " + KeyText(answer) + '\n';
    return text;
  }

  [[nodiscard]] std::string Uncounted() const {
    const std::string counts = UncountedText(CountsOf(m_Report));
    return counts.empty() ? "" : "Beside what counts: " + counts + ". --profile all tells them.\n";
  }

  /// The files of a kind, those that `level` puts first, a line each.
  [[nodiscard]] std::string Lines(const auto& is_of, const auto& level, const auto& line) const {
    std::vector<const FileFigures*> files;
    for (const FileFigures& file : m_Checked.Figures)
      if (is_of(file)) files.push_back(&file);
    std::ranges::stable_sort(files, [&](auto* a, auto* b) { return level(*a) > level(*b); });
    std::string text;
    for (size_t i = 0; i < std::min(files.size(), MaxFigureLines); ++i) text += line(*files[i]) + '\n';
    if (files.size() > MaxFigureLines)
      text += "  and " + Counted(files.size() - MaxFigureLines, "file", "files") + " below that: --json tells all\n";
    return text;
  }

  static std::string NameOf(const FileFigures& file) {
    return DisplayText(file.Package.empty() ? file.Document : Ferro::PathJoin(file.Package, file.Document));
  }

  [[nodiscard]] std::string Pictures() const {
    return Lines([](const FileFigures& file) { return file.Picture.has_value(); },
                 [](const FileFigures& file) { return file.Picture->PeakRate; },
                 [](const FileFigures& file) {
                   const Assay::PictureFigures& picture = *file.Picture;
                   return "picture " + NameOf(file) + ": mean " + Number(picture.MeanRate) + ", peak " +
                          Number(picture.PeakRate) +
                          (picture.LimitRate > 0 ? " of " + Number(picture.LimitRate) : std::string()) + " Mbit/s";
                 });
  }

  [[nodiscard]] std::string Sounds() const {
    const auto peak = [](const FileFigures& file) {
      return std::ranges::max(file.Channels, {}, &Assay::ChannelFigures::Peak).Peak;
    };
    const auto line = [](const FileFigures& file) {
      std::string levels;
      for (size_t i = 0; i < file.Channels.size(); ++i) {
        const Assay::ChannelFigures& channel = file.Channels[i];
        levels += (levels.empty() ? "" : ", ") +
                  (channel.Label.empty() ? std::to_string(i + 1) : DisplayText(channel.Label)) + ' ' +
                  (channel.IsSilent() ? "silent" : Number(channel.Peak));
      }
      return "sound " + NameOf(file) + ": peaks in dBFS " + levels;
    };
    return Lines([](const FileFigures& file) { return !file.Channels.empty(); }, peak, line);
  }

  const PackageReport& m_Report;
  const Assay::CheckReport& m_Checked;
};

const char* OptionOf(Depth depth) {
  switch (depth) {
    case Depth::Documents:
      return "documents";
    case Depth::Files:
      return "headers of files (--depth files)";
    case Depth::Frames:
      return "frames (--frames)";
    case Depth::Hash:
      return "digests (--hash)";
    case Depth::Decode:
      return "decoded pictures (--decode)";
  }
  return "";
}

const char* ReasonOf(LeftOutReason reason) {
  switch (reason) {
    case LeftOutReason::Cancelled:
      return "stopped before";
    case LeftOutReason::NoKey:
      return "no key";
    case LeftOutReason::Algorithm:
      return "unknown encryption";
    case LeftOutReason::Unreadable:
      return "cannot be read";
    case LeftOutReason::Damaged:
      return "damaged";
    case LeftOutReason::NoMemory:
      return "memory ran out";
  }
  return "";
}

/// " Not read to the end: 2 files (no key)."
std::string LeftOutText(const std::vector<Assay::LeftOut>& left_outs) {
  std::map<LeftOutReason, size_t> counts;
  for (const Assay::LeftOut& left_out : left_outs) ++counts[left_out.Reason];
  std::string text;
  for (const auto& [reason, count] : counts)
    text += (text.empty() ? "" : ", ") + Counted(count, "file", "files") + " (" + ReasonOf(reason) + ')';
  return text.empty() ? "" : " Not read to the end: " + text + '.';
}

/// " Looked at: documents, files; in part: hash. Not looked at: frames (--frames)."
std::string LookedAtText(const PackageReport& report) {
  std::string done;
  std::string begun;
  std::string rest;
  const auto add = [](const char* name, std::string& list) { list += (list.empty() ? "" : ", ") + std::string(name); };
  for (const Depth depth : {Depth::Documents, Depth::Files, Depth::Frames, Depth::Hash, Depth::Decode}) {
    if (report.Checked.LookedAt.Has(depth))
      add(Assay::DepthName(depth), done);
    else if (report.Asked.Has(depth))
      add(Assay::DepthName(depth), begun);
    else
      add(OptionOf(depth), rest);
  }
  return " Looked at: " + (done.empty() ? "nothing to the end" : done) + (begun.empty() ? "" : "; in part: " + begun) +
         '.' + (rest.empty() ? "" : " Not looked at: " + rest + '.') + LeftOutText(report.Checked.LeftOuts);
}

std::string Outcome(const PackageReport& report) {
  const auto& compositions = report.Checked.Compositions;
  const auto bad =
      static_cast<size_t>(std::ranges::count(compositions, FindingClass::Error, &Assay::CheckedComposition::Worst));
  const FindingCounts counts = CountsOf(report);
  switch (report.Code) {
    case ExitCode::Interrupted:
      return "Interrupted: this is what was found until then.";
    case ExitCode::AssetsMissing:
      return "Something is missing: " + MissingText(report.Checked.Findings) + '.';
    case ExitCode::Fine:
      if (counts.Of(FindingClass::Warning, true) == 0) return "Nothing speaks against it.";
      return "There are no errors, but " + CountsText(counts) + '.';
    default:
      break;
  }
  if (counts.Of(FindingClass::Error, true) == 0)
    return std::string("It is not as the profile ") + Assay::ProfileName(report.Profile) +
           " asks: " + CountsText(counts) + '.';
  if (compositions.size() > 1 && bad > 0)
    return std::to_string(bad) + " of " + std::to_string(compositions.size()) + " compositions will not play.";
  return bad > 0 ? "It will not play." : "Errors were found: " + CountsText(counts) + '.';
}

}  // namespace

std::string PackageOutcome(const PackageReport& report) {
  const size_t keyless = report.Code == ExitCode::Interrupted ? 0 : WithoutKeys(report);
  const std::string keys =
      keyless == 0 ? "" : ' ' + Counted(keyless, "composition needs keys.", "compositions need keys.");
  return Outcome(report) + keys;
}

std::string PackageVerdict(const PackageReport& report) {
  return PackageOutcome(report) + LookedAtText(report);
}

std::string PackageText(const PackageReport& report) {
  return ReportText(report).Text();
}

}  // namespace Tool
