// SPDX-License-Identifier: BSD-3-Clause
#include "PageFindings.h"

#include "drawing/HtmlPage.h"
#include "terminal/TextForms.h"

#include <Ferro/Path.h>

#include <map>

namespace Tool {

namespace {

using Assay::FindingClass;

constexpr size_t LongestChain = 32;  // of causes

/// What of a class is on the page.
struct ClassText {
  FindingClass Class;
  const char* One;
  const char* Many;
  const char* Heading;
  const char* Meaning;
  const char* Style;
};

constexpr ClassText ClassTexts[] = {
    {FindingClass::Error, "error", "errors", "Errors", "servers refuse it, or it does not play", "alarmed"},
    {FindingClass::Warning, "warning", "warnings", "Warnings", "some equipment fails, or the audience notices",
     "caution"},
    {FindingClass::Profile, "departure from RDD 52", "departures from RDD 52", "Outside RDD 52",
     "it plays all the same", "plain"},
    {FindingClass::Note, "note", "notes", "Notes", "worth knowing", "plain"},
};

std::string Listed(const FindingCounts& counts, bool is_counted) {
  std::string list;
  for (const ClassText& text : ClassTexts) {
    const size_t count = counts.Of(text.Class, is_counted);
    if (count == 0) continue;
    list += (list.empty() ? "" : ", ") + std::to_string(count) + ' ' + (count == 1 ? text.One : text.Many);
  }
  return list;
}

/// "Expected 24 1, found 25 1."; empty where nothing is said of it.
std::string ValuesText(const Assay::Finding& finding) {
  if (finding.Expected.empty() && finding.Found.empty()) return "";
  if (finding.Found.empty()) return "Expected " + finding.Expected + '.';
  return (finding.Expected.empty() ? "Found " : "Expected " + finding.Expected + ", found ") + finding.Found + '.';
}

class FindingsWriter {
 public:
  /// @param is_counted  whether to tell what the profile counts, or what it does not.
  FindingsWriter(const Assay::CheckReport& report, Assay::Profile profile, bool is_counted)
      : m_Findings(report.Findings), m_WithPackage(report.Packages.size() > 1), m_Followers(m_Findings.size()) {
    const std::vector<size_t> roots = RootsOf(m_Findings);
    for (size_t index = 0; index < roots.size(); ++index) {
      const Assay::Finding& root = m_Findings[roots[index]];
      if (Assay::Counts(profile, root) != is_counted) continue;
      if (roots[index] == index)
        AddToKind(index);
      else
        m_Followers[roots[index]].push_back(index);
    }
  }

  std::string Write() {
    for (const ClassText& text : ClassTexts) WriteClass(text);
    return m_Html;
  }

 private:
  /// All findings of one kind and class, in order.
  struct Kind {
    Assay::FindingID ID;
    FindingClass Class;
    std::vector<size_t> Indexes;
  };

  void AddToKind(size_t index) {
    const Assay::Finding& finding = m_Findings[index];
    const auto [known, is_new] = m_KindOf.try_emplace({finding.ID, finding.Class}, m_Kinds.size());
    if (is_new) m_Kinds.push_back({finding.ID, finding.Class, {}});
    m_Kinds[known->second].Indexes.push_back(index);
  }

  void WriteClass(const ClassText& text) {
    size_t count = 0;
    for (const Kind& kind : m_Kinds)
      if (kind.Class == text.Class) count += kind.Indexes.size();
    if (count == 0) return;
    m_Html += std::string("<h3 class=\"") + text.Style + "\">" + text.Heading + " <span class=\"quiet\">" +
              std::to_string(count) + ": " + text.Meaning + "</span></h3>\n";
    for (const Kind& kind : m_Kinds)
      if (kind.Class == text.Class) WriteKind(kind, text);
  }

  void WriteKind(const Kind& kind, const ClassText& text) {
    const Assay::FindingRule& rule = Assay::RuleOf(kind.ID);
    m_Html += std::string("<article class=\"finding ") + Assay::FindingClassName(kind.Class) +
              "\">\n<h4><span class=\"" + text.Style + "\">" + Assay::FindingClassName(kind.Class) + "</span> " +
              HtmlText(rule.Sentence) + "</h4>\n";
    m_Html += "<p><span class=\"quiet\">What to do:</span> " + HtmlText(rule.Advice) + "</p>\n";
    m_Html += "<ul>\n";
    for (size_t number = 0; number < std::min(kind.Indexes.size(), MaxPagePlaces); ++number) {
      m_Html += "<li>" + Told(m_Findings[kind.Indexes[number]]);
      WriteFollowers(m_Followers[kind.Indexes[number]]);
      m_Html += "</li>\n";
    }
    m_Html += "</ul>\n";
    More(kind.Indexes.size());
    m_Html += "<p class=\"name\">" + HtmlText(rule.Name) + (*rule.Source == '\0' ? "" : ", ") + HtmlText(rule.Source) +
              "</p>\n</article>\n";
  }

