// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/ITimelineTrack.h>
#include <Strata/Types.h>

#include <algorithm>
#include <optional>

// What of a track plays in its reel. A reel is as long as its picture plays; the other tracks may be shorter or longer:
//
//     reel               |-----------------------------|
//     sound file    ~~~~~|----- plays ------|~~~~~~~~~~     silence until the reel ends
//                        entry point        + duration
//     sound file    ~~~~~|----------- plays -----------|-------|~~~~     its end is not played
//
// Past its duration a track has no frames to ask for: sound is silent there, text and data are absent. The file may hold
// more, but what lies outside the duration is no part of the show.

namespace Strata {

/// How much of a track plays, in edit units from its entry point.
/// @param track_duration  of the track, edit units
/// @param reel_duration   of the reel's picture, edit units
[[nodiscard]] constexpr ui32_t PlayedDuration(ui32_t track_duration, ui32_t reel_duration) {
  return std::min(track_duration, reel_duration);
}

/// The edit unit of the file that plays at an edit unit of the reel; nothing from the end of the track's duration on.
/// @param reel_position  edit units from the reel's start, within the reel
[[nodiscard]] constexpr std::optional<ui32_t> PlayedFilePosition(ui32_t entry_point, ui32_t track_duration,
                                                                 ui32_t reel_position) {
  const ui32_t file_position = entry_point + reel_position;
  if (reel_position >= track_duration || file_position < entry_point) return std::nullopt;
  return file_position;
}

/// Likewise for a track of a playlist: what to pass to its ReadyFrameAtLocation.
/// @param reel_position  as IPlaylist::TranslateReelPosition answers it
[[nodiscard]] inline std::optional<ui32_t> PlayedFilePosition(const ITimelineTrack& track, ui32_t reel_position) {
  return PlayedFilePosition(track.EntryPoint(), track.Duration(), reel_position);
}

}  // namespace Strata
