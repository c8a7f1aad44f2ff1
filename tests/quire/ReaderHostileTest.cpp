// SPDX-License-Identifier: BSD-3-Clause
#include "ReaderFixture.h"

#include <QUIRE/EssenceType.h>

#include <random>

// Files made to harm. No outcome but a result, no allocation beyond the file's size and a fixed bound, no endless loop.

namespace {

using namespace testsupport;
using namespace QUIRE;
using Ferro::RESULT_OK;

// Opens and reads everything a file of unknown nature offers. Returns how many frames came.
template <class Reader, class Buffer>
size_t ReadAll(const std::string& filename) {
  Reader reader;
  if (reader.OpenRead(filename).Failure()) return 0;
  WriterInfo info;
  (void)reader.FillWriterInfo(info);
  (void)reader.RIP();
  Buffer frame;
  EXPECT_EQ(frame.Capacity(65536), RESULT_OK);
  size_t count = 0;
  for (ui32_t i = 0; i < 40; ++i) count += reader.ReadFrame(i, frame).Success() ? 1 : 0;
  return count;
}

size_t ReadAny(MxfBuilder::Kind_t kind, const std::string& filename) {
  if (kind == MxfBuilder::PCM) return ReadAll<PCM::MXFReader, PCM::FrameBuffer>(filename);
  return ReadAll<JP2K::MXFReader, JP2K::FrameBuffer>(filename);
}

class HostileFile : public ::testing::Test {
 protected:
  Result_t Open(const Bytes& bytes) {
    m_File.Write(bytes);
    return m_Reader.OpenRead(m_File.Name());
  }
  Result_t Read(ui32_t number = 0) {
    EXPECT_EQ(m_Frame.Capacity(65536), RESULT_OK);
    return m_Reader.ReadFrame(number, m_Frame);
  }

