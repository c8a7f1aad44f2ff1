// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/TextSchedule.h>

#include <Ferro/Assert.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace Cairn {
namespace {

/// What begins to be shown, or, negative, ceases to be.
struct Change {
  i64_t At = 0;
  i64_t Instances = 0;
  i64_t Lines = 0;
  i64_t Images = 0;
};

constexpr i64_t Never = std::numeric_limits<i64_t>::min();

}  // namespace

TextSchedule::TextSchedule(const TimedText& document, const QUIRE::Rational& edit_rate, FadeDown fade_down) {
  FERRO_ASSERT(edit_rate.Numerator > 0 && edit_rate.Denominator > 0);
  const double unit = edit_rate.Quotient() / document.UnitRate();  // edit units in a unit of the document
  const auto is_shown = [](const Span& span) { return !span.IsEmpty(); };
  for (const TextInstance& instance : document.InstanceList) {
    Span span{document.EditUnits(instance.TimeIn.Value, edit_rate),
              document.EditUnits(instance.TimeOut.Value, edit_rate)};
    const double down = static_cast<double>(instance.FadeDownTime.Value) * unit;
    Fades fades{static_cast<double>(instance.FadeUpTime.Value) * unit, down, span.End};
    if (is_shown(span) && fade_down == FadeDown::BeginsAtTimeOut) {
      span.End += static_cast<i64_t>(std::ceil(down));
      fades.DownEnd = span.End;
    }
    if (is_shown(span)) m_ByBegin.push_back(m_Spans.size());
    m_Spans.push_back(span);
    m_Fades.push_back(fades);
  }
  std::ranges::stable_sort(m_ByBegin, {}, [&](size_t i) { return m_Spans[i].Begin; });
  m_LatestEnd.resize(m_ByBegin.size());
  MakeTree(0, m_ByBegin.size());
  MakeSegments(document);
}

i64_t TextSchedule::MakeTree(size_t begin, size_t end) {
  if (begin == end) return Never;
  const size_t middle = begin + (end - begin) / 2;
  m_LatestEnd[middle] = std::max({m_Spans[m_ByBegin[middle]].End, MakeTree(begin, middle), MakeTree(middle + 1, end)});
  return m_LatestEnd[middle];
}

void TextSchedule::MakeSegments(const TimedText& document) {
  std::vector<Change> changes;
  changes.reserve(2 * m_ByBegin.size());
  for (const size_t i : m_ByBegin) {
    const TextInstance& instance = document.InstanceList[i];
    const auto lines = static_cast<i64_t>(instance.TextList.size());
    const auto images = static_cast<i64_t>(instance.ImageList.size());
    changes.push_back({m_Spans[i].Begin, 1, lines, images});
    changes.push_back({m_Spans[i].End, -1, -lines, -images});
  }
  std::ranges::sort(changes, {}, &Change::At);
  Change sum;
  for (const Change& change : changes) {
    if (m_Segments.empty() || change.At > sum.At) {
      if (!m_Segments.empty()) m_Segments.back().Time.End = change.At;
      m_Segments.push_back({{change.At, change.At}, 0, 0, 0});
    }
    sum = {change.At, sum.Instances + change.Instances, sum.Lines + change.Lines, sum.Images + change.Images};
    m_Segments.back().InstanceCount = static_cast<size_t>(sum.Instances);
    m_Segments.back().LineCount = static_cast<size_t>(sum.Lines);
    m_Segments.back().ImageCount = static_cast<size_t>(sum.Images);
  }
  if (!m_Segments.empty()) m_Segments.pop_back();  // after the last end
}

i64_t TextSchedule::End() const {
  return m_Segments.empty() ? 0 : m_Segments.back().Time.End;
}

std::vector<size_t> TextSchedule::ShownAt(i64_t edit_unit) const {
  std::vector<size_t> shown;
  Collect(0, m_ByBegin.size(), edit_unit, shown);
  std::ranges::sort(shown);
  return shown;
}

void TextSchedule::Collect(size_t begin, size_t end, i64_t edit_unit, std::vector<size_t>& shown) const {
  if (begin == end) return;
  const size_t middle = begin + (end - begin) / 2;
  if (m_LatestEnd[middle] <= edit_unit) return;
  Collect(begin, middle, edit_unit, shown);
  const Span& span = m_Spans[m_ByBegin[middle]];
  if (span.Begin > edit_unit) return;
  if (span.End > edit_unit) shown.push_back(m_ByBegin[middle]);
  Collect(middle + 1, end, edit_unit, shown);
}

std::vector<std::pair<size_t, size_t>> TextSchedule::SimultaneousPairs(size_t limit) const {
  std::vector<std::pair<size_t, size_t>> pairs;
  std::vector<size_t> open;
  for (const size_t next : m_ByBegin) {
    std::erase_if(open, [&](size_t i) { return m_Spans[i].End <= m_Spans[next].Begin; });
    for (const size_t earlier : open) {
      if (pairs.size() == limit) return pairs;
      pairs.emplace_back(earlier, next);
    }
    open.push_back(next);
  }
  return pairs;
}

double TextSchedule::Opacity(size_t instance, i64_t edit_unit) const {
  const Span& span = m_Spans.at(instance);
  const Fades& fades = m_Fades.at(instance);
  if (edit_unit < span.Begin || edit_unit >= span.End) return 0;
  constexpr double Middle = 0.5;
  const double since_begin = static_cast<double>(edit_unit - span.Begin) + Middle;
  const double until_end = static_cast<double>(fades.DownEnd - edit_unit) - Middle;
  double opacity = 1;
  if (fades.Up > 0) opacity = std::min(opacity, since_begin / fades.Up);
  if (fades.Down > 0) opacity = std::min(opacity, until_end / fades.Down);
  return opacity;
}

}  // namespace Cairn
