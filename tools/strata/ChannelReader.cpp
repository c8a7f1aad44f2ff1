// SPDX-License-Identifier: BSD-3-Clause
#include "ChannelReader.h"

#include <QUIRE/FrameBuffer.h>

#include <array>

using Strata::ITimelineTrack;

namespace {

constexpr std::array Types = {Strata::TRKT_IMAGE, Strata::TRKT_SOUND, Strata::TRKT_AUX_DATA};

const char* type_name(Strata::TrackType_t type) {
  return type == Strata::TRKT_IMAGE ? "picture" : type == Strata::TRKT_SOUND ? "sound" : "auxiliary data";
}

std::span<const Ferro::ui8_t> bytes_of(const QUIRE::FrameBuffer& buffer) {
  return {buffer.RoData(), buffer.Size()};
}

// The silent frame is the same for every position and has no number; a buffer that holds no frame yet is empty.
bool is_silence(const QUIRE::FrameBuffer& frame) {
  return frame.FrameNumber() == QUIRE::NoFrame && frame.Size() > 0;
}

/// A track that could not be opened stays dormant, and its interface tells only by what MakeDormant answers.
bool make_sure_ready(ITimelineTrack& track) {
  if (!track.MakeDormant()) return false;
  track.MakeReady();
  return true;
}

}  // namespace

ChannelReader::~ChannelReader() {
  TakeWhatWasAsked();
}

void ChannelReader::ReadEditUnit(Ferro::ui32_t position, std::optional<Ferro::ui32_t> next,
                                 std::chrono::duration<double> length, const Inspect& inspect) {
  // What was asked for elsewhere is taken first: moving on may put its track to rest.
  if (m_Expected != position) TakeWhatWasAsked();
  FindTracks(position);
  const Ferro::ui32_t offset = m_Playlist.TranslateReelPosition(position);
  const bool next_is_near =
      next && *next < m_Playlist.GetDuration() &&
      Ferro::i64_t{*next} - m_Playlist.TranslateReelPosition(*next) == Ferro::i64_t{position} - offset;

  for (auto& [key, channel] : m_Channels)
    if (channel.IsReady) Ask(channel, channel.Track->EntryPoint() + offset);
  for (auto& [key, channel] : m_Channels) {
    if (!channel.IsReady) continue;
    std::optional<Ferro::ui32_t> ahead;
    if (next_is_near) ahead = channel.Track->EntryPoint() + m_Playlist.TranslateReelPosition(*next);
    Take(channel, ahead, length, inspect);
  }
  m_Expected = next_is_near ? next : std::nullopt;
}

void ChannelReader::FindTracks(Ferro::ui32_t position) {
  for (const Strata::TrackType_t type : Types) {
    const Ferro::ui32_t count = m_Playlist.GetChannelCountForType(type, position);
    for (Ferro::ui32_t number = 0; number < count; ++number) {
      Channel& channel = m_Channels[{type, number}];
      if (channel.Statistics.Name.empty())
        channel.Statistics.Name = type_name(type) + (number == 0 ? "" : ' ' + std::to_string(number + 1));
      ITimelineTrack* track = m_Playlist.GetReaderForChannel(type, number, position);
      if (track == channel.Track) continue;
      channel.Track = track;
      channel.Asked.reset();
      channel.IsReady = track != nullptr && make_sure_ready(*track);
    }
    for (auto channel = m_Channels.upper_bound({type, count == 0 ? 0 : count - 1});
         channel != m_Channels.end() && channel->first.first == type; ++channel)
      channel->second.IsReady = false;
  }
}

void ChannelReader::Ask(Channel& channel, Ferro::ui32_t file_position) {
  if (channel.Asked == file_position) return;
  channel.Asked = file_position;
  channel.Track->ReadyFrameAtLocation(file_position);
}

void ChannelReader::Take(Channel& channel, std::optional<Ferro::ui32_t> next, std::chrono::duration<double> length,
                         const Inspect& inspect) {
  ITimelineTrack& track = *channel.Track;
  const Ferro::ui32_t position = *channel.Asked;
  channel.Asked.reset();
  if (next) Ask(channel, *next);  // before the lock, so that it is read while this frame is used
  const Clock::time_point wanted_at = Clock::now();
  track.BufferLock();
  const Clock::duration waited = Clock::now() - wanted_at;

  const QUIRE::FrameBuffer& frame = track.FrameBuffer();
  ChannelStatistics& statistics = channel.Statistics;
  if (frame.FrameNumber() == position || is_silence(frame)) {
    const auto right = track.HasStereoImage() ? bytes_of(track.REyeFrameBuffer()) : std::span<const Ferro::ui8_t>();
    if (inspect) inspect({track, position, bytes_of(frame), right});
    ++statistics.Delivered;
    statistics.Bytes += frame.Size() + right.size();
  } else {
    ++statistics.Repeated;
  }
  track.BufferUnlock();

  statistics.Latency.Add(waited);
  if (waited > length) ++statistics.Late;
}

std::vector<ChannelStatistics> ChannelReader::Statistics() const {
  std::vector<ChannelStatistics> all;
  for (const auto& [key, channel] : m_Channels)
    if (channel.Statistics.Delivered + channel.Statistics.Repeated > 0) all.push_back(channel.Statistics);
  return all;
}

void ChannelReader::TakeWhatWasAsked() {
  for (auto& [key, channel] : m_Channels) {
    if (!channel.Asked || !channel.IsReady) continue;
    channel.Track->BufferLock();
    channel.Track->BufferUnlock();
    channel.Asked.reset();
  }
  m_Expected.reset();
}
