// SPDX-License-Identifier: BSD-3-Clause
#include "../support/LogCapture.h"
#include "MetadataBytes.h"
#include "ScratchFile.h"

#include <QUIRE/MXF/FileStructure.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace QUIRE::MXF {
namespace {

using Bytes = std::vector<ui8_t>;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr size_t BodyPack = 4057;
constexpr size_t FooterPack = 4398;
constexpr size_t RandomIndexStart = 4689;
constexpr size_t ExampleSize = 4749;
// Of the value of a partition pack, in the file.
constexpr size_t PreviousField = 20 + 16;
constexpr size_t FooterField = 20 + 24;
constexpr size_t HeaderByteCountField = 20 + 32;

Bytes With64(Bytes bytes, size_t at, ui64_t value) {
  for (size_t i = 0; i < 8; ++i) bytes[at + i] = static_cast<ui8_t>(value >> (56 - 8 * i));
  return bytes;
}

Bytes FirstBytes(const Bytes& bytes, size_t count) {
  return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count)};
}

std::vector<ui64_t> PartitionOffsets(const Bytes& bytes) {
  const ScratchFile file(bytes);
  FileStructure structure;
  EXPECT_EQ(structure.ReadHeader(file.Reader), Ferro::RESULT_OK);
  EXPECT_EQ(structure.ReadPartitions(file.Reader), Ferro::RESULT_OK);
  std::vector<ui64_t> offsets;
  for (const Partition& partition : structure.Partitions) offsets.push_back(partition.FileOffset);
  return offsets;
}

Result_t ReadHeaderOf(const Bytes& bytes) {
  const ScratchFile file(bytes);
  FileStructure structure;
  return structure.ReadHeader(file.Reader);
}

TEST(FileStructure, PartitionsAreFoundByTheRandomIndexPack) {
  EXPECT_THAT(PartitionOffsets(ExampleFile()), ElementsAre(0, BodyPack, FooterPack));
}

TEST(FileStructure, WithoutRandomIndexPackTheFooterLeadsBack) {
  EXPECT_THAT(PartitionOffsets(FirstBytes(ExampleFile(), RandomIndexStart)), ElementsAre(0, BodyPack, FooterPack));
  Bytes trailing = ExampleFile();
  trailing.resize(trailing.size() + 77, 0xab);
  EXPECT_THAT(PartitionOffsets(trailing), ElementsAre(0, BodyPack, FooterPack));
}

TEST(FileStructure, WithoutFooterOffsetTheFileIsWalked) {
  const Bytes bytes = With64(FirstBytes(ExampleFile(), RandomIndexStart), FooterField, 0);
  EXPECT_THAT(PartitionOffsets(bytes), ElementsAre(0, BodyPack, FooterPack));
}

TEST(FileStructure, FooterOffsetThatLeadsNowhereIsNotBelieved) {
  for (const ui64_t offset : {ui64_t{1}, ui64_t{BodyPack + 1}, ui64_t{100000}, ~ui64_t{0}, ui64_t{1} << 63}) {
    const Bytes bytes = With64(FirstBytes(ExampleFile(), RandomIndexStart), FooterField, offset);
    EXPECT_THAT(PartitionOffsets(bytes), ElementsAre(0, BodyPack, FooterPack)) << offset;
  }
}

TEST(FileStructure, ChainOfPartitionsThatDoesNotDecreaseIsNotBelieved) {
  for (const ui64_t previous : {ui64_t{FooterPack}, ui64_t{FooterPack + 1}, ~ui64_t{0}, ui64_t{3}}) {
    const Bytes bytes = With64(FirstBytes(ExampleFile(), RandomIndexStart), FooterPack + PreviousField, previous);
    EXPECT_THAT(PartitionOffsets(bytes), ElementsAre(0, BodyPack, FooterPack)) << previous;
  }
}

TEST(FileStructure, RandomIndexPackThatLiesIsNotBelieved) {
  constexpr size_t second = RandomIndexStart + 20 + 12 + 4;
  constexpr size_t third = second + 12;
  for (const auto& [at, value] : std::vector<std::pair<size_t, ui64_t>>{{second, 0},
                                                                        {second, FooterPack},
                                                                        {second, BodyPack + 1},
                                                                        {second, ~ui64_t{0}},
                                                                        {third, BodyPack},
                                                                        {third, 0},
                                                                        {RandomIndexStart + 24, 7}}) {
    EXPECT_THAT(PartitionOffsets(With64(ExampleFile(), at, value)), ElementsAre(0, BodyPack, FooterPack));
  }
}

