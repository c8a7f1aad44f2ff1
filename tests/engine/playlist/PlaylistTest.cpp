// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/IPlaylist.h>

#include "../../support/FakeTimeline.h"

#include <gtest/gtest.h>

namespace {

using Strata::CompositionInfo;
using testsupport::Composition;
using testsupport::FakeTimeline;
using testsupport::FakeTrack;
using testsupport::NumberedID;
using testsupport::ui32_t;

TEST(Playlist, NewPlaylistIsEmpty) {
  Ferro::mem_ptr<Strata::IPlaylist> playlist;
  ASSERT_EQ(Strata::NewPlaylist(playlist), Ferro::RESULT_OK);
  ASSERT_FALSE(playlist.empty());
  EXPECT_EQ(playlist->GetDuration(), 0u);
  EXPECT_EQ(playlist->GetDurationSeconds(), 0u);
  EXPECT_EQ(playlist->GetPosition(), 0u);
  EXPECT_FALSE(playlist->HasStereoImage());
  EXPECT_FALSE(playlist->EssenceCodingChanged());
  Ferro::UUIDList ids;
  playlist->GetKeyIDList(ids);
  EXPECT_TRUE(ids.empty());
  playlist->GetCPLIDList(ids);
  EXPECT_TRUE(ids.empty());
  playlist->GetCiphertextCPLIDList(ids);
  EXPECT_TRUE(ids.empty());
  EXPECT_FALSE(playlist->GetCompositionInfoForCurrentPosition().HasValue());
}

TEST(Playlist, MembersStartEmptyWithThe2KTo4KChangeMode) {
  FakeTimeline fake;
  EXPECT_TRUE(fake.State.Timeline.empty());
  EXPECT_TRUE(fake.State.Events.empty());
  EXPECT_EQ(fake.State.HasChanges, 0u);
  EXPECT_EQ(fake.State.CurrentReel, nullptr);
  EXPECT_EQ(fake.State.ReelCount, 0u);
  EXPECT_EQ(fake.State.PictureType, Cairn::FT_UNKNOWN);
  EXPECT_TRUE(fake.State.Compositions.empty());
  EXPECT_FALSE(fake.State.HasStereoImage);
  EXPECT_EQ(fake.State.ChangeMode, Strata::EECM_2K_4K);
  EXPECT_FALSE(fake.State.LastCPL.HasValue());
  EXPECT_TRUE(fake.State.LastCPLAssets.empty());
  for (const auto* position : {&fake.State.ShowPosition, &fake.State.CPLPosition, &fake.State.ReelPosition}) {
    EXPECT_EQ(position->Duration, 0u);
    EXPECT_EQ(position->Position, 0u);
    EXPECT_FALSE(position->AssetID.HasValue());
  }
}

TEST(Playlist, NewPlaylistReplacesTheOneBefore) {
  unsigned deleted = 0;
  auto* old = new Strata::h__Playlist;
  Strata::TimelineReel reel;
  FakeTimeline::Add(reel.MainPicture).OnDelete = [&deleted] { ++deleted; };
  Strata::PlaylistInspector(*old).Timeline.push_back(reel);

  Ferro::mem_ptr<Strata::IPlaylist> playlist(old);
  ASSERT_EQ(Strata::NewPlaylist(playlist), Ferro::RESULT_OK);
  EXPECT_EQ(deleted, 1u);
  EXPECT_EQ(playlist->GetDuration(), 0u);
}

TEST(Playlist, DestructorDeletesReelAfterReel) {
  std::vector<std::string> deleted;
  {
    FakeTimeline fake;
    fake.Append(Composition(1), {10, 10, 10});
    for (size_t i = 0; i < 3; ++i) {
      const std::string reel = "reel " + std::to_string(i);
      FakeTimeline::Add(fake.Reel(i).MainSound).OnDelete = [&deleted, reel] { deleted.push_back(reel + " sound"); };
      fake.Picture(i).OnDelete = [&deleted, reel] { deleted.push_back(reel + " picture"); };
    }
  }
  EXPECT_EQ(deleted, std::vector<std::string>({"reel 0 sound", "reel 0 picture", "reel 1 sound", "reel 1 picture",
                                               "reel 2 sound", "reel 2 picture"}));
}

TEST(Playlist, ChangeModeValuesAreFixed) {
  EXPECT_EQ(Strata::h__Playlist::ImageEssenceChangeMode_t(0), Strata::EECM_NONE);
  EXPECT_EQ(Strata::h__Playlist::ImageEssenceChangeMode_t(1), Strata::EECM_2K_4K);
  EXPECT_EQ(Strata::h__Playlist::ImageEssenceChangeMode_t(2), Strata::EECM_ANY);
}

// The coding test.

constexpr std::array AllModes = {Strata::EECM_NONE, Strata::EECM_2K_4K, Strata::EECM_ANY};

CompositionInfo Sized(ui32_t width, ui32_t height) {
  CompositionInfo info = Composition(1);
  info.ImageWidth = width;
  info.ImageHeight = height;
  return info;
}

/// The answer to both orders of the two, which must be one.
bool SameCoding(const CompositionInfo& a, const CompositionInfo& b, Strata::ImageEssenceChangeMode_t mode) {
  const bool same = test_CompositionInfo_coding_same(a, b, mode);
  EXPECT_EQ(test_CompositionInfo_coding_same(b, a, mode), same);
  return same;
}

TEST(CompositionCoding, EqualCodingIsTheSameInEveryMode) {
  for (const auto mode : AllModes) EXPECT_TRUE(SameCoding(Composition(1), Composition(2), mode));
}

TEST(CompositionCoding, AnotherRateOrFormatIsAnotherCodingInEveryMode) {
  std::array<CompositionInfo, 4> others;
  others.fill(Composition(2));
  others[0].EditRate = QUIRE::Rational(48, 1);
  others[1].EditRate = QUIRE::Rational(24, 2);
  others[2].ImageFormat = Cairn::FT_QUIRE_JP2K_J2C_S;
  others[3].SoundFormat = 8;
  for (const auto mode : AllModes)
    for (const CompositionInfo& other : others) EXPECT_FALSE(SameCoding(Composition(1), other, mode));
}

TEST(CompositionCoding, RatesAreComparedAsWritten) {
  CompositionInfo twice = Composition(2);
  twice.EditRate = QUIRE::Rational(48, 2);
  EXPECT_FALSE(SameCoding(Composition(1), twice, Strata::EECM_NONE));
}

TEST(CompositionCoding, Width2048And1998AreTheSameAs2K) {
  EXPECT_TRUE(SameCoding(Sized(2048, 858), Sized(1998, 1080), Strata::EECM_2K_4K));
}

TEST(CompositionCoding, Width2048And4096DifferAs2KAnd4K) {
  EXPECT_FALSE(SameCoding(Sized(2048, 1080), Sized(4096, 2160), Strata::EECM_2K_4K));
}

TEST(CompositionCoding, TheBorderLiesAbove2048) {
  EXPECT_FALSE(SameCoding(Sized(2048, 1080), Sized(2049, 1080), Strata::EECM_2K_4K));
  EXPECT_TRUE(SameCoding(Sized(2049, 1080), Sized(4096, 2160), Strata::EECM_2K_4K));
}

TEST(CompositionCoding, AnyChangeOfSizeCountsUnderAny) {
  EXPECT_FALSE(SameCoding(Sized(1998, 1080), Sized(2048, 858), Strata::EECM_ANY));
  EXPECT_FALSE(SameCoding(Sized(1998, 1080), Sized(2048, 1080), Strata::EECM_ANY));
  EXPECT_FALSE(SameCoding(Sized(2048, 858), Sized(2048, 1080), Strata::EECM_ANY));
}

TEST(CompositionCoding, SizeNeverCountsUnderNone) {
  EXPECT_TRUE(SameCoding(Sized(1998, 1080), Sized(2048, 858), Strata::EECM_NONE));
  EXPECT_TRUE(SameCoding(Sized(2048, 1080), Sized(4096, 2160), Strata::EECM_NONE));
}

TEST(CompositionCoding, UnknownModeIsTakenAsNone) {
  EXPECT_TRUE(SameCoding(Sized(2048, 1080), Sized(4096, 2160), static_cast<Strata::ImageEssenceChangeMode_t>(3)));
}

}  // namespace
