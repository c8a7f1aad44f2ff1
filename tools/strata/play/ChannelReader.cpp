// SPDX-License-Identifier: BSD-3-Clause
#include "ChannelReader.h"

#include <QUIRE/FrameBuffer.h>

#include <array>

namespace Tool {

using Strata::ITimelineTrack;

namespace {

struct TypeName {
  Strata::TrackType_t Type;
  const char* Name;
};

constexpr std::array Types = {TypeName{Strata::TRKT_IMAGE, "picture"}, TypeName{Strata::TRKT_SOUND, "sound"},
                              TypeName{Strata::TRKT_ON_SCREEN_TEXT, "subtitle"},
                              TypeName{Strata::TRKT_OFF_SCREEN_TEXT, "closed caption"},
                              TypeName{Strata::TRKT_AUX_DATA, "auxiliary data"}};

std::span<const Ferro::ui8_t> BytesOf(const QUIRE::FrameBuffer& buffer) {
  return {buffer.RoData(), buffer.Size()};
}

// The silent frame is the same for every position and has no number; a buffer that holds no frame yet is empty.
bool IsSilence(const QUIRE::FrameBuffer& frame) {
  return frame.FrameNumber() == QUIRE::NoFrame && frame.Size() > 0;
}

/// A track that could not be opened stays dormant, and its interface tells only by what MakeDormant answers.
bool MakeSureReady(ITimelineTrack& track) {
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
  m_Position = position;
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
  for (const auto& [type, name] : Types) {
    const Ferro::ui32_t count = m_Playlist.GetChannelCountForType(type, position);
    for (Ferro::ui32_t number = 0; number < count; ++number) {
      Channel& channel = m_Channels[{type, number}];
      if (channel.Statistics.Name.empty())
        channel.Statistics.Name = name + (number == 0 ? "" : ' ' + std::to_string(number + 1));
      ITimelineTrack* track = m_Playlist.GetReaderForChannel(type, number, position);
      if (track == channel.Track) continue;
      channel.Track = track;
      channel.Asked.reset();
      channel.IsLacking = false;
      channel.IsReady = track != nullptr && MakeSureReady(*track);
    }
    for (auto channel = m_Channels.lower_bound({type, count});
         channel != m_Channels.end() && channel->first.first == type; ++channel) {
      channel->second.Track = nullptr;
      channel->second.IsReady = false;
    }
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

  Deliver(channel, position, inspect);
  track.BufferUnlock();

  channel.Statistics.Latency.Add(waited);
  if (waited > length) ++channel.Statistics.Late;
}

void ChannelReader::Deliver(Channel& channel, Ferro::ui32_t file_position, const Inspect& inspect) {
  const ITimelineTrack& track = *channel.Track;
  ChannelStatistics& statistics = channel.Statistics;
  const bool is_text = track.TextEssenceFormat() != Cairn::DFT_NONE;
  const QUIRE::FrameBuffer& frame = is_text ? m_Text : track.FrameBuffer();
  const bool is_there =
      is_text ? track.GetTimedTextData(m_Text) : frame.FrameNumber() == file_position || IsSilence(frame);
  if (!is_there) {
    ++statistics.Repeated;
    if (!std::exchange(channel.IsLacking, true) && m_OnLacking) m_OnLacking(statistics.Name, file_position);
    return;
  }
  const auto right = track.HasStereoImage() ? BytesOf(track.REyeFrameBuffer()) : std::span<const Ferro::ui8_t>();
  if (inspect) inspect({statistics.Name, track, m_Position, file_position, BytesOf(frame), right});
  ++statistics.Delivered;
  statistics.Bytes += frame.Size() + right.size();
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

}  // namespace Tool
