// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/CompositionInfo.h>

#include "../../support/RecordCheck.h"

namespace Strata {
namespace {

using namespace StrataTest;

CompositionInfo Trailer() {
  CompositionInfo info;
  info.ID = StrataTest::ID("00112233-4455-6677-8899-aabbccddeeff");
  info.Title = "Title";
  info.EditRate = QUIRE::Rational(24, 1);
  info.CurrentReel = 1;
  info.TotalReels = 2;
  info.Duration = 3456;
  info.ImageFormat = Cairn::FT_QUIRE_JP2K_J2C_S;
  info.ImageWidth = 2048;
  info.ImageHeight = 858;
  info.SoundFormat = 6;
  return info;
}

TEST(CompositionInfo, FormIsCutAtEveryByte) {
  CompositionInfo before;
  before.ID = StrataTest::ID("ffffffff-ffff-ffff-ffff-ffffffffffff");
  before.Title = "T";
  before.EditRate = QUIRE::Rational(-1, 2);
  before.SoundFormat = 16;
  CheckRecord(before, Trailer(),
              {Number("00112233445566778899aabbccddeeff", "ffffffffffffffffffffffffffffffff"),
               Text("00000005 5469746c65", "00000001 54"), Number("00000018", "ffffffff"),
               Number("00000001", "00000002"), Number("00000001", "00000000"), Number("00000002", "00000000"),
               Number("00000d80", "00000000"), Number("00000012", "00000000"), Number("00000800", "00000000"),
               Number("0000035a", "00000000"), Number("00000006", "00000010")});
}

TEST(CompositionInfo, ArchiveLengthIsEightBytesShort) {
  EXPECT_EQ(Trailer().ArchiveLength(), 53u);
  EXPECT_EQ(Archived(Trailer()).size(), 61u);
}

TEST(CompositionInfo, BufferOfTheStatedLengthEndsAfterImageWidth) {
  Bytes buffer(53, 0xEE);
  Ferro::MemIOWriter writer(buffer);
  EXPECT_FALSE(Trailer().Archive(&writer));
  EXPECT_EQ(writer.Length(), 53u);
  EXPECT_EQ(buffer, Hex("00112233445566778899aabbccddeeff 00000005 5469746c65 00000018 00000001"
                        "00000001 00000002 00000d80 00000012 00000800"));
}

TEST(CompositionInfo, HasValueFollowsTheIdentifier) {
  EXPECT_TRUE(Trailer().HasValue());
  EXPECT_FALSE(CompositionInfo().HasValue());
}

TEST(CompositionInfo, EmptyTitleLeavesTheOneThatIsThere) {
  CompositionInfo empty;
  CompositionInfo info = Trailer();
  ReadWhole(info, Archived(empty));
  EXPECT_EQ(info.Title, "Title");
  EXPECT_EQ(info.Duration, 0u);
}

TEST(CompositionInfo, FifteenBytesOfAnIdentifierClearItsFlag) {
  CompositionInfo info = Trailer();
  const Bytes bytes(15, 0x11);
  Ferro::MemIOReader reader(bytes);
  EXPECT_FALSE(info.Unarchive(&reader));
  EXPECT_FALSE(info.HasValue());
}

TEST(CompositionInfoDeathTest, NullWriterNamesArgumentAndOperation) {
  EXPECT_DEATH(static_cast<void>(Trailer().Archive(nullptr)),
               "virtual bool Strata::CompositionInfo::Archive\\(Ferro::MemIOWriter\\*\\) const: "
               "Assertion 'Writer' failed\\.");
}

TEST(CompositionInfoDeathTest, NullReaderNamesArgumentAndOperation) {
  CompositionInfo info;
  EXPECT_DEATH(static_cast<void>(info.Unarchive(nullptr)),
               "virtual bool Strata::CompositionInfo::Unarchive\\(Ferro::MemIOReader\\*\\): "
               "Assertion 'Reader' failed\\.");
}

std::string Dumped(const CompositionInfo& info) {
  return Printed([&](FILE* stream) { info.Dump(stream); });
}

TEST(CompositionInfoDump, IsTenLinesWithTheColonInTheTwelfthColumn) {
  EXPECT_EQ(Dumped(Trailer()),
            "         ID: 00112233-4455-6677-8899-aabbccddeeff\n"
            "      Title: Title\n"
            "   EditRate: 24/1 (24.000000)\n"
            "CurrentReel: 1\n"
            " TotalReels: 2\n"
            "   Duration: 3456\n"
            "ImageFormat: Stereoscopic JPEG 2000\n"
            " ImageWidth: 2048\n"
            "ImageHeight: 858\n"
            "SoundFormat: 6\n");
}

TEST(CompositionInfoDump, EmptyRecordDividesZeroByZero) {
  const std::string dump = Dumped(CompositionInfo());
  // The sign of the quotient is the machine's.
  EXPECT_TRUE(dump.find("   EditRate: 0/0 (nan)\n") != std::string::npos ||
              dump.find("   EditRate: 0/0 (-nan)\n") != std::string::npos)
      << dump;
  EXPECT_EQ(dump.substr(0, dump.find('\n') + 1), "         ID: 00000000-0000-0000-0000-000000000000\n");
}

TEST(CompositionInfoDump, ZeroDenominatorPrintsInfinity) {
  CompositionInfo info;
  info.EditRate = QUIRE::Rational(24, 0);
  EXPECT_NE(Dumped(info).find("   EditRate: 24/0 (inf)\n"), std::string::npos);
}

TEST(CompositionInfoDump, EachImageFormatHasItsName) {
  const auto line = [](ui32_t format) {
    CompositionInfo info;
    info.ImageFormat = static_cast<Cairn::FileType_t>(format);
    const std::string dump = Dumped(info);
    const size_t start = dump.find("ImageFormat");
    return dump.substr(start, dump.find('\n', start) - start);
  };
  EXPECT_EQ(line(0), "ImageFormat: unknown");
  EXPECT_EQ(line(3), "ImageFormat: HD MPEG-2");
  EXPECT_EQ(line(4), "ImageFormat: JPEG 2000");
  EXPECT_EQ(line(18), "ImageFormat: Stereoscopic JPEG 2000");
  EXPECT_EQ(line(19), "ImageFormat: unknown");
  EXPECT_EQ(line(0xFFFFFFFF), "ImageFormat: unknown");
}

TEST(CompositionInfoDump, CountsPrintSigned) {
  CompositionInfo info;
  info.Duration = 0xFFFFFFFF;
  EXPECT_NE(Dumped(info).find("   Duration: -1\n"), std::string::npos);
}

TEST(CompositionInfoDump, NullStreamIsStandardError) {
  testing::internal::CaptureStderr();
  Trailer().Dump();
  std::fflush(stderr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), Dumped(Trailer()));
}

}  // namespace
}  // namespace Strata
