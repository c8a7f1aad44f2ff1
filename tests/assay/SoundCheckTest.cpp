// SPDX-License-Identifier: BSD-3-Clause
#include "FilePackage.h"
#include "FindingCases.h"

// What is found about sound in whole packages, each time with all that is found.

namespace {

using testsupport::FilePackage;
using testsupport::Names;
using testsupport::SamplePackage;

constexpr char Cpl[] = "CPL.xml";

/// A package whose sounds are made so, in both reels.
template <class ChangeT>
FilePackage With(ChangeT change) {
  FilePackage package;
  for (const char* id : {"13", "23"}) change(package.SpecOf(id));
  return package;
}

TEST(SoundCheck, FormatsOfFilesAreTold) {
  FilePackage package = With([](testsupport::TrackFileSpec& spec) { spec.SamplingRate = {44100, 1}; });
  EXPECT_EQ(package.Edit(Cpl, "48000 1</meta", "44100 1</meta").Findings(), (Names{"sound-rate", "sound-rate"}));
  FilePackage bits;
  bits.SpecOf("23").QuantizationBits = 16;
  EXPECT_EQ(bits.Findings(), Names{"sound-bits"});
}

TEST(SoundCheck, AConfigurationLimitsTheChannels) {
  FilePackage package = With([](testsupport::TrackFileSpec& spec) {
    spec.MCAConfiguration.clear();
    spec.ChannelFormat = QUIRE::PCM::CF_CFG_1;
  });
  EXPECT_EQ(package.Findings(),
            (Names{"sound-configuration", "sound-configuration", "sound-labels profile", "sound-labels profile"}));
}

TEST(SoundCheck, TheSecondReelHasTheFormatOfTheFirst) {
  FilePackage package;
  package.SpecOf("23").MCAConfiguration = "51(R,L,C,LFE,Ls,Rs),HI,VIN,-,-,-,-,-,FSKSync";
  EXPECT_EQ(package.Findings(), Names{"sound-changes"});
}

TEST(SoundCheck, LabelsContradictEachOther) {
  FilePackage package;
  package.SpecOf("23").MCAConfiguration = "71(L,R,C,LFE,Ls,Rs),HI,VIN,-,-,-,-,-,FSKSync";
  EXPECT_EQ(package.Findings(), Names{"sound-mca"});
}

TEST(SoundCheck, WhatTheCompositionClaimsOfItsSound) {
  EXPECT_EQ(FilePackage().Edit(Cpl, "51/L,R,C", "51/L,C,R").Findings(), Names{"meta-sound-configuration"});
  EXPECT_EQ(FilePackage().Edit(Cpl, "48000 1</meta", "96000 1</meta").Findings(), Names{"meta-sound-rate"});
  FilePackage title;
  for (const char* document : {Cpl, "PKL.xml"}) title.EditAll(document, "_51-HI-VI-IAB_", "_71-HI-VI-IAB_");
  EXPECT_EQ(title.Findings(), Names{"title-audio"});
  EXPECT_EQ(FilePackage()
                .EditAll(Cpl, "<Language>en</Language>\n</MainSound>", "<Language>de</Language>\n</MainSound>")
                .Findings(),
            (Names{"sound-language", "sound-language"}))
      << "the labels, and the title";
}

TEST(SoundCheck, ImmersiveSoundHasASignalForOutboardRenderersAndThePicturesRate) {
  FilePackage package = With([](testsupport::TrackFileSpec& spec) {
    spec.ChannelCount = 8;
    spec.MCAConfiguration = "51(L,R,C,LFE,Ls,Rs),HI,VIN";
  });
  EXPECT_EQ(package.Edit(Cpl, ",-,-,-,-,-,FSKSync</meta", "</meta").Findings(), Names{"aux-sync"});
  FilePackage rate;
  rate.SpecOf("16").EditRate = QUIRE::EditRate_25;
  EXPECT_EQ(rate.Findings(), (Names{"aux-atmos-rate", "reel-rate-file"}));
}

}  // namespace
