// SPDX-License-Identifier: BSD-3-Clause
#include "RateChart.h"

#include "SvgDrawing.h"
#include "TimelineLayout.h"
#include "terminal/TextForms.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace Tool {

namespace {

constexpr double Top = 22;        // of the plot: the unit and the limit's label stand above
constexpr double Height = 120;    // of the plot
constexpr double TimeRow = 22;    // below it
constexpr double FarLimit = 0.1;  // of the limit: curves below are drawn to their own scale
constexpr double HeadRoom = 1.1;

/// The next of 1, 2, 5, 10, 20, ... that is no less.
double RoundUp(double value) {
  const double decade = std::pow(10, std::floor(std::log10(value)));
  for (const double factor : {1.0, 2.0, 5.0})
    if (factor * decade >= value * (1 - 1e-9)) return factor * decade;
  return 10 * decade;
}

bool IsOver(const RateCurve::Step& step) {
  return step.Limit > 0 && step.Rate > step.Limit;
}

class RateDrawing {
 public:
  RateDrawing(const RateCurve& curve, double width, Ferro::XMLElement& root)
      : m_Curve(curve),
        m_Grid(SvgDrawing(root).Group("")),
        m_Area(SvgDrawing(root).Group("")),
        m_Labels(SvgDrawing(root).Group("")),
        m_Scale(curve.Seconds(), TimelineLeft, width - TimelineMargin - TimelineLeft) {
    for (const RateCurve::Step& step : curve.Steps()) m_Highest = std::max({m_Highest, step.Limit, 0.0});
    m_IsLimitFar = curve.Peak() < m_Highest * FarLimit;
    if (m_IsLimitFar || curve.Peak() > m_Highest) m_Highest = curve.Peak();
    m_Highest = std::max(m_Highest * HeadRoom, 1e-3);
  }

  void Draw() {
    DrawScale();
    DrawTime();
    Fill("picture", [](const RateCurve::Step& step) { return step.Rate; });
    Fill("exceeding", [](const RateCurve::Step& step) { return IsOver(step) ? step.Rate : -1; });
    if (m_IsLimitFar)
      m_Labels.Text(m_Scale.Right(), Top - 8, "limit " + MegabitText(m_Curve.LeastLimit()) + ", above this drawing",
                    "faint", "end");
    else
      DrawLimit();
  }

 private:
  [[nodiscard]] double PlaceOf(double rate) const {
    return Top + Height * (1 - std::clamp(rate / m_Highest, 0.0, 1.0));
  }
  [[nodiscard]] double PlaceOfStep(size_t index) const {
    return m_Scale.Place(m_Curve.Seconds() * static_cast<double>(index) / RateCurve::StepCount);
  }

  void DrawScale() {
    m_Labels.Text(TimelineLeft - 10, Top - 8, "Mbit/s", "lane", "end");
    const double step = RoundUp(m_Highest / 5);
    for (unsigned number = 0; number * step <= m_Highest; ++number) {
      const double y = PlaceOf(number * step);
      m_Grid.Line(TimelineLeft, y, m_Scale.Right(), y, number == 0 ? "axis" : "grid");
      m_Labels.Text(TimelineLeft - 10, y + 4, MegabitText(number * step), "number", "end");
    }
  }

  void DrawTime() {
    constexpr double y = Top + Height;
    m_Labels.Text(TimelineLeft - 10, y + 18, "Time", "lane", "end");
    for (const TimelineTick& tick : TimelineTicks(m_Scale, 70)) {
      const double x = m_Scale.Place(tick.Seconds);
      m_Grid.Line(x, y, x, y + 5, "tick");
      m_Labels.Text(x, y + 18, tick.Label, "number",
                    x > m_Scale.Right() - 20 ? "end"
                    : x < TimelineLeft + 20  ? "start"
                                             : "middle");
    }
  }

  /// Areas from the axis up to `height_of` a step; none where that is negative.
  template <class Function>
  void Fill(const char* style, const Function& height_of) {
    const std::vector<RateCurve::Step>& steps = m_Curve.Steps();
    const std::string floor = SvgNumber(PlaceOf(0));
    for (size_t first = 0; first < steps.size();) {
      size_t last = first;
      std::string path = "M" + SvgNumber(PlaceOfStep(first)) + ' ' + floor;
      for (; last < steps.size() && height_of(steps[last]) >= 0; ++last) {
        if (last == first || height_of(steps[last]) != height_of(steps[last - 1]))
          path += "H" + SvgNumber(PlaceOfStep(last)) + "V" + SvgNumber(PlaceOf(height_of(steps[last])));
      }
      if (last > first) m_Area.Path(0, 0, path + "H" + SvgNumber(PlaceOfStep(last)) + "V" + floor + "z", style);
      first = last + 1;
    }
  }

