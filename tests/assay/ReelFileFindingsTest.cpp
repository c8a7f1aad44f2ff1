// SPDX-License-Identifier: BSD-3-Clause
#include "FilePackage.h"
#include "FindingCases.h"

namespace {

using Assay::Finding;
using Assay::FindingID;
using testsupport::FilePackage;
using testsupport::FindingOf;
using testsupport::Names;
using testsupport::SampleID;
using testsupport::SamplePackage;
using testsupport::TrackKind;
using testsupport::Without;

constexpr auto Interop = SamplePackage::Kind::Interop;

/// What an asset's element begins with, to be found in the composition.
std::string Head(const std::string& id, const std::string& rate = "24 1", const std::string& length = "240") {
  return id + "</Id>\n<EditRate>" + rate + "</EditRate>\n<IntrinsicDuration>" + length + "</IntrinsicDuration>\n";
}

/// All names but those of findings that follow from others.
Names Roots(const Assay::CheckReport& report) {
  Assay::FindingList roots;
  for (const Finding& finding : report.Findings)
    if (!finding.Cause) roots.push_back(finding);
  return testsupport::NamesOf(roots);
}

TEST(ReelFileFindings, AFileHoldsAnotherKind) {
  FilePackage package;
  package.Make("13", TrackKind::Atmos);
  const Assay::CheckReport report = package.Report();
  ASSERT_EQ(testsupport::NamesOf(report.Findings), Names{"reel-asset-kind"});
  const Finding finding = FindingOf(report, FindingID::ReelAssetKind);
  EXPECT_EQ(finding.Expected, "sound");
  EXPECT_EQ(finding.Found, "auxiliary data");
  EXPECT_EQ(finding.Place.Reel, 1U);
  EXPECT_EQ(finding.Place.Asset, SampleID("13"));
}

TEST(ReelFileFindings, AnInteropListThatCallsItByItsUseFollowsFromIt) {
  FilePackage package(Interop);
  package.Make("13", TrackKind::Picture);
  package.SpecOf("13").Width = 1998;
  EXPECT_EQ(package.Findings(), (Names{"package-interop", "pkl-asset-type", "reel-asset-kind"}));
  EXPECT_EQ(Roots(package.Report()), (Names{"package-interop", "reel-asset-kind"}));
}

TEST(ReelFileFindings, OneEyeStandsWherePairsShould) {
  FilePackage package;
  package.Make("12", TrackKind::StereoscopicPicture).Make("22", TrackKind::StereoscopicPicture);
  EXPECT_EQ(Roots(package.Report()), (Names{"reel-asset-kind", "reel-asset-kind"}));
  FilePackage pairs;
  pairs.MakePairs().Make("22", TrackKind::Picture);
  EXPECT_EQ(pairs.Findings(), Names{"reel-asset-kind"});
}

TEST(ReelFileFindings, LengthsAreThoseOfTheFiles) {
  FilePackage longer;
  longer.SpecOf("12").Duration = 241;
  const Assay::CheckReport report = longer.Report();
  ASSERT_EQ(testsupport::NamesOf(report.Findings), Names{"reel-intrinsic"});
  EXPECT_EQ(FindingOf(report, FindingID::ReelIntrinsic).Expected, "241 edit units");
  EXPECT_EQ(FindingOf(report, FindingID::ReelIntrinsic).Found, "240");
  FilePackage shorter;
  shorter.SpecOf("12").Duration = 239;
  EXPECT_EQ(shorter.Findings(), (Names{"reel-entry-beyond", "reel-intrinsic"}));
  EXPECT_EQ(Roots(shorter.Report()), Names{"reel-intrinsic"});
}

TEST(ReelFileFindings, WhatIsPlayedEndsWithTheFile) {
  const auto with = [](const char* entry) {
    FilePackage package;
    package.SpecOf("12").Duration = 250;
    package.Edit("CPL.xml", Head("12") + "<EntryPoint>0", Head("12", "24 1", "260") + "<EntryPoint>" + entry);
    return package.Findings();
  };
  EXPECT_EQ(with("10"), Names{"reel-intrinsic"});
  EXPECT_EQ(with("11"), (Names{"reel-entry-beyond", "reel-intrinsic"}));
}

TEST(ReelFileFindings, RatesAreThoseOfTheFiles) {
  FilePackage package(Interop);
  package.SpecOf("13").EditRate = {25, 1};
  const Assay::CheckReport report = package.Report();
  ASSERT_EQ(testsupport::NamesOf(report.Findings), (Names{"package-interop", "reel-rate-file"}));
  const Finding finding = FindingOf(report, FindingID::ReelRateFile);
  EXPECT_EQ(finding.Expected, "25 1");
  EXPECT_EQ(finding.Found, "24 1");
}

TEST(ReelFileFindings, AspectsMayDifferByAHundredth) {
  const auto with = [](const char* ratio) {
    return FilePackage(Interop).Edit("CPL.xml", ">1.85<", std::string(">") + ratio + "<").Findings();
  };
  for (const char* ratio : {"1.84", "1.85", "1.86", "1.8600"})
    EXPECT_EQ(with(ratio), Names{"package-interop"}) << ratio;
  for (const char* ratio : {"1.839", "1.861", "1.87", "2.39", "4"})
    EXPECT_EQ(with(ratio), (Names{"package-interop", "reel-aspect"})) << ratio;
}

TEST(ReelFileFindings, AspectsOfSMPTEAreTwoNumbers) {
  const auto with = [](const char* ratio) {
    return FilePackage().Edit("CPL.xml", ">1998 1080<", std::string(">") + ratio + "<").Findings();
  };
  EXPECT_EQ(with("185 100"), Names{});
  EXPECT_EQ(with("999 540"), Names{});
  EXPECT_EQ(with("2048 858"), Names{"reel-aspect"});
}

TEST(ReelFileFindings, VideoIsShownInTheAspectThatItsFileSays) {
  FilePackage package(Interop);
  package.Make("12", TrackKind::MPEG2);
  package.SpecOf("12").Width = 1920;
  package.Edit("CPL.xml", ">1.85<", ">1.77<").EditAll("CPL.xml", "_F_", "_F-178_").EditAll("PKL.xml", "_F_", "_F-178_");
  EXPECT_EQ(package.Findings(), (Names{"package-interop", "picture-size", "title-aspect"}));
}

const std::string Key = "<KeyId>urn:uuid:d0d0d0d0-0000-4000-8000-000000000001</KeyId>\n";

/// Signatures and keys have tests of their own.
Names OfKeys(FilePackage& package) {
  return Without(Without(package.Findings(), "sign-"), "kdm-");
}

TEST(ReelFileFindings, AnEncryptedFileNeedsItsKey) {
  FilePackage without;
  for (const char* id : {"12", "22"}) without.SpecOf(id).Key.emplace();
  EXPECT_EQ(OfKeys(without), (Names{"reel-key-missing", "reel-key-missing"}));

  const auto with = [](const std::string& key) {
    FilePackage package;
    for (const char* id : {"12", "22"}) {
      package.SpecOf(id).Key.emplace();
      const std::string head = Head(id) + "<EntryPoint>0</EntryPoint>\n<Duration>240</Duration>\n";
      package.Edit("CPL.xml", head, head + key);
    }
    return OfKeys(package);
  };
  EXPECT_EQ(with(Key), Names{});
  EXPECT_EQ(with("<KeyId>urn:uuid:d0d0d0d0-0000-4000-8000-000000000002</KeyId>\n"),
            (Names{"reel-key-missing", "reel-key-missing"}));
}

TEST(ReelFileFindings, AReelThatLacksItsKeyLooksClear) {
  FilePackage package;
  for (const char* id : {"12", "22"}) package.SpecOf(id).Key.emplace();
  const std::string head = Head("12") + "<EntryPoint>0</EntryPoint>\n<Duration>240</Duration>\n";
  package.Edit("CPL.xml", head, head + Key);
  EXPECT_EQ(OfKeys(package), (Names{"reel-encryption-some", "reel-key-missing"}));
  EXPECT_EQ(Without(Without(Roots(package.Report()), "sign-"), "kdm-"), Names{"reel-key-missing"});
}

TEST(ReelFileFindings, AClearFileNeedsNone) {
  FilePackage package;
  for (const char* id : {"12", "22"}) {
    const std::string head = Head(id) + "<EntryPoint>0</EntryPoint>\n<Duration>240</Duration>\n";
    package.Edit("CPL.xml", head, head + Key);
  }
  EXPECT_EQ(OfKeys(package), (Names{"reel-key-needless", "reel-key-needless"}));
}

TEST(ReelFileFindings, PicturesKeepTheirFormat) {
  FilePackage package;
  package.SpecOf("22").Width = 2048;
  package.SpecOf("22").Height = 858;
  const Assay::CheckReport report = package.Edit("CPL.xml", "22</Id>", "22</Id>").Report();
  EXPECT_EQ(testsupport::NamesOf(report.Findings), (Names{"picture-changes", "reel-aspect"}));
  for (const Finding& finding : report.Findings)
    if (finding.ID == FindingID::PictureChanges) {
      EXPECT_EQ(finding.Place.Reel, 2U);
      EXPECT_EQ(finding.Expected, "1998x1080 at 24 1");
      EXPECT_EQ(finding.Found, "2048x858 at 24 1");
    }
}

TEST(ReelFileFindings, ARateChangesAsTheCompositionPlaysIt) {
  FilePackage file;
  file.SpecOf("22").EditRate = {25, 1};
  EXPECT_EQ(Roots(file.Report()), Names{"reel-rate-file"});
  FilePackage both;
  for (const char* id : {"22", "23", "24", "25", "26"}) {
    both.SpecOf(id).EditRate = {25, 1};
    both.Edit("CPL.xml", Head(id), Head(id, "25 1"));
  }
  both.Edit("CPL.xml", "</MainPicture>\n<MainSound>\n<Id>urn:uuid:0f0f0f0f-1111-4222-8333-000000000023",
            "</MainPicture>\n<!-- --><MainSound>\n<Id>urn:uuid:0f0f0f0f-1111-4222-8333-000000000023");
  both.Edit("CPL.xml",
            "<FrameRate>24 1</FrameRate>\n<ScreenAspectRatio>1998 1080</ScreenAspectRatio>\n</MainPicture>\n<!-- -->",
            "<FrameRate>25 1</FrameRate>\n<ScreenAspectRatio>1998 1080</ScreenAspectRatio>\n</MainPicture>\n");
  EXPECT_EQ(both.Findings(), Names{"picture-changes"});
}

TEST(ReelFileFindings, DataAreWhatTheCompositionAnnounces) {
  const auto with = [](const char* label) {
    return FilePackage().Edit("CPL.xml", "060e2b34.04010105.0e090604.00000000", label).Findings();
  };
  EXPECT_EQ(with("060e2b34.0401010d.0e090604.00000000"), Names{}) << "another version of the registry";
  EXPECT_EQ(with("060E2B34.04010105.0E090604.00000000"), Names{});
  EXPECT_EQ(with("060e2b34.04010105.0e090604.00000001"), Names{"aux-data-type"});
}

TEST(ReelFileFindings, DataThatAreNotImmersiveSound) {
  FilePackage package;
  package.Make("16", TrackKind::Data).Make("26", TrackKind::Data);
  EXPECT_EQ(package.Findings(), (Names{"aux-data-type", "aux-data-type", "title-immersive"}));
  EXPECT_EQ(Roots(package.Report()), (Names{"aux-data-type", "aux-data-type"}));
}

TEST(ReelFileFindings, MetadataGiveThePictureItsSize) {
  const auto with = [](const char* stored, const char* active) {
    FilePackage package;
    package.Edit("CPL.xml", "<meta:MainPictureStoredArea><meta:Width>1998</meta:Width><meta:Height>1080",
                 std::string("<meta:MainPictureStoredArea><meta:Width>") + stored);
    package.Edit("CPL.xml", "<meta:MainPictureActiveArea><meta:Width>1998</meta:Width><meta:Height>1080",
                 std::string("<meta:MainPictureActiveArea><meta:Width>") + active);
    return Roots(package.Report());
  };
  const auto area = [](const char* width, const char* height) {
    return std::string(width) + "</meta:Width><meta:Height>" + height;
  };
  EXPECT_EQ(with(area("1998", "1080").c_str(), area("1998", "1080").c_str()), Names{});
  EXPECT_EQ(with(area("2000", "1080").c_str(), area("1998", "1080").c_str()), Names{"meta-stored-area"});
  EXPECT_EQ(with(area("1998", "1082").c_str(), area("1998", "1082").c_str()), Names{"meta-stored-area"});
  EXPECT_EQ(with(area("1998", "1078").c_str(), area("1998", "1080").c_str()), Names{"meta-stored-area"});
}

TEST(ReelFileFindings, TitlesAreJudgedByTheFiles) {
  const auto renamed = [](const char* from, const char* to) {
    FilePackage package;
    for (const char* document : {"CPL.xml", "PKL.xml"}) package.EditAll(document, from, to);
    return package.Findings();
  };
  EXPECT_EQ(renamed("_F_EN", "_S_EN"), Names{"title-aspect"});
  EXPECT_EQ(renamed("_2K_", "_4K_"), Names{"title-resolution"});
  EXPECT_EQ(renamed("FTR-1", "FTR-1-48"), Names{"title-rate"});
  EXPECT_EQ(renamed("FTR-1", "FTR-1-3D"), Names{"title-3d"});
  // The composition's claim is wrong, not the title's.
  EXPECT_EQ(FilePackage().EditAll("CPL.xml", ">1998 1080<", ">2048 858<").Findings(),
            (Names{"reel-aspect", "reel-aspect"}));
  // Interop does not tell the size in its documents.
  FilePackage interop(Interop);
  for (const char* document : {"CPL.xml", "PKL.xml"}) interop.EditAll(document, "_2K_", "_4K_");
  EXPECT_EQ(interop.Findings(), (Names{"package-interop", "title-resolution"}));
}

}  // namespace
