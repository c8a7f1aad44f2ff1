// SPDX-License-Identifier: BSD-3-Clause
#include "../support/LogCapture.h"
#include "ExampleFile.h"

#include <QUIRE/MXF/IndexTableSegment.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace QUIRE::MXF {
namespace {

using Bytes = std::vector<ui8_t>;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr size_t SegmentStart = 4538;
constexpr size_t SegmentEnd = 4689;
constexpr size_t HeaderLength = 20;

Bytes ExampleSegment() {
  return ExampleBytes(SegmentStart, SegmentEnd);
}

Bytes ExampleValue() {
  return ExampleBytes(SegmentStart + HeaderLength, SegmentEnd);
}

IndexTableSegment Parse(const Bytes& value) {
  IndexTableSegment segment;
  EXPECT_EQ(segment.Read(value, 0), Ferro::RESULT_OK);
  return segment;
}

Result_t ParseWith(size_t at, const Bytes& patch) {
  Bytes value = ExampleValue();
  std::copy(patch.begin(), patch.end(), value.begin() + static_cast<std::ptrdiff_t>(at));
  IndexTableSegment segment;
  return segment.Read(value, 4558);
}

TEST(IndexTableSegment, EachFieldIsReadFromItsItem) {
  const IndexTableSegment segment = Parse(ExampleValue());
  EXPECT_EQ(segment.InstanceUID.EncodeString(), "cb2590cf-fc30-407d-94a4-06c91e929650");
  EXPECT_EQ(segment.IndexEditRate, Rational(24, 1));
  EXPECT_EQ(segment.IndexStartPosition, 0);
  EXPECT_EQ(segment.IndexDuration, 1);
  EXPECT_EQ(segment.EditUnitByteCount, 0u);
  EXPECT_EQ(segment.IndexSID, 129u);
  EXPECT_EQ(segment.BodySID, 1u);
  EXPECT_EQ(segment.SliceCount, 0);
  EXPECT_EQ(segment.PosTableCount, 0);
  EXPECT_THAT(segment.DeltaEntryArray, ElementsAre(DeltaEntry{}));
  EXPECT_THAT(segment.IndexEntryArray, ElementsAre(IndexEntry{0, 0, 0, 0x80}));
  EXPECT_FALSE(segment.ExtStartOffset.has_value());
}

TEST(IndexTableSegment, IsWrittenAsItWasRead) {
  const IndexTableSegment segment = Parse(ExampleValue());
  Bytes written;
  segment.Write(written);
  EXPECT_EQ(written, ExampleSegment());
  EXPECT_EQ(segment.ArchiveLength(), 151u);
}

TEST(IndexTableSegment, ConstantSizeHasAnEmptyArrayAndNoDelta) {
  IndexTableSegment segment;
  segment.EditUnitByteCount = 36020;
  Bytes written;
  segment.Write(written);
  EXPECT_EQ(written.size(), 122u);
  EXPECT_THAT(Bytes(written.end() - 12, written.end()), ElementsAre(0x3f, 0x0a, 0, 8, 0, 0, 0, 0, 0, 0, 0, 0));
  EXPECT_EQ(Parse(Bytes(written.begin() + 20, written.end())).EditUnitByteCount, 36020u);
}

TEST(IndexTableSegment, EntriesKeepAllTheirFields) {
  IndexTableSegment segment;
  segment.DeltaEntryArray = {{-1, 0, 0}};
  segment.IndexEntryArray = {{0, 0, 0, 0xc0}, {0x0102030405060708, -2, -3, 0x33}};
  segment.ExtStartOffset = 5;
  segment.VBEByteCount = 6;
  Bytes written;
  segment.Write(written);
  EXPECT_EQ(written.size(), segment.ArchiveLength());
  const IndexTableSegment read = Parse(Bytes(written.begin() + 20, written.end()));
  EXPECT_EQ(read.DeltaEntryArray, segment.DeltaEntryArray);
  EXPECT_EQ(read.IndexEntryArray, segment.IndexEntryArray);
  EXPECT_EQ(read.ExtStartOffset, 5u);
  EXPECT_EQ(read.VBEByteCount, 6u);
}

TEST(IndexTableSegment, HoldsWhatAnItemCanHold) {
  IndexTableSegment segment;
  segment.IndexEntryArray.resize(5957);
  Bytes written;
  segment.Write(written);
  EXPECT_EQ(Parse(Bytes(written.begin() + 20, written.end())).IndexEntryArray.size(), 5957u);
  segment.IndexEntryArray.resize(5958);
  EXPECT_DEATH(segment.Write(written), "Assertion");
}

TEST(IndexTableSegment, LongerEntriesAreCut) {
  // Two entries of 15 bytes: eleven that count, and a slice offset.
  const Bytes value = {0x3f, 0x0a, 0, 38, 0, 0, 0, 2, 0, 0, 0, 15,  //
                       1,    2,    3, 0,  0, 0, 0, 0, 0, 0, 9, 7,  7, 7, 7,
                       4,    5,    6, 0,  0, 0, 0, 0, 0, 1, 0, 7,  7, 7, 7};
  EXPECT_THAT(Parse(value).IndexEntryArray, ElementsAre(IndexEntry{9, 1, 2, 3}, IndexEntry{256, 4, 5, 6}));
}

TEST(IndexTableSegment, CutAtEveryByteWithinAnItemIsAFormatError) {
  const Bytes value = ExampleValue();
  const std::vector<size_t> boundaries = {0, 20, 32, 44, 56, 64, 72, 80, 85, 90, 108};
  for (size_t length = 0; length < value.size(); ++length) {
    const testsupport::LogCapture log;
    IndexTableSegment segment;
    const Result_t result = segment.Read(std::span(value).first(length), 0);
    const bool boundary = std::find(boundaries.begin(), boundaries.end(), length) != boundaries.end();
    EXPECT_EQ(result, boundary ? Ferro::RESULT_OK : RESULT_FORMAT) << length;
    EXPECT_EQ(log.Lines().size(), boundary ? 0u : 1u);
  }
}

TEST(IndexTableSegment, CountsBeyondTheArrayAreFormatErrors) {
  Bytes value = ExampleValue();
  ASSERT_EQ(value[108], 0x3f);
  ASSERT_EQ(value[109], 0x0a);
  const testsupport::LogCapture log;
  for (const Bytes& count : {Bytes{0, 0, 0, 2}, Bytes{0x7f, 0xff, 0xff, 0xff}, Bytes{0xff, 0xff, 0xff, 0xff}})
    EXPECT_EQ(ParseWith(112, count), RESULT_FORMAT);
  for (const Bytes& size : {Bytes{0, 0, 0, 0}, Bytes{0, 0, 0, 1}, Bytes{0, 0, 0, 10}, Bytes{0xff, 0xff, 0xff, 0xff}})
    EXPECT_EQ(ParseWith(116, size), RESULT_FORMAT);
  ASSERT_THAT(log.Lines(), SizeIs(7));
  EXPECT_EQ(log.Lines()[0], "MXF: item 3f0a of an index segment with a malformed value of 19 bytes at offset 4666.\n");
  EXPECT_EQ(ParseWith(112, {0, 0, 0, 0}), Ferro::RESULT_OK);
}

TEST(IndexTableSegment, ItemsOfTheWrongLengthAreFormatErrors) {
  const testsupport::LogCapture log;
  IndexTableSegment segment;
  EXPECT_EQ(segment.Read(Bytes{0x3f, 0x05, 0, 3, 0, 0, 0}, 40), RESULT_FORMAT);
  EXPECT_EQ(segment.Read(Bytes{0x3f, 0x0b, 0, 4, 0, 0, 0, 24}, 40), RESULT_FORMAT);
  EXPECT_EQ(segment.Read(Bytes{0x3f, 0x05, 0, 9, 0, 0, 0}, 40), RESULT_FORMAT);
  EXPECT_THAT(log.Lines(),
              ElementsAre("MXF: item 3f05 of an index segment with a malformed value of 3 bytes at offset 40.\n",
                          "MXF: item 3f0b of an index segment with a malformed value of 4 bytes at offset 40.\n",
                          "MXF: item of 9 bytes that reaches past the end of its set at offset 40.\n"));
}

TEST(IndexTableSegment, UnknownAndEmptyItemsArePassedOver) {
  const testsupport::LogCapture log;
  const IndexTableSegment segment = Parse({0x3f, 0x11, 0, 1, 1, 0x3f, 0x0b, 0, 0, 0x3f, 0x06, 0, 4, 0, 0, 0, 7});
  EXPECT_EQ(segment.IndexSID, 7u);
  EXPECT_THAT(log.Lines(), IsEmpty());
}

}  // namespace
}  // namespace QUIRE::MXF