TEST(FileStructure, OffsetsCountFromTheEndOfARunIn) {
  for (const size_t run_in : {1U, 100U, 20000U, 65535U}) {
    Bytes bytes(run_in, 0x06);
    const Bytes example = ExampleFile();
    bytes.insert(bytes.end(), example.begin(), example.end());
    EXPECT_THAT(PartitionOffsets(bytes), ElementsAre(run_in, run_in + BodyPack, run_in + FooterPack));
  }
}

TEST(FileStructure, FileWithoutHeaderPartitionPackIsRefused) {
  const testsupport::LogCapture log;
  EXPECT_EQ(ReadHeaderOf({}), RESULT_FORMAT);
  EXPECT_EQ(ReadHeaderOf(Bytes(100, 0)), RESULT_FORMAT);
  EXPECT_EQ(ReadHeaderOf(Bytes(1000000, 0x06)), RESULT_FORMAT);
  Bytes late(65536, 0);
  const Bytes example = ExampleFile();
  late.insert(late.end(), example.begin(), example.end());
  EXPECT_EQ(ReadHeaderOf(late), RESULT_FORMAT);
  EXPECT_THAT(log.Lines(), ElementsAre("MXF: no header partition pack within 65535 bytes at offset 0.\n",
                                       "MXF: no header partition pack within 65535 bytes at offset 0.\n",
                                       "MXF: no header partition pack within 65535 bytes at offset 0.\n",
                                       "MXF: no header partition pack within 65535 bytes at offset 0.\n"));
}

TEST(FileStructure, HeaderCutAtEveryByteIsAFormatErrorWithOneLine) {
  const Bytes bytes = ExampleFile();
  for (size_t length = 0; length < BodyPack; ++length) {
    const testsupport::LogCapture log;
    ASSERT_EQ(ReadHeaderOf(FirstBytes(bytes, length)), RESULT_FORMAT) << length;
    ASSERT_THAT(log.Lines(), SizeIs(1)) << length;
  }
}

TEST(FileStructure, HeaderByteCountExtremesAreFormatErrors) {
  for (const ui64_t count :
       {ui64_t{0}, ui64_t{1}, ui64_t{16}, ui64_t{4609 + 1}, ~ui64_t{0}, ui64_t{1} << 63, ~ui64_t{0} >> 1}) {
    const testsupport::LogCapture log;
    EXPECT_EQ(ReadHeaderOf(With64(ExampleFile(), HeaderByteCountField, count)), RESULT_FORMAT) << count;
    EXPECT_THAT(log.Lines(), SizeIs(1)) << count;
  }
  const testsupport::LogCapture log;
  EXPECT_EQ(ReadHeaderOf(With64(ExampleFile(), HeaderByteCountField, ~ui64_t{0})), RESULT_FORMAT);
  EXPECT_THAT(log.Lines(), ElementsAre("MXF: header metadata of 18446744073709551615 bytes beyond the end of the "
                                       "file at offset 0.\n"));
}

TEST(FileStructure, MetadataBeyondTheLimitAreRefused) {
  Partition pack;
  pack.HeaderByteCount = OP1aHeader::MaxMetadataBytes + 1;
  Bytes bytes;
  pack.Write(bytes);
  bytes.resize(bytes.size() + OP1aHeader::MaxMetadataBytes + 1);
  const testsupport::LogCapture log;
  EXPECT_EQ(ReadHeaderOf(bytes), RESULT_FORMAT);
  EXPECT_THAT(log.Lines(), ElementsAre("MXF: header metadata of 16777217 bytes, more than the limit at offset 0.\n"));
}

TEST(FileStructure, MetadataStartAfterFillThatAlignsThem) {
  Partition pack;
  pack.HeaderByteCount = MetadataEnd - MetadataStart;
  Bytes bytes;
  pack.Write(bytes);
  AppendFill(bytes, 512 - bytes.size());
  const Bytes metadata = ExampleMetadata();
  bytes.insert(bytes.end(), metadata.begin(), metadata.end());
  const ScratchFile file(bytes);
  FileStructure structure;
  ASSERT_EQ(structure.ReadHeader(file.Reader), Ferro::RESULT_OK);
  EXPECT_EQ(structure.Header.Objects().size(), 20u);
}

