// SPDX-License-Identifier: BSD-3-Clause
#include "../support/LogCapture.h"
#include "ExampleFile.h"

#include <QUIRE/Dictionary.h>
#include <QUIRE/MXF/Primer.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace QUIRE::MXF {
namespace {

using Bytes = std::vector<ui8_t>;
using testing::ElementsAre;

constexpr size_t PackStart = 140;
constexpr size_t PackEnd = 1446;
constexpr size_t HeaderLength = 20;

Bytes ExamplePack() {
  return ExampleBytes(PackStart, PackEnd);
}

Bytes ExampleValue() {
  return ExampleBytes(PackStart + HeaderLength, PackEnd);
}

Bytes EntryBytes(ui16_t tag, MDD_t entry) {
  Bytes bytes = {static_cast<ui8_t>(tag >> 8), static_cast<ui8_t>(tag)};
  const UL label = DefaultSMPTEDict().ul(entry);
  bytes.insert(bytes.end(), label.Value(), label.Value() + 16);
  return bytes;
}

Bytes Value(ui32_t count, ui8_t size, const std::vector<Bytes>& entries) {
  Bytes bytes;
  for (int shift = 24; shift >= 0; shift -= 8) bytes.push_back(static_cast<ui8_t>(count >> shift));
  bytes.insert(bytes.end(), {0, 0, 0, size});
  for (const Bytes& entry : entries) bytes.insert(bytes.end(), entry.begin(), entry.end());
  return bytes;
}

TEST(Primer, EntriesAreReadInOrder) {
  Primer primer;
  ASSERT_EQ(primer.Read(ExampleValue(), 160), Ferro::RESULT_OK);
  ASSERT_EQ(primer.Entries().size(), 71u);
  EXPECT_EQ(primer.Entries()[0].Tag, 0x0201);
  EXPECT_EQ(primer.Entries()[1].Tag, 0x0202);
  EXPECT_EQ(primer.Entries()[70].Tag, 0x800d);
  ASSERT_NE(primer.Find(0x8000), nullptr);
  EXPECT_TRUE(DefaultSMPTEDict().Is(UL(*primer.Find(0x8000)), MDD_GenericDescriptor_SubDescriptors));
  EXPECT_EQ(primer.Find(0x800e), nullptr);
}

TEST(Primer, IsWrittenAsItWasRead) {
  Primer primer;
  ASSERT_EQ(primer.Read(ExampleValue(), 160), Ferro::RESULT_OK);
  Bytes written;
  primer.Write(written);
  EXPECT_EQ(written, ExamplePack());
  EXPECT_EQ(primer.ArchiveLength(), 1306u);
}

TEST(Primer, CutAtEveryByteIsAFormatError) {
  const Bytes value = ExampleValue();
  for (size_t length = 0; length < value.size(); ++length) {
    const testsupport::LogCapture log;
    Primer primer;
    EXPECT_EQ(primer.Read(std::span(value).first(length), 160), RESULT_FORMAT) << length;
    EXPECT_EQ(log.Lines().size(), 1u);
    EXPECT_TRUE(primer.Entries().empty());
  }
}

TEST(Primer, CountsAndSizesBeyondTheValueAreFormatErrors) {
  const Bytes entry = EntryBytes(0x3c0a, MDD_InterchangeObject_InstanceUID);
  const testsupport::LogCapture log;
  Primer primer;
  EXPECT_EQ(primer.Read(Value(2, 18, {entry}), 5), RESULT_FORMAT);
  EXPECT_EQ(primer.Read(Value(0xffffffff, 18, {entry}), 5), RESULT_FORMAT);
  EXPECT_EQ(primer.Read(Value(1, 17, {entry}), 5), RESULT_FORMAT);
  EXPECT_EQ(primer.Read(Value(1, 0, {entry}), 5), RESULT_FORMAT);
  EXPECT_EQ(primer.Read(Value(1, 255, {entry}), 5), RESULT_FORMAT);
  EXPECT_THAT(log.Lines(),
              ElementsAre("MXF: primer pack with 2 entries of 18 bytes beyond its end at offset 5.\n",
                          "MXF: primer pack with 4294967295 entries of 18 bytes beyond its end at offset 5.\n",
                          "MXF: primer pack with 1 entries of 17 bytes beyond its end at offset 5.\n",
                          "MXF: primer pack with 1 entries of 0 bytes beyond its end at offset 5.\n",
                          "MXF: primer pack with 1 entries of 255 bytes beyond its end at offset 5.\n"));
  EXPECT_EQ(primer.Read(Value(0, 0, {}), 5), Ferro::RESULT_OK);
}

TEST(Primer, OfTwoEntriesWithOneTagTheFirstCounts) {
  Primer primer;
  ASSERT_EQ(primer.Read(Value(2, 18,
                              {EntryBytes(0x8001, MDD_MCALabelSubDescriptor_MCALinkID),
                               EntryBytes(0x8001, MDD_MCALabelSubDescriptor_MCATagName)}),
                        0),
            Ferro::RESULT_OK);
  EXPECT_TRUE(DefaultSMPTEDict().Is(UL(*primer.Find(0x8001)), MDD_MCALabelSubDescriptor_MCALinkID));
}

TEST(Primer, NewPropertiesGetTheirStaticTag) {
  Primer primer;
  EXPECT_EQ(primer.TagFor(MDD_InterchangeObject_InstanceUID), 0x3c0a);
  EXPECT_EQ(primer.TagFor(MDD_WaveAudioDescriptor_ChannelAssignment), 0x3d32);
  EXPECT_EQ(primer.Entries().size(), 2u);
}

TEST(Primer, DynamicTagsCountDownFromTheTopInOrderOfFirstUse) {
  Primer primer;
  EXPECT_EQ(primer.TagFor(MDD_GenericDescriptor_SubDescriptors), 0xffff);
  EXPECT_EQ(primer.TagFor(MDD_JPEG2000PictureSubDescriptor_Rsiz), 0xfffe);
  EXPECT_EQ(primer.TagFor(MDD_GenericDescriptor_SubDescriptors), 0xffff);
  EXPECT_EQ(primer.Entries().size(), 2u);
}

TEST(Primer, PropertiesOfOneLabelShareATag) {
  Primer primer;
  EXPECT_EQ(primer.TagFor(MDD_EssenceContainerData_BodySID), 0x3f07);
  EXPECT_EQ(primer.TagFor(MDD_TimedTextResourceSubDescriptor_BodySID), 0x3f07);
  EXPECT_EQ(primer.Entries().size(), 1u);
}

TEST(Primer, ListedTagsAreKept) {
  Primer primer;
  ASSERT_EQ(primer.Read(ExampleValue(), 160), Ferro::RESULT_OK);
  EXPECT_EQ(primer.TagFor(MDD_GenericDescriptor_SubDescriptors), 0x8000);
  EXPECT_EQ(primer.TagFor(MDD_StereoscopicPictureSubDescriptor), 0xffff);
}

TEST(Primer, TakenTagsAreNotGivenTwice) {
  Primer primer;
  ASSERT_EQ(primer.Read(Value(2, 18,
                              {EntryBytes(0xffff, MDD_MCALabelSubDescriptor_MCALinkID),
                               EntryBytes(0x3c0a, MDD_MCALabelSubDescriptor_MCATagName)}),
                        0),
            Ferro::RESULT_OK);
  EXPECT_EQ(primer.TagFor(MDD_GenericDescriptor_SubDescriptors), 0xfffe);
  EXPECT_EQ(primer.TagFor(MDD_InterchangeObject_InstanceUID), 0xfffd);  // its static tag stands for something else
}

TEST(Primer, WithoutAFreeTagThereIsNone) {
  Bytes value = Value(0x8000, 18, {});
  for (ui32_t tag = 0x8000; tag <= 0xffff; ++tag) {
    Bytes entry = EntryBytes(static_cast<ui16_t>(tag), MDD_PartitionPack);
    entry[16] = static_cast<ui8_t>(tag >> 8);
    entry[17] = static_cast<ui8_t>(tag);
    value.insert(value.end(), entry.begin(), entry.end());
  }
  Primer primer;
  ASSERT_EQ(primer.Read(value, 0), Ferro::RESULT_OK);
  EXPECT_EQ(primer.TagFor(MDD_GenericDescriptor_SubDescriptors), 0);
}

}  // namespace
}  // namespace QUIRE::MXF
