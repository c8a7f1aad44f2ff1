// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/CompositionPlaylist.h>

#include "../support/LogCapture.h"
#include "SampleDocuments.h"

#include <Cairn/Namespace.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace {

using Cairn::CompositionPlaylist;
using Cairn::Result_t;
using CairnTest::SampleID;
using QUIRE::Rational;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr char Smpte[] = "http://www.smpte-ra.org/schemas/429-7/2006/CPL";
constexpr char Interop[] = "http://www.digicine.com/PROTO-ASDCP-CPL-20040511#";

// The fields every asset needs.
constexpr char Fields[] =
    "<Id>urn:uuid:00000000-0000-4000-8000-000000000011</Id><EditRate>24 1</EditRate>"
    "<IntrinsicDuration>240</IntrinsicDuration>";

std::string Element(const std::string& name, const std::string& content) {
  return "<" + name + ">" + content + "</" + name.substr(0, name.find(' ')) + ">";
}

std::string Picture(const std::string& more = "") {
  return Element("MainPicture", Fields + more);
}

class CompositionPlaylistTest : public testing::Test {
 protected:
  // A composition of one reel with the given asset list.
  Result_t Read(const std::string& assets, const std::string& heading = "", const char* ns = Smpte) {
    return m_CPL.DecodeXML("<CompositionPlaylist xmlns=\"" + std::string(ns) + "\">" +
                           "<Id>urn:uuid:00000000-0000-4000-8000-000000000001</Id>" + heading +
                           "<ReelList><Reel><Id>urn:uuid:00000000-0000-4000-8000-000000000010</Id><AssetList>" +
                           assets + "</AssetList></Reel></ReelList></CompositionPlaylist>");
  }

  const Cairn::Reel& Reel() const { return m_CPL.ReelList.front(); }

  void ExpectRefused(const std::string& assets, Result_t result, const std::string& line) {
    m_Log.Clear();
    EXPECT_EQ(Read(assets), result) << assets;
    EXPECT_THAT(m_Log.Errors(), ElementsAre(line)) << assets;
  }

  testsupport::LogCapture m_Log;
  CompositionPlaylist m_CPL;
};

TEST_F(CompositionPlaylistTest, AnotherDocumentIsNotACompositionPlaylist) {
  EXPECT_EQ(m_CPL.DecodeXML("<ShowPlaylist xmlns=\"http://www.strata.example/ra/xsd/strata-spl-1\"/>"),
            Cairn::RESULT_NOT_CPL);
  EXPECT_EQ(m_CPL.DecodeXML("<PackingList xmlns=\"http://www.smpte-ra.org/schemas/429-8/2007/PKL\"/>"),
            Cairn::RESULT_NOT_CPL);
  EXPECT_THAT(m_Log.Errors(), IsEmpty());
}

TEST_F(CompositionPlaylistTest, APlaylistOfTheInteroperableMasterFormatIsNotOne) {
  for (const char* ns : {"http://www.smpte-ra.org/schemas/2067-3/2013", "http://www.smpte-ra.org/schemas/2067-3/2016",
                         "http://www.smpte-ra.org/ns/2067-3/2020"}) {
    EXPECT_EQ(m_CPL.DecodeXML("<CompositionPlaylist xmlns=\"" + std::string(ns) + "\"/>"), Cairn::RESULT_NOT_CPL);
    EXPECT_EQ(m_CPL.DCPFormat, Cairn::DFT_IMF);
  }
}

TEST_F(CompositionPlaylistTest, TheFlavourComesFromTheNamespace) {
  EXPECT_EQ(Read(Picture()), Ferro::RESULT_OK);
  EXPECT_EQ(m_CPL.DCPFormat, Cairn::DFT_DCI_SMPTE);
  EXPECT_EQ(m_CPL.NamespaceName, Smpte);
  EXPECT_EQ(Read(Picture(), "", Interop), Ferro::RESULT_OK);
  EXPECT_EQ(m_CPL.DCPFormat, Cairn::DFT_Interop);
}

TEST_F(CompositionPlaylistTest, AnIdentifierMayStandOnItsOwnLineInUpperCase) {
  EXPECT_EQ(m_CPL.DecodeXML("<c:CompositionPlaylist xmlns:c=\"" + std::string(Smpte) +
                            "\"><c:Id>\n\tURN:UUID:AB000000-0000-1000-9000-00000000ABCD\r\n</c:Id>"
                            "</c:CompositionPlaylist>"),
            Ferro::RESULT_OK);
  EXPECT_EQ(m_CPL.ID.EncodeString(), "ab000000-0000-1000-9000-00000000abcd");
}

