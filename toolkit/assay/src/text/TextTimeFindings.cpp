// SPDX-License-Identifier: BSD-3-Clause
#include "TextFindings.h"

#include <Cairn/TextSchedule.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>
#include <utility>
#include <vector>

namespace Assay {
namespace {

using Cairn::TextInstance;
using Cairn::TextSchedule;

constexpr i64_t LeastShown = 15;    // edit units that a text is to be seen
constexpr i64_t LeastGap = 2;       // edit units between two of them
constexpr size_t MaxLines = 3;      // at once
constexpr size_t MaxTexts = 6;      // in one instance
constexpr size_t MaxImages = 3;     // likewise
constexpr size_t MaxInstances = 2;  // at once

std::string Units(i64_t count) {
  return std::to_string(count) + (count == 1 ? " edit unit" : " edit units");
}

/// What begins to be shown, or ceases to be.
struct Change {
  i64_t At = 0;  // edit units
  bool IsBegin = false;
  size_t Instance = 0;
};

/// In order of time; at one time first what ends, then what begins, each in document order.
std::vector<Change> ChangesOf(const std::vector<TextSchedule::Span>& spans) {
  std::vector<Change> changes;
  for (size_t i = 0; i < spans.size(); ++i) {
    if (spans[i].IsEmpty()) continue;
    changes.push_back({spans[i].Begin, true, i});
    changes.push_back({spans[i].End, false, i});
  }
  std::ranges::sort(changes, {},
                    [](const Change& change) { return std::tuple(change.At, change.IsBegin, change.Instance); });
  return changes;
}

/// Where a line runs across the picture: texts of one place stand side by side. Vertical or not, and thousandths of a per
/// cent from the left or top.
using LinePlace = std::pair<bool, i64_t>;

LinePlace PlaceOf(const Cairn::TextLine& line) {
  const Cairn::TextPlace& place = line.Place;
  const auto direction = line.Direction.Value;
  if (direction == Cairn::TextDirection_t::TopToBottom || direction == Cairn::TextDirection_t::BottomToTop) {
    const double x = place.Hposition.Value;
    const auto align = place.Halign.Value;
    return {true, std::llround(1000 * (align == Cairn::TextHalign_t::Left    ? x
                                       : align == Cairn::TextHalign_t::Right ? 100 - x
                                                                             : 50 + x))};
  }
  const double y = place.Vposition.Value;
  const auto align = place.Valign.Value;
  return {false, std::llround(1000 * (align == Cairn::TextValign_t::Top      ? y
                                      : align == Cairn::TextValign_t::Bottom ? 100 - y
                                                                             : 50 + y))};
}

class TimeCheck {
 public:
  TimeCheck(const Cairn::TimedText& document, TextFile& file)
      : m_Document(document), m_File(file), m_Schedule(document, file.EditRate) {}

  void Run() {
    FindOrder();
    FindFades();
    FindDurations();
    FindGaps();
    FindElements();
    FindLines();
  }

 private:
  [[nodiscard]] const TextSchedule::Span& SpanOf(const TextInstance& instance) const {
    return m_Schedule.Spans()[static_cast<size_t>(&instance - m_Document.InstanceList.data())];
  }

  void FindOrder() {
    TextTally tally;
    for (const TextInstance& instance : m_Document.InstanceList)
      if (instance.TimeIn.IsPresent() && instance.TimeOut.IsPresent() &&
          instance.TimeOut.Value <= instance.TimeIn.Value)
        tally.Note(MomentOf(instance, instance.Line),
                   instance.TimeOut.Value == instance.TimeIn.Value ? "an end at the beginning" : "an end before it");
    tally.Tell(m_File, Finding(FindingID::TextOrder), "an end after the beginning", m_File.Findings);
  }

  void FindFades() {
    TextTally tally;
    for (const TextInstance& instance : m_Document.InstanceList) {
      const i64_t shown = instance.TimeOut.Value - instance.TimeIn.Value;
      const auto fade_of = [](const Cairn::TextField<i64_t>& fade) { return fade.IsPresent() ? fade.Value : 0; };
      const i64_t fade = std::max(fade_of(instance.FadeUpTime), fade_of(instance.FadeDownTime));
      if (shown > 0 && fade > shown)
        tally.Note(MomentOf(instance, instance.Line), Units(m_Document.EditUnits(fade, m_File.EditRate)) + " of " +
                                                          std::to_string(m_Document.EditUnits(shown, m_File.EditRate)));
    }
    tally.Tell(m_File, Finding(FindingID::TextFade), "a fade within the text's time", m_File.Findings);
  }

