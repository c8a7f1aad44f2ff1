// SPDX-License-Identifier: BSD-3-Clause
#include "ReaderFixture.h"

#include <QUIRE/EssenceType.h>

namespace {

using namespace testsupport;
using namespace QUIRE;
using Ferro::RESULT_OK;

EssenceType_t TypeOf(const Bytes& bytes) {
  const TemporaryFile file(bytes);
  EssenceType_t type = ESS_PCM;
  EXPECT_EQ(EssenceType(file.Name(), type), RESULT_OK);
  return type;
}

TEST(EssenceType, EachKindIsTold) {
  const std::pair<MxfBuilder::Kind_t, ui32_t> kinds[] = {
      {MxfBuilder::MPEG2, 3},      {MxfBuilder::JP2K, 4},    {MxfBuilder::PCM, 5},   {MxfBuilder::JP2KS, 18},
      {MxfBuilder::TimedText, 19}, {MxfBuilder::DCData, 22}, {MxfBuilder::Atmos, 23}};
  for (const auto& [kind, value] : kinds) {
    for (bool interop : {false, true}) {
      MxfBuilder builder = MakeBuilder(kind, 2);
      builder.Interop = interop;
      EXPECT_EQ(TypeOf(builder.Build()), value) << kind;
      builder.Key = Bytes(16, 9);
      EXPECT_EQ(TypeOf(builder.Build()), value) << kind << " encrypted";
    }
  }
}

TEST(EssenceType, OtherMXFIsTold) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::JP2K, 1);
  builder.OmittedSets = {"Descriptor"};
  EXPECT_EQ(TypeOf(builder.Build()), ESS_MXF_OTHER);
}

TEST(EssenceType, BrokenHeaderIsStillMXF) {
  LogCapture log;
  MxfBuilder builder = MakeBuilder(MxfBuilder::JP2K, 1);
  const Bytes bytes = builder.Build();
  EXPECT_EQ(TypeOf(Bytes(bytes.begin(), bytes.begin() + 200)), ESS_MXF_OTHER);
}

TEST(EssenceType, FilesThatAreNotMXFAreUnknownWithoutALine) {
  LogCapture log;
  EXPECT_EQ(TypeOf({}), ESS_UNKNOWN);
  EXPECT_EQ(TypeOf(Hex("89504e47 0d0a1a0a")), ESS_UNKNOWN);
  EXPECT_EQ(TypeOf(Bytes(200000, 0x06)), ESS_UNKNOWN);
  EXPECT_EQ(log.Text(), "");
}

TEST(EssenceType, RunInIsSearchedFor64KiBOnly) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::JP2K, 1);
  builder.RunIn = Bytes(65535, 1);
  EXPECT_EQ(TypeOf(builder.Build()), ESS_JPEG_2000);
  builder.RunIn = Bytes(65536, 1);
  EXPECT_EQ(TypeOf(builder.Build()), ESS_UNKNOWN);
}

TEST(EssenceType, MissingFileIsAFailure) {
  EssenceType_t type = ESS_PCM;
  EXPECT_EQ(EssenceType("/nonexistent/file.mxf", type), Ferro::RESULT_NOT_FOUND);
  EXPECT_EQ(type, ESS_UNKNOWN);
}

}  // namespace
