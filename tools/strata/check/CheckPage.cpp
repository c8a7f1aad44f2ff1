// SPDX-License-Identifier: BSD-3-Clause
#include "CheckPage.h"

#include "PageFigures.h"
#include "PageFindings.h"
#include "drawing/HtmlPage.h"
#include "drawing/TimelineSvg.h"
#include "terminal/TextForms.h"

#include <Ferro/Path.h>

#include <algorithm>
#include <map>
#include <set>

namespace Tool {

namespace {

using Assay::Depth;

constexpr size_t MaxDrawnShows = 50;  // a page of more would be slow to open

/// Pixels that drawings are made for: narrow screens, paper, wide screens. The style shows the one that fits.
constexpr unsigned DrawingWidths[] = {360, 680, 1080};

/// What a check looks at in each depth, and what asks for it.
struct DepthText {
  Depth Value;
  const char* What;
  const char* Option;
};

constexpr DepthText DepthTexts[] = {
    {Depth::Documents, "Asset maps, packing lists, compositions, folders", ""},
    {Depth::Files, "Headers, indexes, sizes and labels of track files", "--depth files"},
    {Depth::Frames, "Every picture, sample and text", "--frames"},
    {Depth::Hash, "Digests of whole files: whether a byte is damaged", "--hash"},
    {Depth::Decode, "Pictures through the decoder", "--decode"},
};

/// The drawing at each width.
template <class Draw>
std::string Drawings(const Draw& draw) {
  std::string html;
  for (const unsigned width : DrawingWidths)
    html += "<div class=\"drawing for-" + std::to_string(width) + "\">" + HtmlSvg(draw(width)) + "</div>\n";
  return html;
}

std::string Heading(const std::string& text, const std::string& id) {
  return "<section id=\"" + id + "\">\n<h2>" + text + "</h2>\n";
}

class PageWriter {
 public:
  explicit PageWriter(const PageContent& content)
      : m_Content(content), m_Report(content.Report), m_Figures(ByAsset(m_Report.Figures)) {
    for (const TimelineModel& show : content.Shows)
      for (const TimelineComposition& composition : show.Compositions)
        m_Described.try_emplace(composition.ID, &composition);
  }

  std::string Write() {
    m_Html = "<main>\n";
    WriteVerdict();
    WriteCompositions();
    WritePackages();
    WriteFindings();
    WriteShows();
    WriteOtherFiles();
    WriteUncounted();
    WriteLookedAt();
    m_Html += "</main>\n<div class=\"patterns\" aria-hidden=\"true\">" + HtmlSvg(TimelinePatterns()) + "</div>\n";
    return m_Html;
  }

 private:
  void WriteVerdict() {
    const auto worst = Assay::WorstClass(m_Content.Profile, m_Report.Findings);
    m_Html += "<header>\n<p class=\"quiet\">" + HtmlText(m_Content.Title) + "</p>\n<h1 class=\"" +
              StandingStyle(worst) + "\">" + HtmlText(m_Content.Verdict) + "</h1>\n<p class=\"quiet\">Checked " +
              HtmlText(m_Content.Date) + " by strata " + HtmlText(m_Content.Version) + ", profile <code>" +
              Assay::ProfileName(m_Content.Profile) + "</code>. " + NotLookedAt() + "</p>\n";
    if (m_Report.IsCancelled)
      m_Html += "<p class=\"caution\">The check was stopped before its end: this is what it found until then.</p>\n";
    m_Html += "</header>\n";
  }

  /// "Not looked at: digests."
  [[nodiscard]] std::string NotLookedAt() const {
    std::string names;
    for (const DepthText& depth : DepthTexts)
      if (!m_Report.LookedAt.Has(depth.Value))
        names += (names.empty() ? "" : ", ") + std::string(Assay::DepthName(depth.Value));
    return names.empty() ? "Everything was looked at." : "Not looked at: " + names + '.';
  }