  LogCapture m_Log;
  TemporaryFile m_File;
  JP2K::MXFReader m_Reader;
  JP2K::FrameBuffer m_Frame;
  MxfBuilder m_Builder = MakeBuilder(MxfBuilder::JP2K, 4);
};

TEST_F(HostileFile, EmptyOrForeignFileIsRefusedWithOneLine) {
  for (const Bytes& bytes : {Bytes(), Bytes(5, 6), Bytes(100000, 0x41), Hex("060e2b34")}) {
    m_Log.Clear();
    EXPECT_EQ(Open(bytes), RESULT_FORMAT);
    EXPECT_EQ(m_Log.Count(Ferro::LogLevel::Error), 1u) << m_Log.Text();
    EXPECT_EQ(m_Log.Text().find(m_File.Name() + ": "), 0u) << m_Log.Text();
    EXPECT_FALSE(m_Reader.IsOpen());
  }
}

TEST_F(HostileFile, ElementReachingPastTheEndIsAFormatError) {
  Bytes bytes = m_Builder.Build();
  Put(bytes, m_Builder.ElementAt[0] + 16, Hex("83ffffff"));
  ASSERT_EQ(Open(bytes), RESULT_OK);
  EXPECT_EQ(Read(), RESULT_FORMAT);
  EXPECT_NE(m_Log.Text().find(m_File.Name() + ": malformed or cut essence element at offset " +
                              std::to_string(m_Builder.ElementAt[0])),
            std::string::npos)
      << m_Log.Text();
}

TEST_F(HostileFile, IndefiniteAndOverlongLengthsAreRefused) {
  const Bytes good = m_Builder.Build();
  for (const Bytes& length : {Hex("80000000"), Hex("89000000"), Hex("ffffffff")}) {
    Bytes bytes = good;
    Put(bytes, m_Builder.ElementAt[1] + 16, length);
    ASSERT_EQ(Open(bytes), RESULT_OK);
    EXPECT_EQ(Read(1), RESULT_FORMAT);
    EXPECT_EQ(Read(0), RESULT_OK);
  }
}

TEST_F(HostileFile, LengthNear64BitsDoesNotWrap) {
  m_Builder.EssenceLengthSize = 9;
  Bytes bytes = m_Builder.Build();
  for (const Bytes& length : {BE64(~ui64_t{0}), BE64(~ui64_t{0} - 24), BE64(~ui64_t{0} >> 1)}) {
    Put(bytes, m_Builder.ElementAt[0] + 17, length);
    ASSERT_EQ(Open(bytes), RESULT_OK);
    EXPECT_EQ(Read(), RESULT_FORMAT);
  }
}

TEST_F(HostileFile, KeyAtTheIndexedPlaceIsVerified) {
  const Bytes good = m_Builder.Build();
  for (const char* key : {"060e2b34.02050101.0d010201.01030400", "060e2b34.01020101.0d010301.16010101",
                          "00000000.00000000.00000000.00000000"}) {
    Bytes bytes = good;
    Put(bytes, m_Builder.ElementAt[2], Hex(key));
    ASSERT_EQ(Open(bytes), RESULT_OK);
    EXPECT_EQ(Read(1), RESULT_OK);
    m_Log.Clear();
    EXPECT_EQ(Read(2), RESULT_FORMAT) << key;
    EXPECT_EQ(m_Log.Text(), m_File.Name() + ": no essence element of the file's kind at offset " +
                                std::to_string(m_Builder.ElementAt[2]) + "\n");
    EXPECT_EQ(m_Frame.FrameNumber(), NoFrame);
  }
}

TEST_F(HostileFile, StreamOffsetOutsideTheEssenceIsAFormatError) {
  const Bytes good = m_Builder.Build();
  // The last entry's stream offset: the index is followed by the random index pack.
  for (const Bytes& offset : {BE64(~ui64_t{0}), BE64(ui64_t{1} << 62), BE64(1000000)}) {
    Bytes bytes = good;
    Put(bytes, m_Builder.RIPAt - 8, offset);
    ASSERT_EQ(Open(bytes), RESULT_OK);
    EXPECT_EQ(Read(0), RESULT_OK);
    const Result_t result = Read(3);
    EXPECT_TRUE(result == RESULT_FORMAT || result == RESULT_OK) << result.Symbol();
    if (result.Success()) {
      EXPECT_EQ(Content(m_Frame), m_Builder.Frames[3]);
    }
  }
}

TEST_F(HostileFile, ReferenceCyclesEnd) {
  m_Builder.Overrides["FileSequence"][0x1001] = ReferenceArray({MxfBuilder::InstanceID("FileSequence")});
  m_Builder.Overrides["Descriptor"][0xffff] = ReferenceArray({MxfBuilder::InstanceID("Descriptor")});
  m_Builder.Overrides["ContentStorage"][0x1901] =
      ReferenceArray({MxfBuilder::InstanceID("ContentStorage"), MxfBuilder::InstanceID("FilePackage")});
  const Result_t result = Open(m_Builder.Build());
  EXPECT_TRUE(result == RESULT_OK || result == RESULT_FORMAT);
}

TEST_F(HostileFile, RatesThatAreNotAboveZeroAreRefused) {
  for (const Bytes& rate : {Bytes(8), BE32(24) + BE32(0), BE32(0) + BE32(1), BE32(~ui32_t{0}) + BE32(1)}) {
    for (const char* set : {"FileTrack", "MaterialTrack"}) m_Builder.Overrides[set][0x4b01] = rate;
    m_Builder.Overrides["Descriptor"][0x3001] = rate;
    m_Log.Clear();
    EXPECT_EQ(Open(m_Builder.Build()), RESULT_FORMAT);
    EXPECT_EQ(m_Log.Text(), m_File.Name() + ": cannot be read, its edit rate is not above 0\n");
  }
}

TEST_F(HostileFile, HeaderWithoutFilePackageOrDescriptorIsRefused) {
  m_Builder.OmittedSets = {"FilePackage", "Descriptor"};
  EXPECT_EQ(Open(m_Builder.Build()), RESULT_FORMAT);
  EXPECT_EQ(m_Log.Text(), m_File.Name() + ": cannot be read, there is no file package\n");
  m_Log.Clear();
  m_Builder.OmittedSets = {"Descriptor"};
  EXPECT_EQ(Open(m_Builder.Build()), RESULT_FORMAT);
  EXPECT_EQ(m_Log.Text(), m_File.Name() + ": cannot be read, there is no essence descriptor\n");
}

TEST_F(HostileFile, ClipWrappedEssenceIsRefusedWithTheReason) {
  m_Builder.Overrides["Descriptor"][0x3004] = Hex("060e2b34.04010107.0d010301.020c0200");
  EXPECT_EQ(Open(m_Builder.Build()), RESULT_FORMAT);
  EXPECT_EQ(m_Log.Text(), m_File.Name() + ": cannot be read, its essence is clip-wrapped\n");
}

TEST_F(HostileFile, SeveralEssenceTracksAreRefusedWithTheReason) {
  m_Builder.Overrides["FileTimecodeSequence"][0x0201] = Hex("060e2b34.04010101.01030202.02000000");
  EXPECT_EQ(Open(m_Builder.Build()), RESULT_FORMAT);
  EXPECT_EQ(m_Log.Text(), m_File.Name() + ": cannot be read, it holds more than one essence track\n");
}

TEST_F(HostileFile, EditUnitByteCountTimesIndexDoesNotWrap) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::PCM, 3);
  Bytes bytes = builder.Build();
  const Bytes item = Hex("3f050004");
  const auto found =
      std::search(bytes.begin() + static_cast<std::ptrdiff_t>(builder.IndexAt), bytes.end(), item.begin(), item.end());
  ASSERT_NE(found, bytes.end());
  const auto at = static_cast<size_t>(found - bytes.begin()) + 4;
  for (ui32_t size : {1u, 17u, 12019u, 0x7fffffffu, 0xffffffffu}) {
    Put(bytes, at, BE32(size));
    m_File.Write(bytes);
    PCM::MXFReader reader;
    ASSERT_EQ(reader.OpenRead(m_File.Name()), RESULT_OK);
    PCM::FrameBuffer frame;
    ASSERT_EQ(frame.Capacity(65536), RESULT_OK);
    for (ui32_t i : {0u, 1u, 0x7fffffffu, 0xfffffffeu}) (void)reader.ReadFrame(i, frame);
  }
}