  void WriteFollowers(const std::vector<size_t>& indexes) {
    if (indexes.empty()) return;
    m_Html += "\n<p class=\"quiet\">It follows from this:</p>\n<ul class=\"followers\">\n";
    for (size_t number = 0; number < std::min(indexes.size(), MaxPagePlaces); ++number) {
      const Assay::Finding& finding = m_Findings[indexes[number]];
      m_Html += "<li>" + HtmlText(finding.Sentence()) + ' ' + Told(finding) + " <span class=\"name\">" +
                HtmlText(Assay::RuleOf(finding.ID).Name) + "</span></li>\n";
    }
    m_Html += "</ul>\n";
    More(indexes.size());
  }

  void More(size_t count) {
    if (count > MaxPagePlaces)
      m_Html += "<p>And " + std::to_string(count - MaxPagePlaces) + " more, which the report as JSON lists.</p>\n";
  }

  /// Where it was found, and the values.
  [[nodiscard]] std::string Told(const Assay::Finding& finding) const {
    const std::string place = PagePlaceText(finding.Place, m_WithPackage);
    const std::string values = ValuesText(finding);
    return "<span>" + HtmlText(place) + (values.empty() ? "</span>" : ".</span> <span>" + HtmlText(values) + "</span>");
  }

  const Assay::FindingList& m_Findings;
  const bool m_WithPackage;
  std::vector<std::vector<size_t>> m_Followers;  // of each finding
  std::vector<Kind> m_Kinds;
  std::map<std::pair<Assay::FindingID, FindingClass>, size_t> m_KindOf;
  std::string m_Html;
};

}  // namespace

void FindingCounts::Add(const Assay::Finding& finding, Assay::Profile profile) {
  if (!finding.Cause) ++m_Counts[Assay::Counts(profile, finding) ? 1 : 0][static_cast<size_t>(finding.Class)];
}

void FindingCounts::Add(const FindingCounts& others) {
  for (size_t counted = 0; counted < m_Counts.size(); ++counted)
    for (size_t value = 0; value < m_Counts[counted].size(); ++value)
      m_Counts[counted][value] += others.m_Counts[counted][value];
}

std::string CountsText(const FindingCounts& counts) {
  const std::string text = Listed(counts, true);
  return text.empty() ? "nothing" : text;
}

std::string UncountedText(const FindingCounts& counts) {
  return Listed(counts, false);
}

const char* StandingStyle(std::optional<FindingClass> worst) {
  if (worst == FindingClass::Error) return "alarmed";
  return worst ? "caution" : "verdict";
}

std::vector<size_t> RootsOf(const Assay::FindingList& findings) {
  std::vector<size_t> roots(findings.size());
  for (size_t index = 0; index < findings.size(); ++index) {
    size_t root = index;
    size_t length = 0;
    while (findings[root].Cause && *findings[root].Cause < findings.size() && length < LongestChain) {
      root = *findings[root].Cause;
      ++length;
    }
    roots[index] = length < LongestChain ? root : index;
  }
  return roots;
}

std::string PagePlaceText(const Assay::FindingPlace& place, bool with_package) {
  std::string text = with_package ? Ferro::PathBasename(place.Package) : "";
  const auto add = [&text](const std::string& part) { text += (text.empty() ? "" : ", ") + part; };
  if (!place.CompositionTitle.empty())
    add(place.CompositionTitle);
  else if (place.Composition.HasValue())
    add("composition " + place.Composition.EncodeString());
  if (place.Reel > 0) add("reel " + std::to_string(place.Reel));
  if (place.Channel > 0) add("channel " + std::to_string(place.Channel));
  if (place.EditUnit) {
    add("edit unit " + std::to_string(*place.EditUnit));
    const QUIRE::Rational& rate = place.EditRate;
    if (rate.Numerator > 0 && rate.Denominator > 0)
      text += " (" + DurationText(static_cast<double>(*place.EditUnit) * rate.Denominator / rate.Numerator) + ')';
  }
  const std::string& document =
      place.Document.empty() && !with_package ? Ferro::PathBasename(place.Package) : place.Document;
  if (!document.empty()) text += (text.empty() ? "" : ": ") + document;
  if (place.Line > 0) text += ", line " + std::to_string(place.Line);
  return text;
}

std::string PageFindings(const Assay::CheckReport& report, Assay::Profile profile, bool is_counted) {
  return FindingsWriter(report, profile, is_counted).Write();
}

}  // namespace Tool
