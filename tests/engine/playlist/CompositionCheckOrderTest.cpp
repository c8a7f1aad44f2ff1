// SPDX-License-Identifier: BSD-3-Clause
// Of two rules that a composition breaks, only the one checked first is reported. The order that sound, text and
// auxiliary data have in common is tested with their loaders.
#include "CompositionLoadingFixture.h"

#include <Cairn/Result.h>
#include <Ferro/SHA1Digest.h>
#include <QUIRE/Result.h>

#include <utility>

namespace StrataTest {
namespace {

class CompositionCheckOrder : public CompositionLoading {
 protected:
  /// Of no file.
  static Ferro::SHA1 OtherDigest() { return Ferro::DigestText("another file"); }
  static AssetInfo TrackAt25(TrackKind kind) {
    return Files::Package().Track(kind, Spec([](auto& s) { s.EditRate = Rational(25, 1); }));
  }
  static AssetInfo SoundFile(Rational sampling_rate, QUIRE::ui32_t bits, Rational edit_rate = QUIRE::EditRate_24) {
    return Files::Package().Track(TrackKind::Sound, Spec([&](auto& s) {
                                    s.SamplingRate = sampling_rate;
                                    s.QuantizationBits = bits;
                                    s.EditRate = edit_rate;
                                  }));
  }
  /// From now on the store knows that file only as one whose format was not detected.
  void MakeUnknown(AssetInfo file) {
    file.FileType = Cairn::FT_UNKNOWN;
    Replaced.push_back(file);
  }
  void MakeStereoscopicInterop() {
    CPL.StereoscopicImage = true;
    CPL.DCPFormat = Cairn::DFT_Interop;
  }
};

// Picture

TEST_F(CompositionCheckOrder, PictureEditRateComesBeforeUnknownFormat) {
  const AssetInfo unknown = Files::Package().Track(TrackKind::Picture);
  MakeUnknown(unknown);
  AddReel();
  AddReel(unknown).MainPicture.EditRate = Rational(25, 1);
  ExpectFailure(QUIRE::RESULT_FORMAT, "E MainPicture EditRate mismatch in" + In(2) + "\n", 2);
}

TEST_F(CompositionCheckOrder, UnknownPictureFormatComesBeforeTheDigest) {
  AddReel().MainPicture.Digest = OtherDigest();
  MakeUnknown(Picture());
  ExpectFailure(QUIRE::RESULT_FORMAT,
                "E MainPicture image format not detected in" + In(1) + ", asset " + Picture().ID.EncodeString() + "\n");
}

TEST_F(CompositionCheckOrder, PictureDigestComesBeforeTheStereoscopicRule) {
  MakeStereoscopicInterop();
  const AssetInfo& file = Files::Of(TrackKind::MPEG2);
  AddReel(file).MainPicture.Digest = OtherDigest();
  ExpectFailure(Strata::RESULT_SX_DIGEST_FAIL,
                "E MainPicture digest does not match" + In(1) + ", asset " + file.ID.EncodeString() + "\n");
}

TEST_F(CompositionCheckOrder, PictureDigestComesBeforeThePromotion) {
  CPL.StereoscopicImage = true;
  AddReel().MainPicture.Digest = OtherDigest();
  ExpectFailure(Strata::RESULT_SX_DIGEST_FAIL,
                "E MainPicture digest does not match" + In(1) + ", asset " + Picture().ID.EncodeString() + "\n");
  EXPECT_FALSE(State.HasStereoImage);
}

TEST_F(CompositionCheckOrder, StereoscopicRuleComesBeforeTheFormatOfTheReelsBefore) {
  MakeStereoscopicInterop();
  AddReel(Files::Of(TrackKind::StereoscopicPicture));
  AddReel(Files::Of(TrackKind::MPEG2));
  ExpectFailure(QUIRE::RESULT_FORMAT, "E Stereoscopic image not supported for non-JPEG2000 essence in" + In(2) + "\n",
                2);
}

TEST_F(CompositionCheckOrder, FormatOfTheReelsBeforeComesBeforeTypesThatAreNoPicture) {
  AddReel();
  AddReel(Files::Of(TrackKind::Sound));
  ExpectFailure(QUIRE::RESULT_FORMAT, "W MainPicture essence format mismatch in" + In(2) + "\n", 2);
}

TEST_F(CompositionCheckOrder, EditRateOfThePictureFileComesBeforeItsLength) {
  AddReel(TrackAt25(TrackKind::Picture), 6);
  ExpectFailure(QUIRE::RESULT_FORMAT, "E MainPicture EditRate does not match track file in" + In(1) + "\n");
}

// Sound

TEST_F(CompositionCheckOrder, SampleRateComesBeforeTheWordSize) {
  AddReel().MainSound = AssetOf<SoundAsset>(SoundFile(Rational(44100, 1), 16));
  ExpectFailure(QUIRE::RESULT_FORMAT, "E MainSound sample rate is not 48kHz or 96kHz: 44100/1\n");
}

TEST_F(CompositionCheckOrder, SampleRateComesBeforeTheEditRateOfTheSoundFile) {
  AddReel().MainSound = AssetOf<SoundAsset>(SoundFile(Rational(44100, 1), 24, Rational(25, 1)));
  ExpectFailure(QUIRE::RESULT_FORMAT, "E MainSound sample rate is not 48kHz or 96kHz: 44100/1\n");
}

TEST_F(CompositionCheckOrder, WordSizeComesBeforeTheEditRateOfTheSoundFile) {
  AddReel().MainSound = AssetOf<SoundAsset>(SoundFile(QUIRE::SampleRate_48k, 16, Rational(25, 1)));
  ExpectFailure(QUIRE::RESULT_FORMAT, "E MainSound sample word size is not 24: 16\n");
}

// The assets of a reel

TEST_F(CompositionCheckOrder, AssetsOfAReelAreLoadedKindByKind) {
  Reel& reel = AddReel();
  reel.MainSound = AssetOf<SoundAsset>(Files::Of(TrackKind::Sound));
  reel.MainSubtitle = AssetOf<TimedTextAsset>(Files::Of(TrackKind::Text));
  reel.OffScreenText = {reel.MainSubtitle};
  reel.AuxData = {AssetOf<AuxDataAsset>(Files::Of(TrackKind::Data))};
  const std::pair<const char*, Cairn::GenericAsset*> kinds[] = {{"MainPicture", &reel.MainPicture},
                                                                {"MainSound", &reel.MainSound},
                                                                {"MainSubtitle", &reel.MainSubtitle},
                                                                {"Off-screen text", &reel.OffScreenText.front()},
                                                                {"AuxData", &reel.AuxData.front()}};
  for (const auto& [name, asset] : kinds) asset->Digest = OtherDigest();
  size_t loads = 0;
  for (const auto& [name, asset] : kinds) {
    ++loads;
    ExpectFailure(Strata::RESULT_SX_DIGEST_FAIL,
                  std::string("E ") + name + " digest does not match" + In(static_cast<int>(loads)) + ", asset " +
                      asset->AssetID.EncodeString() + "\n",
                  loads);
    asset->Digest = Ferro::SHA1();
  }
  ExpectSuccess();
}

TEST_F(CompositionCheckOrder, AssetsAreAskedForReelByReelAndKindByKind) {
  Reel& reel = AddReel();
  reel.AuxData = {AssetOf<AuxDataAsset>(Files::Of(TrackKind::Data))};
  reel.OffScreenText = {AssetOf<TimedTextAsset>(Files::Package().InteropText())};
  reel.MainSubtitle = AssetOf<TimedTextAsset>(Files::Of(TrackKind::Text));
  reel.MainSound = AssetOf<SoundAsset>(Files::Of(TrackKind::Sound));
  AddReel();
  EXPECT_EQ(Load(), Ferro::RESULT_OK);
  std::vector<Ferro::UUID> asked;
  for (const AssetInfo& info : State.LastCPLAssets) asked.push_back(info.ID);
  EXPECT_EQ(asked, std::vector<Ferro::UUID>({Picture().ID, Files::Of(TrackKind::Sound).ID,
                                             Files::Of(TrackKind::Text).ID, reel.OffScreenText.front().AssetID,
                                             Files::Of(TrackKind::Data).ID, Picture().ID}));
}

TEST_F(CompositionCheckOrder, LimitOfOffScreenTextsComesBeforeAMissingRecord) {
  auto& texts = AddReel().OffScreenText;
  texts.assign(6, AssetOf<TimedTextAsset>(Files::Of(TrackKind::Text)));
  const AssetInfo seventh = Files::Package().Track(TrackKind::Text);
  texts.push_back(AssetOf<TimedTextAsset>(seventh));
  Lookup.Table[seventh.ID] = Picture();  // a record, but of another asset
  ExpectFailure(QUIRE::RESULT_FORMAT, "E More than six (6) off-screen text tracks present.\n");
}

}  // namespace
}  // namespace StrataTest