// An open header, its metadata with another company name than those of the footer.
Bytes OpenFile(bool metadata_in_header) {
  OP1aHeader header = ExampleHeader();
  header.First<Identification>()->CompanyName = "Header";
  Bytes header_metadata;
  EXPECT_EQ(header.WriteMetadata(IndexTags::None, 0, header_metadata), Ferro::RESULT_OK);
  if (!metadata_in_header) header_metadata.clear();
  const Bytes footer_metadata = ExampleMetadata();
  Partition pack;
  pack.Status = PartitionStatus::OpenIncomplete;
  pack.HeaderByteCount = header_metadata.size();
  Bytes bytes;
  pack.Write(bytes);
  bytes.insert(bytes.end(), header_metadata.begin(), header_metadata.end());
  Partition footer;
  footer.Kind = PartitionKind::Footer;
  footer.ThisPartition = bytes.size();
  footer.HeaderByteCount = footer_metadata.size();
  footer.Write(bytes);
  bytes.insert(bytes.end(), footer_metadata.begin(), footer_metadata.end());
  return bytes;
}

TEST(FileStructure, MetadataOfTheFooterReplaceThoseOfAnOpenHeader) {
  for (const bool in_header : {true, false}) {
    const ScratchFile file(OpenFile(in_header));
    FileStructure structure;
    ASSERT_EQ(structure.ReadHeader(file.Reader), Ferro::RESULT_OK);
    EXPECT_EQ(structure.Header.First<Identification>()->CompanyName, "Company");
  }
}

TEST(FileStructure, OpenHeaderIsUsedWhereNothingIsBetter) {
  Bytes bytes = OpenFile(true);
  bytes.resize(4100);  // the footer is gone
  const ScratchFile file(bytes);
  FileStructure structure;
  ASSERT_EQ(structure.ReadHeader(file.Reader), Ferro::RESULT_OK);
  EXPECT_EQ(structure.Header.First<Identification>()->CompanyName, "Header");
}

TEST(FileStructure, FileWithoutMetadataIsRefused) {
  Bytes bytes;
  Partition().Write(bytes);
  const testsupport::LogCapture log;
  EXPECT_EQ(ReadHeaderOf(bytes), RESULT_FORMAT);
  EXPECT_THAT(log.Lines(), ElementsAre("MXF: no header metadata in any partition of the file at offset 0.\n"));
}

TEST(FileStructure, PartitionsOfACutFileAreThoseBeforeTheCut) {
  const Bytes bytes = ExampleFile();
  const testsupport::LogCapture log;
  for (size_t length = BodyPack; length <= ExampleSize; ++length) {
    const size_t expected = length >= FooterPack + 140 ? 3 : length >= BodyPack + 140 ? 2 : 1;
    ASSERT_THAT(PartitionOffsets(FirstBytes(bytes, length)), SizeIs(expected)) << length;
  }
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST(FilePosition, LiesWithinTheRunsOnly) {
  const std::vector<EssenceRun> runs = {{0, 1000, 50}, {50, 2000, 10}};
  EXPECT_EQ(FilePosition(runs, 0), 1000u);
  EXPECT_EQ(FilePosition(runs, 49), 1049u);
  EXPECT_EQ(FilePosition(runs, 50), 2000u);
  EXPECT_EQ(FilePosition(runs, 59), 2009u);
  EXPECT_FALSE(FilePosition(runs, 60).has_value());
  EXPECT_FALSE(FilePosition(runs, ~ui64_t{0}).has_value());
  EXPECT_FALSE(FilePosition({}, 0).has_value());
  EXPECT_FALSE(FilePosition({{10, 0, 5}}, 9).has_value());
}

TEST(EssenceKey, IsThatOfElementsTripletsAndStreamData) {
  for (const MDD_t entry : {MDD_JPEG2000Essence, MDD_MPEG2Essence, MDD_WAVEssence, MDD_TimedTextEssence,
                            MDD_DCDataEssence, MDD_IADataEssence, MDD_CryptEssence, MDD_GenericStream_DataElement})
    EXPECT_TRUE(IsEssenceKey(DefaultSMPTEDict().ul(entry))) << DefaultSMPTEDict().Type(entry).Name;
  EXPECT_TRUE(IsEssenceKey(DefaultInteropDict().ul(MDD_CryptEssence)));
  for (const MDD_t entry : {MDD_KLVFill, MDD_Primer, MDD_IndexTableSegment, MDD_Preface})
    EXPECT_FALSE(IsEssenceKey(DefaultSMPTEDict().ul(entry))) << DefaultSMPTEDict().Type(entry).Name;
}

}  // namespace
}  // namespace QUIRE::MXF
