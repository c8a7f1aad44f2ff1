// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/TransportException.h>

#include "../../support/RecordCheck.h"

namespace Strata {
namespace {

using namespace StrataTest;

TransportException Failure() {
  TransportException exception;
  exception.Duration = 6000;
  exception.Position = 17;
  exception.CompositionID = StrataTest::ID("00112233-4455-6677-8899-aabbccddeeff");
  exception.Message = "gone";
  return exception;
}

TEST(TransportException, FormIsCutAtEveryByte) {
  CheckRecord(TransportException(), Failure(),
              {Number("00001770", "00000000"), Number("00000011", "00000000"),
               Number("00112233445566778899aabbccddeeff", "00000000000000000000000000000000"),
               Text("00000004 676f6e65", "00000000")});
}

TEST(TransportException, ArchiveLengthCountsTheMessage) {
  EXPECT_EQ(TransportException().ArchiveLength(), 28u);
  EXPECT_EQ(Failure().ArchiveLength(), 32u);
}

TEST(TransportException, HasValueFollowsTheMessage) {
  EXPECT_FALSE(TransportException().HasValue());
  EXPECT_TRUE(Failure().HasValue());
}

TEST(TransportExceptionDeathTest, NullCursorsNameArgumentAndOperation) {
  TransportException exception;
  EXPECT_DEATH(static_cast<void>(exception.Archive(nullptr)),
               "virtual bool Strata::TransportException::Archive\\(Ferro::MemIOWriter\\*\\) const: "
               "Assertion 'Writer' failed\\.");
  EXPECT_DEATH(static_cast<void>(exception.Unarchive(nullptr)),
               "virtual bool Strata::TransportException::Unarchive\\(Ferro::MemIOReader\\*\\): "
               "Assertion 'Reader' failed\\.");
}

}  // namespace
}  // namespace Strata