TEST_F(CompositionPlaylistTest, AMalformedIdentifierIsAUUIDFormatError) {
  for (const char* id : {"", "urn:uuid:", "00000000-0000-4000-8000-000000000001", "urn:uuid:0000",
                         "urn:uuid:00000000-0000-4000-8000-00000000000g"}) {
    m_Log.Clear();
    EXPECT_EQ(m_CPL.DecodeXML("<CompositionPlaylist xmlns=\"" + std::string(Smpte) + "\"><Id>" + id +
                              "</Id></CompositionPlaylist>"),
              Cairn::RESULT_CN_UUID_FORMAT)
        << id;
    EXPECT_THAT(m_Log.Errors(), ElementsAre("CompositionPlaylist: malformed Id \"" + std::string(id) + "\"\n"));
  }
}

TEST_F(CompositionPlaylistTest, AMissingIdentifierIsAValueError) {
  EXPECT_EQ(m_CPL.DecodeXML("<CompositionPlaylist xmlns=\"" + std::string(Smpte) + "\"/>"), Cairn::RESULT_CN_VALUE);
  EXPECT_THAT(m_Log.Errors(), ElementsAre("CompositionPlaylist: Id is missing\n"));
}

TEST_F(CompositionPlaylistTest, AFailureKeepsWhatWasRead) {
  EXPECT_EQ(Read("<MainPicture/>", "<ContentTitleText>T</ContentTitleText>"), Cairn::RESULT_CN_VALUE);
  EXPECT_EQ(m_CPL.ContentTitle, "T");
  EXPECT_EQ(m_CPL.ID, SampleID(1));
}

TEST_F(CompositionPlaylistTest, AnObjectIsClearedBeforeReading) {
  m_CPL.ContentTitle = "before";
  m_CPL.SignatureMode = Cairn::SM_VALID;
  EXPECT_EQ(Read(Picture()), Ferro::RESULT_OK);
  EXPECT_EQ(m_CPL.ContentTitle, "");
  EXPECT_EQ(m_CPL.SignatureMode, Cairn::SM_NONE);
}

TEST_F(CompositionPlaylistTest, ATitleKeepsMarkupCharactersFromCDATAAndReferences) {
  EXPECT_EQ(Read("", "<ContentTitleText language=\"en\">A <![CDATA[<b> & c]]> &#x2013; d</ContentTitleText>"),
            Ferro::RESULT_OK);
  EXPECT_EQ(m_CPL.ContentTitle, "A <b> & c \xE2\x80\x93 d");
}

// Content kinds.

TEST_F(CompositionPlaylistTest, ContentKindsAreComparedWithoutCaseAndBlanks) {
  EXPECT_EQ(Read("", "<ContentKind> Trailer\n</ContentKind>"), Ferro::RESULT_OK);
  EXPECT_EQ(m_CPL.ContentKind, Cairn::CK_TRAILER);
  EXPECT_EQ(m_CPL.ContentKindText, "Trailer");
  EXPECT_EQ(m_CPL.ContentKindScope, "");
}

TEST_F(CompositionPlaylistTest, AnUnknownContentKindIsKeptAsText) {
  EXPECT_EQ(Read("", "<ContentKind scope=\"urn:x\">episode</ContentKind>"), Ferro::RESULT_OK);
  EXPECT_EQ(m_CPL.ContentKind, Cairn::CK_UNKNOWN);
  EXPECT_EQ(m_CPL.ContentKindText, "episode");
  EXPECT_EQ(m_CPL.ContentKindScope, "urn:x");
}

TEST(ContentKind, EveryKindHasItsName) {
  const std::vector<std::string> names = {"",       "feature",       "trailer", "teaser",       "test",
                                          "rating", "advertisement", "short",   "transitional", "psa",
                                          "policy", "clip",          "promo",   "stereocard"};
  for (Cairn::ui32_t kind = 0; kind < Cairn::CK_MAX; ++kind) {
    EXPECT_EQ(Cairn::ContentKindName(static_cast<Cairn::ContentKind_t>(kind)), names[kind]);
    EXPECT_EQ(Cairn::ContentKindFromName(names[kind]), static_cast<Cairn::ContentKind_t>(kind));
  }
  EXPECT_STREQ(Cairn::ContentKindName(Cairn::CK_MAX), "");
  EXPECT_EQ(Cairn::ContentKindFromName("features"), Cairn::CK_UNKNOWN);
}

