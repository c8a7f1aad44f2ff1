// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/PlaylistEvent.h>

#include "../../support/RecordCheck.h"

namespace Strata {
namespace {

using namespace StrataTest;

PlaylistEvent Event(const char* label, const char* scope, ui32_t position) {
  PlaylistEvent event;
  event.Label = label;
  event.LabelScope = scope;
  event.ShowPosition = position;
  return event;
}

TEST(PlaylistEvent, FormIsCutAtEveryByte) {
  CheckRecord(Event("x", "yz", 1), Event("FFOC", "s#m", 0x12345678),
              {Text("00000004 46464f43", "00000001 78"), Text("00000003 73236d", "00000002 797a"),
               Number("12345678", "00000001")});
}

TEST(PlaylistEvent, ArchiveLengthCountsBothTexts) {
  EXPECT_EQ(PlaylistEvent().ArchiveLength(), 12u);
  EXPECT_EQ(Event("FFOC", "s#m", 0).ArchiveLength(), 19u);
}

TEST(PlaylistEvent, HasValueFollowsTheLabel) {
  EXPECT_FALSE(Event("", "scope", 5).HasValue());
  EXPECT_TRUE(Event("label", "", 0).HasValue());
}

TEST(PlaylistEvent, EmptyTextsLeaveThoseThatAreThere) {
  PlaylistEvent event = Event("label", "scope", 5);
  ReadWhole(event, Hex("00000000 00000000 00000009"));
  EXPECT_EQ(event.Label, "label");
  EXPECT_EQ(event.LabelScope, "scope");
  EXPECT_EQ(event.ShowPosition, 9u);
}

TEST(PlaylistEventList, IsACountAndTheRecordsInOrder) {
  const PlaylistEventList list{Event("a", "", 2), Event("b", "c", 1)};
  EXPECT_TRUE(list.HasValue());
  EXPECT_EQ(list.ArchiveLength(), 31u);
  const Bytes form = Archived(list);
  EXPECT_EQ(form, Hex("00000002 00000001 61 00000000 00000002 00000001 62 00000001 63 00000001"));
  PlaylistEventList read;
  ReadWhole(read, form);
  ASSERT_EQ(read.size(), 2u);
  EXPECT_EQ(read.front().Label, "a");
  EXPECT_EQ(read.back().LabelScope, "c");
}

TEST(PlaylistEventList, EmptyListIsAZeroCount) {
  PlaylistEventList list;
  EXPECT_FALSE(list.HasValue());
  EXPECT_EQ(Archived(list), Hex("00000000"));
  ReadWhole(list, Hex("00000000"));
  EXPECT_TRUE(list.empty());
}

TEST(PlaylistEventList, StopsAtTheFirstElementThatFails) {
  PlaylistEventList list;
  const Bytes bytes = Hex("00000003 00000001 61 00000000 00000002 00000001 62 000000ff");
  Ferro::MemIOReader reader(bytes);
  EXPECT_FALSE(list.Unarchive(&reader));
  ASSERT_EQ(list.size(), 1u);
  EXPECT_EQ(list.front().Label, "a");
  EXPECT_EQ(reader.Offset(), bytes.size());
}

TEST(PlaylistEventList, EachElementIsReadIntoAFreshOne) {
  PlaylistEventList list;
  ReadWhole(list, Hex("00000002 00000001 61 00000001 73 00000002 00000000 00000000 00000001"));
  ASSERT_EQ(list.size(), 2u);
  EXPECT_EQ(list.back().Label, "");
  EXPECT_EQ(list.back().LabelScope, "");
}

TEST(PlaylistEventList, NullCursorsAnswerFalse) {
  PlaylistEventList list;
  EXPECT_FALSE(list.Archive(nullptr));
  EXPECT_FALSE(list.Unarchive(nullptr));
}

}  // namespace
}  // namespace Strata
