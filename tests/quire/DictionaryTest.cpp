// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/Dictionary.h>
#include <QUIRE/Result.h>

#include <gtest/gtest.h>

namespace QUIRE {
namespace {

TEST(Dictionary, GivesTheRegisteredLabels) {
  const Dictionary& dictionary = DefaultSMPTEDict();
  EXPECT_EQ(dictionary.ul(MDD_WaveAudioDescriptor).EncodeString(), "060e2b34.02530101.0d010101.01014800");
  EXPECT_EQ(dictionary.ul(MDD_SoundfieldGroupLabelSubDescriptor).EncodeString(), "060e2b34.02530101.0d010101.01016c00");
  EXPECT_EQ(dictionary.ul(MDD_AudioChannelLabelSubDescriptor).EncodeString(), "060e2b34.02530101.0d010101.01016b00");
  EXPECT_EQ(dictionary.ul(MDD_DCAudioChannelCfg_1_5p1).EncodeString(), "060e2b34.0401010b.04020210.03010100");
  EXPECT_EQ(dictionary.ul(MDD_DCAudioChannelCfg_2_6p1).EncodeString(), "060e2b34.0401010b.04020210.03010200");
  EXPECT_EQ(dictionary.ul(MDD_DCAudioChannelCfg_3_7p1).EncodeString(), "060e2b34.0401010b.04020210.03010300");
  EXPECT_EQ(dictionary.ul(MDD_DCAudioChannelCfg_4_WTF).EncodeString(), "060e2b34.0401010b.04020210.03010400");
  EXPECT_EQ(dictionary.ul(MDD_DCAudioChannelCfg_5_7p1_DS).EncodeString(), "060e2b34.0401010b.04020210.03010500");
  EXPECT_EQ(dictionary.ul(MDD_DCAudioChannelCfg_MCA).EncodeString(), "060e2b34.0401010d.04020210.03020000");
}

TEST(Dictionary, InteropDiffersInPatternAndTripletVersion) {
  int differences = 0;
  for (ui16_t i = 0; i < MDD_Max; ++i)
    if (DefaultSMPTEDict().Type(MDD_t(i)).Label != DefaultInteropDict().Type(MDD_t(i)).Label) ++differences;
  EXPECT_EQ(differences, 2);
  EXPECT_EQ(DefaultSMPTEDict().ul(MDD_OPAtom).EncodeString(), "060e2b34.04010102.0d010201.10000000");
  EXPECT_EQ(DefaultInteropDict().ul(MDD_OPAtom).EncodeString(), "060e2b34.04010101.0d010201.10000000");
  EXPECT_EQ(DefaultSMPTEDict().ul(MDD_CryptEssence).EncodeString(), "060e2b34.02040101.0d010301.027e0100");
  EXPECT_EQ(DefaultInteropDict().ul(MDD_CryptEssence).EncodeString(), "060e2b34.02040107.0d010301.027e0100");
}

TEST(Dictionary, LabelsAreFoundWhateverTheirVersion) {
  UL label;
  ASSERT_TRUE(label.DecodeHex("060e2b34025301090d01010101014800"));
  const MDDEntry* entry = DefaultSMPTEDict().FindUL(label.Bytes());
  ASSERT_NE(entry, nullptr);
  EXPECT_EQ(entry->Id, MDD_WaveAudioDescriptor);
  EXPECT_STREQ(entry->Name, "WaveAudioDescriptor");
  EXPECT_TRUE(DefaultSMPTEDict().Is(label, MDD_WaveAudioDescriptor));
  ASSERT_TRUE(label.DecodeHex("060e2b34025301010d01010101014900"));
  EXPECT_EQ(DefaultSMPTEDict().FindUL(label.Bytes()), nullptr);
  EXPECT_FALSE(DefaultSMPTEDict().Is(label, MDD_WaveAudioDescriptor));
}

TEST(Dictionary, EveryLabelFindsAnEntryWithThatLabel) {
  for (ui16_t i = 0; i < MDD_Max; ++i) {
    const MDDEntry& type = DefaultSMPTEDict().Type(MDD_t(i));
    const MDDEntry* found = DefaultSMPTEDict().FindUL(type.Label);
    ASSERT_NE(found, nullptr) << type.Name;
    EXPECT_TRUE(UL(found->Label).MatchIgnoringVersion(UL(type.Label))) << type.Name;
  }
}

TEST(Dictionary, StaticTagsFindTheirProperty) {
  ASSERT_NE(DefaultSMPTEDict().FindTag(0x3c0a), nullptr);
  EXPECT_EQ(DefaultSMPTEDict().FindTag(0x3c0a)->Id, MDD_InterchangeObject_InstanceUID);
  EXPECT_EQ(DefaultSMPTEDict().FindTag(0x3d32)->Id, MDD_WaveAudioDescriptor_ChannelAssignment);
  EXPECT_EQ(DefaultSMPTEDict().FindTag(0x8000), nullptr);
  EXPECT_EQ(DefaultSMPTEDict().FindTag(0), nullptr);
}

TEST(UL, ComparesWithoutTheVersionByteOnlyWhenAsked) {
  const UL smpte = DefaultSMPTEDict().ul(MDD_OPAtom);
  const UL interop = DefaultInteropDict().ul(MDD_OPAtom);
  EXPECT_NE(smpte, interop);
  EXPECT_TRUE(smpte.MatchIgnoringVersion(interop));
  EXPECT_FALSE(smpte.MatchIgnoringVersion(DefaultSMPTEDict().ul(MDD_OP1a)));
}

TEST(QuireResult, EveryCodeIsFoundByItsValue) {
  for (const Result_t& result :
       {RESULT_FORMAT, RESULT_RANGE, RESULT_CRYPT_CTX, RESULT_CRYPT_INIT, RESULT_CHECKFAIL, RESULT_HMACFAIL,
        RESULT_HMAC_CTX, RESULT_RAW_ESS, RESULT_RAW_FORMAT, RESULT_SPHASE, RESULT_LARGE_PTO, RESULT_DECRYPT_CTX,
        RESULT_ALGORITHM, RESULT_CUT, RESULT_NOT_ENCRYPTED, RESULT_SEQUENCE}) {
    EXPECT_LT(result.Value(), 0);
    EXPECT_STREQ(Result_t::Find(result.Value()).Symbol(), result.Symbol());
    EXPECT_STREQ(Result_t::Find(result.Value()).Label(), result.Label());
  }
  EXPECT_EQ(RESULT_FORMAT.Value(), -101);
}

}  // namespace
}  // namespace QUIRE
