// SPDX-License-Identifier: BSD-3-Clause
// What a composition playlist refuses to write; what it writes stands in GoldenDocumentTest.cpp.
#include "../support/LogCapture.h"
#include "SampleDocuments.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using Cairn::CompositionPlaylist;
using testing::ElementsAre;
using testing::IsEmpty;

class CompositionWriter : public testing::Test {
 protected:
  void ExpectRefused(const std::string& line, Cairn::DCPFormat_t format = Cairn::DFT_DCI_SMPTE) {
    std::string out = "before";
    EXPECT_EQ(m_CPL.EncodeXML(out, format), Cairn::RESULT_CN_VALUE);
    EXPECT_EQ(out, "before");
    EXPECT_THAT(m_Log.Errors(), ElementsAre(line));
  }

  Cairn::Reel& Reel() { return m_CPL.ReelList.front(); }

  testsupport::LogCapture m_Log;
  CompositionPlaylist m_CPL = CairnTest::CompositionSamples()[1].Model;   // SMPTE
  CompositionPlaylist m_Full = CairnTest::CompositionSamples()[0].Model;  // SMPTE, with everything
};

TEST_F(CompositionWriter, FormatsWithoutDocumentsAreRefused) {
  for (const auto format : {Cairn::DFT_NONE, Cairn::DFT_IMF, Cairn::DFT_MAX}) {
    std::string out = "before";
    EXPECT_EQ(m_CPL.EncodeXML(out, format), Ferro::RESULT_PARAM);
    EXPECT_EQ(out, "before");
  }
}

TEST_F(CompositionWriter, ATextThatXMLCannotCarryIsRefused) {
  m_CPL.ContentTitle = std::string("a\x01b");
  std::string out = "before";
  EXPECT_EQ(m_CPL.EncodeXML(out, Cairn::DFT_DCI_SMPTE), Ferro::RESULT_PARAM);
  EXPECT_EQ(out, "before");
}

TEST_F(CompositionWriter, AMissingIdentifierIsRefused) {
  m_CPL.ID.Reset();
  ExpectRefused("CompositionPlaylist cannot be written: CompositionPlaylist Id is missing\n");
}

TEST_F(CompositionWriter, AMalformedIssueDateIsRefused) {
  m_CPL.IssueDate = "yesterday";
  ExpectRefused("CompositionPlaylist cannot be written: CompositionPlaylist IssueDate is \"yesterday\"\n");
}

TEST_F(CompositionWriter, AMissingContentKindIsRefused) {
  m_CPL.ContentKind = Cairn::CK_UNKNOWN;
  m_CPL.ContentKindText.clear();
  ExpectRefused("CompositionPlaylist cannot be written: ContentKind is missing\n");
}

TEST_F(CompositionWriter, AContentKindWithoutTextIsWrittenByItsName) {
  m_CPL.ContentKind = Cairn::CK_PSA;
  m_CPL.ContentKindText.clear();
  std::string out;
  EXPECT_EQ(m_CPL.EncodeXML(out, Cairn::DFT_DCI_SMPTE), Ferro::RESULT_OK);
  EXPECT_NE(out.find("<ContentKind>psa</ContentKind>"), std::string::npos);
}

TEST_F(CompositionWriter, AMissingContentVersionIsMadeFromTheComposition) {
  m_CPL.ContentVersion = {};
  std::string out;
  EXPECT_EQ(m_CPL.EncodeXML(out, Cairn::DFT_DCI_SMPTE), Ferro::RESULT_OK);
  EXPECT_NE(out.find("<Id>urn:uuid:00000000-0000-4000-8000-000000000200</Id>\n    <LabelText>NightFerry_FTR-1_F_EN-FR "
                     "&lt;&amp;&gt;</LabelText>"),
            std::string::npos);
}

TEST_F(CompositionWriter, ACompositionWithoutReelsIsRefused) {
  m_CPL.ReelList.clear();
  ExpectRefused("CompositionPlaylist cannot be written: Reel is missing\n");
}