TEST_F(HostileFile, TruncatedAnywhereInHeaderOrIndexEndsInAResult) {
  for (auto kind : {MxfBuilder::JP2K, MxfBuilder::PCM}) {
    MxfBuilder builder = MakeBuilder(kind, 3);
    const Bytes whole = builder.Build();
    m_File.Write(whole);
    ASSERT_EQ(ReadAny(kind, m_File.Name()), 3u);
    for (size_t size = whole.size(); size-- > 0;) {
      if (size > builder.EssenceAt && size < builder.EssenceEnd && size % 97 != 0) continue;
      m_File.Truncate(size);
      const size_t count = ReadAny(kind, m_File.Name());
      EXPECT_LE(count, size < builder.EssenceAt ? 0u : 3u) << "cut at " << size;
      EXPECT_GE(count, size < builder.EssenceEnd ? 0u : 3u) << "cut at " << size;
    }
  }
}

TEST_F(HostileFile, EveryFieldOfHeaderAndIndexMaySayAnything) {
  for (auto kind : {MxfBuilder::JP2K, MxfBuilder::PCM}) {
    MxfBuilder builder = MakeBuilder(kind, 2);
    builder.HeaderFill = 0;
    const Bytes whole = builder.Build();
    m_File.Write(whole);
    for (size_t at = 0; at + 8 <= whole.size(); ++at) {
      if (at > builder.EssenceAt + 40 && at < builder.EssenceEnd) continue;
      const auto begin = whole.begin() + static_cast<std::ptrdiff_t>(at);
      for (const Bytes& value : {Hex("00"), Hex("ff"), Hex("7fffffff"), Bytes(8, 0xff)}) {
        m_File.Patch(at, value);
        (void)ReadAny(kind, m_File.Name());
        m_File.Patch(at, Bytes(begin, begin + static_cast<std::ptrdiff_t>(value.size())));
      }
    }
    EXPECT_EQ(ReadAny(kind, m_File.Name()), 2u);
  }
}

TEST_F(HostileFile, RandomDamageEndsInAResult) {
  std::mt19937 random(20260301);
  MxfBuilder builder = MakeBuilder(MxfBuilder::JP2K, 20);
  builder.EntriesPerSegment = 7;
  const Bytes whole = builder.Build();
  for (int round = 0; round < 1000; ++round) {
    Bytes bytes = whole;
    for (int change = 0; change < 8; ++change) bytes[random() % bytes.size()] = static_cast<ui8_t>(random());
    if (round % 3 == 0) bytes.resize(random() % bytes.size());
    m_File.Write(bytes);
    (void)ReadAny(MxfBuilder::JP2K, m_File.Name());
    EssenceType_t type = ESS_UNKNOWN;
    EXPECT_EQ(EssenceType(m_File.Name(), type), RESULT_OK);
  }
}

}  // namespace
