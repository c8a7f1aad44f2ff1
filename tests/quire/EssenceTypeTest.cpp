// SPDX-License-Identifier: BSD-3-Clause
#include "../support/CinemaCodestream.h"
#include "ReaderFixture.h"

#include <QUIRE/EssenceType.h>
#include <QUIRE/LabelMeaning.h>

#include <algorithm>
#include <set>
#include <string>

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

// Asset stores keep these numbers.
static_assert(ESS_UNKNOWN == 0 && ESS_MXF_OTHER == 2 && ESS_MPEG2_VES == 3 && ESS_JPEG_2000 == 4 && ESS_PCM == 5);
static_assert(ESS_JPEG_2000_S == 18 && ESS_TIMED_TEXT == 19 && ESS_DCDATA == 22 && ESS_ATMOS == 23);

TEST(EssenceType, EachKindIsTold) {
  const std::pair<MxfBuilder::Kind_t, EssenceType_t> kinds[] = {
      {MxfBuilder::MPEG2, ESS_MPEG2_VES},   {MxfBuilder::JP2K, ESS_JPEG_2000},       {MxfBuilder::PCM, ESS_PCM},
      {MxfBuilder::JP2KS, ESS_JPEG_2000_S}, {MxfBuilder::TimedText, ESS_TIMED_TEXT}, {MxfBuilder::DCData, ESS_DCDATA},
      {MxfBuilder::Atmos, ESS_ATMOS}};
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

TEST(EssenceType, EveryKindHasANameOfItsOwn) {
  std::set<std::string> names;
  for (const EssenceType_t type :
       {ESS_MXF_OTHER, ESS_MPEG2_VES, ESS_JPEG_2000, ESS_PCM, ESS_JPEG_2000_S, ESS_TIMED_TEXT, ESS_DCDATA, ESS_ATMOS})
    EXPECT_TRUE(names.insert(EssenceTypeName(type)).second) << type;
  EXPECT_STREQ(EssenceTypeName(ESS_UNKNOWN), EssenceTypeName(ESS_MXF_OTHER));
}

TrackFileIdentity Identify(const Bytes& bytes) {
  const TemporaryFile file(bytes);
  TrackFileIdentity identity;
  EXPECT_EQ(IdentifyTrackFile(file.Name(), identity), RESULT_OK);
  return identity;
}

constexpr ui16_t OperationalPatternTag = 0x3b09;
constexpr ui16_t EssenceContainerTag = 0x3004;
constexpr ui16_t PictureCodingTag = 0x3201;
const Bytes OP1a = Hex("060e2b34.04010101.0d010201.01010900");
const Bytes SystemItem = Hex("060e2b34.02050101.0d010301.04010100 83000004 00000000");

TEST(IdentifyTrackFile, TrackFilesAreTheirKind) {
  for (const auto kind : {MxfBuilder::JP2K, MxfBuilder::JP2KS, MxfBuilder::MPEG2, MxfBuilder::PCM,
                          MxfBuilder::TimedText, MxfBuilder::DCData, MxfBuilder::Atmos}) {
    const TrackFileIdentity identity = Identify(MakeBuilder(kind, 2).Build());
    EXPECT_TRUE(identity.IsTrackFile()) << kind;
    EXPECT_EQ(identity.Fault, TrackFileFault::None) << kind;
    EXPECT_EQ(identity.EncodeString(), EssenceTypeName(identity.Type)) << kind;
    EXPECT_EQ(Raw(identity.AssetID), MxfBuilder::AssetID()) << kind;
    EXPECT_FALSE(identity.Encrypted) << kind;
  }
}

TEST(IdentifyTrackFile, BroadcastFilesAreCalledSo) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::JP2K, 2);
  builder.Overrides["Preface"][OperationalPatternTag] = OP1a;
  EXPECT_EQ(Identify(builder.Build()).EncodeString(), "OP1a: not a D-Cinema track file");
  builder.FillBeforeEssence = SystemItem;
  const TrackFileIdentity identity = Identify(builder.Build());
  EXPECT_TRUE(identity.HasSystemItems);
  EXPECT_FALSE(identity.IsTrackFile());
  EXPECT_EQ(identity.Type, ESS_JPEG_2000);
  EXPECT_EQ(identity.EncodeString(), "OP1a, with system items: not a D-Cinema track file");
}

TEST(IdentifyTrackFile, SystemItemsDoNotHinderReading) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::JP2K, 2);
  builder.FillBeforeEssence = SystemItem;
  const TemporaryFile file(builder.Build());
  JP2K::MXFReader reader;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  EXPECT_EQ(ReadBytes(reader, 0), builder.Frames[0]);
}

TEST(IdentifyTrackFile, ClipWrappingIsToldByTheLabel) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::JP2K, 2);
  builder.Overrides["Descriptor"][EssenceContainerTag] = Hex("060e2b34.04010107.0d010301.020c0200");
  const TrackFileIdentity identity = Identify(builder.Build());
  EXPECT_EQ(identity.Fault, TrackFileFault::ClipWrapped);
  EXPECT_EQ(identity.Type, ESS_MXF_OTHER);
  EXPECT_EQ(identity.EncodeString(), "OP-Atom, clip-wrapped: not a D-Cinema track file");
}

// Two codestreams in one element, whose label and header say frames.
MxfBuilder TwoInOne() {
  MxfBuilder builder = MakeBuilder(MxfBuilder::JP2K, 1);
  const Bytes codestream = CinemaCodestream().Make();
  builder.Frames = {codestream + codestream};
  builder.Duration = 2;
  builder.DurationGiven = true;
  return builder;
}

