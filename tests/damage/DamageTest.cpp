// SPDX-License-Identifier: BSD-3-Clause
// The tools that damage packages, and what tells whether they differ.
#include "Damage.h"
#include "DamageTable.h"
#include "PackageFacts.h"
#include "SilenceReasons.h"
#include "TemporaryFolder.h"

#include "sample/SampleShow.h"
#include "terminal/LogView.h"

#include <Cairn/AssetStore.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>

using namespace testsupport;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// The packages of a small show.
const PackageFiles& Package(const std::string& name, bool is_interop = false) {
  static std::map<std::string, PackageFiles> packages;
  const std::string key = (is_interop ? "interop/" : "smpte/") + name;
  if (packages.contains(key)) return packages[key];
  const TemporaryFolder folder;
  Tool::SampleOptions options;
  options.Folder = folder.Path("show");
  options.Seconds = 1;
  options.Width = 96;
  options.Height = 64;
  options.Unsigned = true;
  if (is_interop) options.Flavour = Cairn::DFT_Interop;
  EXPECT_TRUE(Tool::MakeSampleShow(
      options, [](const std::string&) {}, [](Ferro::ui64_t, Ferro::ui64_t) {}));
  return packages[key] = ReadPackage(folder.Path("show/" + name));
}

std::set<Difference> DifferencesBetween(const PackageFiles& one, const PackageFiles& other) {
  const TemporaryFolder folder;
  const Tool::QuietLog quiet;
  WritePackage(one, folder.Path("package"));
  const PackageFacts facts = FactsOf(folder.Path("package"));
  WritePackage(other, folder.Path("package"));
  return DifferencesOf(facts, FactsOf(folder.Path("package"), &facts));
}

std::string& Replace(std::string& text, const std::string& from, const std::string& to) {
  const size_t at = text.find(from);
  EXPECT_NE(at, text.npos) << from;
  return at == text.npos ? text : text.replace(at, from.size(), to);
}

}  // namespace

TEST(DamagePackage, EqualSeedsDoTheSame) {
  for (uint32_t seed = 1; seed <= 50; ++seed) {
    PackageFiles one = Package("Trailer");
    PackageFiles other = one;
    const Damage damage = DamagePackage(one, FileKind::Composition, seed);
    EXPECT_EQ(DamagePackage(other, FileKind::Composition, seed).Line(), damage.Line());
    EXPECT_EQ(one, other);
    EXPECT_NE(one, Package("Trailer")) << damage.Line();
  }
}

TEST(DamagePackage, TouchesTheNamedFileAlone) {
  for (uint32_t seed = 1; seed <= 50; ++seed) {
    PackageFiles damaged = Package("Trailer");
    const Damage damage = DamagePackage(damaged, FileKind::Sound, seed);
    EXPECT_EQ(KindOfFile(damage.Path), FileKind::Sound);
    for (const auto& [path, bytes] : Package("Trailer"))
      EXPECT_EQ(damaged[path] != bytes, path == damage.Path) << damage.Line();
  }
}

TEST(DamagePackage, EachWayIsTaken) {
  std::string said;
  for (uint32_t seed = 1; seed <= 300; ++seed)
    for (const FileKind kind : {FileKind::Composition, FileKind::Picture, FileKind::Sound}) {
      PackageFiles damaged = Package("Trailer");
      said += DamagePackage(damaged, kind, seed).Text + '\n';
    }
  for (const char* way : {"removed at",
                          "repeated at",
                          "swapped\n",
                          "renamed to",
                          "attribute",
                          "letter '",
                          "digit '",
                          "value of",
                          "length of the KLV",
                          "index: ",
                          "header metadata: ",
                          "swapped, the index",
                          "put over frame",
                          "frame 1: ",
                          "bytes changed from",
                          "bit changed",
                          "zeroed",
                          "cut after",
                          "added at the end",
                          "put in its place",
                          "\nremoved\n"})
    EXPECT_THAT(said, testing::HasSubstr(way));
}

TEST(RecomputeDigests, ListsFilesAsTheyAre) {
  for (const char* name : {"Feature", "Encrypted"}) {
    const PackageFiles& sound = Package(name);
    PackageFiles damaged = sound;
    damaged["sound-1.mxf"] += "more";
    Replace(damaged["CPL.xml"], "Sample", "Other");
    RecomputeDigests(damaged, sound);
    const TemporaryFolder folder;
    WritePackage(damaged, folder.Path("package"));
    Cairn::AssetStore store;
    ASSERT_TRUE(store.Open().Success() && store.AddFolder(folder.Path("package")).Success());
    EXPECT_EQ(store.VerifyDigests({}), Ferro::RESULT_OK);
    for (const Cairn::AssetRecord& record : store.Assets()) EXPECT_EQ(record.Problems, 0U) << record.Info.RealFilename;
  }
}

