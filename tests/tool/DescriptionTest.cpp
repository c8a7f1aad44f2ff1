// SPDX-License-Identifier: BSD-3-Clause
#include "show/Description.h"

#include <gtest/gtest.h>

using namespace Tool;

namespace {

TEST(Description, PicturesAreCalledByTheirContainer) {
  EXPECT_EQ(PictureFormatText(1998, 1080), "Flat 2K 1998\u00d71080");
  EXPECT_EQ(PictureFormatText(4096, 1716), "Scope 4K 4096\u00d71716");
  EXPECT_EQ(PictureFormatText(1997, 1080), "1997\u00d71080");
  EXPECT_EQ(PictureFormatText(0, 1080), "");
}

TEST(Description, SoundIsCalledByItsConfiguration) {
  EXPECT_EQ(SoundFormatText(6, "51/L,R,C,LFE,Ls,Rs"), "5.1");
  EXPECT_EQ(SoundFormatText(8, "51/L,R,C,LFE,Ls,Rs,HI,VIN"), "5.1 + HI/VI");
  EXPECT_EQ(SoundFormatText(9, "71DS(L,R,C,LFE,Lss,Rss,Lrs,Rrs),HI"), "7.1 DS + HI");
  EXPECT_EQ(SoundFormatText(12, "WTF"), "12 channels");
  EXPECT_EQ(SoundFormatText(6, ""), "5.1");
  EXPECT_EQ(SoundFormatText(1, ""), "1 channel");
  EXPECT_EQ(SoundFormatText(0, ""), "");
}

TEST(Description, CompositionIsOneLine) {
  CompositionTraits traits;
  EXPECT_EQ(Describe(traits), "");
  traits.Width = 1998;
  traits.Height = 1080;
  traits.EditRate = {24, 1};
  traits.HasSound = true;
  traits.Sound = "5.1";
  traits.Language = "en";
  traits.Format = Cairn::DFT_DCI_SMPTE;
  traits.IsVersion = false;
  traits.Reels = 3;
  EXPECT_EQ(Describe(traits), "Flat 2K 1998\u00d71080, 24 fps, 5.1, en, SMPTE, OV, 3 reels");
  traits.Stereoscopic = true;
  traits.HasSubtitle = true;
  traits.SubtitleLanguage = "fr";
  traits.IsVersion = true;
  traits.Encrypted = true;
  traits.Reels = 1;
  EXPECT_EQ(Describe(traits),
            "Flat 2K 1998\u00d71080 3D, 24 fps, 5.1, en with fr subtitles, SMPTE, VF, encrypted, 1 reel");
  traits.HasSound = false;
  traits.EditRate = {0, 0};
  EXPECT_EQ(Describe(traits),
            "Flat 2K 1998\u00d71080 3D, no sound, en with fr subtitles, SMPTE, VF, encrypted, 1 reel");
}

TEST(Description, TrackFileThatCannotBeOpenedHasNone) {
  EXPECT_EQ(Describe(ReadTrackFileFacts("/no/such/file.mxf", Cairn::FT_QUIRE_PCM)), "");
}

}  // namespace
