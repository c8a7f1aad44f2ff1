// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/DCSubtitle.h>

#include "../support/LogCapture.h"
#include "SampleDocuments.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using Cairn::DCSubtitle;
using CairnTest::SampleID;
using testing::ElementsAre;
using testing::IsEmpty;

class DCSubtitleTest : public testing::Test {
 protected:
  Cairn::Result_t Read(const std::string& content, const std::string& id = "00000000-0000-4000-8000-000000000001") {
    return m_Document.DecodeXML("<DCSubtitle Version=\"1.0\"><SubtitleID>" + id + "</SubtitleID>" + content +
                                "</DCSubtitle>");
  }

  testsupport::LogCapture m_Log;
  DCSubtitle m_Document;
};

TEST_F(DCSubtitleTest, AnotherDocumentIsNotASubtitleDocument) {
  EXPECT_EQ(m_Document.DecodeXML("<SubtitleReel xmlns=\"http://www.smpte-ra.org/schemas/428-7/2014/DCST\"/>"),
            Cairn::RESULT_NOT_SUBTITLE);
}

TEST_F(DCSubtitleTest, TheIdentifierStandsWithAndWithoutPrefix) {
  EXPECT_EQ(Read(""), Ferro::RESULT_OK);
  EXPECT_EQ(m_Document.SubtitleID, SampleID(1));
  EXPECT_EQ(Read("", " urn:uuid:B8000000-0000-4000-8000-000000000001 "), Ferro::RESULT_OK);
  EXPECT_EQ(m_Document.SubtitleID.EncodeString(), "b8000000-0000-4000-8000-000000000001");
}

TEST_F(DCSubtitleTest, AMalformedIdentifierIsAUUIDFormatError) {
  EXPECT_EQ(Read("", "one"), Cairn::RESULT_CN_UUID_FORMAT);
  EXPECT_THAT(m_Log.Errors(), ElementsAre("DCSubtitle: malformed SubtitleID \"one\"\n"));
}

TEST_F(DCSubtitleTest, AMissingIdentifierIsRefused) {
  EXPECT_EQ(m_Document.DecodeXML("<DCSubtitle/>"), Cairn::RESULT_CN_VALUE);
  EXPECT_THAT(m_Log.Errors(), ElementsAre("DCSubtitle: SubtitleID is missing\n"));
}

TEST_F(DCSubtitleTest, CommentsAndUnknownElementsInTheHeadingAreSkipped) {
  EXPECT_EQ(Read("<MovieTitle> Ferry </MovieTitle><!-- c --><ReelNumber> 2 </ReelNumber><Language>en</Language>"
                 "<TimeCodeRate>24</TimeCodeRate>"),
            Ferro::RESULT_OK);
  EXPECT_EQ(m_Document.MovieTitle, "Ferry");
  EXPECT_EQ(m_Document.ReelNumber, 2u);
  EXPECT_EQ(m_Document.Language, "en");
  EXPECT_THAT(m_Log.Entries(), IsEmpty());
}

TEST_F(DCSubtitleTest, AMalformedReelNumberIsOnlyReported) {
  EXPECT_EQ(Read("<ReelNumber>two</ReelNumber>"), Ferro::RESULT_OK);
  EXPECT_EQ(m_Document.ReelNumber, 0u);
  EXPECT_THAT(m_Log.Warnings(), ElementsAre("DCSubtitle: malformed ReelNumber \"two\"\n"));
}

TEST_F(DCSubtitleTest, FontsThenImagesAreTheAncillaryFilesEachOnce) {
  EXPECT_EQ(Read("<LoadFont Id=\"a\" URI=\"Font With Blank.TTF\"/><LoadFont Id=\"b\" URI=\" b.ttf \"></LoadFont>"
                 "<LoadFont Id=\"c\" URI=\"b.ttf\"/><Font><Subtitle><Image>2.PNG</Image></Subtitle>"
                 "<Subtitle><Image> 1.png </Image><Image>2.PNG</Image><Image/></Subtitle></Font>"),
            Ferro::RESULT_OK);
  EXPECT_THAT(m_Document.AncillaryNames(), ElementsAre("Font With Blank.TTF", "b.ttf", "2.PNG", "1.png"));
}

TEST_F(DCSubtitleTest, AFontWithoutURIIsReported) {
  EXPECT_EQ(Read("<LoadFont Id=\"a\"/>"), Ferro::RESULT_OK);
  EXPECT_THAT(m_Document.FontList, IsEmpty());
  EXPECT_THAT(m_Log.Warnings(), ElementsAre("DCSubtitle: LoadFont without URI, ignored\n"));
}

TEST_F(DCSubtitleTest, SpotsAreFoundWhereverFontsStandAroundThem) {
  EXPECT_EQ(Read("<Subtitle SpotNumber=\"1\" TimeIn=\"00:00:01.5\" TimeOut=\"00:00:02:250\"><Text>a</Text></Subtitle>"
                 "<Font><Font><Subtitle SpotNumber=\"2\"><Font Italic=\"yes\"><Text VAlign=\"top\">one<Font>two"
                 "</Font>&amp;</Text></Font><Text>three</Text></Subtitle></Font></Font>"),
            Ferro::RESULT_OK);
  EXPECT_THAT(m_Document.SpotList, ElementsAre(DCSubtitle::Spot{"1", "00:00:01.5", "00:00:02:250", {"a"}, {}},
                                               DCSubtitle::Spot{"2", "", "", {"onetwo&", "three"}, {}}));
}

TEST_F(DCSubtitleTest, AnEmptyDocumentIsRead) {
  EXPECT_EQ(Read(""), Ferro::RESULT_OK);
  EXPECT_THAT(m_Document.SpotList, IsEmpty());
  EXPECT_THAT(m_Document.AncillaryNames(), IsEmpty());
}

TEST_F(DCSubtitleTest, AByteOrderMarkAndCarriageReturnsAreRead) {
  EXPECT_EQ(m_Document.DecodeXML("\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"utf-8\"?>\r\n<DCSubtitle>\r\n"
                                 "<SubtitleID>00000000-0000-4000-8000-000000000001</SubtitleID>\r\n</DCSubtitle>\r\n"),
            Ferro::RESULT_OK);
}

TEST_F(DCSubtitleTest, ADocumentWithoutIdentifierIsNotWritten) {
  std::string out = "before";
  EXPECT_EQ(m_Document.EncodeXML(out), Cairn::RESULT_CN_VALUE);
  EXPECT_EQ(out, "before");
  EXPECT_THAT(m_Log.Errors(), ElementsAre("DCSubtitle cannot be written: SubtitleID is missing\n"));
}

TEST_F(DCSubtitleTest, ASpotWithoutTimesOrContentIsNotWritten) {
  m_Document.SubtitleID = SampleID(1);
  m_Document.SpotList.emplace_back();
  std::string out;
  EXPECT_EQ(m_Document.EncodeXML(out), Cairn::RESULT_CN_VALUE);
  EXPECT_THAT(m_Log.Errors(), ElementsAre("DCSubtitle cannot be written: Subtitle TimeIn or TimeOut is missing\n",
                                          "DCSubtitle cannot be written: Subtitle Text or Image is missing\n"));
}

}  // namespace
