// SPDX-License-Identifier: BSD-3-Clause
#include "FindingCases.h"
#include "SampleSound.h"

#include "../support/EssenceMaker.h"

#include "frames/FrameExaminer.h"

namespace {

using namespace QUIRE::PCM;
using Assay::FileFigures;
using Assay::FindingList;
using Assay::SoundHeader;
using testsupport::LabelledSound;
using testsupport::Names;
using testsupport::NamesOf;
using testsupport::SoundHeaderOf;
using testsupport::TrackFileOf;
using Frame = std::vector<Assay::ui8_t>;

constexpr size_t Rows = 8;

/// A frame of small samples, some channels silent.
Frame FrameOf(Assay::ui32_t channels, const std::vector<size_t>& silent = {}) {
  Frame frame(Rows * channels * 3);
  for (size_t i = 0; i < frame.size() / 3; ++i)
    if (std::ranges::find(silent, i % channels + 1) == silent.end()) frame[3 * i] = 100;
  return frame;
}

void Set(Frame& frame, size_t channels, size_t channel, size_t row, int sample) {
  for (const size_t byte : {0U, 1U, 2U})
    frame[(row * channels + channel - 1) * 3 + byte] = static_cast<Assay::ui8_t>(sample >> (8 * byte));
}

struct Outcome {
  FindingList Findings;
  FileFigures Figures;
};

Outcome Examine(const Assay::TrackFile& file, const std::vector<Frame>& frames, bool is_whole = true) {
  Outcome outcome;
  const auto examiner = file.As<SoundHeader>() != nullptr ? NewSoundExaminer(file) : NewImmersiveExaminer(file);
  Assay::ui32_t number = 0;
  for (const Frame& frame : frames) examiner->Examine({number++, false, frame});
  examiner->Finish(outcome.Findings, outcome.Figures, is_whole);
  return outcome;
}

Names NamesIn(const SoundHeader& header, const std::vector<Frame>& frames) {
  return NamesOf(Examine(TrackFileOf(header), frames).Findings);
}

TEST(SoundExaminer, LevelsOfEveryChannelAreFigures) {
  Frame frame = FrameOf(8, {3});
  Set(frame, 8, 1, 4, -8'388'608);
  const Outcome outcome = Examine(TrackFileOf(LabelledSound()), {FrameOf(8, {3}), frame});
  ASSERT_EQ(outcome.Figures.Channels.size(), 8U);
  EXPECT_EQ(outcome.Figures.Channels[0].Label, "L");
  EXPECT_EQ(outcome.Figures.Channels[0].Peak, 0);
  EXPECT_EQ(outcome.Figures.Channels[7].Label, "VIN");
  EXPECT_NEAR(outcome.Figures.Channels[7].Peak, -98.474, 1e-3);
  EXPECT_TRUE(outcome.Figures.Channels[2].IsSilent());
  EXPECT_EQ(Examine(TrackFileOf(SoundHeaderOf(12, CF_CFG_1)), {FrameOf(12)}).Figures.Channels[8].Label, "");
}

TEST(SoundExaminer, ALabelledChannelThatIsSilentIsTold) {
  const FindingList findings = Examine(TrackFileOf(LabelledSound()), {FrameOf(8, {3, 7}), FrameOf(8, {7})}).Findings;
  ASSERT_EQ(NamesOf(findings), Names{"sound-silent"}) << "the third is heard in the second frame";
  EXPECT_EQ(findings[0].Place.Channel, 7U);
  EXPECT_EQ(findings[0].Expected, "HI");
  Frame faint = FrameOf(8, {7});
  Set(faint, 8, 7, 7, -1);
  EXPECT_EQ(NamesIn(LabelledSound(), {faint}), Names{});
}

TEST(SoundExaminer, OfAPartOfAFileNoSilenceIsTold) {
  Frame clipped = FrameOf(8, {7});
  for (const size_t row : {0U, 1U, 2U}) Set(clipped, 8, 2, row, 8'388'607);
  EXPECT_EQ(NamesOf(Examine(TrackFileOf(LabelledSound()), {clipped}, false).Findings), Names{"sound-clipping"});
}

TEST(SoundExaminer, AConfigurationPromisesSoundForTheHallAlone) {
  EXPECT_EQ(NamesIn(SoundHeaderOf(12, CF_CFG_1), {FrameOf(12, {7, 8, 9, 10, 11, 12})}), Names{});
  EXPECT_EQ(NamesIn(SoundHeaderOf(12, CF_CFG_1), {FrameOf(12, {4, 5, 12})}), (Names{"sound-silent", "sound-silent"}));
  EXPECT_EQ(NamesIn(SoundHeaderOf(6, CF_NONE), {FrameOf(6, {4, 5})}), Names{}) << "nothing is labelled";
}

TEST(SoundExaminer, ClippingIsToldByChannelAndPlace) {
  Frame frame = FrameOf(8);
  for (const size_t row : {0U, 1U, 2U, 4U, 5U}) Set(frame, 8, 2, row, 8'388'607);
  const FindingList findings = Examine(TrackFileOf(LabelledSound()), {FrameOf(8), frame, frame}).Findings;
  ASSERT_EQ(NamesOf(findings), Names{"sound-clipping"});
  EXPECT_EQ(findings[0].Place.Channel, 2U);
  EXPECT_EQ(findings[0].Place.EditUnit, 1U);
  EXPECT_EQ(findings[0].Place.EditRate, QUIRE::EditRate_24);
  EXPECT_EQ(findings[0].Found, "3 samples, the longest of 2 places");
  Set(frame, 8, 2, 2, 8'388'606);
  EXPECT_EQ(NamesIn(LabelledSound(), {frame}), Names{}) << "two in a row";
}

TEST(SoundExaminer, SignalsMayBeAtFullScale) {
  const SoundHeader sound = SoundHeaderOf(2, CF_CFG_6, "M(C),FSKSync");
  Frame frame = FrameOf(2);
  for (size_t row = 0; row < Rows; ++row) Set(frame, 2, 2, row, 8'388'607);
  EXPECT_EQ(NamesIn(sound, {frame}), Names{});
  for (size_t row = 0; row < Rows; ++row) Set(frame, 2, 1, row, 8'388'607);
  EXPECT_EQ(NamesIn(sound, {frame}), Names{"sound-clipping"});
}

TEST(SoundExaminer, AChannelWithoutLabelIsSilent) {
  const SoundHeader sound = SoundHeaderOf(8, CF_CFG_4, "51(L,R,C,LFE,Ls,Rs),HI");
  EXPECT_EQ(NamesIn(sound, {FrameOf(8, {8})}), Names{});
  const Outcome outcome = Examine(TrackFileOf(sound), {FrameOf(8)});
  ASSERT_EQ(NamesOf(outcome.Findings), Names{"sound-labels profile"});
  EXPECT_EQ(outcome.Findings[0].Place.Channel, 8U);
}

TEST(SoundExaminer, FilesThatNothingCanBeReadOfHaveNoLevels) {
  EXPECT_TRUE(Examine(TrackFileOf(LabelledSound()), {}).Figures.Channels.empty()) << "no frame, such as without keys";
  const Outcome outcome = Examine(TrackFileOf(SoundHeaderOf(0xffffffff, CF_CFG_1)), {Frame(100)});
  EXPECT_TRUE(outcome.Figures.Channels.empty());
  EXPECT_TRUE(outcome.Findings.empty());
  EXPECT_EQ(NewSoundExaminer(TrackFileOf(QUIRE::JP2K::PictureDescriptor())), nullptr);
}

TEST(ImmersiveExaminer, FramesHaveAPreambleAndAFrameAndNothingElse) {
  const Assay::TrackFile file = TrackFileOf(QUIRE::ATMOS::AtmosDescriptor());
  const Frame good = testsupport::MakeImmersiveFrame(1);
  EXPECT_EQ(NamesOf(Examine(file, {good, good}).Findings), Names{});
  Frame longer = good;
  longer.push_back(0);
  Frame shorter = good;
  shorter.pop_back();
  Frame other = good;
  other[0] = 0x02;
  Frame lengthy = good;
  lengthy[1] = 0xff;
  for (const Frame& broken : {longer, shorter, other, lengthy, Frame{}, Frame{1, 0, 0, 0, 0}, Frame{1, 0}})
    EXPECT_EQ(NamesOf(Examine(file, {good, broken}).Findings), Names{"file-damaged"}) << broken.size();
  const FindingList findings = Examine(file, {good, longer, shorter}).Findings;
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings[0].Place.EditUnit, 1U);
  EXPECT_EQ(findings[0].Found, "2 frames that are none");
}

}  // namespace
