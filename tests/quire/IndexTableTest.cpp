// SPDX-License-Identifier: BSD-3-Clause

#include "../support/LogCapture.h"

#include <QUIRE/MXF/IndexTable.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace QUIRE::MXF {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

static_assert(sizeof(IndexEntry) == 16);

// Entries at start * 10, (start + 1) * 10 and so on.
IndexTableSegment Variable(i64_t start, i64_t duration, size_t entries) {
  IndexTableSegment segment;
  segment.IndexEditRate = {24, 1};
  segment.IndexStartPosition = start;
  segment.IndexDuration = duration;
  for (size_t i = 0; i < entries; ++i) segment.IndexEntryArray.push_back({(static_cast<ui64_t>(start) + i) * 10});
  return segment;
}

IndexTableSegment Constant(ui32_t size, i64_t start, i64_t duration) {
  IndexTableSegment segment;
  segment.IndexEditRate = {24, 1};
  segment.IndexStartPosition = start;
  segment.IndexDuration = duration;
  segment.EditUnitByteCount = size;
  return segment;
}

std::vector<ui64_t> Offsets(const std::vector<IndexTableSegment>& segments) {
  IndexTable table;
  EXPECT_EQ(table.Build(segments), Ferro::RESULT_OK);
  std::vector<ui64_t> offsets;
  IndexEntry entry;
  while (table.Lookup(offsets.size(), entry).Success()) offsets.push_back(entry.StreamOffset);
  EXPECT_EQ(table.Duration(), offsets.size());
  return offsets;
}

TEST(IndexTable, VariableSizeIsLookedUpInTheEntries) {
  IndexTable table;
  ASSERT_EQ(table.Build({Variable(0, 3, 3)}), Ferro::RESULT_OK);
  EXPECT_EQ(table.EditRate(), Rational(24, 1));
  EXPECT_EQ(table.Duration(), 3u);
  IndexEntry entry;
  ASSERT_EQ(table.Lookup(2, entry), Ferro::RESULT_OK);
  EXPECT_EQ(entry.StreamOffset, 20u);
  EXPECT_EQ(table.Lookup(3, entry), RESULT_RANGE);
  EXPECT_EQ(table.Lookup(~ui64_t{0}, entry), RESULT_RANGE);
  EXPECT_EQ(entry.StreamOffset, 20u);
}

TEST(IndexTable, EntriesKeepAllTheirFields) {
  IndexTableSegment segment = Variable(0, 2, 2);
  segment.IndexEntryArray = {{0, 0, 0, 0xc0}, {0xfedcba9876543210, -2, -12, 0x33}};
  IndexTable table;
  ASSERT_EQ(table.Build({segment}), Ferro::RESULT_OK);
  IndexEntry entry;
  for (const ui64_t i : {1U, 0U}) {
    ASSERT_EQ(table.Lookup(i, entry), Ferro::RESULT_OK);
    EXPECT_EQ(entry, segment.IndexEntryArray[i]);
  }
}

TEST(IndexTable, RebasedItLeadsToTheStartOfTheStream) {
  IndexTable table;
  table.Rebase(5);
  EXPECT_TRUE(table.IsEmpty());
  table.Append({100, 1, -1, 0x80});
  table.Append({170, 0, 0, 0});
  table.Rebase(8);
  IndexEntry entry;
  ASSERT_EQ(table.Lookup(0, entry), Ferro::RESULT_OK);
  EXPECT_EQ(entry, (IndexEntry{8, 1, -1, 0x80}));
  ASSERT_EQ(table.Lookup(1, entry), Ferro::RESULT_OK);
  EXPECT_EQ(entry, (IndexEntry{78, 0, 0, 0}));
}

TEST(IndexTable, ConstantSizeIsComputed) {
  IndexTable table;
  ASSERT_EQ(table.Build({Constant(36020, 0, 100)}), Ferro::RESULT_OK);
  EXPECT_EQ(table.EditUnitByteCount(), 36020u);
  EXPECT_EQ(table.Duration(), 100u);
  IndexEntry entry;
  ASSERT_EQ(table.Lookup(99, entry), Ferro::RESULT_OK);
  EXPECT_EQ(entry, (IndexEntry{99 * 36020, 0, 0, 0x80}));
  EXPECT_EQ(table.Lookup(100, entry), RESULT_RANGE);
}

TEST(IndexTable, ConstantSizeWithoutDurationReachesToTheEnd) {
  IndexTable table;
  ASSERT_EQ(table.Build({Constant(36020, 0, 0)}), Ferro::RESULT_OK);
  EXPECT_EQ(table.Duration(), 0u);
  IndexEntry entry;
  ASSERT_EQ(table.Lookup(172799, entry), Ferro::RESULT_OK);
  EXPECT_EQ(entry.StreamOffset, 6224219980u);
}

TEST(IndexTable, ProductThatWouldWrapIsOutOfRange) {
  IndexTable table;
  table.SetConstant({24, 1}, 0xffffffff, 0);
  IndexEntry entry;
  EXPECT_EQ(table.Lookup(0x100000002, entry), RESULT_RANGE);
  EXPECT_EQ(table.Lookup(0x100000001, entry), Ferro::RESULT_OK);
  EXPECT_EQ(entry.StreamOffset, ~ui64_t{0});
}