  void WriteCompositions() {
    if (m_Report.Compositions.empty()) return;
    std::map<Cairn::UUID, FindingCounts> of_composition;
    std::map<std::pair<std::string, std::string>, FindingCounts> of_document;  // by package
    for (const Assay::Finding& finding : m_Report.Findings) {
      const Assay::FindingPlace& place = finding.Place;
      FindingCounts& counts = place.Composition.HasValue() ? of_composition[place.Composition]
                                                           : of_document[{place.Package, place.Document}];
      counts.Add(finding, m_Content.Profile);
    }
    m_Html += Heading("Compositions", "compositions") + "<ul class=\"cards\">\n";
    for (const Assay::CheckedComposition& composition : m_Report.Compositions) {
      FindingCounts found = of_composition[composition.ID];
      found.Add(of_document[{composition.Package, composition.Document}]);
      m_Html += "<li>\n<h3>" + HtmlText(composition.Title.empty() ? composition.ID.EncodeString() : composition.Title) +
                "</h3>\n";
      WriteDescription(composition.ID);
      m_Html += "<p>" + Standing(composition.Worst, found) + "</p>\n<p class=\"name\">" +
                HtmlText(FileText(composition)) + composition.ID.EncodeString() + "</p>\n</li>\n";
    }
    m_Html += "</ul>\n</section>\n";
  }

  /// "Feature/CPL.xml, "; empty where there is none.
  [[nodiscard]] static std::string FileText(const Assay::CheckedComposition& composition) {
    if (composition.Document.empty()) return "";
    const std::string folder = Ferro::PathBasename(composition.Package);
    return (folder.empty() ? "" : folder + '/') + composition.Document + ", ";
  }

  /// What was found, and beside it what does not count.
  [[nodiscard]] static std::string Standing(std::optional<Assay::FindingClass> worst, const FindingCounts& counts) {
    const std::string beside = UncountedText(counts);
    return std::string("<span class=\"") + StandingStyle(worst) + "\">Found: " + HtmlText(CountsText(counts)) +
           ".</span>" + (beside.empty() ? "" : " <span class=\"quiet\">Not counted: " + HtmlText(beside) + ".</span>");
  }

  void WriteDescription(const Cairn::UUID& id) {
    const auto found = m_Described.find(id);
    if (found == m_Described.end()) return;
    const TimelineComposition& composition = *found->second;
    std::string text = composition.Description;
    const auto add = [&text](const std::string& part) { text += (text.empty() || part.empty() ? "" : ", ") + part; };
    if (composition.Seconds > 0) add(DurationText(composition.Seconds));
    add(composition.Kind);
    m_Html += "<p>" + HtmlText(text) + "</p>\n";
  }

  void WritePackages() {
    if (m_Report.Packages.size() < 2) return;
    std::map<std::string, FindingCounts> counts;
    for (const Assay::Finding& finding : m_Report.Findings)
      counts[finding.Place.Package].Add(finding, m_Content.Profile);
    m_Html += Heading("Packages", "packages") + "<table class=\"list\">\n";
    for (const Assay::CheckedPackage& package : m_Report.Packages)
      m_Html += "<tr><td>" + HtmlText(package.Folder) + "</td><td>" + Standing(package.Worst, counts[package.Folder]) +
                "</td></tr>\n";
    m_Html += "</table>\n</section>\n";
  }

  void WriteFindings() {
    FindingCounts counts;
    for (const Assay::Finding& finding : m_Report.Findings) counts.Add(finding, m_Content.Profile);
    m_Html += Heading("Findings: " + HtmlText(CountsText(counts)), "findings") +
              PageFindings(m_Report, m_Content.Profile, true) + "</section>\n";
  }

  void WriteUncounted() {
    const std::string findings = PageFindings(m_Report, m_Content.Profile, false);
    if (findings.empty()) return;
    m_Html += Heading("Findings that do not count", "uncounted") + "<p class=\"quiet\">The profile <code>" +
              Assay::ProfileName(m_Content.Profile) + "</code> passes over these.</p>\n" + findings + "</section>\n";
  }

