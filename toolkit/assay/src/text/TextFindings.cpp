// SPDX-License-Identifier: BSD-3-Clause
#include "TextFindings.h"

#include "base/LanguageSubtags.h"
#include "base/LanguageTag.h"
#include "base/Text.h"
#include "document/Composition.h"
#include "document/PackageFindings.h"

#include <algorithm>
#include <utility>

namespace Assay {
namespace {

using Cairn::TextProblem;
using Cairn::TextProblem_t;

/// Whether a problem of the reader is one of the document's form that the tables of forms do not know. Others are told
/// by findings of their own, or are no faults: what can be taken from another edition, and what may be missing.
bool IsOfForm(const TextProblem& problem) {
  switch (problem.Kind) {
    case TextProblem_t::Malformed:
    case TextProblem_t::OutOfRange:
      return problem.Name != "ReelNumber";
    case TextProblem_t::NotLoaded:
      return problem.Name != "Font/@ID" && problem.Name != "Font/@Id";
    case TextProblem_t::Repeated:
      return problem.Name != "LoadFont";
    default:
      return false;
  }
}

std::string Written(const std::string& value) {
  return value.empty() ? "an empty one" : Quoted(value);
}

/// What is to be said of others like the first. Of very many not all are listed.
std::string More(const Cairn::TimedText& document, std::ptrdiff_t count) {
  if (count == 0) return {};
  return (document.ProblemCount > document.ProblemList.size() ? ", at least " : ", ") + std::to_string(count) + " more";
}

void FindFontLoad(const Cairn::TimedText& document, TextFile& file) {
  const auto say = [&](ui64_t line, std::string expected, std::string found) {
    Add(file.Findings, Finding(FindingID::TextFontLoad), file.At(line), std::move(expected), std::move(found));
  };
  const auto is_unknown = [](const TextProblem& problem) {
    return problem.Kind == TextProblem_t::NotLoaded && problem.Name.starts_with("Font/@");
  };
  const std::vector<Cairn::LoadedFont>& fonts = document.LoadFontList;
  const bool has_lines = std::ranges::any_of(
      document.InstanceList, [](const Cairn::TextInstance& instance) { return !instance.TextList.empty(); });
  // What has pictures alone needs no font.
  if (file.Head.DCPFormat == Cairn::DFT_DCI_SMPTE && (fonts.size() > 1 || (fonts.empty() && has_lines)))
    say(fonts.size() > 1 ? fonts[1].Line : 0, "one font", fonts.empty() ? "none" : std::to_string(fonts.size()));
  if (file.Head.DCPFormat == Cairn::DFT_DCI_SMPTE && fonts.empty() && has_lines) return;  // told
  if (file.Head.DCPFormat == Cairn::DFT_DCI_SMPTE && fonts.size() == 1 && fonts.front().ID.empty())
    return say(fonts.front().Line, "a font with an ID", "none");
  const auto unknown = std::ranges::find_if(document.ProblemList, is_unknown);
  if (unknown == document.ProblemList.end()) return;
  const auto more = std::ranges::count_if(unknown + 1, document.ProblemList.end(), is_unknown);
  say(unknown->Line, fonts.empty() ? "a font that is loaded" : Quoted(fonts.front().ID),
      Written(unknown->Found) + More(document, more));
}

void FindStartTime(const Cairn::TimedText& document, TextFile& file) {
  if (HasProblem(document, 0, "StartTime")) return;
  const auto is_before = [](const TextProblem& problem) { return problem.Kind == TextProblem_t::BeforeStart; };
  const auto before = std::ranges::find_if(document.ProblemList, is_before);
  if (before != document.ProblemList.end())
    return Add(file.Findings, Finding(FindingID::TextStartTime, FindingClass::Warning), file.At(before->Line),
               "no text before it", "a text at " + before->Found);
  if (document.StartTime.IsPresent() && document.StartTime.Value == 0) return;
  Add(file.Findings, Finding(FindingID::TextStartTime), file.At(document.StartTime.Line), "0",
      document.StartTime.IsPresent()
          ? std::to_string(document.StartTime.Value) + " units at " + std::to_string(document.UnitRate()) + " a second"
          : "none");
}

void FindLanguage(const Cairn::TimedText& document, TextFile& file) {
  const std::string& tag = document.Language.Value;
  const bool is_said = document.Language.IsPresent() && !tag.empty();
  if (is_said && !HasForm(ValueForm::Language, tag)) return;  // told with the form
  if (is_said && IsLanguageTag(tag) && UnknownSubtag(tag).empty()) return;
  Add(file.Findings, Finding(FindingID::TextLanguage), file.At(document.Language.Line),
      "a language tag such as en or fr-CA", is_said ? Quoted(tag) : "none");
}

/// What an Interop document has for a number can be anything.
void FindReelNumber(const Cairn::TimedText& document, TextFile& file) {
  for (const TextProblem& problem : document.ProblemList)
    if (problem.Name == "ReelNumber" && problem.Kind != TextProblem_t::Missing &&
        problem.Kind != TextProblem_t::Repeated)
      return Add(file.Findings, Finding(FindingID::TextReel), file.At(problem.Line), "a number",
                 Written(problem.Found));
}

/// Whether a time code counts whole units of that rate.
bool Counts(const Cairn::TimedText& document) {
  const QUIRE::Rational& rate = document.EditRate.Value;
  const i64_t nominal = (i64_t{rate.Numerator} * 2 + rate.Denominator) / (i64_t{rate.Denominator} * 2);
  return nominal % document.TimeCodeRate.Value == 0;
}

void FindRates(const Cairn::TimedText& document, TextFile& file) {
  const auto text_of = [](const QUIRE::Rational& rate) {
    return std::to_string(rate.Numerator) + ' ' + std::to_string(rate.Denominator);
  };
  const bool has_rate = document.EditRate.IsPresent();
  if (has_rate && file.IsInTrackFile && !AreEqual(document.EditRate.Value, file.FileRate))
    return Add(file.Findings, Finding(FindingID::TextRate), file.At(document.EditRate.Line),
               text_of(file.FileRate) + " of the track file", text_of(document.EditRate.Value));
  if (has_rate && document.TimeCodeRate.IsPresent() && !Counts(document))
    Add(file.Findings, Finding(FindingID::TextRate), file.At(document.TimeCodeRate.Line),
        text_of(document.EditRate.Value), "a TimeCodeRate of " + std::to_string(document.TimeCodeRate.Value));
}

void FindEmpty(const Cairn::TimedText& document, TextFile& file) {
  TextTally tally;
  bool has_any = false;
  for (const Cairn::TextInstance& instance : document.InstanceList) {
    has_any |= !instance.TextList.empty() || !instance.ImageList.empty();
    for (const Cairn::TextLine& line : instance.TextList)
      if (line.Characters().empty()) tally.Note(MomentOf(instance, line.Line), "a text without characters");
  }
  if (!has_any) Add(file.Findings, Finding(FindingID::TextEmpty), file.File, "texts", "none");
  tally.Tell(file, Finding(FindingID::TextEmpty), "characters", file.Findings);
}

}  // namespace

void TextTally::Note(const TextMoment& moment, std::string found) {
  if (m_Count++ > 0 && m_First.Time <= moment.Time) return;
  m_First = moment;
  m_Found = std::move(found);
}

void TextTally::Tell(const TextFile& file, Finding finding, const std::string& expected, FindingList& findings) const {
  if (m_Count == 0) return;
  const std::string more = m_Count > 1 ? ", " + std::to_string(m_Count - 1) + " more" : "";
  Add(findings, std::move(finding), file.At(m_First), expected, m_Found + more);
}

bool HasProblem(const Cairn::TimedText& document, ui64_t line, std::string_view name) {
  // Beyond the last that is listed any line may have one.
  const bool is_cut = document.ProblemCount > document.ProblemList.size();
  if (line != 0 && is_cut && line >= document.ProblemList.back().Line) return true;
  return std::ranges::any_of(document.ProblemList, [&](const TextProblem& problem) {
    return problem.Kind != TextProblem_t::BeforeStart && (line == 0 || problem.Line == line) && problem.Name == name;
  });
}

void FindTextProblems(const Cairn::TimedText& document, TextFile& file) {
  const auto first = std::ranges::find_if(document.ProblemList, IsOfForm);
  if (first == document.ProblemList.end()) return;
  const auto more = std::ranges::count_if(first + 1, document.ProblemList.end(), IsOfForm);
  const char* kind = first->Kind == TextProblem_t::NotLoaded  ? " is not loaded"
                     : first->Kind == TextProblem_t::Repeated ? " is repeated"
                                                              : "";
  Add(file.Findings, Finding(FindingID::TextSchema), file.At(first->Line), first->Used,
      first->Name + (*kind != '\0' ? ": \"" : " is \"") + Quoted(first->Found) + '"' + kind + More(document, more));
}

void FindInTextHead(const Cairn::TimedText& document, TextFile& file) {
  FindFontLoad(document, file);
  FindEmpty(document, file);
  if (document.DCPFormat != Cairn::DFT_DCI_SMPTE) return FindReelNumber(document, file);
  FindStartTime(document, file);
  FindLanguage(document, file);
  FindRates(document, file);
}

}  // namespace Assay