// Assets.

TEST_F(CompositionPlaylistTest, AMissingEntryPointIsZeroAndAMissingDurationTheRest) {
  EXPECT_EQ(Read(Picture()), Ferro::RESULT_OK);
  EXPECT_EQ(Reel().MainPicture.EntryPoint, 0u);
  EXPECT_EQ(Reel().MainPicture.Duration, 240u);
  EXPECT_EQ(Read(Picture("<EntryPoint>024</EntryPoint>")), Ferro::RESULT_OK);
  EXPECT_EQ(Reel().MainPicture.EntryPoint, 24u);
  EXPECT_EQ(Reel().MainPicture.Duration, 216u);
}

TEST_F(CompositionPlaylistTest, ADurationOfItsOwnIsKept) {
  EXPECT_EQ(Read(Picture("<EntryPoint>10</EntryPoint><Duration>+20</Duration>")), Ferro::RESULT_OK);
  EXPECT_EQ(Reel().MainPicture.Duration, 20u);
  EXPECT_EQ(Read(Picture("<Duration>0</Duration>")), Ferro::RESULT_OK);
  EXPECT_EQ(Reel().MainPicture.Duration, 0u);
}

TEST_F(CompositionPlaylistTest, AnEntryPointPastTheEndWithoutDurationIsRefused) {
  ExpectRefused(Picture("<EntryPoint>241</EntryPoint>"), Cairn::RESULT_CN_VALUE,
                "CompositionPlaylist: malformed MainPicture EntryPoint \"241\"\n");
}

TEST_F(CompositionPlaylistTest, AnEndBeyondThirtyTwoBitsIsRefused) {
  ExpectRefused(Picture("<EntryPoint>4294967295</EntryPoint><Duration>1</Duration>"), Cairn::RESULT_CN_VALUE,
                "CompositionPlaylist: malformed MainPicture Duration \"1\"\n");
  EXPECT_EQ(Read(Picture("<EntryPoint>4294967294</EntryPoint><Duration>1</Duration>")), Ferro::RESULT_OK);
}

TEST_F(CompositionPlaylistTest, CountsThatAreNoCountsAreRefused) {
  for (const char* count : {"", "-1", "1.5", "0x10", "4294967296", "18446744073709551616", "1 2", "++1", "abc"})
    ExpectRefused(Picture("<EntryPoint>" + std::string(count) + "</EntryPoint>"), Cairn::RESULT_CN_VALUE,
                  "CompositionPlaylist: malformed EntryPoint \"" + std::string(count) + "\"\n");
}

TEST_F(CompositionPlaylistTest, ANumberSplitByACommentIsOneNumber) {
  EXPECT_EQ(Read(Picture("<EntryPoint>2<!-- c -->4</EntryPoint>")), Ferro::RESULT_OK);
  EXPECT_EQ(Reel().MainPicture.EntryPoint, 24u);
}

TEST_F(CompositionPlaylistTest, RatesAreReducedWhateverTheirForm) {
  const auto rate = [&](const std::string& text) {
    EXPECT_EQ(Read(Element("MainPicture", "<Id>urn:uuid:00000000-0000-4000-8000-000000000011</Id><EditRate>" + text +
                                              "</EditRate><IntrinsicDuration>1</IntrinsicDuration>")),
              Ferro::RESULT_OK);
    return Reel().MainPicture.EditRate;
  };
  EXPECT_EQ(rate("24\t1"), Rational(24, 1));
  EXPECT_EQ(rate("\n 24\n 1\n"), Rational(24, 1));
  EXPECT_EQ(rate("+24 01"), Rational(24, 1));
  EXPECT_EQ(rate("24000 1000"), Rational(24, 1));
  EXPECT_EQ(rate("24000 1001"), Rational(24000, 1001));
  EXPECT_EQ(rate("24000000000000 1000000000000"), Rational(24, 1));
}

