// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/ArchivableList.h>
#include <Ferro/ArchivableString.h>
#include <Ferro/UUID.h>

#include "../../support/RecordCheck.h"

// The generic forms as the protocol uses them; the base library tests them on their own.

namespace Ferro {
namespace {

using namespace StrataTest;

TEST(UUIDList, IsACountAndTheRawBytes) {
  const UUIDList list{ID("00112233-4455-6677-8899-aabbccddeeff"), ID("ffeeddcc-bbaa-9988-7766-554433221100")};
  EXPECT_EQ(list.ArchiveLength(), 36u);
  EXPECT_EQ(Archived(list), Hex("00000002 00112233445566778899aabbccddeeff ffeeddccbbaa99887766554433221100"));
}

TEST(UUIDList, ElementsReadHaveAValue) {
  UUIDList list;
  ReadWhole(list, Hex("00000001 00000000000000000000000000000000"));
  ASSERT_EQ(list.size(), 1u);
  EXPECT_TRUE(list.front().HasValue());
}

TEST(UUIDList, FifteenBytesAreNoElement) {
  UUIDList list;
  const Bytes bytes = Hex("00000001 000102030405060708090a0b0c0d0e");
  MemIOReader reader(bytes);
  EXPECT_FALSE(list.Unarchive(&reader));
  EXPECT_TRUE(list.empty());
  EXPECT_EQ(reader.Offset(), 4u);
}

TEST(StringList, IsACountAndTheStrings) {
  const ArchivableList<ArchivableString> list{"a.png", ""};
  EXPECT_EQ(list.ArchiveLength(), 17u);
  EXPECT_EQ(Archived(list), Hex("00000002 00000005 612e706e67 00000000"));
}

TEST(StringList, NullCursorsAnswerFalse) {
  ArchivableList<ArchivableString> list;
  EXPECT_FALSE(list.Archive(nullptr));
  EXPECT_FALSE(list.Unarchive(nullptr));
  ArchivableString text;
  EXPECT_FALSE(text.Archive(nullptr));
  EXPECT_FALSE(text.Unarchive(nullptr));
}

TEST(UMID, IsItsThirtyTwoBytes) {
  UMID umid;
  EXPECT_EQ(umid.ArchiveLength(), 32u);
  ReadWhole(umid, Hex("000102030405060708090a0b0c0d0e0f 101112131415161718191a1b1c1d1e1f"));
  EXPECT_TRUE(umid.HasValue());
  EXPECT_EQ(Archived(umid), Hex("000102030405060708090a0b0c0d0e0f 101112131415161718191a1b1c1d1e1f"));
}

}  // namespace
}  // namespace Ferro
