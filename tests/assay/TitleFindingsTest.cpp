// SPDX-License-Identifier: BSD-3-Clause
#include "FindingCases.h"

namespace {

using testsupport::Names;
using testsupport::SamplePackage;

/// What is found where a part of the title is another one, in the composition and its packing list.
Names With(const std::string& from, const std::string& to, SamplePackage package = SamplePackage()) {
  return package.EditAll("CPL.xml", from, to).EditAll("PKL.xml", from, to).Findings();
}

TEST(TitleFindings, ClaimsAreHeldAgainstTheComposition) {
  struct Row {
    const char *From, *To;
    Names Expected;
  };
  const Row rows[] = {
      {"SoundFilm_", "Sound Film_", {"title-form"}},
      {"_FTR-1_", "_FTR-1_x_", {"title-form"}},
      {"_F_EN", "_S_EN", {"title-aspect"}},
      {"_F_EN", "_F-178_EN", {}},
      {"_2K_", "_4K_", {"title-resolution"}},
      {"_FTR-1_", "_FTR-1-48_", {"title-rate"}},
      {"_FTR-1_", "_FTR-1-24_", {}},
      {"_FTR-1_", "_FTR-1-3D_", {"title-3d"}},
      {"_FTR-1_", "_FTR-1-2D_", {}},
      {"_SMPTE_", "_IOP_", {"title-standard"}},
      {"-IAB_", "_", {"title-immersive"}},
      {"-IAB_", "-ATMOS_", {}},
      {"_EN-FR-", "_EN-XX-", {"title-subtitle"}},
      {"_EN-FR-", "_EN-fr-", {}},
      {"-CCAP_", "_", {"title-caption"}},
      {"_FTR-1_", "_TLR-1_", {"title-kind"}},
      {"_OV", "_VF", {"title-package note"}},
      {"_20240301_", "_20240302_", {"title-date"}},
      {"_20240301_", "_20240229_", {}},
      {"_20240301_", "_20230229_", {"title-date"}},
  };
  for (const Row& row : rows) EXPECT_EQ(With(row.From, row.To), row.Expected) << row.To;
}

TEST(TitleFindings, AnOriginalHasAllThatItPlays) {
  SamplePackage package;
  package.Edit("CPL.xml", "000000000012</Id>", "0000000000c2</Id>");
  EXPECT_EQ(package.Findings(), (Names{"cpl-asset-external", "title-package"}));
}

TEST(TitleFindings, SubtitlesThatAreClaimedAreThere) {
  SamplePackage package(SamplePackage::Kind::Interop);
  EXPECT_EQ(With("_EN-FR_", "_EN-FR-CCAP_", package), (Names{"package-interop", "title-caption"}));
}

}  // namespace
