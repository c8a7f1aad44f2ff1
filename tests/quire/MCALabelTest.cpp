// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/MCALabel.h>

#include <gtest/gtest.h>

namespace {

using namespace QUIRE;
using namespace QUIRE::PCM;

TEST(MakeMCALabels, GroupFirstThenItsChannelsThenTheOthers) {
  MCALabelList labels;
  ASSERT_EQ(MakeMCALabels("51(L,R,C,LFE,Ls,Rs),HI,VIN", "en-US", labels), Ferro::RESULT_OK);
  ASSERT_EQ(labels.size(), 9u);
  EXPECT_EQ(labels[0].Kind, MCA_SOUNDFIELD_GROUP);
  EXPECT_EQ(labels[0].TagSymbol, "sg51");
  EXPECT_EQ(labels[0].TagName, "5.1");
  EXPECT_EQ(labels[0].SpokenLanguage, "en-US");
  EXPECT_EQ(labels[0].ChannelID, 0u);
  EXPECT_EQ(labels[0].DictionaryID.EncodeString(), "060e2b34.0401010d.03020201.00000000");
  const char* symbols[] = {"chL", "chR", "chC", "chLFE", "chLs", "chRs", "chHI", "chVIN"};
  for (ui32_t i = 1; i <= 8; ++i) {
    EXPECT_EQ(labels[i].Kind, MCA_CHANNEL);
    EXPECT_EQ(labels[i].TagSymbol, symbols[i - 1]);
    EXPECT_EQ(labels[i].ChannelID, i);
    EXPECT_EQ(labels[i].Groups, i <= 6 ? std::vector<size_t>{0} : std::vector<size_t>{}) << i;
  }
  EXPECT_EQ(labels[4].DictionaryID.EncodeString(), "060e2b34.0401010d.03020104.00000000");
}

TEST(MakeMCALabels, ADashLeavesAChannelOut) {
  MCALabelList labels;
  ASSERT_EQ(MakeMCALabels("71(L,R,C,LFE,Lss,Rss,Lrs,Rrs),-,-,HI", "", labels), Ferro::RESULT_OK);
  ASSERT_EQ(labels.size(), 10u);
  EXPECT_EQ(labels[9].TagSymbol, "chHI");
  EXPECT_EQ(labels[9].ChannelID, 11u);
}

TEST(MakeMCALabels, MalformedTextsAreParameterErrorsThatChangeNothing) {
  for (const char* text : {"", "51", "51(L,R", "51)L(", "52(L)", "51(L,X)", "51()", "51(L),", "51(L)HI", "51(L,,R)"}) {
    MCALabelList labels(1);
    EXPECT_EQ(MakeMCALabels(text, "en", labels), Ferro::RESULT_PARAM) << text;
    EXPECT_EQ(labels.size(), 1u) << text;
  }
}

}  // namespace
