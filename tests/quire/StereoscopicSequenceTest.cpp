// SPDX-License-Identifier: BSD-3-Clause
// Sequence numbers of encrypted stereoscopic files: what is exchanged, moved or taken out is found, for each way in.
#include "ReaderFixture.h"

#include <QUIRE/FrameDecryption.h>

#include <algorithm>

namespace {

using namespace testsupport;
using namespace QUIRE;
using Ferro::RESULT_OK;

const Bytes ContentKey = Hex("00112233 44556677 8899aabb ccddeeff");
using Numbers = std::vector<std::optional<ui64_t>>;

// Four edit units of elements that all have one size, so that they can change places.
MxfBuilder FourUnits() {
  MxfBuilder builder(MxfBuilder::JP2KS);
  builder.Frames = MakeFrames(8, 100, 0);
  builder.Key = ContentKey;
  return builder;
}

void Exchange(MxfBuilder& builder, Bytes& bytes, size_t one, size_t other) {
  const auto at = [&](size_t element) {
    return bytes.begin() + static_cast<std::ptrdiff_t>(builder.ElementAt[element]);
  };
  std::swap_ranges(at(one), at(one) + (at(1) - at(0)), at(other));
}

class StereoscopicSequence : public ::testing::Test {
 protected:
  StereoscopicSequence() {
    const std::span<const ui8_t, KeyLen> key(ContentKey.data(), KeyLen);
    EXPECT_EQ(m_Contexts.InitKey(key, LS_MXF_SMPTE), RESULT_OK);
    EXPECT_EQ(m_Pair.Left.Capacity(1000), RESULT_OK);
    EXPECT_EQ(m_Pair.Right.Capacity(1000), RESULT_OK);
    EXPECT_EQ(m_Eye.Capacity(1000), RESULT_OK);
  }

  void Open(const Bytes& bytes) {
    m_File.Write(bytes);
    ASSERT_EQ(m_Stereo.OpenRead(m_File.Name()), RESULT_OK);
    ASSERT_EQ(m_Flat.OpenRead(m_File.Name()), RESULT_OK);
    ASSERT_EQ(ReadTrackEncryption(m_File.Name(), m_Track), RESULT_OK);
  }
  void OpenWith(const Numbers& numbers) {
    MxfBuilder builder = FourUnits();
    builder.SequenceNumbers = numbers;
    Open(builder.Build());
  }

  // Whether a frame is sound: symbols of reading both eyes, of reading the left one, and of verifying each as it is stored.
  std::string Sound(ui32_t unit) {
    AESDecContext* decryption = &m_Contexts.Decryption;
    std::string symbols = m_Stereo.ReadFrame(unit, m_Pair, decryption, &m_Contexts.Integrity).Symbol();
    symbols += std::string(" ") + m_Flat.ReadFrame(unit, m_Eye, decryption, &m_Contexts.Integrity).Symbol();
    EXPECT_EQ(m_Stereo.ReadFrame(unit, m_Pair), RESULT_OK);
    symbols += std::string(" ") + Verified(m_Pair.Left, unit, Eye::Left).Symbol();
    return symbols + " " + Verified(m_Pair.Right, unit, Eye::Right).Symbol();
  }
  Result_t Verified(const JP2K::FrameBuffer& frame, ui32_t unit, Eye eye) {
    return VerifyFrame(m_Track, frame, m_Track.SequenceNumber(unit, eye), &m_Contexts);
  }