TEST_F(CompositionPlaylistTest, RatesThatAreNoRatesAreRefused) {
  for (const char* rate : {"", "24", "23.976", "0 1", "24 0", "-24 1", "24 -1", "24/1", "24 1 1", "4294967296 1"})
    ExpectRefused(Element("MainPicture", "<Id>urn:uuid:00000000-0000-4000-8000-000000000011</Id><EditRate>" +
                                             std::string(rate) + "</EditRate><IntrinsicDuration>1</IntrinsicDuration>"),
                  Cairn::RESULT_CN_VALUE, "CompositionPlaylist: malformed EditRate \"" + std::string(rate) + "\"\n");
}

TEST_F(CompositionPlaylistTest, AMissingFieldOfAnAssetIsNamed) {
  EXPECT_EQ(Read("<MainSound/>"), Cairn::RESULT_CN_VALUE);
  EXPECT_THAT(m_Log.Errors(), ElementsAre("CompositionPlaylist: MainSound Id is missing\n",
                                          "CompositionPlaylist: MainSound EditRate is missing\n",
                                          "CompositionPlaylist: MainSound IntrinsicDuration is missing\n"));
}

TEST_F(CompositionPlaylistTest, ADigestMayBeBrokenByBlanksAndMayBeAbsent) {
  EXPECT_EQ(Read(Picture("<Hash>\n NiA7Qnmr FaqXJZkq\n yxZX0Hw1SUE=\n</Hash>")), Ferro::RESULT_OK);
  EXPECT_EQ(Reel().MainPicture.Digest.EncodeBase64(), "NiA7QnmrFaqXJZkqyxZX0Hw1SUE=");
  EXPECT_EQ(Read(Picture()), Ferro::RESULT_OK);
  EXPECT_FALSE(Reel().MainPicture.Digest.HasValue());
}

TEST_F(CompositionPlaylistTest, ADigestOfAnotherLengthIsRefused) {
  for (const char* hash :
       {"", "NiA7QnmrFaqXJZkqyxZX0Hw1SQ==", "no base64 at all, no", "NiA7QnmrFaqXJZkqyxZX0Hw1SUGqqqqqqqqqqqqqqqo="})
    ExpectRefused(Picture("<Hash>" + std::string(hash) + "</Hash>"), Cairn::RESULT_CN_VALUE,
                  "CompositionPlaylist: malformed Hash \"" + std::string(hash) + "\"\n");
}

TEST_F(CompositionPlaylistTest, AnEncryptedAssetHasAKey) {
  EXPECT_EQ(Read(Picture("<KeyId>urn:uuid:00000000-0000-4000-8000-000000000099</KeyId>")), Ferro::RESULT_OK);
  EXPECT_EQ(Reel().MainPicture.KeyID, SampleID(0x99));
}

TEST_F(CompositionPlaylistTest, AspectRatiosOfEitherFlavourAreReadInEither) {
  const auto ratio = [&](const std::string& text) {
    EXPECT_EQ(Read(Picture("<ScreenAspectRatio>" + text + "</ScreenAspectRatio>")), Ferro::RESULT_OK);
    return Reel().MainPicture.ScreenAspectRatio;
  };
  EXPECT_EQ(ratio("+1998   01080"), Rational(1998, 1080));
  EXPECT_EQ(ratio("1.85"), Rational(185, 100));
  EXPECT_EQ(ratio("2"), Rational(2, 1));
  EXPECT_EQ(ratio("185 0"), Rational(185, 100));
  EXPECT_EQ(ratio("1,85"), Rational());
  EXPECT_EQ(ratio(""), Rational());
  EXPECT_EQ(ratio("flat"), Rational());
}

TEST_F(CompositionPlaylistTest, AMalformedFrameRateIsOnlyReported) {
  EXPECT_EQ(Read(Picture("<FrameRate>x</FrameRate>")), Ferro::RESULT_OK);
  EXPECT_THAT(m_Log.Warnings(), ElementsAre("CompositionPlaylist: malformed FrameRate \"x\"\n"));
}

// The asset list.

