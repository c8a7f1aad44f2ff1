// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/ShowPlaylist.h>

#include <Ferro/ILogSink.h>

#include <cmath>
#include <limits>

namespace Strata {
namespace {

// The seconds before `position`, in edit units over all compositions; all of them when the show ends earlier.
double SecondsBefore(const ShowPlaylist& playlist, ui64_t position) {
  ui64_t frames = 0;
  double seconds = 0;
  for (const auto& item : playlist.ShowSequence) {
    if (item->m_Type == ShowPlaylist::SIT_CPL) {
      const auto& composition = static_cast<const ShowPlaylist::CompositionItem&>(*item);
      const double rate = composition.EditRate.Quotient();
      if (frames + composition.Duration > position) return seconds + static_cast<double>(position - frames) / rate;
      frames += composition.Duration;
      seconds += static_cast<double>(composition.Duration) / rate;
    } else if (item->m_Type != ShowPlaylist::SIT_SHOW && item->m_Type != ShowPlaylist::SIT_MARKER) {
      Ferro::DefaultLogSink().Error("Unexpected ShowSequence item type: %d\n", static_cast<i32_t>(item->m_Type));
    }
  }
  return seconds;
}

// Rates from outside may make it infinite, negative or no number.
ui32_t WholeSeconds(double seconds) {
  constexpr ui32_t most = std::numeric_limits<ui32_t>::max();
  if (!(seconds > 0)) return 0;
  return seconds >= most ? most : static_cast<ui32_t>(std::ceil(seconds));
}

}  // namespace

ShowPlaylist::ShowItem::~ShowItem() = default;

ui32_t ShowPlaylist::GetDurationSeconds() const {
  return WholeSeconds(SecondsBefore(*this, std::numeric_limits<ui64_t>::max()));
}

ui32_t ShowPlaylist::GetPositionSeconds(const ui32_t& position) const {
  return WholeSeconds(SecondsBefore(*this, position));
}

}  // namespace Strata
