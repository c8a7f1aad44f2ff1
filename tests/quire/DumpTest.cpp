// SPDX-License-Identifier: BSD-3-Clause
// Descriptions of files against those in the golden folder. STRATA_ACCEPT_GOLDEN=1 in the environment makes the tests
// write the files instead; look at the difference before keeping it.
#include "../support/LogCapture.h"
#include "MetadataBytes.h"
#include "ScratchFile.h"

#include <QUIRE/MXF/Dump.h>

#include <Ferro/FileText.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace QUIRE::MXF {
namespace {

using Bytes = std::vector<ui8_t>;
using testing::ElementsAre;
using testing::HasSubstr;

std::string DumpOf(const Bytes& bytes, DumpForm form = DumpForm::Text) {
  const ScratchFile file(bytes);
  std::string text;
  EXPECT_EQ(DumpFile(file.Reader, form, text), Ferro::RESULT_OK);
  return text;
}

void ExpectGolden(const std::string& text, const std::string& name) {
  const std::string path = std::string(QUIRE_GOLDEN_FOLDER) + "/" + name;
  if (std::getenv("STRATA_ACCEPT_GOLDEN") != nullptr) {
    ASSERT_EQ(Ferro::WriteStringIntoFile(path, text), Ferro::RESULT_OK);
  }
  std::string golden;
  ASSERT_EQ(Ferro::ReadFileIntoString(path, golden), Ferro::RESULT_OK) << path;
  EXPECT_EQ(text, golden) << path;
}

TEST(Dump, DescribesAWholeFileAsText) {
  ExpectGolden(DumpOf(ExampleFile()), "ExampleFile.txt");
}

TEST(Dump, DescribesAWholeFileAsJSON) {
  ExpectGolden(DumpOf(ExampleFile(), DumpForm::JSON), "ExampleFile.json");
}

TEST(Dump, FileThatIsNotMXFIsRefused) {
  const ScratchFile file(Bytes(100, 7));
  const testsupport::LogCapture log;
  std::string text = "as before";
  EXPECT_EQ(DumpFile(file.Reader, DumpForm::Text, text), RESULT_FORMAT);
  EXPECT_EQ(text, "as before");
  EXPECT_EQ(log.Lines().size(), 1u);
}

TEST(Dump, WhatCannotBeReadIsNamed) {
  Bytes bytes = ExampleFile();
  bytes[4538 + 22] = 0xff;  // the length of the first item of the index segment
  const testsupport::LogCapture log;
  EXPECT_THAT(DumpOf(bytes), HasSubstr("Index: []\n"));
  EXPECT_THAT(DumpOf(bytes),
              HasSubstr("Problems: [index of stream 1: The file is not a proper D-Cinema track file.]\n"));
}

TEST(Dump, EssenceThatBreaksOffIsNamed) {
  const Bytes bytes = ExampleFile();
  const std::string text = DumpOf(Bytes(bytes.begin(), bytes.begin() + 4300));
  EXPECT_THAT(text, HasSubstr("Problems: [essence stops making sense at offset 4197]\n"));
}

TEST(DumpSet, ShowsUnknownItemsByTag) {
  OP1aHeader header;
  ASSERT_EQ(
      header.InitFromBuffer(
          SetBytes(MDD_Filler, {Item(0x3c0a, Bytes(16, 0x11)), Item(0x9999, Bytes(70, 0xaa)), Item(0x9998, {1})}), 0),
      Ferro::RESULT_OK);
  EXPECT_EQ(DumpSet(*header.First<Filler>(), DumpForm::Text),
            "Set: Filler\n"
            "Key: 060e2b34.02530101.0d010101.01010900\n"
            "InstanceUID: 11111111-1111-1111-1111-111111111111\n"
            "Item 9999: " +
                std::string(128, 'a') +
                "... 70 bytes\n"
                "Item 9998: 01\n");
}

TEST(DumpSet, ShowsUnknownSetsAsBytes) {
  OpaqueSet set;
  ASSERT_TRUE(set.SetKey.DecodeHex("060e2b34025301010d01010101017f00"));
  set.Value = {1, 2, 3};
  EXPECT_EQ(DumpSet(set, DumpForm::Text), "Set: unknown\nKey: 060e2b34.02530101.0d010101.01017f00\nValue: 010203\n");
}

TEST(DumpSet, TextKeepsToOneLineAndJSONIsEscaped) {
  Identification set;
  set.CompanyName = "two\nlines \"quoted\" \\";
  EXPECT_THAT(DumpSet(set, DumpForm::Text), HasSubstr("CompanyName: two lines \"quoted\" \\\n"));
  EXPECT_THAT(DumpSet(set, DumpForm::JSON), HasSubstr(R"("CompanyName": "two\u000alines \"quoted\" \\")"));
}

}  // namespace
}  // namespace QUIRE::MXF
