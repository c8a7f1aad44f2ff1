// SPDX-License-Identifier: BSD-3-Clause
#include "ReaderFixture.h"

#include <QUIRE/FrameDecryption.h>

namespace {

using namespace testsupport;
using namespace QUIRE;
using Ferro::RESULT_OK;

const Bytes ContentKey = Hex("00112233 44556677 8899aabb ccddeeff");

class LocateFrame : public ::testing::Test {
 protected:
  Bytes Build(MxfBuilder builder) {
    const Bytes bytes = builder.Build();
    m_File.Write(bytes);
    return bytes;
  }
  static Bytes Part(const Bytes& file, ui64_t offset, ui64_t length) {
    const auto begin = file.begin() + static_cast<std::ptrdiff_t>(offset);
    return Bytes(begin, begin + static_cast<std::ptrdiff_t>(length));
  }

  TemporaryFile m_File;
};

TEST_F(LocateFrame, LeadsToTheBytesThatAReaderDelivers) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::JP2K, 3);
  const Bytes file = Build(builder);
  JP2K::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(m_File.Name()), RESULT_OK);
  for (ui32_t i = 0; i < 3; ++i) {
    StoredFrame frame;
    ASSERT_EQ(reader.LocateFrame(i, Eye::Left, frame), RESULT_OK);
    EXPECT_EQ(Part(file, frame.Offset, frame.Length), builder.Frames[i]);
    EXPECT_FALSE(frame.IsEncrypted);
    EXPECT_EQ(frame.PackLength, 0U);
  }
}

TEST_F(LocateFrame, FindsEachEye) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::JP2KS, 6);
  const Bytes file = Build(builder);
  JP2K::MXFSReader reader;
  ASSERT_EQ(reader.OpenRead(m_File.Name()), RESULT_OK);
  StoredFrame left;
  StoredFrame right;
  ASSERT_EQ(reader.LocateFrame(2, Eye::Left, left), RESULT_OK);
  ASSERT_EQ(reader.LocateFrame(2, Eye::Right, right), RESULT_OK);
  EXPECT_EQ(Part(file, left.Offset, left.Length), builder.Frames[4]);
  EXPECT_EQ(Part(file, right.Offset, right.Length), builder.Frames[5]);
}

TEST_F(LocateFrame, TellsWhatFollowsAnEncryptedFrame) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::JP2K, 2);
  builder.Key = ContentKey;
  const Bytes file = Build(builder);
  JP2K::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(m_File.Name()), RESULT_OK);
  JP2K::FrameBuffer read;
  ASSERT_EQ(read.Capacity(65536), RESULT_OK);
  ASSERT_EQ(reader.ReadFrame(1, read), RESULT_OK);
  StoredFrame frame;
  ASSERT_EQ(reader.LocateFrame(1, Eye::Left, frame), RESULT_OK);
  EXPECT_TRUE(frame.IsEncrypted);
  EXPECT_EQ(frame.SourceLength, read.SourceLength());
  EXPECT_EQ(frame.PlaintextOffset, read.PlaintextOffset());
  EXPECT_EQ(Part(file, frame.Offset, frame.Length), Content(read));
  const auto pack = read.IntegrityPack();
  EXPECT_EQ(Part(file, frame.Offset + frame.Length, frame.PackLength), Bytes(pack.begin(), pack.end()));
}

TEST_F(LocateFrame, SaysWhatIsNotThere) {
  Build(MakeBuilder(MxfBuilder::JP2K, 2));
  JP2K::MXFSReader reader;
  StoredFrame frame;
  frame.Offset = 77;
  EXPECT_EQ(reader.LocateFrame(0, Eye::Left, frame), Ferro::RESULT_INIT);
  ASSERT_EQ(reader.OpenRead(m_File.Name()), RESULT_OK);
  EXPECT_EQ(reader.LocateFrame(0, Eye::Right, frame), Ferro::RESULT_NOT_FOUND);
  EXPECT_EQ(reader.LocateFrame(2, Eye::Left, frame), RESULT_RANGE);
  EXPECT_EQ(frame.Offset, 77U);
}

TEST_F(LocateFrame, ADamagedKeyHidesItsFrameAlone) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::JP2K, 3);
  Bytes file = builder.Build();
  file[builder.ElementAt[1]] ^= 0xff;
  m_File.Write(file);
  LogCapture log;
  JP2K::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(m_File.Name()), RESULT_OK);
  StoredFrame frame;
  EXPECT_EQ(reader.LocateFrame(0, Eye::Left, frame), RESULT_OK);
  EXPECT_EQ(reader.LocateFrame(1, Eye::Left, frame), RESULT_FORMAT);
  EXPECT_EQ(reader.LocateFrame(2, Eye::Left, frame), RESULT_OK);
}

}  // namespace
