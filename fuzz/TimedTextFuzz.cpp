// SPDX-License-Identifier: BSD-3-Clause
#include "QuietLog.h"

#include <Cairn/TextSchedule.h>
#include <Cairn/TimedText.h>

#include <Ferro/Assert.h>

#include <algorithm>
#include <string>

namespace {

void CheckInstance(const Cairn::TimedText& document, const Cairn::TextInstance& instance) {
  FERRO_ASSERT(instance.FadeUpTime.Value >= 0 && instance.FadeDownTime.Value >= 0);
  for (const Cairn::TextLine& line : instance.TextList)
    for (const Cairn::TextRun& run : line.RunList) {
      FERRO_ASSERT(run.Font < document.FontList.size());
      const Cairn::TextFont& font = document.FontList[run.Font];
      FERRO_ASSERT(font.LoadFont.Value == Cairn::TextFont::NoLoadFont ||
                   font.LoadFont.Value < document.LoadFontList.size());
      FERRO_ASSERT(font.Size.Value > 0 && font.AspectAdjust.Value >= 0.25 && font.AspectAdjust.Value <= 4);
    }
}

// What is on the screen changes only from one segment to the next.
void CheckSchedule(const Cairn::TimedText& document) {
  constexpr size_t Looked = 64;
  const Cairn::TextSchedule schedule(document, document.EditRate.Value);
  FERRO_ASSERT(schedule.Spans().size() == document.InstanceList.size());
  for (size_t i = 0; i < schedule.Segments().size() && i < Looked; ++i) {
    const Cairn::TextSchedule::Segment& segment = schedule.Segments()[i];
    FERRO_ASSERT(!segment.Time.IsEmpty());
    FERRO_ASSERT(schedule.ShownAt(segment.Time.Begin).size() == segment.InstanceCount);
    FERRO_ASSERT(schedule.ShownAt(segment.Time.End - 1) == schedule.ShownAt(segment.Time.Begin));
    for (const size_t shown : schedule.ShownAt(segment.Time.Begin)) {
      const double opacity = schedule.Opacity(shown, segment.Time.Begin);
      FERRO_ASSERT(opacity >= 0 && opacity <= 1);
    }
  }
}

}  // namespace

// Every document that is read keeps the promises of its header.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size) {
  static QuietLog silence;
  Cairn::TimedText document;
  if (document.DecodeXML(std::string(data, data + size)).Failure()) {
    FERRO_ASSERT(document == Cairn::TimedText());
    return 0;
  }
  FERRO_ASSERT(document.ProblemList.size() == std::min(document.ProblemCount, Cairn::TimedText::MaxProblemCount));
  for (const Cairn::TextInstance& instance : document.InstanceList) CheckInstance(document, instance);
  CheckSchedule(document);
  return 0;
}
