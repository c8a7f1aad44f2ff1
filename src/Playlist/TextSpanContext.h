// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Types.h>
#include <Ferro/UUID.h>

#include <list>

namespace Strata {

class ITimelineTrack;

/// One reel's share of a text track file that may continue in the next reel.
struct SpanEntry {
  ITimelineTrack* track = nullptr;  ///< not owned; null in the empty entry
  Ferro::UUID id;                   ///< the track's asset
  Ferro::ui32_t offset = 0;         ///< the track's entry point in its file, edit units
  Ferro::ui32_t duration = 0;       ///< the track's share, edit units
};

/// Finds text track files that run on across reels, and sets for each of their tracks how long the file still plays from
/// the start of its reel to the end of the span:
///
///     reel          |   1    |     2      |  3  |
///     file          0 ------ 100 -------- 250 - 300
///     span duration    300        200       50
///
/// Tracks are offered reel by reel in playing order; a file that covers one reel only gets no span duration.
class TextSpanContext {
 public:
  /// Offers the on-screen text track of the next reel: it continues the span when it plays the same asset from exactly
  /// where the reel before left off, and begins a new one otherwise.
  void TestEntry(ITimelineTrack* track);
  /// Closes the span, as a reel without text does.
  void Reset();

  /// Newest first; between spans exactly one entry, which is empty.
  std::list<SpanEntry> member_reels{SpanEntry{}};
};

}  // namespace Strata