  void DrawLimit() {
    const std::vector<RateCurve::Step>& steps = m_Curve.Steps();
    for (size_t first = 0; first < steps.size();) {
      size_t last = first + 1;
      while (last < steps.size() && steps[last].Limit == steps[first].Limit) ++last;
      if (steps[first].Limit > 0) {
        const double y = PlaceOf(steps[first].Limit);
        m_Labels.Line(PlaceOfStep(first), y, PlaceOfStep(last), y, "limit");
        const std::string text = "limit " + MegabitText(steps[first].Limit);
        if (PlaceOfStep(last) - PlaceOfStep(first) > 80)
          m_Labels.Text(PlaceOfStep(last), y - 5, text, "small over", "end");
      }
      first = last;
    }
  }

  const RateCurve& m_Curve;
  // From back to front.
  SvgDrawing m_Grid;
  SvgDrawing m_Area;
  SvgDrawing m_Labels;
  const TimelineScale m_Scale;
  double m_Highest = 0;  // Mbit/s at the top of the plot
  bool m_IsLimitFar = false;
};

}  // namespace

void RateCurve::Add(const RateSpan& span) {
  const double from = std::max(span.Start, 0.0);
  const double to = std::min(span.Start + span.Seconds, m_Seconds);
  if (!(to > from)) return;
  constexpr double rounding = 1e-6;  // of a step: an end does not touch the next one
  const double steps_a_second = StepCount / m_Seconds;
  const auto first = static_cast<size_t>(std::clamp(from * steps_a_second + rounding, 0.0, StepCount - 1.0));
  const auto last = static_cast<size_t>(std::clamp(to * steps_a_second - rounding, double(first), StepCount - 1.0));
  for (size_t index = first; index <= last; ++index) {
    Step& step = m_Steps[index];
    step.Rate = std::max(step.Rate, span.Rate);
    if (span.Limit > 0) step.Limit = step.Limit > 0 ? std::min(step.Limit, span.Limit) : span.Limit;
  }
  if (span.Rate > m_Peak) {
    m_Peak = span.Rate;
    m_PeakSeconds = from;
  }
}

void RateCurve::AddMean(double seconds, double rate) {
  m_MeanSum += seconds * rate;
  m_MeanSeconds += seconds;
}

double RateCurve::LeastLimit() const {
  double least = 0;
  for (const Step& step : m_Steps)
    if (step.Limit > 0 && (least == 0 || step.Limit < least)) least = step.Limit;
  return least;
}

double RateCurve::SecondsOver() const {
  return static_cast<double>(std::count_if(m_Steps.begin(), m_Steps.end(), IsOver)) * m_Seconds / StepCount;
}

std::string MegabitText(double rate) {
  std::array<char, 40> text{};
  const int decimals = rate >= 99.95 || rate == 0 ? 0 : rate >= 9.995 ? 1 : rate >= 0.9995 ? 2 : 3;
  std::snprintf(text.data(), text.size(), "%.*f", decimals, rate);
  std::string number = text.data();
  if (decimals > 0) number.erase(number.find_last_not_of('0') + 1);
  if (number.back() == '.') number.pop_back();
  return number;
}

std::string RateCurveText(const RateCurve& curve) {
  if (curve.IsEmpty()) return "";
  std::string text = curve.Mean() > 0 ? MegabitText(curve.Mean()) + " Mbit/s on average, " : "";
  text += MegabitText(curve.Peak()) + " Mbit/s at most, at " + DurationText(curve.PeakSeconds()) + '.';
  if (curve.LeastLimit() == 0) return text;
  text += " The limit is " + MegabitText(curve.LeastLimit()) + " Mbit/s";
  return text + (curve.SecondsOver() > 0 ? ", and it is exceeded." : ".");
}

std::string RateChart(const RateCurve& curve, double width) {
  SvgDocument document("Bit rate of the picture over time", RateCurveText(curve));
  RateDrawing(curve, width, document.Root()).Draw();
  return document.Render(width, Top + Height + TimeRow);
}

}  // namespace Tool
