// SPDX-License-Identifier: BSD-3-Clause
// Servers are compiled against the order of the virtual operations, so it never changes. Where a pointer to a virtual
// member function keeps the offset into the table plus one (Itanium C++ ABI, 2.3, as on x86-64), the order can be read.
#include <Strata/IPlaylist.h>
#include <Strata/ITimelineTrack.h>
#include <Strata/ITransportNotify.h>

#include <gtest/gtest.h>

namespace {

using Strata::IPlaylist;
using Strata::ITimelineTrack;
using Strata::ITransportNotify;
using Strata::ui32_t;

template <class Function>
size_t Slot(Function function) {
  static_assert(sizeof(Function) == 2 * sizeof(size_t));
  std::array<size_t, 2> words{};
  std::memcpy(words.data(), &function, sizeof(function));
  return (words[0] - 1) / sizeof(void*);
}

template <class... Functions>
std::vector<size_t> Slots(Functions... functions) {
  return {Slot(functions)...};
}

/// So many slots from the third on: the destructor takes the first two.
std::vector<size_t> AfterTheDestructor(size_t count) {
  std::vector<size_t> slots(count);
  for (size_t i = 0; i < count; ++i) slots[i] = 2 + i;
  return slots;
}

TEST(InterfaceOrder, OfPlaylistsIsFixed) {
  using Translate = ui32_t (IPlaylist::*)(const ui32_t&) const;
  using TranslateInFull =
      void (IPlaylist::*)(const ui32_t&, ui32_t&, ui32_t&, ui32_t&, Ferro::UUID&, QUIRE::Rational&, bool&) const;
  EXPECT_EQ(Slots(&IPlaylist::InitWithUUIDList, &IPlaylist::InitWithPlaylist, &IPlaylist::GetLastCPLContext,
                  &IPlaylist::GetShowPlaylistForTimeline, &IPlaylist::GetPresentationListForTimeline,
                  &IPlaylist::AddEventToTimeline, &IPlaylist::TransportStatusNotify, &IPlaylist::PlaylistStatusNotify,
                  &IPlaylist::PlaylistEventNotify, &IPlaylist::MoveForward, &IPlaylist::MoveBackward,
                  &IPlaylist::MoveToEditUnit, &IPlaylist::EssenceCodingChanged, &IPlaylist::HasStereoImage,
                  &IPlaylist::GetCurrentReelEssenceInfo, &IPlaylist::GetKeyIDList, &IPlaylist::GetCPLIDList,
                  &IPlaylist::GetCiphertextCPLIDList, &IPlaylist::GetDuration, &IPlaylist::GetDurationSeconds,
                  &IPlaylist::GetPosition, &IPlaylist::GetCompositionInfoForCurrentPosition,
                  &IPlaylist::GetCompositionInfoForPosition, Translate(&IPlaylist::TranslateReelPosition),
                  TranslateInFull(&IPlaylist::TranslateReelPosition), &IPlaylist::GetReaderForChannel,
                  &IPlaylist::GetChannelCountForType),
            AfterTheDestructor(27));
}

TEST(InterfaceOrder, OfTracksIsFixed) {
  EXPECT_EQ(
      Slots(&ITimelineTrack::InitWithFilename, &ITimelineTrack::MakeReady, &ITimelineTrack::MakeDormant,
            &ITimelineTrack::AssetID, &ITimelineTrack::TrackType, &ITimelineTrack::ChannelID,
            &ITimelineTrack::EntryPoint, &ITimelineTrack::Duration, &ITimelineTrack::IntrinsicDuration,
            &ITimelineTrack::EditRate, &ITimelineTrack::AssetName, &ITimelineTrack::Language,
            &ITimelineTrack::SetSpanDuration, &ITimelineTrack::GetSpanDuration, &ITimelineTrack::ReadyFrameAtLocation,
            &ITimelineTrack::FrameBufferSize, &ITimelineTrack::FrameBuffer, &ITimelineTrack::BufferLock,
            &ITimelineTrack::BufferUnlock, &ITimelineTrack::KeyID, &ITimelineTrack::ImageWidth,
            &ITimelineTrack::ImageHeight, &ITimelineTrack::HasStereoImage, &ITimelineTrack::REyeFrameBufferSize,
            &ITimelineTrack::REyeFrameBuffer, &ITimelineTrack::SampleRate, &ITimelineTrack::SampleSize,
            &ITimelineTrack::ChannelCount, &ITimelineTrack::ChannelAssignment, &ITimelineTrack::MCALabelString,
            &ITimelineTrack::TextEssenceFormat, &ITimelineTrack::GetTimedTextData,
            &ITimelineTrack::AncillaryResourceIDList, &ITimelineTrack::AncillaryResourceNameList,
            &ITimelineTrack::GetTimedTextResourceByID, &ITimelineTrack::GetTimedTextResourceByName),
      AfterTheDestructor(36));
}

TEST(InterfaceOrder, OfNotifiersIsFixed) {
  EXPECT_EQ(Slots(&ITransportNotify::TransportStatusNotify, &ITransportNotify::TransportExceptionNotify,
                  &ITransportNotify::PlaylistStatusNotify, &ITransportNotify::PlaylistEventNotify),
            AfterTheDestructor(4));
}

}  // namespace
