// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "LatencyHistogram.h"

#include <QUIRE/FrameBuffer.h>
#include <Strata/FrameRequester.h>
#include <Strata/IPlaylist.h>
#include <Strata/ITimelineTrack.h>

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace Tool {

/// What one channel delivered so far.
struct ChannelStatistics {
  std::string Name;             ///< "picture", "closed caption 2"
  Ferro::ui64_t Delivered = 0;  ///< frames
  Ferro::ui64_t Late = 0;       ///< frames that came after their edit unit was over
  Ferro::ui64_t Repeated = 0;   ///< frames that could not be read, so that the one before showed again
  Ferro::ui64_t Missing = 0;    ///< frames of files that could not be opened any more
  Ferro::ui64_t Bytes = 0;
  LatencyHistogram Latency;  ///< how long the transport waited for a frame
};

/// One frame as the transport has it: valid during the call that hands it over. Of timed text the frame is the document.
struct DeliveredFrame {
  const std::string& Channel;  ///< as ChannelStatistics::Name
  const Strata::ITimelineTrack& Track;
  Ferro::ui32_t ShowPosition;  ///< edit units of the show
  Ferro::ui32_t FilePosition;  ///< edit units of the track file
  std::span<const Ferro::ui8_t> Frame;
  std::span<const Ferro::ui8_t> RightEye;           ///< empty unless stereoscopic
  const QUIRE::FrameBuffer* Buffer = nullptr;       ///< that holds the frame, and its integrity pack
  const QUIRE::FrameBuffer* RightBuffer = nullptr;  ///< null unless stereoscopic
};

/// Reads every channel of a playlist, edit unit by edit unit, as a media block does: the next frame is asked for before
/// the present one is taken, so that a track's thread reads it while the transport uses this one. What a track does not
/// play, because it ends before its reel, is not asked for. A track whose file has vanished is left out; the others play.
class ChannelReader {
 public:
  using Clock = std::chrono::steady_clock;
  using Inspect = std::function<void(const DeliveredFrame&)>;
  /// Receives the channel's name and the frame's number in the track file.
  using Report = std::function<void(const std::string&, Ferro::ui32_t)>;

  explicit ChannelReader(const Strata::IPlaylist& playlist) : m_Playlist(playlist) {}
  ChannelReader(const ChannelReader&) = delete;
  ChannelReader& operator=(const ChannelReader&) = delete;

  /// Takes every channel's frame of `position`, and asks for that of `next` where it lies in the same reel.
  /// @param over  when the edit unit is over; a frame that comes later counts as late.
  void ReadEditUnit(Ferro::ui32_t position, std::optional<Ferro::ui32_t> next, Clock::time_point over,
                    const Inspect& inspect = {});

  /// Sets what is called for the first frame of each track that cannot be read.
  void OnFirstLacking(Report call) { m_OnLacking = std::move(call); }
  /// Sets what is called for the first frame of each track whose file cannot be opened.
  void OnFirstMissing(Report call) { m_OnMissing = std::move(call); }

  [[nodiscard]] std::vector<ChannelStatistics> Statistics() const;

 private:
  struct Channel {
    Strata::ITimelineTrack* Track = nullptr;          // null where the reel has none
    std::optional<Strata::FrameRequester> Requester;  // while the track is ready
    bool IsLacking = false;                           // some frame of the track could not be read
    bool IsMissing = false;                           // the track could not be opened at some edit unit
    ChannelStatistics Statistics;
  };
  using ChannelKey = std::pair<Strata::TrackType_t, Ferro::ui32_t>;

  void FindTracks(Ferro::ui32_t position);
  void SetTrack(Channel& channel, Strata::ITimelineTrack* track);
  void Take(Channel& channel, Ferro::ui32_t file_position, std::optional<Ferro::ui32_t> next, Clock::time_point over,
            const Inspect& inspect);
  [[nodiscard]] bool Deliver(Channel& channel, Ferro::ui32_t file_position, const Inspect& inspect);
  void CountMissing(Channel& channel, Ferro::ui32_t file_position);
  void Settle();

  const Strata::IPlaylist& m_Playlist;
  std::map<ChannelKey, Channel> m_Channels;
  Report m_OnLacking;
  Report m_OnMissing;
  QUIRE::TimedText::FrameBuffer m_Text;     // the copy of a document
  Ferro::ui32_t m_Position = 0;             // of the show, while its frames are taken
  std::optional<Ferro::ui32_t> m_Expected;  // the show position whose frames were asked for
};

}  // namespace Tool
