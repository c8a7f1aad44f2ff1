// SPDX-License-Identifier: BSD-3-Clause
#include "../../support/LogCapture.h"

#include <Strata/ShowPlaylist.h>

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

namespace Strata {
namespace {

using testsupport::LogCapture;

static_assert(ShowPlaylist::SIT_CPL == 0 && ShowPlaylist::SIT_SHOW == 1 && ShowPlaylist::SIT_MARKER == 2 &&
              ShowPlaylist::SIT_IMAGE == 3);

void AddComposition(ShowPlaylist& playlist, ui32_t duration, i32_t numerator, i32_t denominator) {
  auto item = std::make_unique<ShowPlaylist::CompositionItem>();
  item->Duration = duration;
  item->EditRate = QUIRE::Rational(numerator, denominator);
  playlist.ShowSequence.push_back(std::move(item));
}

void AddUnknown(ShowPlaylist& playlist) {
  auto item = std::make_unique<ShowPlaylist::MarkerItem>();
  item->m_Type = static_cast<ShowPlaylist::ShowItemType_t>(9);
  playlist.ShowSequence.push_back(std::move(item));
}

TEST(ShowPlaylist, NewPlaylistIsEmpty) {
  const ShowPlaylist playlist;
  EXPECT_FALSE(playlist.ID.HasValue());
  EXPECT_EQ(playlist.NamespaceName + playlist.Label + playlist.ShowTitle + playlist.Annotation, "");
  EXPECT_EQ(playlist.Creator + playlist.Issuer, "");
  EXPECT_EQ(playlist.EstimatedDuration, 0u);
  EXPECT_TRUE(playlist.ShowParameters.empty());
  EXPECT_TRUE(playlist.ShowSequence.empty());
  EXPECT_EQ(playlist.DCPFormat, Cairn::DFT_NONE);
  EXPECT_EQ(playlist.SignatureMode, Cairn::SM_NONE);
  EXPECT_TRUE(playlist.SignatureChain.empty());
}

TEST(ShowPlaylist, ItemsKnowTheirKind) {
  EXPECT_EQ(ShowPlaylist::CompositionItem().m_Type, ShowPlaylist::SIT_CPL);
  EXPECT_EQ(ShowPlaylist::ShowPlaylistItem().m_Type, ShowPlaylist::SIT_SHOW);
  EXPECT_EQ(ShowPlaylist::MarkerItem().m_Type, ShowPlaylist::SIT_MARKER);
}

TEST(ShowPlaylist, CopiedCompositionHasItsOwnMarkers) {
  ShowPlaylist::CompositionItem item;
  item.Annotation = "note";
  item.Duration = 5;
  item.MarkerList.emplace_back().Label = "first";
  ShowPlaylist::CompositionItem copy(item);
  item.MarkerList.front().Label = "changed";
  ASSERT_EQ(copy.MarkerList.size(), 1u);
  EXPECT_EQ(copy.MarkerList.front().Label, "first");
  EXPECT_EQ(copy.Annotation, "note");
  ShowPlaylist::CompositionItem assigned;
  assigned = copy;
  copy.MarkerList.clear();
  ASSERT_EQ(assigned.MarkerList.size(), 1u);
  EXPECT_EQ(assigned.Duration, 5u);
}

// Counts how many are alive.
struct CountedItem : ShowPlaylist::MarkerItem {
  explicit CountedItem(int& count) : m_Count(count) { ++m_Count; }
  ~CountedItem() override { --m_Count; }
  int& m_Count;
};

TEST(ShowPlaylist, DeletesItsItems) {
  int count = 0;
  {
    ShowPlaylist playlist;
    playlist.ShowSequence.push_back(std::make_unique<CountedItem>(count));
    playlist.ShowSequence.push_back(std::make_unique<CountedItem>(count));
    EXPECT_EQ(count, 2);
  }
  EXPECT_EQ(count, 0);
}

TEST(ShowPlaylistSeconds, EmptySequenceTakesNone) {
  EXPECT_EQ(ShowPlaylist().GetDurationSeconds(), 0u);
  EXPECT_EQ(ShowPlaylist().GetPositionSeconds(100), 0u);
}

TEST(ShowPlaylistSeconds, DurationIsRoundedUp) {
  ShowPlaylist whole;
  AddComposition(whole, 240, 24, 1);
  EXPECT_EQ(whole.GetDurationSeconds(), 10u);
  ShowPlaylist more;
  AddComposition(more, 241, 24, 1);
  EXPECT_EQ(more.GetDurationSeconds(), 11u);
}

TEST(ShowPlaylistSeconds, DurationIsRoundedOnceOverAllCompositions) {
  ShowPlaylist playlist;
  AddComposition(playlist, 12, 24, 1);
  AddComposition(playlist, 24, 48, 1);
  AddComposition(playlist, 30, 30000, 1000);
  EXPECT_EQ(playlist.GetDurationSeconds(), 2u);
}

TEST(ShowPlaylistSeconds, MarkersAndShowsCountNothing) {
  ShowPlaylist playlist;
  playlist.ShowSequence.push_back(std::make_unique<ShowPlaylist::MarkerItem>());
  AddComposition(playlist, 24, 24, 1);
  playlist.ShowSequence.push_back(std::make_unique<ShowPlaylist::ShowPlaylistItem>());
  EXPECT_EQ(playlist.GetDurationSeconds(), 1u);
  EXPECT_EQ(playlist.GetPositionSeconds(24), 1u);
}

TEST(ShowPlaylistSeconds, UnknownItemsAreLoggedAndSkipped) {
  ShowPlaylist playlist;
  AddUnknown(playlist);
  AddComposition(playlist, 48, 24, 1);
  LogCapture log;
  EXPECT_EQ(playlist.GetDurationSeconds(), 2u);
  EXPECT_EQ(log.TextWithLevels(), "E Unexpected ShowSequence item type: 9\n");
  EXPECT_EQ(playlist.GetPositionSeconds(24), 1u);
  EXPECT_EQ(log.TextWithLevels(), "E Unexpected ShowSequence item type: 9\nE Unexpected ShowSequence item type: 9\n");
}

TEST(ShowPlaylistSeconds, PositionZeroIsZero) {
  ShowPlaylist playlist;
  AddComposition(playlist, 240, 24, 1);
  EXPECT_EQ(playlist.GetPositionSeconds(0), 0u);
}

TEST(ShowPlaylistSeconds, PositionCountsEachCompositionInItsOwnRate) {
  ShowPlaylist playlist;
  AddComposition(playlist, 240, 24, 1);
  AddComposition(playlist, 480, 48, 1);
  EXPECT_EQ(playlist.GetPositionSeconds(1), 1u);
  EXPECT_EQ(playlist.GetPositionSeconds(24), 1u);
  EXPECT_EQ(playlist.GetPositionSeconds(25), 2u);
  EXPECT_EQ(playlist.GetPositionSeconds(239), 10u);
  EXPECT_EQ(playlist.GetPositionSeconds(240), 10u);
  EXPECT_EQ(playlist.GetPositionSeconds(241), 11u);
  EXPECT_EQ(playlist.GetPositionSeconds(288), 11u);
  EXPECT_EQ(playlist.GetPositionSeconds(719), 20u);
}

TEST(ShowPlaylistSeconds, PositionBeyondTheEndIsTheWholeDuration) {
  ShowPlaylist playlist;
  AddComposition(playlist, 241, 24, 1);
  EXPECT_EQ(playlist.GetPositionSeconds(241), 11u);
  EXPECT_EQ(playlist.GetPositionSeconds(0xFFFFFFFF), 11u);
}

TEST(ShowPlaylistSeconds, DurationsBeyond32BitsAddUp) {
  ShowPlaylist playlist;
  AddComposition(playlist, 0xFFFFFFFF, 0x7FFFFFFF, 1);
  AddComposition(playlist, 0xFFFFFFFF, 0x7FFFFFFF, 1);
  EXPECT_EQ(playlist.GetDurationSeconds(), 5u);  // 8589934590 / 2147483647 is a little more than 4
}

TEST(ShowPlaylistSeconds, RatesThatMakeNoTimeEndInTheRange) {
  ShowPlaylist nothing;
  AddComposition(nothing, 0, 0, 0);
  EXPECT_EQ(nothing.GetDurationSeconds(), 0u);
  ShowPlaylist endless;
  AddComposition(endless, 24, 0, 1);
  EXPECT_EQ(endless.GetDurationSeconds(), 0xFFFFFFFFu);
  EXPECT_EQ(endless.GetPositionSeconds(12), 0xFFFFFFFFu);
  ShowPlaylist backward;
  AddComposition(backward, 24, -24, 1);
  EXPECT_EQ(backward.GetDurationSeconds(), 0u);
}

}  // namespace
}  // namespace Strata
