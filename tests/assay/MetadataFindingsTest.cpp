// SPDX-License-Identifier: BSD-3-Clause
#include "FindingCases.h"
#include "SampleDocuments.h"

namespace {

using testsupport::ExpectEach;
using testsupport::Names;
using testsupport::SamplePackage;

constexpr char Cpl[] = "CPL.xml";

TEST(MetadataFindings, MetadataStandsOnceInTheFirstReel) {
  std::string text = testsupport::SMPTEComposition();
  const std::string close = "</meta:CompositionMetadataAsset>\n";
  const size_t begin = text.find("<meta:CompositionMetadataAsset");
  const std::string metadata = text.substr(begin, text.find(close) + close.size() - begin);
  std::string without = text;
  without.erase(begin, metadata.size());
  EXPECT_EQ(SamplePackage().Put(Cpl, without).Findings(), Names{"meta-missing"});
  EXPECT_EQ(SamplePackage().Put(Cpl, text.insert(begin, metadata)).Findings(), Names{"meta-missing"});
  std::string moved = without;
  EXPECT_EQ(SamplePackage().Put(Cpl, moved.insert(moved.rfind("</AssetList>"), metadata)).Findings(),
            Names{"meta-missing"});
}

TEST(MetadataFindings, ValuesOfTheMetadata) {
  static constexpr char Version[] = "<meta:VersionNumber status=\"final\">1</meta:VersionNumber>\n";
  static constexpr char Title[] = "<meta:FullContentTitleText language=\"en\">Sound Film</meta:FullContentTitleText>\n";
  static constexpr char Configuration[] =
      "<meta:MainSoundConfiguration>51/L,R,C,LFE,Ls,Rs,HI,VIN</meta:MainSoundConfiguration>\n";
  static constexpr char Rate[] = "<meta:MainSoundSampleRate>48000 1</meta:MainSoundSampleRate>\n";
  ExpectEach({
      {Cpl, Version, "", {"meta-version"}},
      {Cpl, Version, "<meta:VersionNumber>one</meta:VersionNumber>", {"meta-version"}},
      {Cpl, Version, "<meta:VersionNumber>0</meta:VersionNumber>", {}},
      {Cpl, Title, "", {"meta-title"}},
      {Cpl, Title, "<meta:FullContentTitleText> </meta:FullContentTitleText>", {"meta-title"}},
      {Cpl, Configuration, "", {"meta-sound-configuration"}},
      {Cpl, Rate, "", {"meta-sound-rate"}},
      {Cpl, "<meta:MainSubtitleLanguageList>fr", "<meta:MainSubtitleLanguageList>fr f_r", {"meta-language"}},
      {Cpl, "<meta:MainSubtitleLanguageList>fr", "<meta:MainSubtitleLanguageList>fr-FR-FR", {"meta-language"}},
      {Cpl, "<meta:MainSubtitleLanguageList>fr", "<meta:MainSubtitleLanguageList>fr de", {}},
      {Cpl, "<meta:MainSubtitleLanguageList>fr", "<meta:MainSubtitleLanguageList>fr xx", {"meta-language"}},
      {Cpl, "<meta:ReleaseTerritory>840", "<meta:ReleaseTerritory>US", {"meta-language"}},
      {Cpl, "<meta:ReleaseTerritory>840", "<meta:ReleaseTerritory scope=\"urn:own\">US", {}},
      {Cpl, "SMPTE-RDD-52:2020-Bv2.1", "Other", {"meta-extension"}},
      {Cpl, "http://isdcf.com/ns/cplmd/app", "urn:other", {"meta-extension"}},
  });
}

TEST(MetadataFindings, TheActiveAreaIsEvenAndWithinTheStoredOne) {
  const auto active = [](const char* side, const char* from, const char* to) {
    std::string text = testsupport::SMPTEComposition();
    const std::string open = std::string("<meta:") + side + ">";
    const size_t at = text.find(open + from, text.find("<meta:MainPictureActiveArea>"));
    text.replace(at + open.size(), std::string(from).size(), to);
    return SamplePackage().Put(Cpl, text).Findings();
  };
  EXPECT_EQ(active("Width", "1998", "1999"), Names{"meta-active-area"});
  EXPECT_EQ(active("Width", "1998", "1997"), Names{"meta-active-area"});
  EXPECT_EQ(active("Width", "1998", "1996"), Names{});
  EXPECT_EQ(active("Height", "1080", "1082"), Names{"meta-active-area"});
}

/// What is found where the luminance is another one.
Names WithLuminance(const std::string& units, const std::string& value) {
  std::string text = testsupport::SMPTEComposition();
  const size_t begin = text.find("<meta:Luminance");
  const size_t end = text.find("</meta:Luminance>");
  text.replace(begin, end - begin, "<meta:Luminance units=\"" + units + "\">" + value);
  return SamplePackage().Put(Cpl, text).Findings();
}

TEST(MetadataFindings, LuminanceHasLimitsByItsUnits) {
  const std::string feet = "foot-lambert";
  const std::string metric = "candela-per-square-metre";
  for (const char* value : {"3", "16.00", "14"}) EXPECT_EQ(WithLuminance(feet, value), Names{}) << value;
  for (const char* value : {"2.999", "16.001", "0", "99999999999999999999999"})
    EXPECT_EQ(WithLuminance(feet, value), Names{"meta-luminance"}) << value;
  for (const char* value : {"10", "55.0"}) EXPECT_EQ(WithLuminance(metric, value), Names{}) << value;
  for (const char* value : {"9.99", "55.5"}) EXPECT_EQ(WithLuminance(metric, value), Names{"meta-luminance"}) << value;
}

}  // namespace
