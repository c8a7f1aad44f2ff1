// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ChannelReader.h"
#include "FrameVerifier.h"
#include "terminal/ExitCode.h"

#include <optional>
#include <string>
#include <vector>

namespace Tool {

/// An event that the show fired.
struct PlayedEvent {
  std::string Label;
  std::string Scope;           ///< of the label
  Ferro::ui32_t Position = 0;  ///< edit units of the show
};

/// What came of playing a show.
struct PlayReport {
  bool Interrupted = false;     ///< a signal ended it
  Ferro::ui32_t Position = 0;   ///< edit units of the show: where it stands now
  Ferro::ui32_t Duration = 0;   ///< edit units of the show
  Ferro::ui64_t EditUnits = 0;  ///< how many were played
  double Seconds = 0;           ///< how long that took
  double HeldUpSeconds = 0;     ///< of these, by which the show ended later than it should have
  std::vector<ChannelStatistics> Channels;
  std::optional<Verification> Verified;  ///< no value: it was not asked for
  std::vector<PlayedEvent> Events;

  [[nodiscard]] Ferro::ui64_t BytesPerSecond() const;
  /// Frames that could not be read, so that what came before stayed in their place.
  [[nodiscard]] Ferro::ui64_t FramesLacking() const;
  /// Frames of files that could not be opened any more.
  [[nodiscard]] Ferro::ui64_t FramesMissing() const;
  /// Interrupted, NotPlayable where frames are lacking or missing or differ from their files, else Fine.
  [[nodiscard]] ExitCode Code() const;
};

/// The report as lines of text.
[[nodiscard]] std::string PlayText(const PlayReport& report);
/// The report as JSON, schema strata-play-1.
[[nodiscard]] std::string PlayJson(const PlayReport& report);

}  // namespace Tool
