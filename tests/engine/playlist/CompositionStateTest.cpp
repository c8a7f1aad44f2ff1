// SPDX-License-Identifier: BSD-3-Clause
// What loading a composition leaves in the playlist beside its reels.
#include "../../support/AssertionText.h"
#include "CompositionLoadingFixture.h"

#include <Cairn/Result.h>
#include <QUIRE/Result.h>

namespace StrataTest {
namespace {

using testsupport::Asserts;

class CompositionState : public CompositionLoading {
 protected:
  void LoadFirst() {
    AddReel();
    ExpectSuccess();
    First = CPL.ID;
    CPL = testsupport::EmptyComposition("Second");
  }
  /// Sound of that many channels in a reel of its own.
  void AddSound(QUIRE::ui32_t channels, Rational sampling_rate = QUIRE::SampleRate_48k) {
    AddReel().MainSound = AssetOf<SoundAsset>(Files::Package().Track(TrackKind::Sound, Spec([&](auto& s) {
                                                                       s.ChannelCount = channels;
                                                                       s.SamplingRate = sampling_rate;
                                                                     })));
  }
  [[nodiscard]] std::vector<Ferro::UUID> LastAssets() const {
    std::vector<Ferro::UUID> ids;
    for (const AssetInfo& info : State.LastCPLAssets) ids.push_back(info.ID);
    return ids;
  }
  Ferro::UUID First;
};

// The last composition and its assets

TEST_F(CompositionState, CompositionThatFailsIsTheLastOne) {
  LoadFirst();
  EXPECT_EQ(State.LastCPL, First);
  AddReel().MainPicture.Digest = Files::Of(TrackKind::Sound).Digest;
  EXPECT_EQ(Load(), Strata::RESULT_SX_DIGEST_FAIL);
  EXPECT_EQ(State.LastCPL, CPL.ID);
}

TEST_F(CompositionState, CompositionWhoseAssetsAreUnknownIsTheLastOne) {
  LoadFirst();
  AddReel();
  Unknown.push_back(Picture().ID);
  EXPECT_EQ(Load(), Cairn::RESULT_CN_NOT_IN_STORE);
  EXPECT_EQ(State.LastCPL, CPL.ID);
}

TEST_F(CompositionState, AssetsOfTheCompositionBeforeAreForgotten) {
  LoadFirst();
  AddReel(Files::Of(TrackKind::MPEG2));
  ExpectSuccess();
  EXPECT_EQ(LastAssets(), std::vector<Ferro::UUID>({Files::Of(TrackKind::MPEG2).ID}));
}

TEST_F(CompositionState, AssetsThatAreKnownAreListedThoughOthersAreNot) {
  LoadFirst();
  AddReel(Files::Of(TrackKind::MPEG2)).MainSound = AssetOf<SoundAsset>(Files::Of(TrackKind::Sound));
  Unknown.push_back(Files::Of(TrackKind::Sound).ID);
  EXPECT_EQ(Load(), Cairn::RESULT_CN_NOT_IN_STORE);
  EXPECT_EQ(LastAssets(), std::vector<Ferro::UUID>({Files::Of(TrackKind::MPEG2).ID}));
}

TEST_F(CompositionState, AssetsAreForgottenThoughTheLookupFails) {
  LoadFirst();
  AddReel();
  Lookup.Answer = Ferro::RESULT_READFAIL;
  EXPECT_EQ(Load(), Ferro::RESULT_READFAIL);
  EXPECT_TRUE(State.LastCPLAssets.empty());
}

// What several reels give

TEST_F(CompositionState, SilenceIsLikeTheLastSoundOfTheComposition) {
  AddReel();
  AddSound(6);
  AddSound(8, QUIRE::SampleRate_96k);
  ExpectSuccess("D Created SilenceTimelineElement: show-reel=0, cpl-reel=0, duration=5, channels=8\n");
  EXPECT_EQ(State.Timeline[0].MainSound->ChannelCount(), 8u);
  EXPECT_EQ(State.Timeline[0].MainSound->SampleRate(), 96000u);
  EXPECT_EQ(State.Timeline[0].MainSound->FrameBuffer().Size(), 3u * 8u * 4000u);
}

TEST_F(CompositionState, SoundFormatIsTheLastReels) {
  AddSound(8);
  AddSound(6);
  ExpectSuccess();
  EXPECT_EQ(State.Compositions[CPL.ID].SoundFormat, 6u);
}

TEST_F(CompositionState, ImageSizeIsTheLastReels) {
  AddReel();
  AddReel(Files::Package().Track(TrackKind::Picture, Spec([](auto& s) {
                                   s.Width = 128;
                                   s.Height = 72;
                                 })));
  ExpectSuccess();
  EXPECT_EQ(State.Compositions[CPL.ID].ImageWidth, 128u);
  EXPECT_EQ(State.Compositions[CPL.ID].ImageHeight, 72u);
}

TEST_F(CompositionState, PictureTypeIsTheLastCompositions) {
  LoadFirst();
  EXPECT_EQ(State.PictureType, Cairn::FT_QUIRE_JP2K_J2C);
  AddReel(Files::Of(TrackKind::MPEG2));
  ExpectSuccess();
  EXPECT_EQ(State.PictureType, Cairn::FT_QUIRE_MPEG2_VES);
}

TEST_F(CompositionState, PictureTypeOfAPromotedPictureIsStereoscopic) {
  CPL.StereoscopicImage = true;
  CPL.DCPFormat = Cairn::DFT_Interop;
  AddReel();
  ExpectSuccess();
  EXPECT_EQ(State.PictureType, Cairn::FT_QUIRE_JP2K_J2C_S);
}

// A composition without reels

TEST_F(CompositionState, CompositionWithoutReelsIsRecorded) {
  ExpectSuccess();
  EXPECT_TRUE(State.Timeline.empty());
  EXPECT_EQ(State.Compositions[CPL.ID].TotalReels, 0u);
}

TEST_F(CompositionState, CompositionWithoutReelsOfAnotherCodingMarksTheTimelinesFirstReel) {
  AddReel();
  LoadFirst();
  EXPECT_EQ(Load(), QUIRE::RESULT_FORMAT);
  EXPECT_EQ(Log, Loading() + "E CPL initialization failed, some assets not found.\n");
  EXPECT_TRUE(State.Timeline[0].m_StartDistinctCoding);
  EXPECT_FALSE(State.Timeline[1].m_StartDistinctCoding);
  EXPECT_EQ(State.Compositions.count(CPL.ID), 1u);
}

TEST_F(CompositionState, CompositionWithoutReelsOfTheSameCodingMarksNone) {
  LoadFirst();
  Strata::CompositionInfo& before = State.Compositions[First];
  before.EditRate = Rational();
  before.ImageFormat = Cairn::FT_UNKNOWN;
  EXPECT_EQ(Load(), QUIRE::RESULT_FORMAT);
  EXPECT_EQ(Log, Loading() + "E CPL initialization failed, some assets not found.\n");
  EXPECT_FALSE(State.Timeline[0].m_StartDistinctCoding);
  EXPECT_EQ(State.Compositions.count(CPL.ID), 1u);
}

TEST_F(CompositionState, CompositionAfterOneWithoutARecordMarksNone) {
  LoadFirst();
  State.Compositions.clear();
  AddReel(Files::Of(TrackKind::MPEG2));
  ExpectSuccess();
  EXPECT_FALSE(State.Timeline[1].m_StartDistinctCoding);
}

// Reels and their count

using CompositionStateDeathTest = CompositionState;

TEST_F(CompositionStateDeathTest, ReelCountOtherThanTheTimelinesAsserts) {
  AddReel();
  State.ReelCount = 1;
  EXPECT_DEATH(static_cast<void>(Load()), Asserts("m_ReelCount == m_Timeline.size()"));
}

}  // namespace
}  // namespace StrataTest
