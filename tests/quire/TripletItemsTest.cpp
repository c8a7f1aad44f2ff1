// SPDX-License-Identifier: BSD-3-Clause
#include "../support/MxfBytes.h"

#include "crypto/TripletItems.h"

#include <gtest/gtest.h>

namespace {

using namespace testsupport;
using QUIRE::TripletHead;
using QUIRE::TripletTail;

const Bytes Context = Hex("11111111 2222 4333 8444 555555555555");
const Bytes SourceKey = Hex("060e2b34.01020101.0d010301.15010801");

Bytes Items(const Bytes& offset, const Bytes& source_length, const Bytes& encrypted_length) {
  return Length4(16) + Context + Length4(offset.size()) + offset + Length4(16) + SourceKey +
         Length4(source_length.size()) + source_length + encrypted_length;
}
// A source of 20 bytes, 4 of them in clear, gives 68 bytes.
Bytes Proper() {
  return Items(BE64(4), BE64(20), Length4(68));
}
std::optional<TripletHead> Parse(const Bytes& bytes, ui64_t value_length = 1000) {
  return TripletHead::Parse(bytes, value_length);
}

TEST(TripletItems, HeadIsReadFieldByField) {
  const auto head = Parse(Proper());
  ASSERT_TRUE(head);
  EXPECT_EQ(Bytes(head->ContextID.Bytes().begin(), head->ContextID.Bytes().end()), Context);
  EXPECT_EQ(head->PlaintextOffset, 4u);
  EXPECT_EQ(Bytes(head->SourceKey.begin(), head->SourceKey.end()), SourceKey);
  EXPECT_EQ(head->SourceLength, 20u);
  EXPECT_EQ(head->EncryptedLength, 68u);
  EXPECT_EQ(head->Size, 68u);
}

TEST(TripletItems, LengthsMayHaveAnyForm) {
  const Bytes bytes = LengthOf(16, 1) + Context + LengthOf(8, 9) + BE64(4) + LengthOf(16, 3) + SourceKey +
                      LengthOf(8, 8) + BE64(20) + LengthOf(68, 2);
  const auto head = Parse(bytes);
  ASSERT_TRUE(head);
  EXPECT_EQ(head->Size, bytes.size());
}

TEST(TripletItems, SourceLengthMayBeABERNumber) {
  for (const Bytes& item : {LengthOf(20, 4), LengthOf(20, 1), LengthOf(20, 8), LengthOf(20, 9)}) {
    const auto head = Parse(Items(BE64(4), item, Length4(68)));
    ASSERT_TRUE(head) << item.size();
    EXPECT_EQ(head->SourceLength, 20u);
  }
}

TEST(TripletItems, CutAnywhereIsNoTriplet) {
  const Bytes bytes = Proper();
  for (size_t size = 0; size < bytes.size(); ++size)
    EXPECT_FALSE(Parse(Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size)))) << size;
}

TEST(TripletItems, PlaintextOffsetBeyondTheSourceIsRefused) {
  EXPECT_FALSE(Parse(Items(BE64(21), BE64(20), Length4(68))));
}

TEST(TripletItems, EncryptedLengthThatDoesNotFollowFromTheSourceIsRefused) {
  for (ui64_t length : {0U, 47U, 48U, 67U, 69U, 84U}) EXPECT_FALSE(Parse(Items(BE64(4), BE64(20), Length4(length))));
}

TEST(TripletItems, SourceOfExabytesIsRefused) {
  EXPECT_FALSE(Parse(Items(BE64(0), BE64(~ui64_t{0}), Length4(48))));
  EXPECT_FALSE(Parse(Items(BE64(0), BE64(ui64_t{1} << 62), LengthOf((ui64_t{1} << 62) + 48, 9)), ~ui64_t{0} >> 1));
  EXPECT_FALSE(Parse(Items(BE64(~ui64_t{0}), BE64(~ui64_t{0}), Length4(48))));
}

TEST(TripletItems, EncryptedValueBeyondTheTripletIsRefused) {
  EXPECT_TRUE(Parse(Proper(), 68 + 68));
  EXPECT_FALSE(Parse(Proper(), 68 + 67));
}

TEST(TripletItems, IndefiniteLengthIsRefused) {
  Bytes bytes = Proper();
  bytes[0] = 0x80;
  EXPECT_FALSE(Parse(bytes));
  bytes[0] = 0x89;
  EXPECT_FALSE(Parse(bytes));
}

const Bytes MIC = Hex("00112233445566778899 00112233445566778899");

TEST(TripletItems, TailIsReadFieldByField) {
  const auto tail = TripletTail::Parse(Length4(16) + Context + Length4(8) + BE64(5) + Length4(20) + MIC);
  ASSERT_TRUE(tail);
  EXPECT_TRUE(tail->TrackFileID.HasValue());
  EXPECT_EQ(tail->SequenceNumber, 5u);
  ASSERT_TRUE(tail->MIC);
  EXPECT_EQ(Bytes(tail->MIC->begin(), tail->MIC->end()), MIC);
  EXPECT_EQ(tail->CoveredSize, 36u);
}

TEST(TripletItems, TailMayBeMissingOrEmpty) {
  for (const Bytes& bytes : {Bytes(), Length4(0) + Length4(0) + Length4(0), BE8(0)}) {
    const auto tail = TripletTail::Parse(bytes);
    ASSERT_TRUE(tail);
    EXPECT_FALSE(tail->TrackFileID.HasValue());
    EXPECT_FALSE(tail->SequenceNumber);
    EXPECT_FALSE(tail->MIC);
  }
}

TEST(TripletItems, EmptyItemsInTheMiddleArePassedOver) {
  const auto tail = TripletTail::Parse(Length4(0) + Length4(0) + Length4(20) + MIC);
  ASSERT_TRUE(tail);
  EXPECT_TRUE(tail->MIC);
  EXPECT_EQ(tail->CoveredSize, 12u);
}

TEST(TripletItems, TailItemsOfWrongSizeAreRefused) {
  EXPECT_FALSE(TripletTail::Parse(Length4(15) + Bytes(15)));
  EXPECT_FALSE(TripletTail::Parse(Length4(0) + Length4(4) + Bytes(4)));
  EXPECT_FALSE(TripletTail::Parse(Length4(0) + Length4(0) + Length4(19) + Bytes(19)));
  EXPECT_FALSE(TripletTail::Parse(Length4(16) + Bytes(3)));
}

}  // namespace
