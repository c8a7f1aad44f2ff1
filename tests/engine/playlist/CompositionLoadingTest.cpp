// SPDX-License-Identifier: BSD-3-Clause
#include "Playlist/CompositionLoading.h"

#include "CompositionLoadingFixture.h"

#include <Cairn/Result.h>
#include <QUIRE/Result.h>

#include <algorithm>

namespace StrataTest {
namespace {

// Picture

TEST_F(CompositionLoading, ReelsAreNumberedAndPlacedOneAfterAnother) {
  AddReel(Picture(), 5);
  AddReel(Picture(), 3).MainPicture.EntryPoint = 2;
  ExpectSuccess();
  ASSERT_EQ(State.Timeline.size(), 2u);
  const Strata::TimelineReel& second = State.Timeline[1];
  EXPECT_TRUE(second.m_ID.HasValue());
  EXPECT_NE(second.m_ID, State.Timeline[0].m_ID);
  EXPECT_EQ(second.m_CPL, CPL.ID);
  EXPECT_EQ(second.m_CPLReelID, CPL.ReelList.back().ID);
  EXPECT_EQ(second.m_CPLReelNumber, 1u);
  EXPECT_EQ(second.m_PlaylistReelNumber, 1u);
  EXPECT_EQ(second.m_Duration, 3u);
  EXPECT_EQ(second.m_Offset, 5u);
  EXPECT_EQ(second.m_EditRate, Rational(24, 1));
  EXPECT_EQ(second.MainPicture->EntryPoint(), 2u);
  EXPECT_EQ(State.ShowPosition.Duration, 8u);
  EXPECT_EQ(State.LastCPL, CPL.ID);
  EXPECT_EQ(State.LastCPLAssets.size(), 2u);
  const Strata::CompositionInfo& info = State.Compositions[CPL.ID];
  EXPECT_EQ(info.ID, CPL.ID);
  EXPECT_EQ(info.Title, "Title");
  EXPECT_EQ(info.CurrentReel, 1u);
  EXPECT_EQ(info.TotalReels, 2u);
  EXPECT_EQ(info.Duration, 8u);
  EXPECT_EQ(info.EditRate, Rational(24, 1));
  EXPECT_EQ(info.ImageFormat, Cairn::FT_QUIRE_JP2K_J2C);
  EXPECT_EQ(info.ImageWidth, 64u);
  EXPECT_EQ(info.ImageHeight, 36u);
  EXPECT_EQ(info.SoundFormat, 0u);
}

TEST_F(CompositionLoading, ReelWithoutPictureIsRefusedEvenIfItHasSound) {
  Reel& reel = AddReel();
  reel.MainPicture = Cairn::PictureAsset();
  reel.MainSound = AssetOf<SoundAsset>(Files::Of(TrackKind::Sound));
  ExpectFailure(QUIRE::RESULT_FORMAT, "E No picture element in" + In(1) + "\n");
  EXPECT_TRUE(State.Timeline[0].MainSound.empty());
}

TEST_F(CompositionLoading, ReelBeforeTheFailingOneStays) {
  AddReel();
  AddReel().MainPicture.AssetID = Ferro::UUID();
  ExpectFailure(QUIRE::RESULT_FORMAT, "E No picture element in" + In(2) + "\n", 2);
  EXPECT_FALSE(State.Timeline[0].MainPicture.empty());
  EXPECT_TRUE(State.Timeline[1].MainPicture.empty());
  EXPECT_EQ(State.Timeline[1].m_Duration, 5u);
  EXPECT_EQ(State.ShowPosition.Duration, 10u);
}

TEST_F(CompositionLoading, PictureRecordOfAnotherIDIsMissing) {
  AddReel();
  AssetInfo other = Picture();
  other.ID = Ferro::UUID::Random();
  Lookup.Table[Picture().ID] = other;
  ExpectFailure(Cairn::RESULT_CN_NOT_IN_STORE, "E Picture asset missing\n");
}

TEST_F(CompositionLoading, UnregisteredAssetsAreRefusedBeforeAnyReel) {
  AddReel().MainSound = AssetOf<SoundAsset>(Files::Of(TrackKind::Sound));
  Unknown.push_back(Files::Of(TrackKind::Sound).ID);
  ExpectFailure(Cairn::RESULT_CN_NOT_IN_STORE, "E CPL " + ID() + " references unregistered assets\n", 0);
}

TEST_F(CompositionLoading, FailureOfTheLookupIsReturned) {
  AddReel();
  Lookup.Answer = Ferro::RESULT_READFAIL;
  ExpectFailure(Ferro::RESULT_READFAIL, "", 0);
}

TEST_F(CompositionLoading, PictureEditRateOfALaterReelMustBeTheFirsts) {
  AddReel();
  AddReel().MainPicture.EditRate = Rational(25, 1);
  ExpectFailure(QUIRE::RESULT_FORMAT, "E MainPicture EditRate mismatch in" + In(2) + "\n", 2);
}

TEST_F(CompositionLoading, PictureOfUnknownFormatIsRefused) {
  AddReel();
  AssetInfo unknown = Picture();
  unknown.FileType = Cairn::FT_UNKNOWN;
  Replaced.push_back(unknown);
  ExpectFailure(QUIRE::RESULT_FORMAT,
                "E MainPicture image format not detected in" + In(1) + ", asset " + unknown.ID.EncodeString() + "\n");
}

TEST_F(CompositionLoading, PictureDigestMismatchIsRefused) {
  AddReel().MainPicture.Digest = Files::Of(TrackKind::Sound).Digest;
  ExpectFailure(Strata::RESULT_SX_DIGEST_FAIL,
                "E MainPicture digest does not match" + In(1) + ", asset " + Picture().ID.EncodeString() + "\n");
}

TEST_F(CompositionLoading, DigestThatTheStoreDoesNotKnowIsAMismatch) {
  AddReel();
  AssetInfo undigested = Picture();
  undigested.Digest = Ferro::SHA1();
  Replaced.push_back(undigested);
  ExpectFailure(Strata::RESULT_SX_DIGEST_FAIL,
                "E MainPicture digest does not match" + In(1) + ", asset " + Picture().ID.EncodeString() + "\n");
}

TEST_F(CompositionLoading, SoundFileAsPictureIsRefused) {
  AddReel(Files::Of(TrackKind::Sound));
  ExpectFailure(QUIRE::RESULT_FORMAT, "E Unknown type for MainPicture asset (5) in" + In(1) + "\n");
}

TEST_F(CompositionLoading, PictureFormatOfALaterReelMustBeTheFirsts) {
  AddReel();
  AddReel(Files::Of(TrackKind::MPEG2));
  ExpectFailure(QUIRE::RESULT_FORMAT, "W MainPicture essence format mismatch in" + In(2) + "\n", 2);
}

TEST_F(CompositionLoading, MPEG2PictureLoads) {
  AddReel(Files::Of(TrackKind::MPEG2));
  CPL.DCPFormat = Cairn::DFT_Interop;
  ExpectSuccess();
  EXPECT_EQ(State.Compositions[CPL.ID].ImageFormat, Cairn::FT_QUIRE_MPEG2_VES);
  EXPECT_EQ(State.Timeline[0].MainPicture->ImageWidth(), 64u);
  EXPECT_FALSE(State.HasStereoImage);
}

TEST_F(CompositionLoading, EncryptedPictureHasItsKeyID) {
  for (const TrackKind kind : {TrackKind::Picture, TrackKind::StereoscopicPicture, TrackKind::MPEG2}) {
    CPL = testsupport::EmptyComposition("Encrypted");
    AddReel(Files::Package().Track(kind, Spec([](auto& s) { s.Key = testsupport::TrackFileKey(); })));
    ASSERT_EQ(Load(), Ferro::RESULT_OK);
    EXPECT_EQ(State.Timeline.back().MainPicture->KeyID(), testsupport::TrackFileKey().KeyID);
  }
}

TEST_F(CompositionLoading, PictureThatCannotBeOpenedStaysInstalled) {
  AddReel();
  AssetInfo gone = Picture();
  gone.RealFilename += ".gone";
  Replaced.push_back(gone);
  EXPECT_EQ(Load(), Ferro::RESULT_NOT_FOUND);
  ASSERT_EQ(State.Timeline.size(), 1u);
  EXPECT_FALSE(State.Timeline[0].MainPicture.empty());
  EXPECT_TRUE(State.Compositions.empty());
}

TEST_F(CompositionLoading, PictureFileOfAnotherEditRateIsRefused) {
  AddReel().MainPicture.EditRate = Rational(25, 1);
  ExpectFailure(QUIRE::RESULT_FORMAT, "E MainPicture EditRate does not match track file in" + In(1) + "\n");
  EXPECT_FALSE(State.Timeline[0].MainPicture.empty());
}

TEST_F(CompositionLoading, PictureShorterThanTheReelIsRefused) {
  AddReel(Picture(), 4).MainPicture.EntryPoint = 2;
  ExpectFailure(QUIRE::RESULT_FORMAT,
                "E MainPicture length (5) is less than CPL EntryPoint + Duration (2 + 4) in" + In(1) + "\n");
}

// Stereoscopic pictures

TEST_F(CompositionLoading, StereoscopicPictureLoadsInBothFlavours) {
  for (const auto format : {Cairn::DFT_DCI_SMPTE, Cairn::DFT_Interop}) {
    CPL = testsupport::EmptyComposition("Stereoscopic");
    CPL.StereoscopicImage = true;
    CPL.DCPFormat = format;
    AddReel(Files::Of(TrackKind::StereoscopicPicture));
    ExpectSuccess();
    EXPECT_TRUE(State.HasStereoImage);
    EXPECT_TRUE(State.Timeline.back().MainPicture->HasStereoImage());
  }
}

TEST_F(CompositionLoading, StereoscopicFileOfAFlatCompositionLeavesTheFlag) {
  AddReel(Files::Of(TrackKind::StereoscopicPicture));
  ExpectSuccess();
  EXPECT_FALSE(State.HasStereoImage);
  EXPECT_EQ(State.Compositions[CPL.ID].ImageFormat, Cairn::FT_QUIRE_JP2K_J2C_S);
}

TEST_F(CompositionLoading, PlainPictureOfAStereoscopicSMPTECompositionIsPromotedWithAWarning) {
  CPL.StereoscopicImage = true;
  AddReel();
  ExpectSuccess("W Promoting SMPTE track file to stereoscopic image in" + In(1) + ", mastering is suspect!\n");
  EXPECT_EQ(State.Compositions[CPL.ID].ImageFormat, Cairn::FT_QUIRE_JP2K_J2C_S);
  EXPECT_TRUE(State.HasStereoImage);
}

TEST_F(CompositionLoading, PlainPictureOfAStereoscopicInteropCompositionIsTakenAsStereoscopic) {
  CPL.StereoscopicImage = true;
  CPL.DCPFormat = Cairn::DFT_Interop;
  AddReel();
  ExpectSuccess();
  EXPECT_TRUE(State.HasStereoImage);
}

TEST_F(CompositionLoading, MPEG2InAStereoscopicSMPTECompositionIsPromotedToo) {
  CPL.StereoscopicImage = true;
  AddReel(Files::Of(TrackKind::MPEG2));
  const auto result = Load();
  EXPECT_EQ(result, QUIRE::RESULT_FORMAT);  // of the reader of stereoscopic pictures
  EXPECT_EQ(Log, Loading() + "W Promoting SMPTE track file to stereoscopic image in" + In(1) +
                     ", mastering is suspect!\nE " + Files::Of(TrackKind::MPEG2).RealFilename +
                     ": holds MPEG-2 video, not stereoscopic JPEG 2000 pictures\n");
  EXPECT_TRUE(State.HasStereoImage);
}

TEST_F(CompositionLoading, MPEG2InAStereoscopicInteropCompositionIsRefused) {
  CPL.StereoscopicImage = true;
  CPL.DCPFormat = Cairn::DFT_Interop;
  AddReel(Files::Of(TrackKind::MPEG2));
  ExpectFailure(QUIRE::RESULT_FORMAT, "E Stereoscopic image not supported for non-JPEG2000 essence in" + In(1) + "\n");
  EXPECT_FALSE(State.HasStereoImage);
}

TEST_F(CompositionLoading, SoundFileAsPictureOfAStereoscopicInteropCompositionIsRefused) {
  CPL.StereoscopicImage = true;
  CPL.DCPFormat = Cairn::DFT_Interop;
  AddReel(Files::Of(TrackKind::Sound));
  ExpectFailure(QUIRE::RESULT_FORMAT, "E Stereoscopic image not supported for non-JPEG2000 essence in" + In(1) + "\n");
  EXPECT_FALSE(State.HasStereoImage);
}

TEST_F(CompositionLoading, PlainPictureOfAStereoscopicCompositionOfNoFlavourIsRefused) {
  CPL.StereoscopicImage = true;
  CPL.DCPFormat = Cairn::DFT_NONE;
  AddReel();
  ExpectFailure(QUIRE::RESULT_FORMAT, "E Stereoscopic image not supported for non-JPEG2000 essence in" + In(1) + "\n");
  EXPECT_FALSE(State.HasStereoImage);
  EXPECT_TRUE(State.Timeline[0].MainPicture.empty());
}

// Sound

TEST_F(CompositionLoading, SoundAt96kHzLoads) {
  AddReel().MainSound = AssetOf<SoundAsset>(
      Files::Package().Track(TrackKind::Sound, Spec([](auto& s) { s.SamplingRate = QUIRE::SampleRate_96k; })));
  ExpectSuccess();
  EXPECT_EQ(State.Timeline[0].MainSound->SampleRate(), 96000u);
  EXPECT_EQ(State.Compositions[CPL.ID].SoundFormat, 6u);
}

TEST_F(CompositionLoading, SoundAt44100HzIsRefused) {
  AddReel().MainSound = AssetOf<SoundAsset>(
      Files::Package().Track(TrackKind::Sound, Spec([](auto& s) { s.SamplingRate = Rational(44100, 1); })));
  ExpectFailure(QUIRE::RESULT_FORMAT, "E MainSound sample rate is not 48kHz or 96kHz: 44100/1\n");
  EXPECT_FALSE(State.Timeline[0].MainSound.empty());
}

TEST_F(CompositionLoading, SoundOf16BitsIsRefused) {
  AddReel().MainSound =
      AssetOf<SoundAsset>(Files::Package().Track(TrackKind::Sound, Spec([](auto& s) { s.QuantizationBits = 16; })));
  ExpectFailure(QUIRE::RESULT_FORMAT, "E MainSound sample word size is not 24: 16\n");
}

TEST_F(CompositionLoading, SoundShorterThanTheReelIsRefused) {
  AddReel().MainSound = AssetOf<SoundAsset>(Files::Of(TrackKind::Sound), 6);
  ExpectFailure(QUIRE::RESULT_FORMAT,
                "E MainSound asset length (5) less than EntryPoint + Duration (0 + 6) in" + In(1) + "\n");
}

TEST_F(CompositionLoading, ReelWithoutSoundBetweenReelsWithSoundIsFilledWithSilence) {
  const auto sound = AssetOf<SoundAsset>(Files::Of(TrackKind::Sound));
  AddReel().MainSound = sound;
  AddReel(Picture(), 3);
  AddReel().MainSound = sound;
  ExpectSuccess("D Created SilenceTimelineElement: show-reel=1, cpl-reel=1, duration=3, channels=6\n");
  const Strata::ITimelineTrack& silence = *State.Timeline[1].MainSound;
  EXPECT_EQ(silence.AssetID().EncodeString(), "7c4616f2-48a6-58b3-9d2a-e7547301b6f8");
  EXPECT_EQ(silence.Duration(), 3u);
  EXPECT_EQ(silence.EntryPoint(), 0u);
  EXPECT_EQ(silence.EditRate(), Rational(24, 1));
  EXPECT_EQ(silence.SampleRate(), 48000u);
  ASSERT_EQ(silence.FrameBuffer().Size(), 3u * 6u * 2000u);
  const auto* bytes = silence.FrameBuffer().RoData();
  EXPECT_TRUE(std::all_of(bytes, bytes + silence.FrameBuffer().Size(), [](auto byte) { return byte == 0; }));
}

TEST_F(CompositionLoading, SilentFrameHasRoomForTheLongestOfARateThatDoesNotDivide) {
  const Rational rate(30000, 1001);
  const auto at_rate = Spec([&rate](auto& s) { s.EditRate = rate; });
  const AssetInfo picture = Files::Package().Track(TrackKind::Picture, at_rate);
  AddReel(picture).MainSound = AssetOf<SoundAsset>(Files::Package().Track(TrackKind::Sound, at_rate));
  AddReel(picture);
  for (Reel& reel : CPL.ReelList) reel.MainPicture.EditRate = reel.MainSound.EditRate = rate;
  ExpectSuccess("D Created SilenceTimelineElement: show-reel=1, cpl-reel=1, duration=5, channels=6\n");
  EXPECT_EQ(State.Timeline[1].MainSound->FrameBuffer().Size(), 3u * 6u * 1602u);
}

TEST_F(CompositionLoading, CompositionWithoutAnySoundGetsNoSilence) {
  AddReel();
  AddReel();
  ExpectSuccess();
  EXPECT_TRUE(State.Timeline[0].MainSound.empty());
  EXPECT_TRUE(State.Timeline[1].MainSound.empty());
}

TEST_F(CompositionLoading, SilenceFillsOnlyReelsOfItsOwnComposition) {
  AddReel();
  ExpectSuccess();
  CPL = testsupport::EmptyComposition("Second");
  AddReel().MainSound = AssetOf<SoundAsset>(Files::Of(TrackKind::Sound));
  AddReel(Picture(), 2);
  ExpectSuccess("D Created SilenceTimelineElement: show-reel=2, cpl-reel=1, duration=2, channels=6\n");
  EXPECT_TRUE(State.Timeline[0].MainSound.empty());
}

// Text

TEST_F(CompositionLoading, TextIsLabelledByPlaceAndPurpose) {
  auto subtitle = AssetOf<TimedTextAsset>(Files::Of(TrackKind::Text));
  auto caption = subtitle;
  caption.Purpose = Cairn::TT_CAPTION;
  Reel& first = AddReel();
  first.MainSubtitle = subtitle;
  first.OffScreenText = {subtitle, caption};
  AddReel().MainSubtitle = caption;
  ExpectSuccess();
  EXPECT_EQ(State.Timeline[0].OnScreenText->AssetName(), "MainSubtitle");
  EXPECT_EQ(State.Timeline[1].OnScreenText->AssetName(), "MainCaption");
  EXPECT_EQ(State.Timeline[0].OffScreenText[0]->AssetName(), "ClosedSubtitle");
  EXPECT_EQ(State.Timeline[0].OffScreenText[1]->AssetName(), "ClosedCaption");
  EXPECT_EQ(State.Timeline[0].OffScreenText[1]->ChannelID(), 1u);
}

TEST_F(CompositionLoading, SixOffScreenTextsLoad) {
  AddReel().OffScreenText.assign(6, AssetOf<TimedTextAsset>(Files::Of(TrackKind::Text)));
  ExpectSuccess();
  EXPECT_EQ(State.Timeline[0].OffScreenText.size(), 6u);
}

TEST_F(CompositionLoading, SeventhOffScreenTextIsRefused) {
  AddReel().OffScreenText.assign(7, AssetOf<TimedTextAsset>(Files::Of(TrackKind::Text)));
  ExpectFailure(QUIRE::RESULT_FORMAT, "E More than six (6) off-screen text tracks present.\n");
  EXPECT_EQ(State.Timeline[0].OffScreenText.size(), 6u);
}

TEST_F(CompositionLoading, TextShorterThanTheReelOnlyWarns) {
  auto text = AssetOf<TimedTextAsset>(Files::Of(TrackKind::Text), 4);
  text.EntryPoint = 2;
  Reel& reel = AddReel();
  reel.MainSubtitle = text;
  reel.OffScreenText.push_back(text);
  ExpectSuccess("W MainSubtitle asset length (5) less than EntryPoint + Duration (2 + 4) in" + In(1) + "\n" +
                "W ClosedSubtitle asset length (5) less than EntryPoint + Duration (2 + 4) in" + In(1) + "\n");
}

TEST_F(CompositionLoading, TextFileOfADamagedIndexPackIsRefused) {
  const AssetInfo text = Files::Package().Track(TrackKind::Text, Spec([](auto& s) { s.ImageSizes = {100, 100}; }));
  testsupport::CutIndexPack(text.RealFilename, 3);
  AddReel().MainSubtitle = AssetOf<TimedTextAsset>(text);
  ExpectFailure(QUIRE::RESULT_FORMAT,
                "E " + text.RealFilename + ": too few partitions in the index pack for 2 resources\n");
}

TEST_F(CompositionLoading, InteropTextHasNoEditRateToCompare) {
  CPL.DCPFormat = Cairn::DFT_Interop;
  Reel& reel = AddReel();
  reel.MainSubtitle = AssetOf<TimedTextAsset>(Files::Package().InteropText());
  reel.OffScreenText.push_back(reel.MainSubtitle);
  ExpectSuccess();
  EXPECT_EQ(State.Timeline[0].OnScreenText->TextEssenceFormat(), Cairn::DFT_Interop);
}

TEST_F(CompositionLoading, InteropTextShorterThanTheReelOnlyWarnsToo) {
  CPL.DCPFormat = Cairn::DFT_Interop;
  auto text = AssetOf<TimedTextAsset>(Files::Package().InteropText(), 4);
  text.EntryPoint = 2;
  Reel& reel = AddReel();
  reel.MainSubtitle = text;
  reel.OffScreenText.push_back(text);
  ExpectSuccess("W MainSubtitle asset length (5) less than EntryPoint + Duration (2 + 4) in" + In(1) + "\n" +
                "W ClosedSubtitle asset length (5) less than EntryPoint + Duration (2 + 4) in" + In(1) + "\n");
}

// Auxiliary data

TEST_F(CompositionLoading, DataAndImmersiveAudioShareAReel) {
  AddReel().AuxData = {AssetOf<AuxDataAsset>(Files::Of(TrackKind::Data)),
                       AssetOf<AuxDataAsset>(Files::Of(TrackKind::Atmos))};
  ExpectSuccess();
  ASSERT_EQ(State.Timeline[0].AuxData.size(), 2u);
  EXPECT_EQ(State.Timeline[0].AuxData[1]->ChannelID(), 1u);
}

TEST_F(CompositionLoading, AuxDataShorterThanTheReelIsRefused) {
  AddReel().AuxData.push_back(AssetOf<AuxDataAsset>(Files::Of(TrackKind::Atmos), 6));
  ExpectFailure(QUIRE::RESULT_FORMAT,
                "E AuxData asset length (5) less than EntryPoint + Duration (0 + 6) in" + In(1) + "\n");
}

// One composition after another

TEST_F(CompositionLoading, SameCompositionTwiceKeepsTheFirstRecord) {
  AddReel();
  ExpectSuccess();
  CPL.ContentTitle = "Changed";
  ExpectSuccess();
  EXPECT_EQ(State.Compositions[CPL.ID].Title, "Title");
  ASSERT_EQ(State.Timeline.size(), 2u);
  EXPECT_FALSE(State.Timeline[1].m_StartDistinctCoding);
  EXPECT_EQ(State.Timeline[1].m_CPLReelNumber, 0u);
  EXPECT_EQ(State.Timeline[1].m_PlaylistReelNumber, 1u);
}

TEST_F(CompositionLoading, SecondCopyAfterAnotherCodingIsADistinctCoding) {
  AddReel();
  const CompositionPlaylist plain = CPL;
  ExpectSuccess();
  CPL = testsupport::EmptyComposition("MPEG-2");
  AddReel(Files::Of(TrackKind::MPEG2));
  ExpectSuccess();
  CPL = plain;
  ExpectSuccess();
  EXPECT_FALSE(State.Timeline[0].m_StartDistinctCoding);
  EXPECT_TRUE(State.Timeline[2].m_StartDistinctCoding);
}

TEST_F(CompositionLoading, SoundThatThePreviousHadNotIsADistinctCoding) {
  AddReel();
  ExpectSuccess();
  CPL = testsupport::EmptyComposition("Second");
  AddReel().MainSound = AssetOf<SoundAsset>(Files::Of(TrackKind::Sound));
  ExpectSuccess();
  EXPECT_FALSE(State.Timeline[0].m_StartDistinctCoding);
  EXPECT_TRUE(State.Timeline[1].m_StartDistinctCoding);
}

TEST_F(CompositionLoading, FourKAfterTwoKIsADistinctCoding) {
  const auto wide = [](QUIRE::ui32_t width) {
    return Files::Package().Track(TrackKind::Picture, Spec([width](auto& s) {
                                    s.Width = width;
                                    s.Duration = 1;
                                  }));
  };
  AddReel(wide(2048), 1);
  ExpectSuccess();
  CPL = testsupport::EmptyComposition("4K");
  AddReel(wide(4096), 1);
  ExpectSuccess();
  EXPECT_TRUE(State.Timeline[1].m_StartDistinctCoding);
}

TEST_F(CompositionLoading, CompositionWithoutReelsAfterAnotherIsRefused) {
  AddReel();
  ExpectSuccess();
  CPL = testsupport::EmptyComposition("Empty");
  EXPECT_EQ(Load(), QUIRE::RESULT_FORMAT);
  EXPECT_EQ(Log, Loading() + "E CPL initialization failed, some assets not found.\n");
  EXPECT_EQ(State.Compositions.count(CPL.ID), 1u);
}

TEST_F(CompositionLoading, TimelineOfMoreEditUnitsThanPositionsIsRefused) {
  State.ShowPosition.Duration = 0xffff'fffd;
  AddReel();
  ExpectFailure(QUIRE::RESULT_FORMAT, "E Timeline is full, no room for reel 1 of " + ID() + " (5 edit units)\n", 0);
}

TEST_F(CompositionLoading, TimelineOfMoreReelsThanTheLimitIsRefused) {
  State.ReelCount = Strata::MaxTimelineReels;
  AddReel();
  EXPECT_EQ(Load(), QUIRE::RESULT_FORMAT);
  EXPECT_EQ(Log, Loading() + "E Timeline is full, no room for reel 1 of " + ID() + " (5 edit units)\n");
  EXPECT_TRUE(State.Timeline.empty());
}

TEST_F(CompositionLoading, DurationIsTheSumOfThePictures) {
  EXPECT_EQ(Strata::calc_cpl_duration(CPL), 0u);
  AddReel(Picture(), 5);
  AddReel(Picture(), 3);
  EXPECT_EQ(Strata::calc_cpl_duration(CPL), 8u);
}

}  // namespace
}  // namespace StrataTest