TEST_F(CompositionPlaylistTest, StereoscopicPicturesAreTakenInEveryNamespace) {
  for (const char* ns : {"http://www.smpte-ra.org/schemas/429-10/2008/Main-Stereo-Picture-CPL",
                         "http://www.smpte-ra.org/schemas/429-10/2007/Main-Stereo-Picture-CPL",
                         "http://www.digicine.com/schemas/437-Y/2007/Main-Stereo-Picture-CPL", Smpte}) {
    EXPECT_EQ(Read("<s:MainStereoscopicPicture xmlns:s=\"" + std::string(ns) + "\">" + Fields +
                   "<FrameRate>48 1</FrameRate></s:MainStereoscopicPicture>"),
              Ferro::RESULT_OK);
    EXPECT_TRUE(m_CPL.StereoscopicImage) << ns;
    EXPECT_EQ(Reel().MainPicture.AssetID, SampleID(0x11)) << ns;
    EXPECT_EQ(Reel().MainPicture.FrameRate, Rational(48, 1)) << ns;
  }
}

TEST_F(CompositionPlaylistTest, APlainPictureIsNotStereoscopic) {
  EXPECT_EQ(Read(Picture()), Ferro::RESULT_OK);
  EXPECT_FALSE(m_CPL.StereoscopicImage);
}

TEST_F(CompositionPlaylistTest, ChildrenMayStandInTheExtensionsNamespaceAndTheElementFirst) {
  EXPECT_EQ(Read("<MainStereoscopicPicture xmlns=\"http://www.smpte-ra.org/schemas/429-10/2008/Main-Stereo-Picture-"
                 "CPL\">" +
                 std::string(Fields) + "<ScreenAspectRatio>2048 858</ScreenAspectRatio></MainStereoscopicPicture>" +
                 Element("MainSound", Fields)),
            Ferro::RESULT_OK);
  EXPECT_EQ(Reel().MainPicture.ScreenAspectRatio, Rational(2048, 858));
  EXPECT_TRUE(Reel().MainSound.AssetID.HasValue());
}

struct CaptionForm {
  const char* NamespaceName;
  const char* Name;
  Cairn::TimedTextPurpose_t Purpose;
};

TEST_F(CompositionPlaylistTest, OffScreenTextIsTakenInEveryNamespaceInDocumentOrder) {
  static constexpr CaptionForm Forms[] = {
      {"http://www.smpte-ra.org/schemas/429-12/2008/TT", "ClosedCaption", Cairn::TT_CAPTION},
      {"http://www.smpte-ra.org/schemas/429-12/2008/TT", "ClosedSubtitle", Cairn::TT_SUBTITLE},
      {"http://www.digicine.com/PROTO-ASDCP-CC-CPL-20070926#", "MainClosedCaption", Cairn::TT_CAPTION},
      {"http://www.smpte-ra.org/schemas/429-12/2008/TT", "MainClosedCaption", Cairn::TT_CAPTION},
      {"http://www.digicine.com/PROTO-ASDCP-CC-CPL-20070926#", "ClosedCaption", Cairn::TT_CAPTION},
      {Smpte, "ClosedCaption", Cairn::TT_CAPTION}};
  std::string assets;
  for (const CaptionForm& form : Forms)
    assets +=
        "<t:" + std::string(form.Name) + " xmlns:t=\"" + form.NamespaceName + "\">" + Fields + "</t:" + form.Name + ">";
  EXPECT_EQ(Read(assets), Ferro::RESULT_OK);
  ASSERT_THAT(Reel().OffScreenText, SizeIs(6));
  auto text = Reel().OffScreenText.begin();
  for (const CaptionForm& form : Forms) EXPECT_EQ((text++)->Purpose, form.Purpose) << form.Name;
}

TEST_F(CompositionPlaylistTest, ACaptionsLanguageStandsInEitherNamespace) {
  const std::string open = "<t:ClosedCaption xmlns:t=\"http://www.smpte-ra.org/schemas/429-12/2008/TT\">";
  EXPECT_EQ(Read(open + Fields + "<t:Language>en</t:Language></t:ClosedCaption>" + open + Fields +
                 "<Language> es-419 </Language></t:ClosedCaption>"),
            Ferro::RESULT_OK);
  EXPECT_EQ(Reel().OffScreenText.front().Language, "en");
  EXPECT_EQ(Reel().OffScreenText.back().Language, "es-419");
}