  void FindDurations() {
    TextTally tally;
    for (const TextInstance& instance : m_Document.InstanceList) {
      const TextSchedule::Span& span = SpanOf(instance);
      if (instance.TimeOut.Value > instance.TimeIn.Value && span.End - span.Begin < LeastShown)
        tally.Note(MomentOf(instance, instance.Line), Units(span.End - span.Begin));
    }
    tally.Tell(m_File, Finding(FindingID::TextDuration), Units(LeastShown) + " at least", m_File.Findings);
  }

  void FindGaps() {
    std::vector<const TextInstance*> shown;
    for (const TextInstance& instance : m_Document.InstanceList)
      if (!SpanOf(instance).IsEmpty()) shown.push_back(&instance);
    std::ranges::stable_sort(shown, {}, [&](const TextInstance* instance) { return SpanOf(*instance).Begin; });
    TextTally tally;
    i64_t end = 0;
    for (size_t i = 0; i < shown.size(); ++i) {
      const i64_t gap = SpanOf(*shown[i]).Begin - end;
      if (i > 0 && gap >= 0 && gap < LeastGap) tally.Note(MomentOf(*shown[i], shown[i]->Line), Units(gap));
      end = i == 0 ? SpanOf(*shown[i]).End : std::max(end, SpanOf(*shown[i]).End);
    }
    tally.Tell(m_File, Finding(FindingID::TextGap), Units(LeastGap) + " at least", m_File.Findings);
  }

  void FindElements() {
    TextTally tally;
    for (const TextInstance& instance : m_Document.InstanceList) {
      const size_t texts = instance.TextList.size();
      const size_t images = instance.ImageList.size();
      if (texts > MaxTexts) tally.Note(MomentOf(instance, instance.Line), std::to_string(texts) + " texts in one");
      if (images > MaxImages)
        tally.Note(MomentOf(instance, instance.Line), std::to_string(images) + " pictures in one");
    }
    // Fades count: a text that fades away after its time is still shown.
    const TextSchedule schedule(m_Document, m_File.EditRate, TextSchedule::FadeDown::BeginsAtTimeOut);
    NoteCrowds(
        schedule.Spans(),
        [](const Crowd& crowd) {
          return crowd.Instances > MaxInstances ? std::to_string(crowd.Instances) + " at once" : std::string();
        },
        tally);
    tally.Tell(m_File, Finding(FindingID::TextElements), "6 texts or 3 pictures in one, 2 at once", m_File.Findings);
  }

  struct Crowd {
    size_t Instances = 0;  // shown at once
    size_t Lines = 0;      // the same, those side by side as one
  };

  /// Notes each stretch of time at which `describe` finds too much, adjoining ones as one, by what begins there.
  template <class FunctionT>
  void NoteCrowds(const std::vector<TextSchedule::Span>& spans, FunctionT describe, TextTally& tally) {
    const std::vector<Change> changes = ChangesOf(spans);
    std::map<LinePlace, size_t> lines;
    size_t instances = 0;
    bool was_crowded = false;
    for (size_t i = 0; i < changes.size();) {
      const i64_t at = changes[i].At;
      const TextInstance* began = nullptr;
      for (; i < changes.size() && changes[i].At == at; ++i) {
        const TextInstance& instance = m_Document.InstanceList[changes[i].Instance];
        if (changes[i].IsBegin && began == nullptr) began = &instance;
        instances += changes[i].IsBegin ? 1 : size_t(0) - 1;
        for (const Cairn::TextLine& line : instance.TextList) {
          const auto place = lines.try_emplace(PlaceOf(line)).first;
          place->second += changes[i].IsBegin ? 1 : size_t(0) - 1;
          if (place->second == 0) lines.erase(place);
        }
      }
      std::string found = describe({instances, lines.size()});
      const bool is_crowded = !found.empty();
      if (is_crowded && !was_crowded && began != nullptr) tally.Note(MomentOf(*began, began->Line), std::move(found));
      was_crowded = is_crowded;
    }
  }

  void FindLines() {
    TextTally tally;
    NoteCrowds(
        m_Schedule.Spans(),
        [](const Crowd& crowd) {
          return crowd.Lines > MaxLines ? std::to_string(crowd.Lines) + " lines" : std::string();
        },
        tally);
    const std::string expected = std::to_string(MaxLines) + " lines at most";
    tally.Tell(m_File, Finding(FindingID::TextLines), expected, m_File.SubtitleFindings);
    tally.Tell(m_File, Finding(FindingID::CaptionLines), expected, m_File.CaptionFindings);
  }

  const Cairn::TimedText& m_Document;
  TextFile& m_File;
  TextSchedule m_Schedule;
};

}  // namespace

void FindInTextTimes(const Cairn::TimedText& document, TextFile& file) {
  TimeCheck(document, file).Run();
}

}  // namespace Assay