void ExpectRefusedAsClip(const Bytes& bytes) {
  EXPECT_EQ(Identify(bytes).Fault, TrackFileFault::ClipWrapped);
  LogCapture log;
  const TemporaryFile file(bytes);
  JP2K::MXFReader reader;
  JP2K::FrameBuffer frame;
  ASSERT_EQ(reader.OpenRead(file.Name()), RESULT_OK);
  ASSERT_EQ(frame.Capacity(65536), RESULT_OK);
  EXPECT_EQ(reader.ReadFrame(0, frame), RESULT_FORMAT);
  EXPECT_EQ(reader.ReadFrame(0, frame), RESULT_FORMAT);
  EXPECT_NE(log.Text().find("its essence is clip-wrapped"), std::string::npos) << log.Text();
  EXPECT_EQ(log.Text().find("cut off"), std::string::npos) << log.Text();
}

TEST(IdentifyTrackFile, ClipsAreToldByASecondCodestream) {
  ExpectRefusedAsClip(TwoInOne().Build());
}

TEST(IdentifyTrackFile, ClipsAreToldByAnIndexThatLeadsIntoThem) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::JP2K, 1);  // no codestream
  builder.Duration = 2;
  builder.DurationGiven = true;
  Bytes bytes = builder.Build();
  const Bytes item = Hex("3f05 0004");  // EditUnitByteCount
  const auto found =
      std::search(bytes.begin() + static_cast<std::ptrdiff_t>(builder.IndexAt), bytes.end(), item.begin(), item.end());
  ASSERT_NE(found, bytes.end());
  Put(bytes, static_cast<size_t>(found - bytes.begin()) + item.size(), BE32(20));
  ExpectRefusedAsClip(bytes);
}

TEST(IdentifyTrackFile, ASingleFrameOfACutFileIsNoClip) {
  MxfBuilder builder = TwoInOne();
  builder.Frames = {CinemaCodestream().Make()};
  EXPECT_EQ(Identify(builder.Build()).Fault, TrackFileFault::None);
}

TEST(IdentifyTrackFile, OtherEssenceIsNamed) {
  MxfBuilder builder = MakeBuilder(MxfBuilder::MPEG2, 1);
  builder.OmittedSets = {"Descriptor"};
  EXPECT_EQ(Identify(builder.Build()).EncodeString(), "OP-Atom, its essence not described: not a D-Cinema track file");

  MxfBuilder picture = MakeBuilder(MxfBuilder::JP2K, 1);
  picture.Overrides["Descriptor"][PictureCodingTag] = Hex("060e2b34.0401010d.04010202.03010201");
  EXPECT_EQ(LabelMeaning(Identify(picture.Build()).EssenceCoding), "JPEG 2000, IMF profile");
}

TEST(IdentifyTrackFile, WhatIsNoMXFIsCalledSo) {
  EXPECT_EQ(Identify(Hex("89504e47 0d0a1a0a")).EncodeString(), "not MXF");
  LogCapture log;
  const Bytes whole = MakeBuilder(MxfBuilder::JP2K, 1).Build();
  const TrackFileIdentity identity = Identify(Bytes(whole.begin(), whole.begin() + 200));
  EXPECT_EQ(identity.Fault, TrackFileFault::BrokenHeader);
  EXPECT_EQ(identity.EncodeString(), "MXF whose header cannot be understood");
}

TEST(LabelMeaning, TellsWhatALabelStandsFor) {
  const std::pair<const char*, const char*> labels[] = {
      {"060e2b34.04010101.0d010201.01010900", "OP1a"},
      {"060e2b34.04010101.0d010201.03030900", "OP3c"},
      {"060e2b34.04010101.0d010201.04010900", ""},
      {"060e2b34.04010102.0d010201.10030000", "OP-Atom"},
      {"060e2b34.04010107.0d010301.020c0100", "JPEG 2000, frame-wrapped"},
      {"060e2b34.04010107.0d010301.020c0200", "JPEG 2000, clip-wrapped"},
      {"060e2b34.04010102.0d010301.02046002", "MPEG video, clip-wrapped"},
      {"060e2b34.04010101.0d010301.02060400", "PCM sound, clip-wrapped"},
      {"060e2b34.0401010a.0d010301.02130101", "timed text"},
      {"060e2b34.0401010d.0d010301.021c0100", "ProRes, frame-wrapped"},
      {"060e2b34.0401010d.0d010301.021d0101", "IMF immersive audio"},
      {"060e2b34.04010103.0d010301.027f0100", "several containers"},
      {"060e2b34.04010109.04010202.03010104", "JPEG 2000, 4K D-Cinema profile"},
      {"060e2b34.0401010d.04010202.03010115", "JPEG 2000, broadcast profile"},
      {"060e2b34.0401010d.04010202.03010801", "high-throughput JPEG 2000 (HTJ2K)"},
      {"060e2b34.04010107.02090201.01000000", "AES-128 CBC"},
      {"060e2b34.04010107.02090202.01000000", "HMAC-SHA1"},
      {"060e2b34.04010107.02090201.7f000000", ""},
      {"060e2b34.01010107.02090201.01000000", ""},
  };
  for (const auto& [label, meaning] : labels) {
    const Bytes bytes = Hex(label);
    EXPECT_EQ(LabelMeaning(UL(std::span<const ui8_t, 16>(bytes.data(), 16))), meaning) << label;
  }
  EXPECT_EQ(LabelMeaning(UL()), "");
}

}  // namespace
