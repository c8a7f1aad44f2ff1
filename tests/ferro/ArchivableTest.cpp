// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/ArchivableList.h>
#include <Ferro/ArchivableString.h>
#include <Ferro/UUID.h>

#include <gtest/gtest.h>

#include <array>
#include <vector>

using namespace Ferro;

namespace {

using Bytes = std::vector<ui8_t>;
using StringList = ArchivableList<ArchivableString>;

const Bytes s_TwoStrings{0, 0, 0, 2, 0, 0, 0, 1, 'a', 0, 0, 0, 2, 'b', 'c'};

}  // namespace

TEST(ArchivableString, IsCountAndBytes) {
  const ArchivableString text("abc");
  EXPECT_TRUE(text.HasValue());
  EXPECT_EQ(text.ArchiveLength(), 7U);
  std::array<ui8_t, 7> buffer{};
  MemIOWriter writer(buffer);
  EXPECT_TRUE(text.Archive(&writer));
  EXPECT_EQ(buffer, (std::array<ui8_t, 7>{0, 0, 0, 3, 'a', 'b', 'c'}));

  MemIOReader reader(buffer);
  ArchivableString copy;
  EXPECT_TRUE(copy.Unarchive(&reader));
  EXPECT_EQ(copy, "abc");
}

TEST(ArchivableString, EmptyHasNoValueAndTakesFourBytes) {
  const ArchivableString text;
  EXPECT_FALSE(text.HasValue());
  EXPECT_EQ(text.ArchiveLength(), 4U);
}

TEST(ArchivableString, NullCursorFails) {
  ArchivableString text("abc");
  EXPECT_FALSE(text.Archive(nullptr));
  EXPECT_FALSE(text.Unarchive(nullptr));
  EXPECT_EQ(text, "abc");
}

TEST(ArchivableList, IsCountAndElementsInOrder) {
  const StringList list{"a", "bc"};
  EXPECT_TRUE(list.HasValue());
  EXPECT_EQ(list.ArchiveLength(), 15U);
  Bytes buffer(15);
  MemIOWriter writer(buffer);
  EXPECT_TRUE(list.Archive(&writer));
  EXPECT_EQ(buffer, s_TwoStrings);
}

TEST(ArchivableList, EmptyIsAZeroCount) {
  const StringList list;
  EXPECT_FALSE(list.HasValue());
  EXPECT_EQ(list.ArchiveLength(), 4U);
  Bytes buffer(4, 0xee);
  MemIOWriter writer(buffer);
  EXPECT_TRUE(list.Archive(&writer));
  EXPECT_EQ(buffer, (Bytes{0, 0, 0, 0}));
  MemIOReader reader(buffer);
  StringList copy;
  EXPECT_TRUE(copy.Unarchive(&reader));
  EXPECT_TRUE(copy.empty());
}

TEST(ArchivableList, ReadingAppends) {
  StringList list{"before"};
  MemIOReader reader(s_TwoStrings);
  EXPECT_TRUE(list.Unarchive(&reader));
  EXPECT_EQ(list, (StringList{"before", "a", "bc"}));
}

TEST(ArchivableList, CutAtEachByteKeepsTheElementsReadWhole) {
  for (ui32_t length = 0; length < s_TwoStrings.size(); ++length) {
    StringList list;
    MemIOReader reader(s_TwoStrings.data(), length);
    EXPECT_FALSE(list.Unarchive(&reader)) << length;
    EXPECT_EQ(list.size(), length < 9 ? 0U : 1U) << length;
  }
}

TEST(ArchivableList, WritingStopsAtTheFirstElementThatDoesNotFit) {
  const StringList list{"a", "bc"};
  for (ui32_t capacity = 0; capacity < 15; ++capacity) {
    Bytes buffer(15, 0xee);
    MemIOWriter writer(buffer.data(), capacity);
    EXPECT_FALSE(list.Archive(&writer)) << capacity;
    const ui32_t expected = capacity < 4 ? 0 : capacity < 8 ? 4 : capacity < 9 ? 8 : capacity < 13 ? 9 : 13;
    EXPECT_EQ(writer.Length(), expected) << capacity;
  }
}

TEST(ArchivableList, HostileCountFailsWithoutAllocating) {
  const Bytes bytes{0xff, 0xff, 0xff, 0xff, 0, 0, 0, 1, 'a'};
  MemIOReader reader(bytes);
  StringList list;
  EXPECT_FALSE(list.Unarchive(&reader));
  EXPECT_EQ(list, StringList{"a"});
}

TEST(ArchivableList, NullCursorFails) {
  StringList list{"a"};
  EXPECT_FALSE(list.Archive(nullptr));
  EXPECT_FALSE(list.Unarchive(nullptr));
  EXPECT_EQ(list.size(), 1U);
}

TEST(ArchivableList, OfIdentifiersHasNoFurtherPrefixes) {
  UUIDList list;
  list.push_back(UUID::FromHex("000102030405060708090a0b0c0d0e0f").value());
  EXPECT_EQ(list.ArchiveLength(), 20U);
  Bytes buffer(20);
  MemIOWriter writer(buffer);
  EXPECT_TRUE(list.Archive(&writer));
  EXPECT_EQ(buffer, (Bytes{0, 0, 0, 1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}));
}
