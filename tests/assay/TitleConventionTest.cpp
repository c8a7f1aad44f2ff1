// SPDX-License-Identifier: BSD-3-Clause
#include "document/TitleConvention.h"

#include <gtest/gtest.h>

namespace {

using Assay::ReadTitle;
using Assay::TitleClaims;

TEST(TitleConvention, ATitleClaimsWhatItsFieldsSay) {
  const TitleClaims claims =
      ReadTitle("Sound-Film2_TLR-3-3D-48-4fl_S-178_EN-XX-CCAP_INT-TL_71-HI-VI-ATMOS_4K_ST_20240301_FAC_IOP-3D_VF-2");
  EXPECT_TRUE(claims.Faults.empty());
  EXPECT_EQ(claims.Kind, "TLR");
  EXPECT_EQ(claims.Is3D, true);
  EXPECT_EQ(claims.Rate, 48U);
  EXPECT_EQ(claims.Aspect, 'S');
  EXPECT_EQ(claims.HasSubtitles, false);
  EXPECT_EQ(claims.HasCaptions, true);
  EXPECT_EQ(claims.HasImmersive, true);
  EXPECT_EQ(claims.Resolution, "4K");
  EXPECT_EQ(claims.Date, "20240301");
  EXPECT_EQ(claims.IsInterop, true);
  EXPECT_EQ(claims.IsVersionFile, true);
}

TEST(TitleConvention, WhatIsNotToldIsNotClaimed) {
  const TitleClaims claims = ReadTitle("Film_FTR-1_F_EN-en_US-13_51_2K_ST_20240301_FAC_SMPTE_OV");
  EXPECT_TRUE(claims.Faults.empty());
  EXPECT_FALSE(claims.Rate.has_value());
  EXPECT_FALSE(claims.HasSubtitles.has_value());  // burned in
  EXPECT_EQ(claims.HasCaptions, false);
  EXPECT_EQ(claims.IsVersionFile, false);
  EXPECT_EQ(ReadTitle("A plain title").Faults.size(), 1U);
  EXPECT_EQ(ReadTitle("").Faults.size(), 1U);
}

TEST(TitleConvention, EachFieldHasItsForm) {
  const std::pair<const char*, const char*> rows[] = {
      {"film title", "FilmWithALongTitle_FTR-1_F_EN-XX_US-13_51_2K_ST_20240301_FAC_SMPTE_OV"},
      {"film title", "_FTR-1_F_EN-XX_US-13_51_2K_ST_20240301_FAC_SMPTE_OV"},
      {"kind", "Film_XXX-1_F_EN-XX_US-13_51_2K_ST_20240301_FAC_SMPTE_OV"},
      {"kind", "Film_RTG_F_EN-XX_US-13_51_2K_ST_20240301_FAC_SMPTE_OV"},
      {"aspect", "Film_FTR-1_X_EN-XX_US-13_51_2K_ST_20240301_FAC_SMPTE_OV"},
      {"language", "Film_FTR-1_F_EN_US-13_51_2K_ST_20240301_FAC_SMPTE_OV"},
      {"territory", "Film_FTR-1_F_EN-XX_us_51_2K_ST_20240301_FAC_SMPTE_OV"},
      {"audio", "Film_FTR-1_F_EN-XX_US-13_52_2K_ST_20240301_FAC_SMPTE_OV"},
      {"resolution", "Film_FTR-1_F_EN-XX_US-13_51_8K_ST_20240301_FAC_SMPTE_OV"},
      {"studio", "Film_FTR-1_F_EN-XX_US-13_51_2K_STUDI_20240301_FAC_SMPTE_OV"},
      {"facility", "Film_FTR-1_F_EN-XX_US-13_51_2K_ST_20240301_FACI_SMPTE_OV"},
      {"standard", "Film_FTR-1_F_EN-XX_US-13_51_2K_ST_20240301_FAC_SMPT_OV"},
      {"package", "Film_FTR-1_F_EN-XX_US-13_51_2K_ST_20240301_FAC_SMPTE_OV-x"},
  };
  for (const auto& [field, title] : rows) {
    const TitleClaims claims = ReadTitle(title);
    ASSERT_EQ(claims.Faults.size(), 1U) << title;
    EXPECT_EQ(claims.Faults[0].Field, field) << title;
  }
}

TEST(TitleConvention, ADateIsADayOfTheCalendar) {
  const auto date = [](const std::string& field) {
    return ReadTitle("Film_FTR-1_F_EN-XX_US-13_51_2K_ST_" + field + "_FAC_SMPTE_OV").Date;
  };
  EXPECT_EQ(date("20240229"), "20240229");
  EXPECT_EQ(date("20230229"), "");
  EXPECT_EQ(date("240301"), "");
}

}  // namespace
