// SPDX-License-Identifier: BSD-3-Clause
#include "Playlist/h__Playlist.h"

#include "../../support/FakeTimeline.h"
#include "../../support/LogCapture.h"

#include <gtest/gtest.h>

namespace {

using Strata::CompositionInfo;
using testsupport::Composition;
using testsupport::FakeTimeline;
using testsupport::LogCapture;
using testsupport::ui32_t;

constexpr ui32_t ChangedAll = Strata::PlaylistInspector::ChangedAll;
constexpr ui32_t ChangedComposition = Strata::PlaylistInspector::ChangedComposition;
constexpr ui32_t ChangedPosition = Strata::PlaylistInspector::ChangedPosition;

struct CodingChange : testing::Test {
  /// Moves from a composition of the first size into one of the second; answers the change bits.
  static ui32_t Changes(Strata::ImageEssenceChangeMode_t mode, ui32_t width_1, ui32_t height_1, ui32_t width_2,
                        ui32_t height_2) {
    FakeTimeline fake;
    for (const auto& [number, width, height] : {std::tuple(1u, width_1, height_1), std::tuple(2u, width_2, height_2)}) {
      CompositionInfo info = Composition(number);
      info.ImageWidth = width;
      info.ImageHeight = height;
      fake.Append(info, {10});
    }
    fake.State.ChangeMode = mode;
    fake.Finish();
    fake.State.HasChanges = 0;
    fake.Playlist.MoveToEditUnit(10);
    return fake.State.HasChanges;
  }
};

TEST_F(CodingChange, IsAWidthAcross2048In2KTo4KMode) {
  EXPECT_EQ(Changes(Strata::EECM_2K_4K, 2048, 1080, 2049, 1080), ChangedAll);
  EXPECT_EQ(Changes(Strata::EECM_2K_4K, 4096, 2160, 2048, 1080), ChangedAll);
}

TEST_F(CodingChange, IsNoChangeOfSizeWithin2KIn2KTo4KMode) {
  EXPECT_EQ(Changes(Strata::EECM_2K_4K, 1998, 1080, 2048, 858), ChangedPosition | ChangedComposition);
}

TEST_F(CodingChange, IsAnyChangeOfWidthOrHeightInAnyMode) {
  EXPECT_EQ(Changes(Strata::EECM_ANY, 1998, 1080, 2048, 1080), ChangedAll);
  EXPECT_EQ(Changes(Strata::EECM_ANY, 2048, 858, 2048, 1080), ChangedAll);
  EXPECT_EQ(Changes(Strata::EECM_ANY, 2048, 1080, 2048, 1080), ChangedPosition | ChangedComposition);
}

TEST_F(CodingChange, IsNoChangeOfSizeInNoneMode) {
  EXPECT_EQ(Changes(Strata::EECM_NONE, 2048, 1080, 4096, 2160), ChangedPosition | ChangedComposition);
}

TEST_F(CodingChange, IsLoggedAndAnsweredOnce) {
  FakeTimeline fake;
  fake.Append(Composition(1), {10});
  CompositionInfo stereo = Composition(2);
  stereo.ImageFormat = Cairn::FT_QUIRE_JP2K_J2C_S;
  fake.Append(stereo, {10});
  fake.Finish();
  const LogCapture log;
  fake.Playlist.MoveToEditUnit(10);
  ASSERT_EQ(log.Entries().size(), 1u);
  EXPECT_EQ(log.Entries()[0].Level, Ferro::LogLevel::Debug);
  EXPECT_EQ(log.Entries()[0].Message, "Essence format has changed.\n");
  EXPECT_TRUE(fake.Playlist.EssenceCodingChanged());
  EXPECT_FALSE(fake.Playlist.EssenceCodingChanged());
  EXPECT_EQ(fake.State.HasChanges, ChangedPosition | ChangedComposition) << "the other bits stay";
}

TEST_F(CodingChange, NeverComesWithTheFirstComputation) {
  FakeTimeline fake;
  fake.Append(Composition(1), {10});
  CompositionInfo stereo = Composition(2);
  stereo.ID = Ferro::UUID::FromHex("00000000-0000-0000-0000-000000000000").value();
  stereo.ImageFormat = Cairn::FT_QUIRE_JP2K_J2C_S;
  fake.Append(stereo, {10});
  fake.Finish();
  EXPECT_FALSE(fake.Playlist.EssenceCodingChanged());
  fake.Playlist.MoveToEditUnit(10);
  EXPECT_TRUE(fake.Playlist.EssenceCodingChanged());
}

TEST_F(CodingChange, IsDecidedFromTheCompositionBeforeTheMove) {
  FakeTimeline fake;
  CompositionInfo large = Composition(2);
  large.ImageWidth = 4096;
  fake.Append(Composition(1), {10});
  fake.Append(large, {10});
  fake.Append(Composition(3), {10});
  fake.Finish();
  fake.Playlist.MoveToEditUnit(20);
  EXPECT_FALSE(fake.Playlist.EssenceCodingChanged()) << "the composition between was jumped over";
  fake.Playlist.MoveBackward(1);
  EXPECT_TRUE(fake.Playlist.EssenceCodingChanged());
}

}  // namespace