  TemporaryFile m_File;
  JP2K::MXFSReader m_Stereo;
  JP2K::MXFReader m_Flat;
  TrackEncryption m_Track;
  FrameContexts m_Contexts;
  JP2K::SFrameBuffer m_Pair;
  JP2K::FrameBuffer m_Eye;
};

TEST_F(StereoscopicSequence, EachEyeHasTheNumberOfItsPlace) {
  Open(FourUnits().Build());
  EXPECT_EQ(m_Track.Sequence, SequenceRule::OnePerTriplet);
  EXPECT_TRUE(m_Track.HasStandardSequence());
  EXPECT_EQ(m_Track.SequenceNumber(3, Eye::Left), 7U);
  EXPECT_EQ(m_Track.SequenceNumber(3, Eye::Right), 8U);
  for (const ui32_t unit : {0U, 3U, 1U, 2U}) EXPECT_EQ(Sound(unit), "OK OK OK OK") << unit;
}

TEST_F(StereoscopicSequence, ExchangedEyesAreFoundInAnyUnit) {
  for (const ui32_t unit : {0U, 1U, 3U}) {
    MxfBuilder builder = FourUnits();
    Bytes bytes = builder.Build();
    Exchange(builder, bytes, 2 * unit, 2 * unit + 1);
    Open(bytes);
    for (ui32_t i = 0; i < 4; ++i)
      EXPECT_EQ(Sound(i), i == unit ? "SEQUENCE SEQUENCE SEQUENCE SEQUENCE" : "OK OK OK OK") << unit << ' ' << i;
  }
}

TEST_F(StereoscopicSequence, EyesExchangedThroughoutAreNoRuleOfTheirOwn) {
  MxfBuilder builder = FourUnits();
  Bytes bytes = builder.Build();
  for (size_t unit = 0; unit < 4; ++unit) Exchange(builder, bytes, 2 * unit, 2 * unit + 1);
  Open(bytes);
  EXPECT_TRUE(m_Track.HasStandardSequence());
  for (ui32_t i = 0; i < 4; ++i) EXPECT_EQ(Sound(i), "SEQUENCE SEQUENCE SEQUENCE SEQUENCE") << i;
}

TEST_F(StereoscopicSequence, ReorderedUnitsAreFound) {
  MxfBuilder builder = FourUnits();
  Bytes bytes = builder.Build();
  Exchange(builder, bytes, 2, 4);
  Exchange(builder, bytes, 3, 5);
  Open(bytes);
  EXPECT_EQ(Sound(0), "OK OK OK OK");
  EXPECT_EQ(Sound(1), "SEQUENCE SEQUENCE SEQUENCE SEQUENCE");
  EXPECT_EQ(Sound(2), "SEQUENCE SEQUENCE SEQUENCE SEQUENCE");
  EXPECT_EQ(Sound(3), "OK OK OK OK");
}

TEST_F(StereoscopicSequence, OneEyeOfAnotherUnitIsFound) {
  MxfBuilder builder = FourUnits();
  Bytes bytes = builder.Build();
  Exchange(builder, bytes, 3, 5);  // the right eyes of units 1 and 2
  Open(bytes);
  LogCapture log;
  EXPECT_EQ(Sound(1), "SEQUENCE OK OK SEQUENCE");
  EXPECT_NE(log.Text().find("element of another place in the sequence at offset "), std::string::npos) << log.Text();
  EXPECT_EQ(m_Stereo.ReadFrame(1, m_Pair, &m_Contexts.Decryption, &m_Contexts.Integrity), RESULT_SEQUENCE);
  EXPECT_EQ(m_Pair.Left.FrameNumber(), NoFrame);
  EXPECT_EQ(m_Pair.Right.FrameNumber(), NoFrame);
}

TEST_F(StereoscopicSequence, AGapIsFound) {
  OpenWith({1, 2, 3, 4, 7, 8, 9, 10});
  EXPECT_EQ(Sound(1), "OK OK OK OK");
  EXPECT_EQ(Sound(2), "SEQUENCE SEQUENCE SEQUENCE SEQUENCE");
}

TEST_F(StereoscopicSequence, ABeginningTakenOffIsFound) {
  OpenWith({3, 4, 5, 6, 7, 8, 9, 10});
  EXPECT_EQ(Sound(0), "SEQUENCE SEQUENCE SEQUENCE SEQUENCE");
  OpenWith({2, 3, 4, 5, 6, 7, 8, 9});
  EXPECT_EQ(Sound(0), "SEQUENCE SEQUENCE SEQUENCE SEQUENCE");
}

TEST_F(StereoscopicSequence, ARuleKeptThroughoutIsReportedAndVerified) {
  const struct {
    Numbers Written;
    SequenceRule Rule;
  } cases[] = {
      {{1, 1, 2, 2, 3, 3, 4, 4}, SequenceRule::OnePerEditUnit},
      {{0, 1, 2, 3, 4, 5, 6, 7}, SequenceRule::OnePerTripletFromZero},
      {{0, 0, 1, 1, 2, 2, 3, 3}, SequenceRule::OnePerEditUnitFromZero},
      {Numbers(8, 1), SequenceRule::AlwaysOne},
      {Numbers(8, 0), SequenceRule::AlwaysZero},
      {Numbers(8, std::nullopt), SequenceRule::NoNumbers},
  };
  for (const auto& [written, rule] : cases) {
    OpenWith(written);
    EXPECT_EQ(m_Track.Sequence, rule);
    EXPECT_FALSE(m_Track.HasStandardSequence());
    LogCapture log;
    for (ui32_t i = 0; i < 4; ++i) EXPECT_EQ(Sound(i), "OK OK OK OK") << int(rule) << ' ' << i;
    EXPECT_EQ(log.Count(Ferro::LogLevel::Warning), 2U) << "once for each reader: " << log.Text();
    EXPECT_NE(log.Text().find("by another rule than 1, 2, 3 and so on"), std::string::npos);
  }
}

TEST_F(StereoscopicSequence, AUnitThatBreaksAnotherRuleIsAnError) {
  OpenWith({1, 1, 2, 2, 2, 2, 4, 4});
  EXPECT_EQ(Sound(1), "OK OK OK OK");
  EXPECT_EQ(Sound(2), "SEQUENCE SEQUENCE SEQUENCE SEQUENCE");
  OpenWith({std::nullopt, std::nullopt, std::nullopt, 4, 5, std::nullopt, std::nullopt, std::nullopt});
  EXPECT_EQ(Sound(1), "SEQUENCE OK OK SEQUENCE");
  EXPECT_EQ(Sound(2), "SEQUENCE SEQUENCE SEQUENCE OK");
}

TEST_F(StereoscopicSequence, AnotherRulesFramesAreStillHeldAgainstTheirCode) {
  MxfBuilder builder = FourUnits();
  builder.SequenceNumbers = {1, 1, 2, 2, 3, 3, 4, 4};
  Bytes bytes = builder.Build();
  bytes[builder.ElementAt[2] + 88 + 40] ^= 1;
  Open(bytes);
  EXPECT_EQ(Sound(1), "HMACFAIL HMACFAIL HMACFAIL OK");
}

TEST_F(StereoscopicSequence, AMissingEyeIsFound) {
  // The left eye of unit 1 becomes fill of its size.
  MxfBuilder builder = FourUnits();
  Bytes bytes = builder.Build();
  const size_t size = builder.ElementAt[3] - builder.ElementAt[2];
  Put(bytes, builder.ElementAt[2], Hex("060e2b34.01010102.03010210.01000000") + Length4(size - 20));
  Open(bytes);
  LogCapture log;
  EXPECT_EQ(m_Stereo.ReadFrame(1, m_Pair, &m_Contexts.Decryption, &m_Contexts.Integrity), RESULT_SEQUENCE);
  EXPECT_NE(log.Text().find("one eye is missing in edit unit 1"), std::string::npos) << log.Text();
  EXPECT_EQ(m_Flat.ReadFrame(1, m_Eye, &m_Contexts.Decryption, &m_Contexts.Integrity), RESULT_SEQUENCE);
  EXPECT_EQ(m_Stereo.ReadFrame(1, m_Pair, &m_Contexts.Decryption), RESULT_OK);  // not asked to verify
}

TEST_F(StereoscopicSequence, OfAFileWithoutCodesNothingIsLookedAt) {
  MxfBuilder builder = FourUnits();
  builder.UseHMAC = false;
  Open(builder.Build());
  EXPECT_TRUE(m_Track.HasStandardSequence());
  EXPECT_EQ(m_Stereo.ReadFrame(1, m_Pair, &m_Contexts.Decryption, &m_Contexts.Integrity), RESULT_OK);
}

}  // namespace
