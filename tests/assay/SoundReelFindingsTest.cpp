// SPDX-License-Identifier: BSD-3-Clause
#include "FindingCases.h"
#include "SampleDocuments.h"
#include "SampleSound.h"

#include "file/SoundFindings.h"
#include "run/Causes.h"

#include <map>

namespace {

using namespace QUIRE::PCM;
using Assay::AssetRole;
using Assay::FindingList;
using Assay::SoundHeader;
using testsupport::LabelledSound;
using testsupport::Names;
using testsupport::NamesOf;
using testsupport::SoundHeaderOf;
using testsupport::TrackFileOf;

/// The sample's composition with headers of files, that nothing speaks against until something is changed.
class SoundComposition {
 public:
  explicit SoundComposition(std::string text = testsupport::SMPTEComposition()) : m_Text(std::move(text)) {
    m_IsInterop = m_Text.find("PROTO-ASDCP") != std::string::npos;
    for (const int reel : {1, 2}) {
      Sound(reel, LabelledSound());
      Put(reel, AssetRole::AuxData, TrackFileOf(QUIRE::ATMOS::AtmosDescriptor()));
      Put(reel, AssetRole::Picture, TrackFileOf(QUIRE::JP2K::PictureDescriptor()));
    }
  }

  SoundComposition& Edit(const std::string& from, const std::string& to) {
    const size_t at = m_Text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    m_Text.replace(at, from.size(), to);
    return *this;
  }
  /// All of it in each reel.
  SoundComposition& EditAll(const std::string& from, const std::string& to) {
    for (size_t at = m_Text.find(from); at != std::string::npos; at = m_Text.find(from, at + to.size()))
      m_Text.replace(at, from.size(), to);
    return *this;
  }
  SoundComposition& Sound(int reel, const SoundHeader& header) {
    return Put(reel, AssetRole::Sound, TrackFileOf(header, m_IsInterop ? QUIRE::LS_MXF_INTEROP : QUIRE::LS_MXF_SMPTE));
  }
  SoundComposition& Sounds(const SoundHeader& header) { return Sound(1, header).Sound(2, header); }
  SoundComposition& Put(int reel, AssetRole role, Assay::TrackFile file) {
    m_Files[{reel, role}] = std::move(file);
    return *this;
  }
  Assay::TrackFile& FileOf(int reel, AssetRole role) { return m_Files.at({reel, role}); }

  /// @param before  what was found already.
  FindingList Findings(FindingList before = {}) {
    const Assay::DocumentFile document = Assay::DocumentFile::FromText("folder", "CPL.xml", m_Text);
    const Assay::Composition composition = ReadComposition(document);
    Assay::CompositionFiles files;
    files.Composition = &composition;
    for (const Assay::Reel& reel : composition.Reels)
      for (const Assay::ReelAsset& asset : reel.Assets) {
        if (!asset.IsFile()) continue;
        const auto file = m_Files.find({static_cast<int>(reel.Number), asset.Role});
        files.Assets.push_back({&reel, &asset, file == m_Files.end() ? nullptr : &file->second, nullptr});
      }
    FindInSounds(files, before);
    LinkCauses(before);
    return before;
  }
  Names Find() { return NamesOf(Findings()); }