  void WriteShows() {
    const size_t drawn = std::min(m_Content.Shows.size(), MaxDrawnShows);
    for (size_t index = 0; index < drawn; ++index) {
      const TimelineModel& show = m_Content.Shows[index];
      m_Html += Heading("Timeline" + (m_Content.Shows.size() > 1 ? ": " + HtmlText(show.Title) : ""),
                        "timeline-" + std::to_string(index + 1)) +
                Drawings([&](unsigned width) { return TimelineLanes(show, width); });
      WriteRates(show);
      WriteLevels(show);
      m_Html += "</section>\n";
    }
    if (drawn < m_Content.Shows.size())
      m_Html += "<p>" + std::to_string(m_Content.Shows.size() - drawn) +
                " more are not drawn: <code>strata timeline</code> draws each.</p>\n";
  }

  void WriteRates(const TimelineModel& show) {
    if (show.Seconds <= 0) return;
    for (const TimelineLane& lane : show.Lanes)
      for (const TimelineTrack& track : lane.Tracks) m_Shown.insert(track.Asset.AssetID);
    WriteCurve("Bit rate of the picture", RateCurveOf(show, m_Figures));
  }

  void WriteCurve(const std::string& heading, const RateCurve& curve) {
    if (curve.IsEmpty()) return;
    m_Html += "<figure>\n<h3>" + HtmlText(heading) + "</h3>\n" +
              Drawings([&](unsigned width) { return RateChart(curve, width); }) + "<figcaption>" +
              HtmlText(RateCurveText(curve)) + "</figcaption>\n</figure>\n";
  }

  void WriteLevels(const TimelineModel& show) {
    std::string figures;
    for (size_t index = 0; index < show.Compositions.size(); ++index)
      figures += LevelFigure(show.Compositions[index].Title, LevelsOf(show, index, m_Figures));
    if (!figures.empty())
      m_Html +=
          "<h3>Sound levels: the highest sample of each channel</h3>\n<div class=\"levels\">\n" + figures + "</div>\n";
  }

  [[nodiscard]] static std::string LevelFigure(const std::string& title, const std::vector<ChannelLevel>& levels) {
    if (levels.empty()) return "";
    return "<figure>\n<figcaption>" + HtmlText(title) + "</figcaption>\n" + HtmlSvg(LevelChart(levels)) + "</figure>\n";
  }

  /// Files whose frames were read and that no drawn show plays.
  void WriteOtherFiles() {
    std::string levels;
    const size_t before = m_Html.size();
    size_t left = MaxDrawnShows;
    for (const Assay::FileFigures& file : m_Report.Figures) {
      if (m_Shown.contains(file.Asset) || file.Duration == 0 || left == 0) continue;
      --left;
      if (file.Picture) WriteCurve("Bit rate: " + file.Document, RateCurveOf(file));
      levels += LevelFigure(file.Document, LevelsOf(file));
    }
    if (!levels.empty()) m_Html += "<div class=\"levels\">\n" + levels + "</div>\n";
    if (m_Html.size() > before) {
      m_Html.insert(before, Heading("Other files", "files"));
      m_Html += "</section>\n";
    }
  }

  void WriteLookedAt() {
    m_Html += Heading("What was looked at", "looked-at") + "<table class=\"list\">\n";
    for (const DepthText& depth : DepthTexts) {
      const bool was = m_Report.LookedAt.Has(depth.Value);
      m_Html += std::string("<tr><td class=\"") + (was ? "verdict\">looked at" : "caution\">not looked at") +
                "</td><td>" + depth.What +
                (was || *depth.Option == '\0' ? "" : ": <code>" + std::string(depth.Option) + "</code>") +
                "</td></tr>\n";
    }
    m_Html +=
        "</table>\n<p class=\"quiet\">Each finding has a name, in small letters below it, by which "
        "<code>findings.md</code> tells more of it.</p>\n</section>\n";
  }

  const PageContent& m_Content;
  const Assay::CheckReport& m_Report;
  const FiguresByAsset m_Figures;
  std::map<Cairn::UUID, const TimelineComposition*> m_Described;
  std::set<Cairn::UUID> m_Shown;  // assets of the shows that were drawn
  std::string m_Html;
};

}  // namespace

std::string CheckPage(const PageContent& content) {
  return HtmlPage({.Title = "Check of " + content.Title,
                   .Style = CheckPageStyle(),
                   .Body = PageWriter(content).Write(),
                   .HasScripts = false});
}

}  // namespace Tool
