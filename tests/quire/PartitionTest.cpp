// SPDX-License-Identifier: BSD-3-Clause
#include "../support/LogCapture.h"
#include "ExampleFile.h"

#include <QUIRE/Dictionary.h>
#include <QUIRE/MXF/Partition.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace QUIRE::MXF {
namespace {

using Bytes = std::vector<ui8_t>;
using testing::ElementsAre;
using testing::SizeIs;

constexpr size_t PackLength = 140;
constexpr size_t BodyPack = 4057;
constexpr size_t FooterPack = 4398;
constexpr size_t LabelCount = 20 + 80;  // of the pack's start
constexpr size_t LabelSize = 20 + 84;

Bytes PackAt(size_t offset) {
  return ExampleBytes(offset, offset + PackLength);
}

Partition Parse(const Bytes& bytes, ui64_t offset = 0) {
  Partition partition;
  EXPECT_EQ(partition.Read(bytes, offset), Ferro::RESULT_OK);
  return partition;
}

Result_t ParseWith(size_t at, const Bytes& patch) {
  Bytes bytes = PackAt(0);
  std::copy(patch.begin(), patch.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
  Partition partition;
  return partition.Read(bytes, 7000);
}

TEST(Partition, EachFieldIsReadFromItsPlace) {
  const Partition footer = Parse(PackAt(FooterPack), FooterPack);
  EXPECT_EQ(footer.Kind, PartitionKind::Footer);
  EXPECT_EQ(footer.Status, PartitionStatus::ClosedComplete);
  EXPECT_EQ(footer.MajorVersion, 1);
  EXPECT_EQ(footer.MinorVersion, 2);
  EXPECT_EQ(footer.KAGSize, 1u);
  EXPECT_EQ(footer.ThisPartition, 4398u);
  EXPECT_EQ(footer.PreviousPartition, 4057u);
  EXPECT_EQ(footer.FooterPartition, 4398u);
  EXPECT_EQ(footer.HeaderByteCount, 0u);
  EXPECT_EQ(footer.IndexByteCount, 151u);
  EXPECT_EQ(footer.IndexSID, 129u);
  EXPECT_EQ(footer.BodyOffset, 0u);
  EXPECT_EQ(footer.BodySID, 0u);
  EXPECT_EQ(footer.OperationalPattern, DefaultSMPTEDict().ul(MDD_OPAtom));
  EXPECT_THAT(footer.EssenceContainers,
              ElementsAre(DefaultSMPTEDict().ul(MDD_GCMulti), DefaultSMPTEDict().ul(MDD_JPEG_2000WrappingFrame)));
  EXPECT_EQ(footer.FileOffset, 4398u);
  EXPECT_EQ(footer.PackLength, 140u);
  EXPECT_EQ(Parse(PackAt(0)).HeaderByteCount, 3917u);
  EXPECT_EQ(Parse(PackAt(BodyPack)).BodySID, 1u);
}

TEST(Partition, IsWrittenAsItWasRead) {
  for (const size_t offset : {size_t{0}, BodyPack, FooterPack}) {
    const Partition partition = Parse(PackAt(offset));
    Bytes written;
    partition.Write(written);
    EXPECT_EQ(written, PackAt(offset));
    EXPECT_EQ(partition.ArchiveLength(), written.size());
  }
}

TEST(Partition, KeySaysKindAndStatus) {
  const struct {
    PartitionKind Kind;
    PartitionStatus Status;
    const char* Key;
  } cases[] = {
      {PartitionKind::Header, PartitionStatus::OpenIncomplete, "060e2b34.02050101.0d010201.01020100"},
      {PartitionKind::Header, PartitionStatus::ClosedIncomplete, "060e2b34.02050101.0d010201.01020200"},
      {PartitionKind::Header, PartitionStatus::OpenComplete, "060e2b34.02050101.0d010201.01020300"},
      {PartitionKind::Header, PartitionStatus::ClosedComplete, "060e2b34.02050101.0d010201.01020400"},
      {PartitionKind::Body, PartitionStatus::OpenIncomplete, "060e2b34.02050101.0d010201.01030100"},
      {PartitionKind::Body, PartitionStatus::ClosedComplete, "060e2b34.02050101.0d010201.01030400"},
      {PartitionKind::GenericStream, PartitionStatus::ClosedComplete, "060e2b34.02050101.0d010201.01031100"},
      {PartitionKind::Footer, PartitionStatus::ClosedIncomplete, "060e2b34.02050101.0d010201.01040200"},
      {PartitionKind::Footer, PartitionStatus::ClosedComplete, "060e2b34.02050101.0d010201.01040400"},
  };
  for (const auto& [kind, status, key] : cases) {
    Partition partition;
    partition.Kind = kind;
    partition.Status = status;
    EXPECT_EQ(partition.Key().EncodeString(), key);
    EXPECT_TRUE(IsPartitionKey(partition.Key()));
    Bytes bytes;
    partition.Write(bytes);
    EXPECT_EQ(Parse(bytes).Kind, kind);
    EXPECT_EQ(Parse(bytes).Status, status);
  }
}

TEST(Partition, OtherKeysAreNoPartitionPacks) {
  EXPECT_FALSE(IsPartitionKey(DefaultSMPTEDict().ul(MDD_Primer)));
  EXPECT_FALSE(IsPartitionKey(DefaultSMPTEDict().ul(MDD_RandomIndexPack)));
  EXPECT_FALSE(IsPartitionKey(DefaultSMPTEDict().ul(MDD_PartitionPack)));
  const testsupport::LogCapture log;
  EXPECT_EQ(ParseWith(13, {0x05}), RESULT_FORMAT);
  EXPECT_THAT(log.Lines(),
              ElementsAre("MXF: key 060e2b34.02050101.0d010201.01050400 is no partition pack at offset 7000.\n"));
}

TEST(Partition, RegistryVersionOfTheKeyDoesNotMatter) {
  EXPECT_EQ(ParseWith(7, {0x09}), Ferro::RESULT_OK);
}

TEST(Partition, CutAtEveryByteIsAFormatError) {
  const Bytes bytes = PackAt(0);
  for (size_t length = 0; length < bytes.size(); ++length) {
    const testsupport::LogCapture log;
    Partition partition;
    EXPECT_EQ(partition.Read(std::span(bytes).first(length), 0), RESULT_FORMAT);
    EXPECT_THAT(log.Lines(), ElementsAre("MXF: no whole partition pack at offset 0.\n"));
    EXPECT_EQ(partition, Partition());
  }
}

TEST(Partition, PackShorterThanItsFieldsIsAFormatError) {
  const testsupport::LogCapture log;
  EXPECT_EQ(ParseWith(19, {87}), RESULT_FORMAT);
  EXPECT_THAT(log.Lines(), ElementsAre("MXF: partition pack of only 87 bytes at offset 7000.\n"));
}

TEST(Partition, LabelsBeyondThePackAreAFormatError) {
  const testsupport::LogCapture log;
  EXPECT_EQ(ParseWith(LabelCount, {0, 0, 0, 3}), RESULT_FORMAT);
  EXPECT_EQ(ParseWith(LabelCount, {0xff, 0xff, 0xff, 0xff}), RESULT_FORMAT);
  EXPECT_EQ(ParseWith(LabelSize, {0, 0, 0, 0}), RESULT_FORMAT);
  EXPECT_EQ(ParseWith(LabelSize, {0, 0, 0, 15}), RESULT_FORMAT);
  EXPECT_EQ(ParseWith(LabelSize, {0xff, 0xff, 0xff, 0xff}), RESULT_FORMAT);
  ASSERT_THAT(log.Lines(), SizeIs(5));
  EXPECT_EQ(log.Lines()[0], "MXF: partition pack with 3 container labels of 16 bytes beyond its end at offset 7000.\n");
}

TEST(Partition, NoLabelsMayHaveAnyItemSize) {
  EXPECT_EQ(ParseWith(LabelCount, {0, 0, 0, 0, 0, 0, 0, 0}), Ferro::RESULT_OK);
  EXPECT_EQ(ParseWith(LabelCount, {0, 0, 0, 0, 0xff, 0xff, 0xff, 0xff}), Ferro::RESULT_OK);
}

}  // namespace
}  // namespace QUIRE::MXF