TEST_F(CompositionPlaylistTest, OnScreenTextIsSubtitleOrCaption) {
  EXPECT_EQ(Read(Element("MainSubtitle", std::string(Fields) + "<Language>English</Language>")), Ferro::RESULT_OK);
  EXPECT_EQ(Reel().MainSubtitle.Purpose, Cairn::TT_SUBTITLE);
  EXPECT_EQ(Reel().MainSubtitle.Language, "English");
  EXPECT_EQ(Read("<t:MainCaption xmlns:t=\"http://www.smpte-ra.org/schemas/429-12/2008/TT\">" + std::string(Fields) +
                 "</t:MainCaption>"),
            Ferro::RESULT_OK);
  EXPECT_EQ(Reel().MainSubtitle.Purpose, Cairn::TT_CAPTION);
}

TEST_F(CompositionPlaylistTest, AuxDataIsReadInBothForms) {
  EXPECT_EQ(Read("<a:AuxData xmlns:a=\"http://www.dolby.com/schemas/2012/AD\">" + std::string(Fields) +
                 "<a:DataType> urn:smpte:ul:1 </a:DataType></a:AuxData>"
                 "<b:AuxData xmlns:b=\"http://www.smpte-ra.org/schemas/429-14/2014/Aux-Data\">" +
                 Fields + "<b:DataEssenceCoding>urn:smpte:ul:2</b:DataEssenceCoding></b:AuxData>"),
            Ferro::RESULT_OK);
  ASSERT_THAT(Reel().AuxData, SizeIs(2));
  EXPECT_EQ(Reel().AuxData.front().Form, Cairn::ADF_DataType);
  EXPECT_EQ(Reel().AuxData.front().DataType, "urn:smpte:ul:1");
  EXPECT_EQ(Reel().AuxData.back().Form, Cairn::ADF_DataEssenceCoding);
  EXPECT_EQ(Reel().AuxData.back().DataType, "urn:smpte:ul:2");
}

TEST_F(CompositionPlaylistTest, AuxDataWithoutCodingIsTaken) {
  EXPECT_EQ(Read("<b:AuxData xmlns:b=\"http://www.smpte-ra.org/schemas/429-14/2014/Aux-Data\">" + std::string(Fields) +
                 "</b:AuxData>"),
            Ferro::RESULT_OK);
  EXPECT_EQ(Reel().AuxData.front().Form, Cairn::ADF_DataEssenceCoding);
  EXPECT_EQ(Reel().AuxData.front().DataType, "");
}

TEST_F(CompositionPlaylistTest, AuxDataWithoutEditRateHasThePictures) {
  EXPECT_EQ(Read("<a:AuxData xmlns:a=\"http://www.dolby.com/schemas/2012/AD\"><Id>urn:uuid:00000000-0000-4000-8000-"
                 "000000000012</Id><IntrinsicDuration>240</IntrinsicDuration></a:AuxData>" +
                 Picture()),
            Ferro::RESULT_OK);
  EXPECT_EQ(Reel().AuxData.front().EditRate, Rational(24, 1));
}

TEST_F(CompositionPlaylistTest, AuxDataAndMetadataInAnInteropCompositionAreReportedAndSkipped) {
  EXPECT_EQ(Read("<a:AuxData xmlns:a=\"http://www.dolby.com/schemas/2012/AD\"/>"
                 "<m:CompositionMetadataAsset "
                 "xmlns:m=\"http://www.smpte-ra.org/schemas/429-16/2014/CPL-Metadata\"/>" +
                     Picture(),
                 "", Interop),
            Ferro::RESULT_OK);
  EXPECT_THAT(m_Log.Warnings(),
              ElementsAre("CompositionPlaylist: AuxData is not defined in Interop, ignored\n",
                          "CompositionPlaylist: CompositionMetadataAsset is not defined in Interop, ignored\n"));
}

TEST_F(CompositionPlaylistTest, UnknownContentIsSkipped) {
  EXPECT_EQ(Read("<x:Thing xmlns:x=\"urn:x\"><Id>no id</Id></x:Thing><ProjectorData><Id>1</Id></ProjectorData>"
                 "<x:MainPicture xmlns:x=\"urn:x\">not ours</x:MainPicture>" +
                     Picture("<Unknown>1</Unknown><x:Id xmlns:x=\"urn:x\">2</x:Id>"),
                 "<Unknown/><x:Id xmlns:x=\"urn:x\">3</x:Id>"),
            Ferro::RESULT_OK);
  EXPECT_EQ(Reel().MainPicture.AssetID, SampleID(0x11));
  EXPECT_EQ(m_CPL.ID, SampleID(1));
  EXPECT_THAT(m_Log.Entries(), IsEmpty());
}