 private:
  std::string m_Text;
  bool m_IsInterop = false;
  std::map<std::pair<int, AssetRole>, Assay::TrackFile> m_Files;
};

/// A sample with the signal, so that the note about it is gone.
SoundComposition WithSync() {
  SoundComposition sample;
  sample.Sounds(SoundHeaderOf(14, CF_CFG_6, "51(L,R,C,LFE,Ls,Rs),HI,VIN,-,-,-,-,-,FSKSync", "en"));
  return sample.Edit(",HI,VIN</meta", ",HI,VIN,-,-,-,-,-,FSKSync</meta");
}

/// The same without immersive sound.
SoundComposition Plain(const SoundHeader& header = LabelledSound()) {
  SoundComposition sample;
  for (const int reel : {1, 2}) sample.FileOf(reel, AssetRole::AuxData).Opened = QUIRE::RESULT_FORMAT;
  return sample.Sounds(header);
}

TEST(SoundReelFindings, ASoundCompositionHasNone) {
  EXPECT_EQ(WithSync().Find(), Names{});
  EXPECT_EQ(Plain().Find(), Names{});
  EXPECT_EQ(SoundComposition(testsupport::InteropComposition()).Sounds(SoundHeaderOf(6, CF_NONE)).Find(), Names{});
}

TEST(SoundReelFindings, FilesThatAreNotThereAreNotComparedWithAnything) {
  SoundComposition sample;
  for (const int reel : {1, 2})
    for (const AssetRole role : {AssetRole::Sound, AssetRole::AuxData, AssetRole::Picture})
      sample.FileOf(reel, role).Opened = QUIRE::RESULT_FORMAT;
  EXPECT_EQ(sample.Find(), Names{});
}

TEST(SoundReelFindings, AFeatureHasSixChannelsOrMore) {
  const SoundHeader stereo = SoundHeaderOf(2, CF_CFG_4);
  const auto few = [&](const SoundHeader& header) {
    return Plain(header).EditAll("51-HI-VI-IAB", "20").EditAll("51/L,R,C,LFE,Ls,Rs,HI,VIN", "ST/L,R");
  };
  EXPECT_EQ(few(stereo).Find(), Names{"sound-channels note"}) << "told once for all reels";
  EXPECT_EQ(few(stereo).Edit(">feature<", ">trailer<").Find(), Names{});
  EXPECT_EQ(few(SoundHeaderOf(6, CF_CFG_4)).Find(), Names{"meta-sound-configuration"});
  EXPECT_EQ(few(SoundHeaderOf(5, CF_CFG_4)).Find(), Names{"meta-sound-configuration"})
      << "an odd number is told of the file";
}

TEST(SoundReelFindings, TheFormatStaysFromReelToReel) {
  const auto second = [](const SoundHeader& header) { return Plain().Sound(2, header).Find(); };
  SoundHeader other = LabelledSound();
  other.Descriptor.AudioSamplingRate = QUIRE::SampleRate_96k;
  EXPECT_EQ(second(other), Names{"sound-changes"});
  other.Descriptor.AudioSamplingRate = {96000, 2};
  EXPECT_EQ(second(other), Names{});
  EXPECT_EQ(second(SoundHeaderOf(8, CF_CFG_6, "51(R,L,C,LFE,Ls,Rs),HI,VIN")), Names{"sound-changes"});
  EXPECT_EQ(second(SoundHeaderOf(8, CF_CFG_1)), Names{"sound-changes"});
  EXPECT_EQ(second(SoundHeaderOf(10, CF_CFG_6, "51(L,R,C,LFE,Ls,Rs),HI,VIN")), Names{"sound-changes"});
  const FindingList findings = Plain().Sound(2, SoundHeaderOf(6, CF_CFG_1)).Findings();
  ASSERT_EQ(NamesOf(findings), Names{"sound-changes"});
  EXPECT_EQ(findings[0].Place.Reel, 2U);
  EXPECT_EQ(findings[0].Expected, "8 channels with labels by name: L,R,C,LFE,Ls,Rs,HI,VIN, 48000 Hz");
  EXPECT_EQ(findings[0].Found, "6 channels in configuration 1, 48000 Hz");
}

TEST(SoundReelFindings, WhatFollowsFromAFaultOfTheFileIsNotCountedAgain) {
  SoundHeader odd = LabelledSound();
  odd.Descriptor.AudioSamplingRate = {44100, 1};
  SoundComposition sample = Plain().Sound(2, odd);
  sample.FileOf(2, AssetRole::Sound).ID = *Ferro::UUID::FromHex("0f0f0f0f-1111-4222-8333-000000000023");
  FindingList before;
  FindInSoundFile(sample.FileOf(2, AssetRole::Sound), before);
  const FindingList findings = sample.Findings(before);
  ASSERT_EQ(NamesOf(findings), (Names{"sound-changes", "sound-rate"}));
  EXPECT_EQ(findings[1].Cause, 0U);
}

TEST(SoundReelFindings, LanguagesOfCompositionLabelsAndTitleAgree) {
  constexpr char English[] = "<Language>en</Language>\n</MainSound>";
  const auto written = [&](const std::string& language, const SoundHeader& header) {
    return Plain(header).EditAll(English, "<Language>" + language + "</Language>\n</MainSound>").Find();
  };
  EXPECT_EQ(written("en-US", LabelledSound("en")), Names{});
  EXPECT_EQ(written("EN", LabelledSound("en-GB")), Names{});
  EXPECT_EQ(written("en-US", LabelledSound("en-GB")), Names{"sound-language"}) << "once for both reels";
  EXPECT_EQ(written("en", LabelledSound("fr")), Names{"sound-language"});
  EXPECT_EQ(written("fr", LabelledSound("fr")), Names{"sound-language"}) << "the title has EN";
  EXPECT_EQ(written("fr", LabelledSound("de")), (Names{"sound-language", "sound-language"}));
  EXPECT_EQ(written("English", LabelledSound("")), Names{}) << "a name says nothing";
  EXPECT_EQ(written("en", LabelledSound("")), Names{});
  EXPECT_EQ(Plain().Edit(English, "<Language>fr</Language>\n</MainSound>").Find(),
            (Names{"sound-language", "sound-language", "sound-language"}))
      << "the first reel against the second, its labels and the title";
}

TEST(SoundReelFindings, TheTitlesLanguageCountsWhereItIsOneOfTheStandards) {
  const auto title = [](const std::string& language) { return Plain().EditAll("_EN-FR-CCAP", "_" + language).Find(); };
  EXPECT_EQ(title("FR-FR"), Names{"sound-language"});
  EXPECT_EQ(title("XX-FR"), Names{});
  EXPECT_EQ(title("LAS-FR"), Names{});
  EXPECT_EQ(title("EN"), Names{}) << "not in the convention's form";
}

TEST(SoundReelFindings, TheLanguageIsThatOfTheHall) {
  SoundHeader header = LabelledSound("en");
  for (const size_t other : {7U, 8U}) header.Labels[other].SpokenLanguage = "fr";
  EXPECT_EQ(Plain(header).Find(), Names{});
  header.Labels[0].SpokenLanguage.clear();
  EXPECT_EQ(Plain(header).Find(), Names{});
  for (size_t channel = 1; channel <= 6; ++channel) header.Labels[channel].SpokenLanguage = "fr";
  EXPECT_EQ(Plain(header).Find(), Names{"sound-language"});
}

/// What is found where the metadata describes the sound so.
Names WithConfiguration(const SoundHeader& header, const std::string& text) {
  return Plain(header)
      .EditAll("51-HI-VI-IAB", "20")
      .Edit(">feature<", ">short<")
      .Edit("51/L,R,C,LFE,Ls,Rs,HI,VIN", text)
      .Find();
}
Names MetadataAlone(Names names) {
  std::erase(names, "title-audio");
  return names;
}

TEST(SoundReelFindings, TheMetadataNamesTheChannelsOfTheTrack) {
  const Names wrong = {"meta-sound-configuration"};
  const auto labelled = [](const std::string& text) { return MetadataAlone(WithConfiguration(LabelledSound(), text)); };
  EXPECT_EQ(labelled("51/L,R,C,LFE,Ls,Rs,HI,VIN"), Names{});
  EXPECT_EQ(labelled("51/L,R,C,LFE,Ls,Rs,VIN,HI"), wrong);
  EXPECT_EQ(labelled("51/L,R,C,LFE,Ls,Rs,HI,-"), wrong) << "the label says VIN";
  EXPECT_EQ(labelled("51/L,R,C,LFE,Ls,Rs,HI"), wrong);
  EXPECT_EQ(labelled("51/L,R,C,LFE,Ls,Rs,HI,VIN,-"), wrong);
  EXPECT_EQ(labelled("XY/L, R, C, LFE, Ls, Rs, HI, VIN"), Names{});
  for (const char* odd : {"51/L,R,C,LFE,Ls,Rs,HI,VI-N", "51(L,R,C,LFE,Ls,Rs,HI,VIN)", "None", "-", "51/-", "51/",
                          "/L,R,C,LFE,Ls,Rs,HI,VIN", "51/L,R,C,LFE,Ls,Rs,,VIN"})
    EXPECT_EQ(labelled(odd), wrong) << odd;
}

TEST(SoundReelFindings, AConfigurationContradictsTheMetadataWhereItIsCertain) {
  const Names wrong = {"meta-sound-configuration"};
  const auto configured = [](ChannelFormat_t format, Assay::ui32_t channels, const std::string& text) {
    return MetadataAlone(WithConfiguration(SoundHeaderOf(channels, format), text));
  };
  EXPECT_EQ(configured(CF_CFG_1, 8, "51/L,R,C,LFE,Ls,Rs,-,-"), Names{}) << "they may be unused";
  EXPECT_EQ(configured(CF_CFG_1, 8, "51/L,R,C,LFE,Ls,Rs,VIN,HI"), wrong);
  EXPECT_EQ(configured(CF_CFG_1, 8, "51/L,R,C,Ls,Rs,LFE,HI,VIN"), wrong);
  EXPECT_EQ(configured(CF_CFG_1, 12, "51/L,R,C,LFE,Ls,Rs,HI,VIN,-,-,DBOX,DBOX2"), Names{});
  EXPECT_EQ(configured(CF_CFG_5, 10, "71/L,R,C,LFE,Lss,Rss,HI,VIN,Lrs,Rrs"), Names{}) << "beyond six none is certain";
  EXPECT_EQ(configured(CF_CFG_5, 10, "71/L,R,C,LFE,Ls,Rs,HI,VIN,Lrs,Rrs"), wrong);
  EXPECT_EQ(configured(CF_CFG_4, 8, "71/L,R,C,LFE,Lss,Rss,Lrs,Rrs"), Names{}) << "the track says nothing";
  EXPECT_EQ(configured(CF_CFG_4, 6, "71/L,R,C,LFE,Lss,Rss,Lrs,Rrs"), wrong) << "but how many";
}

TEST(SoundReelFindings, WithoutSoundTheMetadataMayNameNone) {
  const auto silent = [](const std::string& text) {
    std::string composition = testsupport::SMPTEComposition();
    for (size_t at = composition.find("<MainSound>"); at != std::string::npos; at = composition.find("<MainSound>"))
      composition.erase(at, composition.find("</MainSound>", at) + 12 - at);
    return MetadataAlone(SoundComposition(composition).Edit("51/L,R,C,LFE,Ls,Rs,HI,VIN", text).Find());
  };
  EXPECT_EQ(silent("-"), Names{});
  EXPECT_EQ(silent("51/-"), Names{});
  EXPECT_EQ(silent("None"), Names{"meta-sound-configuration"});
}

TEST(SoundReelFindings, TheMetadataGivesTheRateOfTheTrack) {
  const auto rate = [](const std::string& text) { return Plain().Edit("48000 1</meta", text + "</meta").Find(); };
  EXPECT_EQ(rate("96000 2"), Names{});
  EXPECT_EQ(rate("96000 1"), Names{"meta-sound-rate"});
  EXPECT_EQ(rate("48000"), Names{}) << "that is no rate, and told as such";
}

TEST(SoundReelFindings, TheTitleClaimsTheChannelsThatThereAre) {
  const auto claim = [](const std::string& audio, const SoundHeader& header) {
    Names names = Plain(header).EditAll("_51-HI-VI-IAB_", "_" + audio + "_").Edit(">feature<", ">short<").Find();
    std::erase(names, "meta-sound-configuration");
    return names;
  };
  const Names wrong = {"title-audio"};
  EXPECT_EQ(claim("51", LabelledSound()), Names{});
  EXPECT_EQ(claim("71", LabelledSound()), wrong);
  EXPECT_EQ(claim("20", LabelledSound()), wrong) << "six are labelled";
  EXPECT_EQ(claim("51-HI", LabelledSound()), Names{});
  EXPECT_EQ(claim("51-HI-VI", SoundHeaderOf(6, CF_CFG_6, "51(L,R,C,LFE,Ls,Rs)")),
            (Names{"title-audio", "title-audio"}));
  EXPECT_EQ(claim("10", SoundHeaderOf(2, CF_CFG_6, "M(C)")), Names{});
  EXPECT_EQ(claim("20", SoundHeaderOf(6, CF_CFG_1)), Names{}) << "the rest may be unused";
  EXPECT_EQ(claim("71", SoundHeaderOf(8, CF_CFG_1)), wrong);
  EXPECT_EQ(claim("71", SoundHeaderOf(12, CF_CFG_1)), Names{}) << "a configuration of eight at most proves nothing";
  EXPECT_EQ(claim("71", SoundHeaderOf(8, CF_CFG_5)), Names{});
  EXPECT_EQ(claim("51", SoundHeaderOf(8, CF_CFG_5)), wrong);
  EXPECT_EQ(claim("61", SoundHeaderOf(8, CF_CFG_2)), Names{});
  EXPECT_EQ(claim("51", SoundHeaderOf(6, CF_CFG_4)), Names{});
  EXPECT_EQ(claim("51-HI", SoundHeaderOf(6, CF_CFG_4)), wrong);
  EXPECT_EQ(claim("51", SoundHeaderOf(4, CF_CFG_4)), wrong);
  EXPECT_EQ(claim("71", SoundHeaderOf(8, CF_CFG_4)), Names{});
  EXPECT_EQ(claim("71", SoundHeaderOf(6, CF_CFG_4)), wrong);
  EXPECT_EQ(claim("MOS", LabelledSound()), wrong);
  EXPECT_EQ(claim("99", LabelledSound()), Names{}) << "not of the convention";
}

TEST(SoundReelFindings, AClaimOfSoundFollowsFromThatItIsMissing) {
  std::string text = testsupport::SMPTEComposition();
  for (size_t at = text.find("<MainSound>"); at != std::string::npos; at = text.find("<MainSound>"))
    text.erase(at, text.find("</MainSound>", at) + 12 - at);
  Assay::Finding missing(Assay::FindingID::CplSoundMissing);
  missing.Place.Package = "folder";
  missing.Place.Composition = *Ferro::UUID::FromHex("0f0f0f0f-1111-4222-8333-000000000003");
  const FindingList findings = SoundComposition(text).Edit("51/L,R,C,LFE,Ls,Rs,HI,VIN", "-").Findings({missing});
  ASSERT_EQ(NamesOf(findings), (Names{"cpl-sound-missing", "title-audio"}));
  EXPECT_EQ(findings[1].Cause, 0U);
  EXPECT_EQ(SoundComposition(text).Edit("51/L,R,C,LFE,Ls,Rs,HI,VIN", "-").EditAll("_51-HI-VI-IAB_", "_MOS_").Find(),
            Names{});
}

TEST(SoundReelFindings, ImmersiveSoundRunsAtThePicturesRate) {
  SoundComposition sample = WithSync();
  sample.FileOf(2, AssetRole::AuxData).EditRate = QUIRE::EditRate_25;
  const FindingList findings = sample.Findings();
  ASSERT_EQ(NamesOf(findings), Names{"aux-atmos-rate"});
  EXPECT_EQ(findings[0].Place.Reel, 2U);
  EXPECT_EQ(findings[0].Expected, "24");
  EXPECT_EQ(findings[0].Found, "25");
  sample.FileOf(2, AssetRole::Picture).EditRate = {50, 2};
  EXPECT_EQ(sample.Find(), Names{});
  sample.FileOf(2, AssetRole::Picture).Opened = QUIRE::RESULT_FORMAT;
  EXPECT_EQ(sample.Find(), Names{"aux-atmos-rate"}) << "then the composition's rate counts";
}

TEST(SoundReelFindings, ARateThatIsToldOfTheFileIsNotCountedAgain) {
  SoundComposition sample = WithSync();
  sample.FileOf(1, AssetRole::AuxData).EditRate = QUIRE::EditRate_25;
  Assay::Finding told(Assay::FindingID::ReelRateFile);
  told.Place.Package = "folder";
  told.Place.Asset = *Ferro::UUID::FromHex("0f0f0f0f-1111-4222-8333-000000000016");
  const FindingList findings = sample.Findings({told});
  ASSERT_EQ(NamesOf(findings), (Names{"aux-atmos-rate", "reel-rate-file"}));
  EXPECT_EQ(findings[1].Cause, 0U);
  told.Place.Asset = *Ferro::UUID::FromHex("0f0f0f0f-1111-4222-8333-000000000026");
  EXPECT_EQ(sample.Findings({told})[1].Cause, std::nullopt) << "another file";
}

TEST(SoundReelFindings, OutboardRenderersWantASignal) {
  const auto sync = [](const SoundHeader& header) {
    SoundComposition sample;
    Names names = sample.Sounds(header).Find();
    std::erase(names, "meta-sound-configuration");
    return names;
  };
  EXPECT_EQ(sync(LabelledSound()), Names{"aux-sync"}) << "once for both reels";
  EXPECT_EQ(sync(SoundHeaderOf(14, CF_CFG_4)), Names{}) << "its usual place";
  EXPECT_EQ(sync(SoundHeaderOf(12, CF_CFG_4)), Names{"aux-sync"});
  EXPECT_EQ(sync(SoundHeaderOf(14, CF_CFG_4, "51(L,R,C,LFE,Ls,Rs),HI,VIN", "en")), Names{"aux-sync"})
      << "labels would say so";
}

}  // namespace