TEST(IndexTable, SegmentsAreJoinedInAnyOrder) {
  EXPECT_THAT(Offsets({Variable(2, 2, 2), Variable(0, 2, 2), Variable(4, 1, 1)}), ElementsAre(0, 10, 20, 30, 40));
}

TEST(IndexTable, OfSegmentsWithOneStartTheLaterCounts) {
  IndexTableSegment later = Variable(0, 2, 2);
  later.IndexEntryArray[1].StreamOffset = 77;
  EXPECT_THAT(Offsets({Variable(0, 2, 2), later}), ElementsAre(0, 77));
}

TEST(IndexTable, SmallerOfDurationAndEntriesCounts) {
  EXPECT_THAT(Offsets({Variable(0, 2, 3)}), ElementsAre(0, 10));
  EXPECT_THAT(Offsets({Variable(0, 9, 3)}), ElementsAre(0, 10, 20));
  EXPECT_THAT(Offsets({Variable(0, std::numeric_limits<i64_t>::max(), 1)}), ElementsAre(0));
}

TEST(IndexTable, DurationZeroOrUnknownMeansAllEntries) {
  EXPECT_THAT(Offsets({Variable(0, 0, 3)}), ElementsAre(0, 10, 20));
  EXPECT_THAT(Offsets({Variable(0, -1, 3)}), ElementsAre(0, 10, 20));
}

TEST(IndexTable, OfDoubledEntriesEverySecondCounts) {
  EXPECT_THAT(Offsets({Variable(0, 3, 7)}), ElementsAre(0, 20, 40));
  EXPECT_THAT(Offsets({Variable(0, 3, 6)}), ElementsAre(0, 20, 40));
}

TEST(IndexTable, OverlapIsWonByTheSegmentThatStartsLater) {
  IndexTableSegment second = Variable(1, 2, 2);
  second.IndexEntryArray[0].StreamOffset = 11;
  EXPECT_THAT(Offsets({Variable(0, 3, 3), second}), ElementsAre(0, 11, 20));
}

TEST(IndexTable, WithoutSegmentsOrEntriesItIsEmpty) {
  IndexTable table;
  ASSERT_EQ(table.Build({}), Ferro::RESULT_OK);
  EXPECT_TRUE(table.IsEmpty());
  ASSERT_EQ(table.Build({Variable(0, 5, 0)}), Ferro::RESULT_OK);
  EXPECT_TRUE(table.IsEmpty());
  IndexEntry entry;
  EXPECT_EQ(table.Lookup(0, entry), RESULT_RANGE);
}

TEST(IndexTable, GapIsAFormatError) {
  const testsupport::LogCapture log;
  IndexTable table;
  EXPECT_EQ(table.Build({Variable(0, 2, 2), Variable(3, 1, 1)}), RESULT_FORMAT);
  EXPECT_TRUE(table.IsEmpty());
  EXPECT_EQ(table.Build({Variable(1, 1, 1)}), RESULT_FORMAT);
  EXPECT_EQ(table.Build({Constant(10, 5, 5)}), RESULT_FORMAT);
  EXPECT_THAT(log.Lines(), ElementsAre("MXF: index segments leave a gap at edit unit 3.\n",
                                       "MXF: index segments leave a gap at edit unit 1.\n",
                                       "MXF: index segments leave a gap at edit unit 5.\n"));
}

TEST(IndexTable, NegativeStartIsAFormatError) {
  const testsupport::LogCapture log;
  IndexTable table;
  IndexTableSegment segment = Variable(0, 1, 1);
  segment.IndexStartPosition = std::numeric_limits<i64_t>::min();
  EXPECT_EQ(table.Build({segment}), RESULT_FORMAT);
  EXPECT_THAT(log.Lines(), ElementsAre("MXF: index segments leave a gap at edit unit -9223372036854775808.\n"));
}

TEST(IndexTable, ChangeOfConstantSizeIsAFormatError) {
  const testsupport::LogCapture log;
  IndexTable table;
  EXPECT_EQ(table.Build({Constant(10, 0, 5), Constant(11, 5, 5)}), RESULT_FORMAT);
  EXPECT_EQ(table.Build({Constant(10, 0, 5), Variable(5, 1, 1)}), RESULT_FORMAT);
  EXPECT_THAT(log.Lines(), ElementsAre("MXF: index segments change the size of an edit unit at edit unit 5.\n",
                                       "MXF: index segments change the size of an edit unit at edit unit 5.\n"));
}

TEST(IndexTable, ConstantSegmentsAddUp) {
  const testsupport::LogCapture log;
  IndexTable table;
  ASSERT_EQ(table.Build({Constant(10, 5, 7), Constant(10, 0, 5)}), Ferro::RESULT_OK);
  EXPECT_EQ(table.Duration(), 12u);
  EXPECT_THAT(log.Lines(), IsEmpty());
}

}  // namespace
}  // namespace QUIRE::MXF