TEST(PackageFacts, EqualPackagesDifferInNothing) {
  for (const char* name : {"Feature", "Stereoscopic", "Immersive", "Encrypted"})
    EXPECT_THAT(DifferencesBetween(Package(name), Package(name)), IsEmpty()) << name;
}

TEST(PackageFacts, WhatNobodyGetsIsNoDifference) {
  PackageFiles other = Package("Trailer");
  Replace(other["PKL.xml"], "<Issuer>Strata", "<Issuer>Other");
  Replace(other["CPL.xml"], "<Issuer>Strata", "<Issuer>Other");
  RecomputeDigests(other, Package("Trailer"));
  EXPECT_THAT(DifferencesBetween(Package("Trailer"), other), IsEmpty());
}

TEST(PackageFacts, EachDifferenceIsTold) {
  const PackageFiles& feature = Package("Feature");
  const auto with = [&](const std::string& path, const std::string& from, const std::string& to) {
    PackageFiles other = feature;
    Replace(other[path], from, to);
    RecomputeDigests(other, feature);
    return DifferencesBetween(feature, other);
  };
  EXPECT_THAT(with("CPL.xml", "<Duration>24</Duration>\n          <Hash>", "<Duration>23</Duration>\n          <Hash>"),
              testing::Contains(Difference::Timeline));
  EXPECT_THAT(with("subtitle-1.mxf", "Reel 1 subtitle", "Reel 2 subtitle"), ElementsAre(Difference::Text));
  EXPECT_THAT(with("subtitle-1.mxf", "<ContentTitleText>F", "<ContentTitleText>G"), ElementsAre(Difference::TextBytes));
  EXPECT_THAT(with("subtitle-1.mxf", "\x89PNG", "\x89PNX"), ElementsAre(Difference::Resource));
  const size_t last_sample = feature.at("sound-1.mxf").size() / 2;
  PackageFiles other = feature;
  other["sound-1.mxf"][last_sample] ^= 1;
  RecomputeDigests(other, feature);
  EXPECT_THAT(DifferencesBetween(feature, other), ElementsAre(Difference::Sound));
}

TEST(PackageFacts, PicturesAreComparedDecoded) {
  PackageFiles other = Package("Trailer");
  std::string& picture = other["picture-1.mxf"];
  const size_t start = picture.find("\xff\x4f\xff\x51");  // the first codestream: SOC, SIZ
  ASSERT_NE(start, picture.npos);
  const size_t comment = picture.find("\xff\x64", start);  // COM
  ASSERT_NE(comment, picture.npos);
  picture[comment + 8] ^= 1;
  RecomputeDigests(other, Package("Trailer"));
  EXPECT_THAT(DifferencesBetween(Package("Trailer"), other), ElementsAre(Difference::PictureBytes));
  const size_t data = picture.find("\xff\x93", start);  // SOD
  ASSERT_NE(data, picture.npos);
  picture[data + 20] ^= 0x10;
  RecomputeDigests(other, Package("Trailer"));
  EXPECT_THAT(DifferencesBetween(Package("Trailer"), other), ElementsAre(Difference::Picture));
}

TEST(PackageFacts, InteropTextHasItsFilesBesideIt) {
  PackageFiles other = Package("Feature", true);
  other["subtitle-1/font.ttf"] += '\0';
  RecomputeDigests(other, Package("Feature", true));
  EXPECT_THAT(DifferencesBetween(Package("Feature", true), other), ElementsAre(Difference::Resource));
}

TEST(DamageTable, SilentDifferenceWithoutReasonIsNotGood) {
  DamageTable table(DamageMode::AsDamaged);
  DamageCase damage;
  damage.Done = {"CPL.xml", FileKind::Composition, "something"};
  EXPECT_EQ(table.Add(damage), "");
  damage.Differences = {Difference::Timeline};
  damage.Told = {"note title-form"};
  EXPECT_EQ(table.Add(damage), "");
  EXPECT_TRUE(table.IsGood());
  damage.Told.clear();
  EXPECT_THAT(table.Add(damage), testing::HasSubstr("NOT TOLD"));
  EXPECT_FALSE(table.IsGood());
  EXPECT_THAT(table.Text(), testing::HasSubstr("| composition | 3 | 2 | 0 | 1 | 1 | 50.0 % | 0 |"));
}

TEST(DamageTable, FailureIsNotGood) {
  DamageTable table(DamageMode::Recomputed);
  DamageCase damage;
  damage.Failure = "hung";
  EXPECT_THAT(table.Add(damage), testing::EndsWith(": hung"));
  EXPECT_FALSE(table.IsGood());
}
