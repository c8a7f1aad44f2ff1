// SPDX-License-Identifier: BSD-3-Clause
#include "../support/LogCapture.h"
#include "MetadataBytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// What header metadata may look like and still be read, and what is refused.

namespace QUIRE::MXF {
namespace {

using Bytes = std::vector<ui8_t>;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

Bytes Concat(const std::vector<Bytes>& parts) {
  Bytes all;
  for (const Bytes& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

OP1aHeader Parse(const Bytes& metadata) {
  OP1aHeader header;
  EXPECT_EQ(header.InitFromBuffer(metadata, 0), Ferro::RESULT_OK);
  return header;
}

Bytes Written(OP1aHeader& header) {
  Bytes out;
  EXPECT_EQ(header.WriteMetadata(IndexTags::None, 0, out), Ferro::RESULT_OK);
  return out;
}

Bytes PrimerBytes(const std::vector<std::pair<ui16_t, MDD_t>>& entries) {
  Bytes bytes;
  AppendKL(bytes, DefaultSMPTEDict().ul(MDD_Primer), 8 + 18 * entries.size());
  bytes.insert(bytes.end(), {0, 0, 0, static_cast<ui8_t>(entries.size()), 0, 0, 0, 18});
  for (const auto& [tag, entry] : entries) {
    bytes.insert(bytes.end(), {static_cast<ui8_t>(tag >> 8), static_cast<ui8_t>(tag)});
    const auto& label = DefaultSMPTEDict().Type(entry).Label;
    bytes.insert(bytes.end(), label.begin(), label.end());
  }
  return bytes;
}

Bytes Fill(size_t size) {
  Bytes bytes;
  AppendFill(bytes, size);
  return bytes;
}

const Bytes s_ID = Item(0x3c0a, Bytes(16, 0x11));

TEST(HeaderReading, CutAtEveryByteIsAFormatErrorWithOneLine) {
  const Bytes metadata = ExampleMetadata();
  const std::vector<size_t> boundaries = {0,    1306, 1516, 1700, 1812, 1904, 2048, 2156, 2256, 2351, 2461,
                                          2561, 2689, 2853, 2961, 3061, 3156, 3266, 3366, 3494, 3723};
  for (size_t length = 0; length < metadata.size(); ++length) {
    const testsupport::LogCapture log;
    OP1aHeader header;
    const bool boundary = std::find(boundaries.begin(), boundaries.end(), length) != boundaries.end();
    ASSERT_EQ(header.InitFromBuffer(std::span(metadata).first(length), 140),
              boundary ? Ferro::RESULT_OK : RESULT_FORMAT)
        << length;
    ASSERT_EQ(log.Lines().size(), boundary ? 0u : 1u) << length;
  }
}

TEST(HeaderReading, EveryByteSetToEveryExtremeIsReadOrRefused) {
  const Bytes metadata = ExampleMetadata();
  for (size_t at = 0; at < metadata.size(); ++at) {
    for (const int value : {0x00, 0x01, 0x7f, 0x80, 0xff}) {
      Bytes changed = metadata;
      changed[at] = static_cast<ui8_t>(value);
      const testsupport::LogCapture log;
      OP1aHeader header;
      const Result_t result = header.InitFromBuffer(changed, 140);
      ASSERT_TRUE(result == Ferro::RESULT_OK || result == RESULT_FORMAT);
      ASSERT_EQ(log.Lines().size(), result == RESULT_FORMAT ? 1u : 0u) << at;
    }
  }
}

TEST(HeaderReading, KLVPastTheEndIsNamedWithItsOffset) {
  Bytes metadata = ExampleMetadata();
  metadata[1306 + 17] = 0x10;  // the Preface's length
  const testsupport::LogCapture log;
  OP1aHeader header;
  EXPECT_EQ(header.InitFromBuffer(metadata, 140), RESULT_FORMAT);
  EXPECT_THAT(log.Lines(), ElementsAre("MXF: header metadata with something that is no whole KLV at offset 1446.\n"));
}

TEST(HeaderReading, ItemPastTheEndOfItsSetIsNamedWithItsOffset) {
  Bytes metadata = ExampleMetadata();
  metadata[1306 + 20 + 2] = 0xff;  // the first item's length
  const testsupport::LogCapture log;
  OP1aHeader header;
  EXPECT_EQ(header.InitFromBuffer(metadata, 140), RESULT_FORMAT);
  EXPECT_THAT(log.Lines(),
              ElementsAre("MXF: item of 65296 bytes that reaches past the end of its set at offset 1466.\n"));
}

TEST(HeaderReading, ValueOfTheWrongLengthIsNamedWithItsTag) {
  const testsupport::LogCapture log;
  OP1aHeader header;
  EXPECT_EQ(header.InitFromBuffer(SetBytes(MDD_Track, {s_ID, Item(0x4801, {1, 2, 3})}), 1000), RESULT_FORMAT);
  EXPECT_THAT(log.Lines(), ElementsAre("MXF: item 4801 of Track with a malformed value of 3 bytes at offset 1040.\n"));
}

TEST(HeaderReading, BatchesBeyondTheirItemAreFormatErrors) {
  const testsupport::LogCapture log;
  const auto batch = [](const Bytes& count, const Bytes& size) {
    return SetBytes(MDD_ContentStorage, {s_ID, Item(0x1901, Concat({count, size, Bytes(16, 0x22)}))});
  };
  OP1aHeader header;
  for (const Bytes& count : {Bytes{0, 0, 0, 2}, Bytes{0x7f, 0xff, 0xff, 0xff}, Bytes{0xff, 0xff, 0xff, 0xff}})
    EXPECT_EQ(header.InitFromBuffer(batch(count, {0, 0, 0, 16}), 0), RESULT_FORMAT);
  for (const Bytes& size : {Bytes{0, 0, 0, 0}, Bytes{0, 0, 0, 15}, Bytes{0, 0, 0, 17}, Bytes{0xff, 0xff, 0xff, 0xff}})
    EXPECT_EQ(header.InitFromBuffer(batch({0, 0, 0, 1}, size), 0), RESULT_FORMAT);
  EXPECT_EQ(log.Lines().size(), 7u);
  EXPECT_EQ(header.InitFromBuffer(batch({0, 0, 0, 1}, {0, 0, 0, 16}), 0), Ferro::RESULT_OK);
  EXPECT_EQ(header.InitFromBuffer(batch({0, 0, 0, 0}, {0, 0, 0, 0}), 0), Ferro::RESULT_OK);
  EXPECT_EQ(header.InitFromBuffer(batch({0, 0, 0, 0}, {0xff, 0xff, 0xff, 0xff}), 0), Ferro::RESULT_OK);
}

// Items without a value, which take far more in memory than in the file.
TEST(HeaderReading, ItemsBeyondTheMemoryForSetsAreRefused) {
  Bytes value(OP1aHeader::MaxSetMemory / 16);
  for (size_t i = 0; i < value.size(); i += 4) value[i] = 0x90;
  Bytes metadata;
  AppendKL(metadata, DefaultSMPTEDict().ul(MDD_Filler), value.size());
  metadata.insert(metadata.end(), value.begin(), value.end());
  const testsupport::LogCapture log;
  OP1aHeader header;
  EXPECT_EQ(header.InitFromBuffer(metadata, 0), RESULT_FORMAT);
  EXPECT_THAT(log.Lines(), ElementsAre(HasSubstr("header metadata that take more memory than any track file needs")));
}

TEST(HeaderReading, SetsBeyondTheMemoryForThemAreRefused) {
  for (const MDD_t set : {MDD_Filler, MDD_RGBAEssenceDescriptor, MDD_KLVFill, MDD_Preface_Version}) {
    const Bytes one = SetBytes(set, {});
    Bytes metadata;
    const size_t count = OP1aHeader::MaxSetMemory / 128;
    for (size_t i = 0; i <= count; ++i) metadata.insert(metadata.end(), one.begin(), one.end());
    const testsupport::LogCapture log;
    OP1aHeader header;
    EXPECT_EQ(header.InitFromBuffer(metadata, 0), set == MDD_KLVFill ? Ferro::RESULT_OK : RESULT_FORMAT) << set;
    EXPECT_EQ(log.Lines().size(), set == MDD_KLVFill ? 0u : 1u) << set;
  }
}

// A text with a font or image for each of 8000 lines is large, but not made up.
TEST(HeaderReading, ThousandsOfResourcesHaveRoom) {
  const Bytes one = SetBytes(MDD_TimedTextResourceSubDescriptor, {s_ID, Item(0x4000, Bytes(16, 1))});
  Bytes metadata;
  for (size_t i = 0; i < 8000; ++i) metadata.insert(metadata.end(), one.begin(), one.end());
  OP1aHeader header;
  EXPECT_EQ(header.InitFromBuffer(metadata, 0), Ferro::RESULT_OK);
  EXPECT_EQ(header.Objects().size(), 8000u);
}

TEST(HeaderReading, LengthsOfAllSizesAreAccepted) {
  for (const ui32_t size : {1U, 2U, 4U, 8U, 9U}) {
    Bytes metadata;
    AppendKL(metadata, DefaultSMPTEDict().ul(MDD_Filler), s_ID.size(), size);
    metadata.insert(metadata.end(), s_ID.begin(), s_ID.end());
    EXPECT_NE(Parse(metadata).First<Filler>(), nullptr);
  }
}

TEST(HeaderReading, FillOfBothVersionsIsSkippedWhateverItHolds) {
  Bytes legacy = Fill(40);
  legacy[7] = 0x01;
  std::fill(legacy.begin() + 20, legacy.end(), 0x06);
  const OP1aHeader header = Parse(Concat({Fill(25), SetBytes(MDD_Filler, {s_ID}), legacy, Fill(20)}));
  EXPECT_EQ(header.Objects().size(), 1u);
}

TEST(HeaderReading, ZerosInsteadOfFillEndTheMetadata) {
  EXPECT_EQ(Parse(Concat({SetBytes(MDD_Filler, {s_ID}), Bytes(100, 0)})).Objects().size(), 1u);
  EXPECT_EQ(Parse(Concat({SetBytes(MDD_Filler, {s_ID}), Bytes(3, 0)})).Objects().size(), 1u);
}

TEST(HeaderReading, StopsAtAPartitionPackWhenTheByteCountSaysTooMuch) {
  Bytes pack;
  Partition().Write(pack);
  EXPECT_EQ(Parse(Concat({SetBytes(MDD_Filler, {s_ID}), pack, Bytes(9, 0xee)})).Objects().size(), 1u);
}

TEST(HeaderReading, SetKeysMatchWhateverTheirVersion) {
  Bytes metadata = SetBytes(MDD_Filler, {s_ID});
  metadata[7] = 0x0a;
  EXPECT_NE(Parse(metadata).First<Filler>(), nullptr);
}

TEST(HeaderReading, StaticTagsNeedNoPrimer) {
  const OP1aHeader header = Parse(SetBytes(MDD_Track, {s_ID, Item(0x4801, {0, 0, 0, 7})}));
  EXPECT_EQ(header.First<Track>()->TrackID, 7u);
}

TEST(HeaderReading, DynamicTagsMeanWhatThePrimerSays) {
  const OP1aHeader header =
      Parse(Concat({PrimerBytes({{0x9000, MDD_JPEG2000PictureSubDescriptor_Xsiz}}),
                    SetBytes(MDD_JPEG2000PictureSubDescriptor, {s_ID, Item(0x9000, {0, 0, 8, 0})})}));
  EXPECT_EQ(header.First<JPEG2000PictureSubDescriptor>()->Xsiz, 2048u);
}

TEST(HeaderReading, PrimerWinsOverAStaticTag) {
  const OP1aHeader header = Parse(Concat({PrimerBytes({{0x4801, MDD_GenericTrack_TrackNumber}}),
                                          SetBytes(MDD_Track, {s_ID, Item(0x4801, {0, 0, 0, 7})})}));
  EXPECT_EQ(header.First<Track>()->TrackID, 0u);
  EXPECT_EQ(header.First<Track>()->TrackNumber, 7u);
}

TEST(HeaderReading, LastPrimerBeforeTheSetCounts) {
  const OP1aHeader header =
      Parse(Concat({PrimerBytes({{0x9000, MDD_JPEG2000PictureSubDescriptor_Xsiz}}),
                    PrimerBytes({{0x9000, MDD_JPEG2000PictureSubDescriptor_Ysiz}}),
                    SetBytes(MDD_JPEG2000PictureSubDescriptor, {s_ID, Item(0x9000, {0, 0, 8, 0})})}));
  EXPECT_EQ(header.First<JPEG2000PictureSubDescriptor>()->Xsiz, 0u);
  EXPECT_EQ(header.First<JPEG2000PictureSubDescriptor>()->Ysiz, 2048u);
}

TEST(HeaderReading, OfATagUsedTwiceTheLastValueCounts) {
  const OP1aHeader header = Parse(SetBytes(MDD_Track, {s_ID, Item(0x4801, {0, 0, 0, 7}), Item(0x4801, {0, 0, 0, 8})}));
  EXPECT_EQ(header.First<Track>()->TrackID, 8u);
}

TEST(HeaderReading, EmptyItemIsAbsent) {
  const OP1aHeader header = Parse(SetBytes(MDD_SourceClip, {s_ID, Item(0x0202, {}), Item(0x1101, {})}));
  EXPECT_FALSE(header.First<SourceClip>()->Duration.has_value());
  EXPECT_EQ(header.First<SourceClip>()->SourcePackageID, UMID());
}

TEST(HeaderReading, BooleanIsTrueUnlessZero) {
  const OP1aHeader header = Parse(SetBytes(MDD_TimecodeComponent, {s_ID, Item(0x1503, {0xff})}));
  EXPECT_TRUE(header.First<TimecodeComponent>()->DropFrame);
}

TEST(HeaderReading, WhatIsUnknownOrOddIsWrittenBack) {
  UL unknown_key;
  ASSERT_TRUE(unknown_key.DecodeHex("060e2b34025301010d01010101017f00"));
  UL dark_key;
  ASSERT_TRUE(dark_key.DecodeHex("060e2b34010101010e0f0f0f0f0f0f00"));
  const Bytes metadata = Concat({
      PrimerBytes({{0x9000, MDD_GenericDescriptor_SubDescriptors}}),
      SetBytes(MDD_Filler, {s_ID, Item(0x9999, {1, 2, 3})}),                      // unknown item
      SetBytes(unknown_key, {Item(0x3c0a, Bytes(16, 0x33)), Item(0x0001, {5})}),  // unknown set
      SetBytes(dark_key, {{9, 9, 9}}),                                            // no set at all
      SetBytes(MDD_Track,
               {Item(0x4803, Bytes(16, 1)), s_ID, Item(0x4801, {0, 0, 0, 1})}),       // other order, items missing
      SetBytes(MDD_Identification, {s_ID, Item(0x3c01, {0, 'a', 0, 0})}),             // text with terminator
      SetBytes(MDD_ContentStorage, {s_ID, Item(0x1901, {0, 0, 0, 0, 0, 0, 0, 16})}),  // empty batch with an item size
      SetBytes(MDD_TimecodeComponent, {s_ID, Item(0x1503, {2}), Item(0x0202, {})}),   // odd truth, empty item
  });
  OP1aHeader header = Parse(metadata);
  EXPECT_EQ(header.Objects().size(), 7u);
  EXPECT_NE(header.Resolve<OpaqueSet>(UUID(std::span<const ui8_t, 16>(Bytes(16, 0x33)))), nullptr);
  EXPECT_EQ(Written(header), metadata);
}

TEST(HeaderReading, ChangedFieldsAreWrittenInTheirPlace) {
  OP1aHeader header = Parse(SetBytes(MDD_Identification, {s_ID, Item(0x3c01, {0, 'a', 0, 0}), Item(0x9999, {7})}));
  header.First<Identification>()->CompanyName = "b";
  EXPECT_EQ(Written(header),
            Concat({PrimerBytes({}), SetBytes(MDD_Identification, {s_ID, Item(0x3c01, {0, 'b'}), Item(0x9999, {7})})}));
}

TEST(HeaderReading, NewAndMissingFieldsAreWrittenOnceTheyHaveAValue) {
  OP1aHeader header = Parse(SetBytes(MDD_Track, {s_ID, Item(0x4801, {0, 0, 0, 1})}));
  Track& track = *header.First<Track>();
  track.TrackName = "T";     // optional
  track.TrackNumber = 0xee;  // required, but not in the file
  const Bytes written = Written(header);
  const Bytes expected =
      SetBytes(MDD_Track, {s_ID, Item(0x4801, {0, 0, 0, 1}), Item(0x4804, {0, 0, 0, 0xee}), Item(0x4802, {0, 'T'})});
  EXPECT_EQ(Bytes(written.end() - static_cast<std::ptrdiff_t>(expected.size()), written.end()), expected);
}

TEST(HeaderReading, ClearedFieldIsLeftOut) {
  OP1aHeader header = Parse(SetBytes(MDD_Track, {s_ID, Item(0x4802, {0, 'T'})}));
  header.First<Track>()->TrackName.reset();
  const Bytes written = Written(header);
  EXPECT_EQ(Bytes(written.begin() + 28, written.end()), SetBytes(MDD_Track, {s_ID}));
}

TEST(HeaderReading, ItemsOfSetsUnderAnEarlierPrimerAreWrittenWithTagsOfTheLast) {
  OP1aHeader header = Parse(Concat({PrimerBytes({{0x9000, MDD_JPEG2000PictureSubDescriptor_Xsiz}}),
                                    SetBytes(MDD_JPEG2000PictureSubDescriptor, {s_ID, Item(0x9000, {0, 0, 8, 0})}),
                                    PrimerBytes({{0x9000, MDD_JPEG2000PictureSubDescriptor_Rsiz}})}));
  const OP1aHeader again = Parse(Written(header));
  EXPECT_EQ(again.First<JPEG2000PictureSubDescriptor>()->Xsiz, 2048u);
  EXPECT_EQ(again.First<JPEG2000PictureSubDescriptor>()->Rsiz, 0);
}

TEST(HeaderReading, ItemWithTagZeroIsWrittenBack) {
  const Bytes set = SetBytes(MDD_Filler, {s_ID, Item(0x0000, {1})});
  OP1aHeader header = Parse(Concat({PrimerBytes({}), set}));
  EXPECT_EQ(Written(header), Concat({PrimerBytes({}), set}));
}

TEST(HeaderReading, FailureIsLoggedOnceAndNothingElse) {
  const testsupport::LogCapture log;
  EXPECT_EQ(Parse(ExampleMetadata()).Objects().size(), 20u);
  EXPECT_THAT(log.Lines(), IsEmpty());
}

}  // namespace
}  // namespace QUIRE::MXF
