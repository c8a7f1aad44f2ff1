// SPDX-License-Identifier: BSD-3-Clause
#include "ExampleFile.h"
#include "LogCapture.h"
#include "ScratchFile.h"

#include <QUIRE/Dictionary.h>
#include <QUIRE/MXF/OP1aHeader.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace QUIRE::MXF {
namespace {

using testing::ElementsAre;

constexpr size_t MetadataStart = 140;
constexpr size_t MetadataEnd = 4057;

std::vector<ui8_t> ExampleMetadata() {
  const std::vector<ui8_t> file = ExampleFile();
  return {file.begin() + MetadataStart, file.begin() + MetadataEnd};
}

OP1aHeader ExampleHeader() {
  OP1aHeader header;
  EXPECT_EQ(header.InitFromBuffer(ExampleMetadata(), MetadataStart), Ferro::RESULT_OK);
  return header;
}

TEST(OP1aHeader, SetsStandInStoredOrder) {
  const OP1aHeader header = ExampleHeader();
  std::vector<std::string> names;
  for (const auto& object : header.Objects()) names.push_back(object->Name());
  EXPECT_THAT(names, ElementsAre("Preface", "Identification", "ContentStorage", "EssenceContainerData",
                                 "MaterialPackage", "Track", "Sequence", "TimecodeComponent", "Track", "Sequence",
                                 "SourceClip", "SourcePackage", "Track", "Sequence", "TimecodeComponent", "Track",
                                 "Sequence", "SourceClip", "RGBAEssenceDescriptor", "JPEG2000PictureSubDescriptor"));
}

TEST(OP1aHeader, UnchangedMetadataAreWrittenBackByteForByte) {
  OP1aHeader header = ExampleHeader();
  std::vector<ui8_t> written;
  ASSERT_EQ(header.WriteMetadata(IndexTags::None, 0, written), Ferro::RESULT_OK);
  EXPECT_EQ(written, ExampleMetadata());
}

}  // namespace
}  // namespace QUIRE::MXF
