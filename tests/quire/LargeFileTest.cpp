// SPDX-License-Identifier: BSD-3-Clause
//
// Files past 4 GiB. What has been written is given back to the file system as a hole while writing goes on, so that the
// tests take little of the disk.
#include "TemporaryFolder.h"
#include "TrackFileMaker.h"

#include <QUIRE/DCDataReader.h>
#include <QUIRE/DCDataWriter.h>
#include <QUIRE/PCMReader.h>
#include <QUIRE/PCMWriter.h>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>

namespace {

using namespace QUIRE;
using namespace testsupport;

constexpr ui64_t FourGiB = ui64_t{1} << 32;

// Frees the blocks within the last `size` bytes of the only file in a folder, apart from the first and the last.
void PunchHole(const TemporaryFolder& folder, ui32_t size) {
  constexpr off_t block = 4096;
  const auto entry = *std::filesystem::directory_iterator(folder.Folder());
  const auto end = static_cast<off_t>(entry.file_size()) / block * block;
  const off_t start = (static_cast<off_t>(entry.file_size()) - static_cast<off_t>(size) + block - 1) / block * block;
  const int descriptor = ::open(entry.path().c_str(), O_WRONLY);
  ASSERT_GE(descriptor, 0);
  // Where the file system has no holes the file is only large.
  (void)::fallocate(descriptor, FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE, start, end - start);
  ::close(descriptor);
}

TEST(LargeFile, VariableSizesPastFourGiBAreFoundByTheIndex) {
  constexpr ui32_t size = 64 * 1024 * 1024;  // more than a four-byte length field holds
  constexpr ui32_t count = 66;
  const TemporaryFolder folder;
  const std::string path = folder.Path("large.mxf");
  DCData::MXFWriter writer;
  DCData::FrameBuffer buffer;
  ASSERT_EQ(buffer.Capacity(size), Ferro::RESULT_OK);
  std::memset(buffer.Data(), 0, size);
  buffer.Size(size);
  ASSERT_EQ(writer.OpenWrite(path, MakeWriterInfo({}), MakeDataDescriptor({}), MakeWriterOptions()), Ferro::RESULT_OK);
  for (ui32_t i = 0; i < count; ++i) {
    ASSERT_EQ(writer.WriteFrame(buffer), Ferro::RESULT_OK);
    PunchHole(folder, size);
  }
  const Bytes last = MakeNoise(1000, 1);
  DCData::FrameBuffer small;
  FillBuffer(last, small);
  ASSERT_EQ(writer.WriteFrame(small), Ferro::RESULT_OK);
  ASSERT_EQ(writer.Finalize(), Ferro::RESULT_OK);
  EXPECT_GT(std::filesystem::file_size(path), FourGiB);

  DCData::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(path), Ferro::RESULT_OK);
  ASSERT_EQ(reader.ReadFrame(count, small), Ferro::RESULT_OK);
  EXPECT_EQ(Bytes(small.RoData(), small.RoData() + small.Size()), last);
}

TEST(LargeFile, ConstantSizesPastFourGiBAreFoundByCounting) {
  TrackFileSpec spec;
  spec.ChannelCount = 10000;  // no cinema has them; few large frames keep the test short
  const PCM::AudioDescriptor sound = MakeAudioDescriptor(spec);
  const ui32_t size = 2000 * sound.BlockAlign;
  const ui32_t count = static_cast<ui32_t>(FourGiB / (size + 24)) + 2;
  const TemporaryFolder folder;
  const std::string path = folder.Path("large.mxf");
  PCM::MXFWriter writer;
  PCM::FrameBuffer buffer;
  ASSERT_EQ(buffer.Capacity(size), Ferro::RESULT_OK);
  std::memset(buffer.Data(), 0, size);
  buffer.Size(size);
  ASSERT_EQ(writer.OpenWrite(path, MakeWriterInfo(spec), sound, {}, MakeWriterOptions()), Ferro::RESULT_OK);
  for (ui32_t i = 0; i < count; ++i) {
    ASSERT_EQ(writer.WriteFrame(buffer), Ferro::RESULT_OK);
    PunchHole(folder, size);
  }
  const Bytes last = MakeNoise(size, 1);
  FillBuffer(last, buffer);
  ASSERT_EQ(writer.WriteFrame(buffer), Ferro::RESULT_OK);
  ASSERT_EQ(writer.Finalize(), Ferro::RESULT_OK);
  EXPECT_GT(std::filesystem::file_size(path), FourGiB);

  PCM::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(path), Ferro::RESULT_OK);
  ASSERT_EQ(reader.ReadFrame(count, buffer), Ferro::RESULT_OK);
  EXPECT_EQ(Bytes(buffer.RoData(), buffer.RoData() + buffer.Size()), last);
}

}  // namespace