TEST_F(CompositionWriter, ARateOfZeroIsRefused) {
  Reel().MainSound.EditRate = {};
  ExpectRefused("CompositionPlaylist cannot be written: MainSound EditRate is \"0 0\"\n");
}

TEST_F(CompositionWriter, AnUnknownAspectRatioIsRefused) {
  Reel().MainPicture.ScreenAspectRatio = {};
  ExpectRefused(
      "CompositionPlaylist cannot be written: msp-cpl:MainStereoscopicPicture ScreenAspectRatio is missing\n");
}

TEST_F(CompositionWriter, ALanguageThatIsNoTagIsRefused) {
  Reel().MainSound.Language = "English, please";
  ExpectRefused("CompositionPlaylist cannot be written: MainSound Language is \"English, please\"\n");
}

TEST_F(CompositionWriter, InteropHasNoClosedSubtitle) {
  Reel().OffScreenText.push_back(*std::next(m_Full.ReelList.front().OffScreenText.begin()));
  ExpectRefused(
      "CompositionPlaylist cannot be written: off-screen text of an Interop composition is \"ClosedSubtitle\"\n",
      Cairn::DFT_Interop);
}

TEST_F(CompositionWriter, InteropHasNoMainCaption) {
  Reel().MainSubtitle = m_Full.ReelList.back().MainSubtitle;
  ExpectRefused("CompositionPlaylist cannot be written: on-screen text of an Interop composition is \"MainCaption\"\n",
                Cairn::DFT_Interop);
}

TEST_F(CompositionWriter, InteropHasNoAuxData) {
  Reel().AuxData = {m_Full.ReelList.front().AuxData.front()};
  ExpectRefused("CompositionPlaylist cannot be written: asset of an Interop composition is \"AuxData\"\n",
                Cairn::DFT_Interop);
}

TEST_F(CompositionWriter, InteropHasNoMetadata) {
  m_CPL.Metadata = m_Full.Metadata;
  ExpectRefused(
      "CompositionPlaylist cannot be written: asset of an Interop composition is "
      "\"CompositionMetadataAsset\"\n",
      Cairn::DFT_Interop);
}

TEST_F(CompositionWriter, AMetadataStatusOutsideTheListIsRefused) {
  m_CPL.Metadata = m_Full.Metadata;
  m_CPL.Metadata.VersionStatus = "draft";
  ExpectRefused("CompositionPlaylist cannot be written: VersionNumber status is \"draft\"\n");
}

TEST_F(CompositionWriter, ALuminanceOfZeroIsRefused) {
  m_CPL.Metadata = m_Full.Metadata;
  m_CPL.Metadata.Luminance = "0.0";
  ExpectRefused("CompositionPlaylist cannot be written: Luminance is \"0.0\"\n");
}

TEST_F(CompositionWriter, ALuminanceInAnUnknownUnitIsRefused) {
  m_CPL.Metadata = m_Full.Metadata;
  m_CPL.Metadata.LuminanceUnits = "nit";
  ExpectRefused("CompositionPlaylist cannot be written: Luminance units is \"nit\"\n");
}

TEST_F(CompositionWriter, APictureAreaOfNothingIsRefused) {
  m_CPL.Metadata = m_Full.Metadata;
  m_CPL.Metadata.MainPictureActiveArea.Height = 0;
  ExpectRefused("CompositionPlaylist cannot be written: meta:MainPictureActiveArea meta:Height is \"0\"\n");
}

TEST_F(CompositionWriter, ASignatureIsNotWritten) {
  m_CPL.SignatureMode = Cairn::SM_VALID;
  m_CPL.SignatureChain = {{"CN=a", "1", {1}}};
  std::string out;
  EXPECT_EQ(m_CPL.EncodeXML(out, Cairn::DFT_DCI_SMPTE), Ferro::RESULT_OK);
  EXPECT_EQ(out.find("Sign"), std::string::npos);
  EXPECT_THAT(m_Log.Entries(), IsEmpty());
}

}  // namespace