TEST_F(CompositionPlaylistTest, ASecondPictureIsReportedAndLeftOut) {
  EXPECT_EQ(Read(Picture() +
                 "<s:MainStereoscopicPicture "
                 "xmlns:s=\"http://www.smpte-ra.org/schemas/429-10/2008/Main-Stereo-Picture-CPL\">" +
                 Fields + "</s:MainStereoscopicPicture>"),
            Ferro::RESULT_OK);
  EXPECT_FALSE(m_CPL.StereoscopicImage);
  EXPECT_THAT(m_Log.Warnings(),
              ElementsAre("CompositionPlaylist: reel has another MainStereoscopicPicture, ignored\n"));
}

TEST_F(CompositionPlaylistTest, AReelMayBeWithoutAssets) {
  EXPECT_EQ(Read(""), Ferro::RESULT_OK);
  EXPECT_FALSE(Reel().MainPicture.AssetID.HasValue());
  EXPECT_FALSE(Reel().MainSound.AssetID.HasValue());
}

TEST_F(CompositionPlaylistTest, MalformedMarkersAreOnlyReported) {
  EXPECT_EQ(Read("<MainMarkers><Id>x</Id><MarkerList><Marker><Label> FFOC </Label><Offset>-5</Offset></Marker>"
                 "</MarkerList></MainMarkers>" +
                 Picture()),
            Ferro::RESULT_OK);
  EXPECT_THAT(m_Log.Errors(), IsEmpty());
  EXPECT_THAT(m_Log.Warnings(), Contains("CompositionPlaylist: malformed Offset \"-5\"\n"));
  EXPECT_EQ(Reel().MainMarkers.MarkerList.front().Label, "FFOC");
}

TEST_F(CompositionPlaylistTest, MalformedMetadataIsOnlyReported) {
  EXPECT_EQ(Read("<m:CompositionMetadataAsset xmlns:m=\"http://www.smpte-ra.org/schemas/429-16/2014/CPL-Metadata\">" +
                 std::string(Fields) +
                 "<m:FullContentTitleText>T</m:FullContentTitleText><m:MainSoundSampleRate>x</m:MainSoundSampleRate>"
                 "<m:VersionNumber>new</m:VersionNumber><y:MCASubDescriptors "
                 "xmlns:y=\"http://isdcf.com/ns/cplmd/mca\"><y:z/></y:MCASubDescriptors>"
                 "</m:CompositionMetadataAsset>"),
            Ferro::RESULT_OK);
  EXPECT_EQ(m_CPL.Metadata.FullContentTitle, "T");
  EXPECT_FALSE(m_CPL.Metadata.HasVersionNumber);
  EXPECT_THAT(m_Log.Warnings(), ElementsAre("CompositionPlaylist: malformed MainSoundSampleRate \"x\"\n",
                                            "CompositionPlaylist: malformed VersionNumber \"new\"\n"));
}

TEST_F(CompositionPlaylistTest, ASignatureIsTakenDownAndNotTested) {
  EXPECT_EQ(m_CPL.DecodeXML(
                "<CompositionPlaylist xmlns=\"" + std::string(Smpte) +
                "\"><Id>urn:uuid:00000000-0000-4000-8000-000000000001</Id><Signer/>"
                "<d:Signature xmlns:d=\"http://www.w3.org/2000/09/xmldsig#\"><d:KeyInfo><d:X509Data>"
                "<d:X509IssuerSerial><d:X509IssuerName>CN=a</d:X509IssuerName><d:X509SerialNumber>"
                "123456789012345678901234567890</d:X509SerialNumber></d:X509IssuerSerial>"
                "<d:X509Certificate>AQ\nID</d:X509Certificate></d:X509Data><d:X509Data/></d:KeyInfo></d:Signature>"
                "</CompositionPlaylist>"),
            Ferro::RESULT_OK);
  EXPECT_EQ(m_CPL.SignatureMode, Cairn::SM_UNTESTED);
  ASSERT_THAT(m_CPL.SignatureChain, SizeIs(2));
  EXPECT_EQ(m_CPL.SignatureChain.front(),
            (Cairn::X509Certificate{"CN=a", "123456789012345678901234567890", {1, 2, 3}}));
}

}  // namespace
