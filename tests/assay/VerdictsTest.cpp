// SPDX-License-Identifier: BSD-3-Clause
#include "run/Verdicts.h"

#include <gtest/gtest.h>

namespace {

using Assay::CheckReport;
using Assay::CompositionParts;
using Assay::Finding;
using Assay::FindingClass;
using Assay::FindingID;
using Assay::Profile;
using Assay::UUID;

UUID ID(Assay::ui8_t last) {
  Assay::ui8_t bytes[16] = {1};
  bytes[15] = last;
  return UUID(bytes);
}

/// The packages p, an original with the composition 1 and the file 3, and q, a version with the composition 2 that plays
/// that file and its own file 4.
class Verdicts : public testing::Test {
 protected:
  Verdicts() {
    Report.Packages = {{"p", {}}, {"q", {}}};
    for (Assay::ui8_t i = 1; i <= 2; ++i) {
      Assay::CheckedComposition& composition = Report.Compositions.emplace_back();
      composition.ID = ID(i);
      composition.Package = i == 1 ? "p" : "q";
      composition.Document = "CPL.xml";
    }
  }

  Finding& Add(FindingID id, const char* package, const char* document = "") {
    Finding& finding = Report.Findings.emplace_back(id);
    finding.Place.Package = package;
    finding.Place.Document = document;
    return finding;
  }

  /// Each finding as its name, with the index of its cause.
  std::vector<std::string> Concluded(Profile profile = Profile::Plays) {
    Conclude(profile, {{{ID(1), ID(3)}, {}}, {{ID(2), ID(4)}, {ID(3)}}}, Report);
    std::vector<std::string> names;
    for (const Finding& finding : Report.Findings) {
      names.emplace_back(RuleOf(finding.ID).Name);
      if (finding.Cause) names.back() += '<' + std::to_string(*finding.Cause);
    }
    return names;
  }

  CheckReport Report;
};

using Names = std::vector<std::string>;

TEST_F(Verdicts, FindingsStandByPackageAndComposition) {
  Add(FindingID::KdmForm, "", "bad.xml");
  Add(FindingID::CplNoReel, "q", "CPL.xml");
  Add(FindingID::ViMissing, "q");
  Add(FindingID::ReelShort, "p", "file.mxf").Place.Composition = ID(1);
  Add(FindingID::ViIndex, "p", "VOLINDEX.xml");
  Add(FindingID::FileDamaged, "", "/store/file.mxf").Place.Composition = ID(1);
  EXPECT_EQ(Concluded(), (Names{"vi-index", "reel-short", "file-damaged", "vi-missing", "cpl-no-reel", "kdm-form"}));
  EXPECT_EQ(Report.Packages[0].Worst, FindingClass::Error);
  EXPECT_EQ(Report.Packages[1].Worst, FindingClass::Error);
  EXPECT_EQ(Report.Compositions[0].Worst, FindingClass::Error);
  EXPECT_EQ(Report.Compositions[1].Worst, FindingClass::Error);
}

TEST_F(Verdicts, CausesThatWereToldMoveAlong) {
  Add(FindingID::ReelShort, "q", "CPL.xml");
  Add(FindingID::MarkerEntry, "q", "CPL.xml").Cause = 0;
  Add(FindingID::ViMissing, "p");
  EXPECT_EQ(Concluded(), (Names{"vi-missing", "reel-short", "marker-entry<1"}));
}

TEST_F(Verdicts, WhatFollowsDoesNotCount) {
  Add(FindingID::ReelShort, "p", "CPL.xml").Place.Composition = ID(1);
  Finding& error = Add(FindingID::CplNoReel, "p", "CPL.xml");
  error.Place.Composition = ID(1);
  error.Cause = 0;
  static_cast<void>(Concluded());
  EXPECT_EQ(Report.Compositions[0].Worst, FindingClass::Warning);
  EXPECT_EQ(Report.Packages[0].Worst, FindingClass::Warning);
}

TEST_F(Verdicts, AFileCountsForTheCompositionsThatPlayIt) {
  Add(FindingID::FileDamaged, "p", "file.mxf").Place.Asset = ID(3);
  Add(FindingID::FileIncomplete, "p", "other.mxf").Place.Asset = ID(4);  // which q has itself
  static_cast<void>(Concluded());
  EXPECT_EQ(Report.Compositions[0].Worst, FindingClass::Error);
  EXPECT_EQ(Report.Compositions[1].Worst, FindingClass::Error);
  EXPECT_EQ(Report.Packages[1].Worst, std::nullopt);
  Report.Findings.erase(Report.Findings.begin());
  for (auto& composition : Report.Compositions) composition.Worst.reset();
  static_cast<void>(Concluded());
  EXPECT_EQ(Report.Compositions[0].Worst, std::nullopt);
  EXPECT_EQ(Report.Compositions[1].Worst, std::nullopt);
}

TEST_F(Verdicts, AFindingOfOneCompositionIsNotTheOthers) {
  Finding& finding = Add(FindingID::ReelAspect, "p", "CPL.xml");
  finding.Place.Composition = ID(1);
  finding.Place.Asset = ID(3);
  static_cast<void>(Concluded());
  EXPECT_EQ(Report.Compositions[0].Worst, FindingClass::Warning);
  EXPECT_EQ(Report.Compositions[1].Worst, std::nullopt);
}

TEST_F(Verdicts, WhatTheProfileLeavesOutDoesNotCount) {
  Add(FindingID::CplAnnotation, "p", "CPL.xml");
  static_cast<void>(Concluded(Profile::Plays));
  EXPECT_EQ(Report.Compositions[0].Worst, std::nullopt);
  static_cast<void>(Concluded(Profile::SMPTE));
  EXPECT_EQ(Report.Compositions[0].Worst, FindingClass::Profile);
}

TEST_F(Verdicts, ACertificateIsToldOnceWithWhatFollowsInBoth) {
  for (const char* package : {"p", "q"}) {
    Add(FindingID::CertChain, package, "CPL.xml").Place.Composition = ID(*package == 'p' ? 1 : 2);
    Add(FindingID::KdmAuthenticator, package, "CPL.xml").Place.Composition = ID(*package == 'p' ? 1 : 2);
  }
  EXPECT_EQ(Concluded(), (Names{"cert-chain", "kdm-authenticator<0", "kdm-authenticator<0"}));
  EXPECT_EQ(Report.Compositions[0].Worst, FindingClass::Error);
  EXPECT_EQ(Report.Compositions[1].Worst, FindingClass::Error);
}

}  // namespace
