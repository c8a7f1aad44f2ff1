// SPDX-License-Identifier: BSD-3-Clause
#include "ChannelReader.h"

#include <QUIRE/FrameBuffer.h>
#include <Strata/PlayedSpan.h>

#include <array>

namespace Tool {

using Strata::ITimelineTrack;
using Strata::PlayedFilePosition;

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

}  // namespace

void ChannelReader::ReadEditUnit(Ferro::ui32_t position, std::optional<Ferro::ui32_t> next, Clock::time_point over,
                                 const Inspect& inspect) {
  // What was asked for elsewhere is taken first: moving on may put its track to rest.
  if (m_Expected != position) Settle();
  FindTracks(position);
  m_Position = position;
  const Ferro::ui32_t offset = m_Playlist.TranslateReelPosition(position);
  const bool next_is_near =
      next && *next < m_Playlist.GetDuration() &&
      Ferro::i64_t{*next} - m_Playlist.TranslateReelPosition(*next) == Ferro::i64_t{position} - offset;
  m_Expected = next_is_near ? next : std::nullopt;

  for (auto& [key, channel] : m_Channels) {
    if (channel.Track == nullptr) continue;
    const auto file_position = PlayedFilePosition(*channel.Track, offset);
    if (channel.Requester && file_position) channel.Requester->Ask(*file_position);
  }
  for (auto& [key, channel] : m_Channels) {
    if (channel.Track == nullptr) continue;
    const auto file_position = PlayedFilePosition(*channel.Track, offset);
    if (!file_position) continue;
    std::optional<Ferro::ui32_t> ahead;
    if (next_is_near) ahead = PlayedFilePosition(*channel.Track, m_Playlist.TranslateReelPosition(*next));
    if (channel.Requester)
      Take(channel, *file_position, ahead, over, inspect);
    else
      CountMissing(channel, *file_position);
  }
}

void ChannelReader::FindTracks(Ferro::ui32_t position) {
  for (const auto& [type, name] : Types) {
    const Ferro::ui32_t count = m_Playlist.GetChannelCountForType(type, position);
    for (Ferro::ui32_t number = 0; number < count; ++number) {
      Channel& channel = m_Channels[{type, number}];
      if (channel.Statistics.Name.empty())
        channel.Statistics.Name = name + (number == 0 ? "" : ' ' + std::to_string(number + 1));
      SetTrack(channel, m_Playlist.GetReaderForChannel(type, number, position));
    }
    for (auto channel = m_Channels.lower_bound({type, count});
         channel != m_Channels.end() && channel->first.first == type; ++channel)
      SetTrack(channel->second, nullptr);
  }
}

// The playlist opens a file that was missing as soon as it is there again.
void ChannelReader::SetTrack(Channel& channel, ITimelineTrack* track) {
  if (track != channel.Track) {
    channel.Requester.reset();
    channel.IsLacking = false;
    channel.IsMissing = false;
    channel.Track = track;
  }
  if (track != nullptr && !channel.Requester && IsReady(*track)) channel.Requester.emplace(*track);
}

void ChannelReader::Take(Channel& channel, Ferro::ui32_t file_position, std::optional<Ferro::ui32_t> next,
                         Clock::time_point over, const Inspect& inspect) {
  ChannelStatistics& statistics = channel.Statistics;
  const Clock::time_point wanted_at = Clock::now();
  const auto frame = channel.Requester->Take(file_position, next);
  const Clock::time_point came_at = Clock::now();
  statistics.Latency.Add(came_at - wanted_at);
  if (came_at > over) ++statistics.Late;

  if (frame.IsThere() && Deliver(channel, file_position, inspect)) return;
  ++statistics.Repeated;
  if (!std::exchange(channel.IsLacking, true) && m_OnLacking) m_OnLacking(statistics.Name, file_position);
}

bool ChannelReader::Deliver(Channel& channel, Ferro::ui32_t file_position, const Inspect& inspect) {
  const ITimelineTrack& track = *channel.Track;
  ChannelStatistics& statistics = channel.Statistics;
  const bool is_text = track.TextEssenceFormat() != Cairn::DFT_NONE;
  if (is_text && !track.GetTimedTextData(m_Text)) return false;
  const QUIRE::FrameBuffer& frame = is_text ? m_Text : track.FrameBuffer();
  const QUIRE::FrameBuffer* right_frame = track.HasStereoImage() ? &track.REyeFrameBuffer() : nullptr;
  const auto right = right_frame != nullptr ? BytesOf(*right_frame) : std::span<const Ferro::ui8_t>();
  if (inspect) inspect({statistics.Name, track, m_Position, file_position, BytesOf(frame), right, &frame, right_frame});
  ++statistics.Delivered;
  statistics.Bytes += frame.Size() + right.size();
  return true;
}

void ChannelReader::CountMissing(Channel& channel, Ferro::ui32_t file_position) {
  ++channel.Statistics.Missing;
  if (!std::exchange(channel.IsMissing, true) && m_OnMissing) m_OnMissing(channel.Statistics.Name, file_position);
}

std::vector<ChannelStatistics> ChannelReader::Statistics() const {
  std::vector<ChannelStatistics> all;
  for (const auto& [key, channel] : m_Channels)
    if (channel.Statistics.Delivered + channel.Statistics.Repeated + channel.Statistics.Missing > 0)
      all.push_back(channel.Statistics);
  return all;
}

void ChannelReader::Settle() {
  for (auto& [key, channel] : m_Channels)
    if (channel.Requester) channel.Requester->Settle();
  m_Expected.reset();
}

}  // namespace Tool
