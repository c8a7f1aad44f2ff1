// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/TimelinePosition.h>

#include "../../support/RecordCheck.h"

namespace Strata {
namespace {

using namespace StrataTest;

TEST(TimelinePosition, FormIsCutAtEveryByte) {
  TimelinePosition before;
  before.Position = 3;
  TimelinePosition after;
  after.Duration = 240;
  after.Position = 239;
  after.AssetID = StrataTest::ID("00112233-4455-6677-8899-aabbccddeeff");
  CheckRecord(before, after,
              {Number("000000f0", "00000000"), Number("000000ef", "00000003"),
               Number("00112233445566778899aabbccddeeff", "00000000000000000000000000000000")});
  EXPECT_EQ(after.ArchiveLength(), 24u);
}

TEST(TimelinePosition, HasValueFollowsTheDuration) {
  TimelinePosition position;
  position.Position = 1;
  position.AssetID = StrataTest::ID("00112233-4455-6677-8899-aabbccddeeff");
  EXPECT_FALSE(position.HasValue());
  position.Duration = 1;
  EXPECT_TRUE(position.HasValue());
}

TEST(TimelinePosition, FifteenBytesOfAnIdentifierClearItsFlag) {
  TimelinePosition position;
  position.AssetID = StrataTest::ID("00112233-4455-6677-8899-aabbccddeeff");
  const Bytes bytes = Hex("00000001 00000000 000102030405060708090a0b0c0d0e");
  Ferro::MemIOReader reader(bytes);
  EXPECT_FALSE(position.Unarchive(&reader));
  EXPECT_EQ(reader.Offset(), 8u);
  EXPECT_EQ(position.Duration, 1u);
  EXPECT_FALSE(position.AssetID.HasValue());
}

}  // namespace
}  // namespace Strata
