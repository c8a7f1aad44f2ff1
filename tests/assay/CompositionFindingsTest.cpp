// SPDX-License-Identifier: BSD-3-Clause
#include "FindingCases.h"
#include "SampleDocuments.h"

namespace {

using testsupport::After;
using testsupport::ExpectEach;
using testsupport::Names;
using testsupport::SamplePackage;

constexpr char Cpl[] = "CPL.xml";
const std::string Title = "SoundFilm_FTR-1_F_EN-FR-CCAP_US-13_51-HI-VI-IAB_2K_ST_20240301_FAC_SMPTE_OV";

TEST(CompositionFindings, FormIsToldWithTheLine) {
  ExpectEach({
      {Cpl, "<ContentKind>feature</ContentKind>\n", "", {"cpl-schema"}},
      {Cpl, "<Issuer>", "<Unknown/><Issuer>", {"cpl-schema"}},
      {Cpl, "<IntrinsicDuration>240", "<IntrinsicDuration>many", {"cpl-schema"}},
      {Cpl, "<EditRate>24 1", "<EditRate>24", {"cpl-schema"}},
      {Cpl, "<EditRate>24 1", "<EditRate>0 1", {"cpl-schema"}},
      {Cpl, "<EntryPoint>0", "<EntryPoint>-1", {"cpl-schema"}},
      {Cpl, "429-7/2006/CPL", "429-7/2099/CPL", {"cpl-schema"}},
  });
  const auto report = SamplePackage().Edit(Cpl, "<ContentKind>", "<Unknown/>\n<ContentKind>").Report();
  const Assay::Finding finding = testsupport::TheOne(report.Findings, Assay::FindingID::CplSchema);
  EXPECT_EQ(finding.Place.Document, Cpl);
  EXPECT_EQ(finding.Place.Line, 9U);
  EXPECT_EQ(finding.Place.Composition.EncodeString(), "0f0f0f0f-1111-4222-8333-000000000003");
  EXPECT_EQ(finding.Found, "Unknown is unknown in CompositionPlaylist");
}

TEST(CompositionFindings, ValuesOfTheHead) {
  ExpectEach({
      {Cpl, "2024-03-01T09:30:00+00:00", "2024-03-01T09:30:00", {"cpl-issue-date"}},
      {Cpl, "2024-03-01T09:30:00+00:00", "2024-03-01 09:30", {"cpl-issue-date"}},
      {Cpl, "2024-03-01T09:30:00+00:00", "2024-06-01T00:00:00Z", {}},
      {Cpl, "2024-03-01T09:30:00+00:00", "2024-06-01T00:00:01Z", {"cpl-issue-date"}},
      {Cpl, "<AnnotationText>" + Title, "<AnnotationText>other", {"cpl-annotation"}},
      {Cpl, "<AnnotationText>" + Title + "</AnnotationText>\n", "", {"cpl-annotation"}},
      {Cpl, "<AnnotationText>" + Title, "<AnnotationText>\n " + Title + " ", {}},
      {Cpl, "<LabelText>" + Title, "<LabelText>", {"cpl-content-version"}},
      {Cpl, "<Agency>http://www.mpaa.org/2003-ratings", "<Agency>MPAA", {"cpl-rating-agency"}},
      {Cpl, "<Agency>http://www.mpaa.org/2003-ratings", "<Agency>urn:x:y", {}},
      {Cpl, "<Language>en", "<Language>en_US", {"cpl-language"}},
      {Cpl, "<Language>en", "<Language>en-US-US", {"cpl-language"}},
      {Cpl, "<Language>en", "<Language>en-UK", {"cpl-language"}},
      {Cpl, "<Language>en", "<Language>en-US", {}},
      {Cpl, "<Issuer>", "<Issuer language=\"klingon language\">", {"cpl-language"}},
  });
  EXPECT_EQ(SamplePackage()
                .Edit(Cpl, "<ContentTitleText>" + Title, "<ContentTitleText>")
                .Edit("PKL.xml", "<AnnotationText>" + Title, "<AnnotationText>")
                .Findings(),
            Names{"cpl-title-empty"});
}

TEST(CompositionFindings, KindsAreThoseOfTheirScope) {
  const std::string kind = "<ContentKind>feature";
  const std::string metadata_scope =
      "<ContentKind scope=\"http://www.smpte-ra.org/schemas/429-16/2014/CPL-Metadata#scope/content-kind\">";
  ExpectEach({
      {Cpl, kind, "<ContentKind>Feature", {"cpl-content-kind note"}},
      {Cpl, kind, "<ContentKind> feature", {"cpl-content-kind note"}},
      {Cpl, kind, metadata_scope + "clip", {}},
      {Cpl, kind, metadata_scope + "feature", {"cpl-content-kind"}},
      {Cpl, kind, "<ContentKind scope=\"urn:own\">anything", {}},
  });
  EXPECT_EQ(After(Cpl, kind, "<ContentKind>clip"), (Names{"cpl-content-kind", "title-kind"}));
}

TEST(CompositionFindings, AContentVersionIsExpectedOfSMPTEAlone) {
  const std::string version = "<ContentVersion>\n<Id>urn:uuid:0f0f0f0f-1111-4222-8333-000000000004</Id>\n<LabelText>" +
                              Title + "</LabelText>\n</ContentVersion>\n";
  EXPECT_EQ(After(Cpl, version, ""), Names{"cpl-content-version"});
  EXPECT_EQ(SamplePackage(SamplePackage::Kind::Interop).Findings(), Names{"package-interop"});  // it has none
}

TEST(CompositionFindings, ACompositionWithoutReelsIsThatAlone) {
  std::string text = testsupport::SMPTEComposition();
  const size_t begin = text.find("<Reel>");
  text.erase(begin, text.find("</ReelList>") - begin);
  EXPECT_EQ(SamplePackage().Put(Cpl, text).Findings(), Names{"cpl-no-reel"});
}

TEST(CompositionFindings, IdentifierAndDigestAreThoseOfThePackage) {
  EXPECT_EQ(After(Cpl, "000000000003</Id>", "0000000000a3</Id>"), Names{"cpl-id"});
  EXPECT_EQ(SamplePackage().Damage(Cpl, "<Creator>Creator 1.0", "<Creator>Creator 1.1").Findings(), Names{"cpl-hash"});
  EXPECT_EQ(SamplePackage().Damage(Cpl, "<Creator>Creator 1.0", "<Creator>Creator").Findings(), Names{"cpl-hash"});
}

TEST(CompositionFindings, OneIdentifierIsOneThing) {
  EXPECT_EQ(After(Cpl, "000000000020</Id>", "000000000010</Id>"), Names{"cpl-duplicate-id"});
  EXPECT_EQ(After(Cpl, "000000000022</Id>", "000000000012</Id>"), Names{});  // one file in two reels
  const Names twice = SamplePackage()
                          .Edit(Cpl, "000000000022</Id>\n<EditRate>24 1</EditRate>\n<IntrinsicDuration>240",
                                "000000000012</Id>\n<EditRate>24 1</EditRate>\n<IntrinsicDuration>241")
                          .Findings();
  EXPECT_EQ(twice, Names{"cpl-duplicate-id"});
  const std::string other = testsupport::SMPTEComposition() + "<!-- another -->";
  EXPECT_EQ(SamplePackage()
                .Put("CPL2.xml", other)
                .Edit("ASSETMAP.xml", "<AssetList>\n",
                      "<AssetList>\n<Asset><Id>urn:uuid:0f0f0f0f-1111-4222-8333-000000000003</Id><ChunkList><Chunk>"
                      "<Path>CPL2.xml</Path></Chunk></ChunkList></Asset>\n")
                .Findings(),
            (Names{"am-duplicate-id", "cpl-duplicate-id", "cpl-hash"}));
}

TEST(CompositionFindings, FilesOfNoPackageAreExternal) {
  EXPECT_EQ(SamplePackage()
                .EditAll(Cpl, "000000000012</Id>", "0000000000c2</Id>")
                .EditAll(Cpl, "_OV", "_VF")
                .EditAll("PKL.xml", "_OV", "_VF")
                .Findings(),
            Names{"cpl-asset-external"});
}

}  // namespace
