// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/Export.h>
#include <Cairn/TimedText.h>
#include <Cairn/Types.h>

#include <QUIRE/Rational.h>

#include <utility>
#include <vector>

namespace Cairn {

/// When the instances of a document are shown, in edit units of a track: what is on the screen at any of them, how much
/// at once, and how visible. Instances go by their index in TimedText::InstanceList. Does not keep the document; any
/// number of threads may ask it.
class CAIRN_API TextSchedule {
 public:
  /// Half open, in edit units from the document's origin; before it where negative. Empty: never shown.
  struct Span {
    i64_t Begin = 0;
    i64_t End = 0;

    [[nodiscard]] bool IsEmpty() const { return End <= Begin; }
    friend bool operator==(const Span&, const Span&) = default;
  };

  /// A stretch of time over which nothing appears or vanishes.
  struct Segment {
    Span Time;
    size_t InstanceCount = 0;  ///< shown at once; 0: between two of them
    size_t LineCount = 0;
    size_t ImageCount = 0;

    friend bool operator==(const Segment&, const Segment&) = default;
  };

  /// Devices differ in whether a fade down is over at TimeOut or begins there (ST 428-7, 6.1.5; ST 429-2, 8.4.4).
  enum class FadeDown { EndsAtTimeOut, BeginsAtTimeOut };

  /// Takes n log n steps for n instances.
  /// @param edit_rate  positive; of the track, as for TimedText::EditUnits
  TextSchedule(const TimedText& document, const QUIRE::Rational& edit_rate,
               FadeDown fade_down = FadeDown::EndsAtTimeOut);

  /// One for each instance. A fade down that begins at TimeOut is part of it.
  [[nodiscard]] const std::vector<Span>& Spans() const { return m_Spans; }
  /// The edit unit after the last one that shows anything; 0 when none does.
  [[nodiscard]] i64_t End() const;
  /// From the first edit unit that shows anything to the last, without gaps, in order of time.
  [[nodiscard]] const std::vector<Segment>& Segments() const { return m_Segments; }
  /// The instances that are shown, in document order, which is the order of drawing. Takes log n steps and as many as
  /// there are shown.
  [[nodiscard]] std::vector<size_t> ShownAt(i64_t edit_unit) const;
  /// Pairs of instances that are shown at the same time, each once, the one that begins first in front; at most `limit`
  /// pairs, in order of the time at which they begin to be one.
  [[nodiscard]] std::vector<std::pair<size_t, size_t>> SimultaneousPairs(size_t limit) const;
  /// How visible a shown instance is, from 0 to 1, in the middle of an edit unit: at its start, the first of every fade
  /// would be empty. 0 outside of its span.
  [[nodiscard]] double Opacity(size_t instance, i64_t edit_unit) const;

 private:
  struct Fades {
    double Up = 0;    // edit units
    double Down = 0;  // likewise
    i64_t DownEnd = 0;
  };

  void MakeSegments(const TimedText& document);
  i64_t MakeTree(size_t begin, size_t end);
  void Collect(size_t begin, size_t end, i64_t edit_unit, std::vector<size_t>& shown) const;

  std::vector<Span> m_Spans;
  std::vector<Fades> m_Fades;
  std::vector<Segment> m_Segments;
  // Instances that are shown, in order of their begin: a search tree in which the middle of a range stands above its two
  // halves. Beside it, the latest end in the range.
  std::vector<size_t> m_ByBegin;
  std::vector<i64_t> m_LatestEnd;
};

}  // namespace Cairn
