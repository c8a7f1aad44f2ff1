// SPDX-License-Identifier: BSD-3-Clause
#include "run/Causes.h"

#include <gtest/gtest.h>

namespace {

using Assay::Finding;
using Assay::FindingClass;
using Assay::FindingID;
using Assay::FindingList;
using Assay::FindingPlace;
using Assay::LinkCauses;
using Assay::UUID;

UUID ID(Assay::ui8_t last) {
  Assay::ui8_t bytes[16] = {1};
  bytes[15] = last;
  return UUID(bytes);
}

Finding In(const char* package, FindingID id) {
  Finding finding(id);
  finding.Place.Package = package;
  return finding;
}

Finding Of(FindingID id, Assay::ui8_t asset, const char* package = "p") {
  Finding finding = In(package, id);
  finding.Place.Asset = ID(asset);
  return finding;
}

Finding InComposition(FindingID id, Assay::ui8_t composition, Assay::ui32_t reel = 0) {
  Finding finding = In("p", id);
  finding.Place.Document = "CPL.xml";
  finding.Place.Composition = ID(composition);
  finding.Place.Reel = reel;
  return finding;
}

/// Each finding as its name, with the index of its cause: "pkl-missing<0".
std::vector<std::string> Linked(FindingList findings) {
  LinkCauses(findings);
  std::vector<std::string> names;
  for (const Finding& finding : findings) {
    names.emplace_back(RuleOf(finding.ID).Name);
    if (finding.Cause) names.back() += '<' + std::to_string(*finding.Cause);
  }
  return names;
}

using Names = std::vector<std::string>;

TEST(Causes, NoneOfNothing) {
  EXPECT_EQ(Linked({}), Names{});
  EXPECT_EQ(Linked({In("p", FindingID::PklMissing)}), Names{"pkl-missing"});
}

TEST(Causes, OfAPackageAreThoseOfThatPackage) {
  EXPECT_EQ(Linked({In("p", FindingID::AmMissing), In("p", FindingID::PklMissing)}),
            (Names{"am-missing", "pkl-missing<0"}));
  EXPECT_EQ(Linked({In("p", FindingID::AmMissing), In("q", FindingID::PklMissing)}),
            (Names{"am-missing", "pkl-missing"}));
}

TEST(Causes, StandBeforeWhatFollowsWhereverTheyWereFound) {
  EXPECT_EQ(Linked({In("p", FindingID::PklMissing), In("p", FindingID::PackageEmptyFolder),
                    In("p", FindingID::AmMissing), In("q", FindingID::ViMissing)}),
            (Names{"package-empty-folder", "am-missing", "pkl-missing<1", "vi-missing"}));
}

TEST(Causes, OfAnAssetAreThoseOfThatAssetInItsPackageOrAStore) {
  EXPECT_EQ(Linked({Of(FindingID::AmDuplicatePath, 1), Of(FindingID::PklUnlisted, 1), Of(FindingID::PklUnlisted, 2),
                    Of(FindingID::PklUnlisted, 1, "q")}),
            (Names{"am-duplicate-path", "pkl-unlisted<0", "pkl-unlisted", "pkl-unlisted"}));
  EXPECT_EQ(Linked({Of(FindingID::FileDamaged, 1, ""), Of(FindingID::ReelIntrinsic, 1)}),
            (Names{"file-damaged", "reel-intrinsic<0"}));
}

TEST(Causes, ACompositionIsAnAssetToo) {
  EXPECT_EQ(Linked({InComposition(FindingID::CplSchema, 1), Of(FindingID::CplHash, 1)}),
            (Names{"cpl-hash", "cpl-schema<0"}));
}

TEST(Causes, OfAReelAreThoseOfThatReel) {
  EXPECT_EQ(Linked({InComposition(FindingID::ReelEditRate, 1, 1), InComposition(FindingID::ReelDurations, 1, 1),
                    InComposition(FindingID::ReelDurations, 1, 2), InComposition(FindingID::ReelDurations, 2, 1)}),
            (Names{"reel-edit-rate", "reel-durations<0", "reel-durations", "reel-durations"}));
}

TEST(Causes, OfACompositionAreThoseOfThatComposition) {
  EXPECT_EQ(Linked({InComposition(FindingID::SignInvalid, 1), InComposition(FindingID::KdmAuthenticator, 1),
                    InComposition(FindingID::KdmAuthenticator, 2)}),
            (Names{"sign-invalid", "kdm-authenticator<0", "kdm-authenticator"}));
}

TEST(Causes, AreNeverWorthLess) {
  Finding list = InComposition(FindingID::SignMissing, 1);
  list.Class = FindingClass::Note;
  EXPECT_EQ(Linked({list, InComposition(FindingID::KdmAuthenticator, 1)}),
            (Names{"sign-missing", "kdm-authenticator"}));
}

TEST(Causes, OfCausesAreFollowedToTheFirst) {
  EXPECT_EQ(Linked({InComposition(FindingID::KdmAuthenticator, 1), InComposition(FindingID::SignInvalid, 1),
                    Of(FindingID::CplHash, 1)}),
            (Names{"cpl-hash", "kdm-authenticator<0", "sign-invalid<0"}));
}

TEST(Causes, OfSeveralTheFirstCounts) {
  FindingList findings{InComposition(FindingID::SignForm, 1), InComposition(FindingID::SignMethod, 1),
                       InComposition(FindingID::KdmAuthenticator, 1)};
  EXPECT_EQ(Linked(findings), (Names{"sign-form", "kdm-authenticator<0", "sign-method"}));
}

TEST(Causes, ThatWereToldAlreadyStay) {
  Finding follows = In("p", FindingID::PackageForeignFile);
  follows.Cause = 2;
  EXPECT_EQ(Linked({follows, In("p", FindingID::PackageHiddenFile), In("p", FindingID::PackageEmptyFolder)}),
            (Names{"package-hidden-file", "package-empty-folder", "package-foreign-file<1"}));
}

TEST(Causes, LinkingAgainChangesNothing) {
  FindingList findings{In("p", FindingID::PklMissing), In("p", FindingID::PackageForeignFile),
                       In("p", FindingID::AmMissing)};
  LinkCauses(findings);
  const FindingList once = findings;
  LinkCauses(findings);
  EXPECT_EQ(findings, once);
}

}  // namespace
