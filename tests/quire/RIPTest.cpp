// SPDX-License-Identifier: BSD-3-Clause
#include "../support/LogCapture.h"
#include "ExampleFile.h"
#include "ScratchFile.h"

#include <QUIRE/MXF/RIP.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace QUIRE::MXF {
namespace {

using Bytes = std::vector<ui8_t>;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::ptrdiff_t PackStart = 4689;

Bytes ExamplePack() {
  const Bytes file = ExampleFile();
  return {file.begin() + PackStart, file.end()};
}

Result_t ReadWithSizeWord(const Bytes& word) {
  Bytes bytes = ExampleFile();
  std::copy(word.begin(), word.end(), bytes.end() - 4);
  const ScratchFile file(bytes);
  RIP index;
  return index.ReadFromFile(file.Reader);
}

TEST(RIP, PairsStandInFileOrder) {
  RIP index;
  ASSERT_EQ(index.Read(ExamplePack(), 4689), Ferro::RESULT_OK);
  EXPECT_THAT(index.PairArray, ElementsAre(RIP::Pair{0, 0}, RIP::Pair{1, 4057}, RIP::Pair{0, 4398}));
  EXPECT_EQ(index.PackLength, 60u);
}

TEST(RIP, IsWrittenAsItWasRead) {
  RIP index;
  ASSERT_EQ(index.Read(ExamplePack(), 4689), Ferro::RESULT_OK);
  Bytes written;
  index.Write(written);
  EXPECT_EQ(written, ExamplePack());
  EXPECT_EQ(index.ArchiveLength(), 60u);
}

TEST(RIP, SizesOfOrdinaryFiles) {
  RIP index;
  index.PairArray.resize(2);
  EXPECT_EQ(index.ArchiveLength(), 48u);
  index.PairArray.resize(4);
  EXPECT_EQ(index.ArchiveLength(), 72u);
}

TEST(RIP, CutAtEveryByteIsAFormatError) {
  const Bytes bytes = ExamplePack();
  for (size_t length = 0; length < bytes.size(); ++length) {
    const testsupport::LogCapture log;
    RIP index;
    EXPECT_EQ(index.Read(std::span(bytes).first(length), 9), RESULT_FORMAT);
    EXPECT_THAT(log.Lines(), ElementsAre("MXF: no whole random index pack at offset 9.\n"));
  }
}

TEST(RIP, HalfAPairIsAFormatError) {
  Bytes bytes = ExamplePack();
  bytes[19] = 39;
  const testsupport::LogCapture log;
  RIP index;
  EXPECT_EQ(index.Read(bytes, 9), RESULT_FORMAT);
  EXPECT_THAT(log.Lines(), ElementsAre("MXF: random index pack of 39 bytes, which are no whole pairs at offset 9.\n"));
}

TEST(RIP, IsFoundByTheLastFourBytes) {
  const ScratchFile file(ExampleFile());
  RIP index;
  ASSERT_EQ(index.ReadFromFile(file.Reader), Ferro::RESULT_OK);
  EXPECT_EQ(index.PairArray.size(), 3u);
}

TEST(RIP, LongerThanOneReadIsFound) {
  RIP written;
  for (ui32_t i = 0; i < 1000; ++i) written.PairArray.push_back({i, i * 100ull});
  Bytes bytes(77, 0);
  written.Write(bytes);
  const ScratchFile file(bytes);
  RIP index;
  ASSERT_EQ(index.ReadFromFile(file.Reader), Ferro::RESULT_OK);
  EXPECT_EQ(index.PairArray, written.PairArray);
}

TEST(RIP, ImplausibleSizeWordMeansThatThereIsNone) {
  const testsupport::LogCapture log;
  for (const Bytes& word :
       {Bytes{0, 0, 0, 0}, Bytes{0, 0, 0, 1}, Bytes{0, 0, 0, 20}, Bytes{0, 0, 0, 59}, Bytes{0, 0, 0, 61},
        Bytes{0, 0, 0x20, 0}, Bytes{0x7f, 0xff, 0xff, 0xff}, Bytes{0xff, 0xff, 0xff, 0xff}})
    EXPECT_EQ(ReadWithSizeWord(word), Ferro::RESULT_NOT_FOUND);
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST(RIP, FileShorterThanAPackHasNone) {
  for (const size_t size : {0U, 1U, 4U, 20U}) {
    const ScratchFile file(Bytes(size, 20));
    RIP index;
    EXPECT_EQ(index.ReadFromFile(file.Reader), Ferro::RESULT_NOT_FOUND);
  }
}

}  // namespace
}  // namespace QUIRE::MXF
