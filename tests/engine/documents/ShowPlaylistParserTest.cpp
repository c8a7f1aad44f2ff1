// SPDX-License-Identifier: BSD-3-Clause
#include "ShowPlaylist/h__SPLParser.h"

#include "../../support/LogCapture.h"
#include "../../support/RecordCheck.h"
#include "../../support/TemporaryFolder.h"

#include <Cairn/InitObjectWithFile.h>
#include <Cairn/Result.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace Strata {
namespace {

using StrataTest::ID;
using testsupport::LogCapture;

using Composition = ShowPlaylist::CompositionItem;
using Marker = ShowPlaylist::MarkerItem;
using Show = ShowPlaylist::ShowPlaylistItem;

std::string Document(const std::string& children) {
  return "<ShowPlaylist xmlns=\"http://www.strata.example/ra/xsd/strata-spl-1\">" + children + "</ShowPlaylist>";
}

std::string Sequence(const std::string& items) {
  return Document("<ShowSequence>" + items + "</ShowSequence>");
}

void Decode(ShowPlaylist& playlist, const std::string& document) {
  EXPECT_EQ(playlist.DecodeXML(document), Ferro::RESULT_OK);
}

// The n-th item of the sequence, which must be of that kind.
template <class Item>
const Item& ItemAt(const ShowPlaylist& playlist, size_t n) {
  auto item = playlist.ShowSequence.begin();
  std::advance(item, n);
  return dynamic_cast<const Item&>(**item);
}

const char* const WholeShow = R"(<?xml version="1.0" encoding="UTF-8"?>
<!-- a show -->
<ShowPlaylist xmlns="http://www.strata.example/ra/xsd/strata-spl-1">
  <Id>
    urn:uuid:00112233-4455-6677-8899-AABBCCDDEEFF
  </Id>
  <Label>evening</Label>
  <ShowTitleText>Evening &amp; Night</ShowTitleText>
  <AnnotationText> two features </AnnotationText>
  <IssueDate>2026-03-01T13:00:00+01:00</IssueDate>
  <Creator>editor</Creator>
  <Issuer><![CDATA[<cinema>]]></Issuer>
  <EstimatedDuration>7200</EstimatedDuration>
  <ShowSequence>
    <Marker>
      <Label scope="urn:x-cues">house-lights</Label>
    </Marker>
    <CompositionPlaylist>
      <CompositionId>urn:uuid:11111111-2222-3333-4444-555555555555</CompositionId>
      <AnnotationText>feature</AnnotationText>
      <EditRate>24 1</EditRate>
      <Duration>172800</Duration>
      <Marker>
        <Label>FFOC</Label>
        <Annotation>first</Annotation>
        <Offset>17</Offset>
      </Marker>
    </CompositionPlaylist>
    <ShowPlaylist>
      <URI>urn:uuid:99999999-8888-7777-6666-555555555555</URI>
    </ShowPlaylist>
  </ShowSequence>
</ShowPlaylist>
)";

TEST(ShowPlaylistParser, ReadsTheHeader) {
  ShowPlaylist playlist;
  Decode(playlist, WholeShow);
  EXPECT_EQ(playlist.NamespaceName, "http://www.strata.example/ra/xsd/strata-spl-1");
  EXPECT_EQ(playlist.ID, ID("00112233-4455-6677-8899-aabbccddeeff"));
  EXPECT_EQ(playlist.Label, "evening");
  EXPECT_EQ(playlist.ShowTitle, "Evening & Night");
  EXPECT_EQ(playlist.Annotation, " two features ");
  EXPECT_EQ(playlist.IssueDate.EncodeString(), "2026-03-01T13:00:00+01:00");
  EXPECT_EQ(playlist.Creator, "editor");
  EXPECT_EQ(playlist.Issuer, "<cinema>");
  EXPECT_EQ(playlist.EstimatedDuration, 7200u);
  EXPECT_EQ(playlist.DCPFormat, Cairn::DFT_Interop);
  EXPECT_EQ(playlist.SignatureMode, Cairn::SM_NONE);
}

TEST(ShowPlaylistParser, ReadsTheSequenceInOrder) {
  ShowPlaylist playlist;
  Decode(playlist, WholeShow);
  ASSERT_EQ(playlist.ShowSequence.size(), 3u);

  const auto& marker = ItemAt<Marker>(playlist, 0);
  EXPECT_EQ(marker.Label, "house-lights");
  EXPECT_EQ(marker.Scope, "urn:x-cues");

  const auto& composition = ItemAt<Composition>(playlist, 1);
  EXPECT_EQ(composition.ID, ID("11111111-2222-3333-4444-555555555555"));
  EXPECT_EQ(composition.Annotation, "feature");
  EXPECT_EQ(composition.EditRate, QUIRE::Rational(24, 1));
  EXPECT_EQ(composition.Duration, 172800u);
  ASSERT_EQ(composition.MarkerList.size(), 1u);
  EXPECT_EQ(composition.MarkerList.front().Label, "FFOC");
  EXPECT_EQ(composition.MarkerList.front().Scope, "");
  EXPECT_EQ(composition.MarkerList.front().Annotation, "first");
  EXPECT_EQ(composition.MarkerList.front().Offset, 17);

  EXPECT_EQ(ItemAt<Show>(playlist, 2).URI, "urn:uuid:99999999-8888-7777-6666-555555555555");
}

TEST(ShowPlaylistParser, LogsNothingForAProperDocument) {
  LogCapture log;
  ShowPlaylist playlist;
  Decode(playlist, WholeShow);
  EXPECT_EQ(log.TextWithLevels(), "");
}

TEST(ShowPlaylistParser, ReadsFromAFile) {
  const testsupport::TemporaryFolder folder;
  ShowPlaylist playlist;
  EXPECT_EQ(Cairn::InitObjectWithFile(playlist, folder.Write("show.xml", WholeShow)), Ferro::RESULT_OK);
  EXPECT_EQ(playlist.ShowSequence.size(), 3u);
}

TEST(ShowPlaylistParser, PrefixesAreNotPartOfNames) {
  ShowPlaylist playlist;
  Decode(playlist,
         "<s:ShowPlaylist xmlns:s=\"http://www.strata.example/ra/xsd/strata-spl-1\"><s:Label>x</s:Label>"
         "<s:ShowSequence><s:Marker><s:Label scope=\"y\">z</s:Label></s:Marker></s:ShowSequence></s:ShowPlaylist>");
  EXPECT_EQ(playlist.Label, "x");
  ASSERT_EQ(playlist.ShowSequence.size(), 1u);
  EXPECT_EQ(ItemAt<Marker>(playlist, 0).Scope, "y");
}

TEST(ShowPlaylistParser, FormatIsThatOfTheNamespace) {
  ShowPlaylist playlist;
  Decode(playlist, "<ShowPlaylist xmlns=\"http://www.smpte-ra.org/schemas/spl\"/>");
  EXPECT_EQ(playlist.DCPFormat, Cairn::DFT_DCI_SMPTE);
  EXPECT_EQ(playlist.NamespaceName, "http://www.smpte-ra.org/schemas/spl");
}

TEST(ShowPlaylistParser, AnotherDocumentIsNotRead) {
  ShowPlaylist playlist;
  LogCapture log;
  EXPECT_EQ(playlist.DecodeXML("<CompositionPlaylist xmlns=\"http://www.smpte-ra.org/schemas/429-7/2006/CPL\">"
                               "<Id>urn:uuid:00112233-4455-6677-8899-aabbccddeeff</Id></CompositionPlaylist>"),
            Cairn::RESULT_NOT_CPL);
  EXPECT_FALSE(playlist.ID.HasValue());
  EXPECT_EQ(playlist.NamespaceName, "");
  EXPECT_EQ(playlist.DCPFormat, Cairn::DFT_NONE);
  EXPECT_EQ(log.TextWithLevels(), "");
}

TEST(ShowPlaylistParser, MalformedIdentifierIsRefused) {
  for (const char* id : {"00112233-4455-6677-8899-aabbccddeeff", "urn:uuid:00112233", "urn:uuid:", ""}) {
    ShowPlaylist playlist;
    LogCapture log;
    EXPECT_EQ(playlist.DecodeXML(Document(std::string("<Label>x</Label><Id>") + id + "</Id><Creator>y</Creator>")),
              Cairn::RESULT_CN_UUID_FORMAT);
    EXPECT_EQ(log.TextWithLevels(), std::string("E ShowPlaylist: malformed identifier \"") + id + "\" in element Id\n");
    EXPECT_FALSE(playlist.ID.HasValue());
    EXPECT_EQ(playlist.Label, "x");
    EXPECT_EQ(playlist.Creator, "");
    EXPECT_EQ(playlist.DCPFormat, Cairn::DFT_NONE);
  }
}

TEST(ShowPlaylistParser, MalformedCompositionIdKeepsTheItemsBefore) {
  ShowPlaylist playlist;
  LogCapture log;
  EXPECT_EQ(playlist.DecodeXML(Sequence("<Marker><Label>a</Label></Marker><CompositionPlaylist><CompositionId>"
                                        "urn:uuid:xyz</CompositionId></CompositionPlaylist><Marker/>")),
            Cairn::RESULT_CN_UUID_FORMAT);
  EXPECT_EQ(log.TextWithLevels(), "E ShowPlaylist: malformed identifier \"urn:uuid:xyz\" in element CompositionId\n");
  ASSERT_EQ(playlist.ShowSequence.size(), 1u);
  EXPECT_EQ(ItemAt<Marker>(playlist, 0).Label, "a");
}

TEST(ShowPlaylistParser, UnknownElementsArePassedOver) {
  ShowPlaylist playlist;
  LogCapture log;
  Decode(playlist, Document("<Rating><Label>no</Label></Rating><label>no</label><Label>yes</Label>"
                            "<ShowSequence><Pause><Marker/></Pause><Marker><Color/><Label>m</Label></Marker>"
                            "<CompositionPlaylist><Id>no</Id></CompositionPlaylist></ShowSequence>"));
  EXPECT_EQ(playlist.Label, "yes");
  EXPECT_EQ(playlist.ShowSequence.size(), 2u);
  EXPECT_EQ(log.TextWithLevels(), "");
}

TEST(ShowPlaylistParser, ElementsOfAnotherNamespaceArePassedOver) {
  ShowPlaylist playlist;
  Decode(playlist, Document("<Label>yes</Label><x:Label xmlns:x=\"urn:x\">no</x:Label><Id xmlns=\"urn:x\">no</Id>"
                            "<ShowSequence><Marker xmlns=\"urn:x\"/><Marker><Label>m</Label>"
                            "<Label xmlns=\"urn:x\">no</Label></Marker></ShowSequence>"));
  EXPECT_EQ(playlist.Label, "yes");
  ASSERT_EQ(playlist.ShowSequence.size(), 1u);
  EXPECT_EQ(ItemAt<Marker>(playlist, 0).Label, "m");
}

TEST(ShowPlaylistParser, ItemsAreAddedAfterThoseThatAreThere) {
  ShowPlaylist playlist;
  Decode(playlist, Sequence("<Marker><Label>a</Label></Marker>"));
  Decode(playlist, Sequence("<Marker><Label>b</Label></Marker>"));
  ASSERT_EQ(playlist.ShowSequence.size(), 2u);
  EXPECT_EQ(ItemAt<Marker>(playlist, 1).Label, "b");
}

TEST(ShowPlaylistParser, ShowParametersAreNotReadBack) {
  ShowPlaylist playlist;
  Decode(playlist, Document("<ShowParameters><Parameter><Name>n</Name><Value>v</Value></Parameter></ShowParameters>"));
  EXPECT_TRUE(playlist.ShowParameters.empty());
}

TEST(ShowPlaylistParser, EstimatedDurationIsWhatStandsAtTheStart) {
  const auto read = [](const char* text) {
    ShowPlaylist playlist;
    playlist.EstimatedDuration = 5;
    Decode(playlist, Document(std::string("<EstimatedDuration>") + text + "</EstimatedDuration>"));
    return playlist.EstimatedDuration;
  };
  EXPECT_EQ(read(" 90 seconds"), 90u);
  EXPECT_EQ(read("soon"), 0u);
  EXPECT_EQ(read(""), 0u);
  EXPECT_EQ(read("-1"), 0xFFFFFFFFu);
}

TEST(ShowPlaylistParser, MalformedIssueDateIsLoggedAndLeavesTheTime) {
  ShowPlaylist playlist;
  playlist.IssueDate = Ferro::Timestamp(1000);
  LogCapture log;
  Decode(playlist, Document("<IssueDate>yesterday</IssueDate>"));
  EXPECT_EQ(playlist.IssueDate.UnixMilliseconds(), 1000);
  EXPECT_EQ(log.TextWithLevels(), "W ShowPlaylist: malformed IssueDate \"yesterday\", ignored\n");
}

TEST(ShowPlaylistParser, SignatureIsTakenAsUntested) {
  ShowPlaylist playlist;
  Decode(playlist, Document("<Signature xmlns=\"http://www.w3.org/2000/09/xmldsig#\"><SignedInfo/></Signature>"));
  EXPECT_EQ(playlist.SignatureMode, Cairn::SM_UNTESTED);
  ShowPlaylist plain;
  Decode(plain, Document("<Signature/>"));
  EXPECT_EQ(plain.SignatureMode, Cairn::SM_UNTESTED);
}

TEST(ShowPlaylistParser, MarkerAnnotationIsTakenFromAnnotationAlone) {
  ShowPlaylist playlist;
  Decode(playlist, Sequence("<Marker><Label>a</Label><AnnotationText>no</AnnotationText></Marker>"
                            "<Marker><Annotation>yes</Annotation></Marker>"));
  EXPECT_EQ(ItemAt<Marker>(playlist, 0).Annotation, "");
  EXPECT_EQ(ItemAt<Marker>(playlist, 1).Annotation, "yes");
}

TEST(ShowPlaylistParser, OffsetOfAMarkerOutsideACompositionIsNotRead) {
  ShowPlaylist playlist;
  Decode(playlist, Sequence("<Marker><Label>a</Label><Offset>17</Offset></Marker>"));
  EXPECT_EQ(ItemAt<Marker>(playlist, 0).Offset, 0);
}

// The duration and the marker offset that are read from these texts.
std::pair<ui32_t, i32_t> ReadCounts(const std::string& duration, const std::string& offset) {
  ShowPlaylist playlist;
  Decode(playlist, Sequence("<CompositionPlaylist><Duration>" + duration + "</Duration><Marker><Offset>" + offset +
                            "</Offset></Marker></CompositionPlaylist>"));
  const auto& composition = ItemAt<Composition>(playlist, 0);
  return {composition.Duration, composition.MarkerList.front().Offset};
}

TEST(ShowPlaylistParser, CountsLoseTheirSign) {
  EXPECT_EQ(ReadCounts("-240", "-17"), std::make_pair(240u, 17));
  EXPECT_EQ(ReadCounts(" 240 ", "+17"), std::make_pair(240u, 17));
}

TEST(ShowPlaylistParser, CountsWithoutDigitsAreZero) {
  EXPECT_EQ(ReadCounts("long", ""), std::make_pair(0u, 0));
}

TEST(ShowPlaylistParser, CountsBeyondTheRangeEndAtItsEdge) {
  EXPECT_EQ(ReadCounts("4294967295", "2147483647"), std::make_pair(4294967295u, 2147483647));
  EXPECT_EQ(ReadCounts("4294967296", "2147483648"), std::make_pair(4294967295u, 2147483647));
  EXPECT_EQ(ReadCounts("-99999999999999999999", "-2147483648"), std::make_pair(4294967295u, 2147483647));
}

TEST(ShowPlaylistParser, MalformedEditRateIsLoggedAndTheRestIsRead) {
  ShowPlaylist playlist;
  LogCapture log;
  Decode(playlist, Sequence("<CompositionPlaylist><EditRate>24/1</EditRate><Duration>5</Duration>"
                            "</CompositionPlaylist>"));
  EXPECT_EQ(log.TextWithLevels(), "E Unable to decode rational value from string \"24/1\".");
  EXPECT_EQ(ItemAt<Composition>(playlist, 0).EditRate, QUIRE::Rational(0, 0));
  EXPECT_EQ(ItemAt<Composition>(playlist, 0).Duration, 5u);
}

TEST(ShowPlaylistParser, NestedShowIsTheFirstTextWhateverItsElement) {
  ShowPlaylist playlist;
  Decode(playlist, Sequence("<ShowPlaylist>\n  <Place>\n <Deep>a</Deep> <Deep>b</Deep></Place></ShowPlaylist>"
                            "<ShowPlaylist>c</ShowPlaylist><ShowPlaylist> <URI/> </ShowPlaylist>"));
  ASSERT_EQ(playlist.ShowSequence.size(), 3u);
  EXPECT_EQ(ItemAt<Show>(playlist, 0).URI, "a");
  EXPECT_EQ(ItemAt<Show>(playlist, 1).URI, "c");
  EXPECT_EQ(ItemAt<Show>(playlist, 2).URI, "");
}

TEST(ShowPlaylistParser, StaticImageIsLoggedAndAddsNothing) {
  ShowPlaylist playlist;
  LogCapture log;
  Decode(playlist, Sequence("<StaticImage><URI>a.png</URI></StaticImage><Marker/>"));
  EXPECT_EQ(log.TextWithLevels(), "W Ignoring StaticImage in playlist, not supported\n");
  EXPECT_EQ(playlist.ShowSequence.size(), 1u);
}

TEST(ShowPlaylistParser, WhatAShowLosesGoesToTheDefaultLogWhateverTheHandlersSink) {
  Cairn::init_xml_libs();
  ShowPlaylist playlist;
  LogCapture log;
  Ferro::MemoryLogSink given;
  h__SPLParser parser;
  EXPECT_EQ(parser.Parse(Sequence("<StaticImage/><CompositionPlaylist><EditRate>24</EditRate></CompositionPlaylist>"),
                         &playlist, given),
            Ferro::RESULT_OK);
  EXPECT_EQ(log.TextWithLevels(),
            "W Ignoring StaticImage in playlist, not supported\n"
            "E Unable to decode rational value from string \"24\".");
  EXPECT_TRUE(given.Entries().empty());
}

TEST(ShowPlaylistParser, DocumentOfAnUnknownNamespaceIsRefused) {
  ShowPlaylist playlist;
  LogCapture log;
  EXPECT_EQ(playlist.DecodeXML("<ShowPlaylist xmlns=\"http://other.example/\"/>"), Cairn::RESULT_XML_NAMESPACE);
  EXPECT_EQ(log.TextWithLevels(), "E Document does not contain SMPTE or JPEG Interop XML.\n");
}

TEST(ShowPlaylistParser, TextThatIsNoXMLIsRefused) {
  ShowPlaylist playlist;
  LogCapture log;
  EXPECT_EQ(playlist.DecodeXML("urn:uuid:00112233-4455-6677-8899-aabbccddeeff"), Cairn::RESULT_XML_PARSE);
  EXPECT_EQ(log.TextWithLevels(), "E Unable to parse XML document element.\n");
}

TEST(ShowPlaylistParser, DocumentCutAtAnyByteIsRefused) {
  const std::string whole = WholeShow;
  const size_t end = whole.find_last_of('>');
  for (size_t size = 0; size <= end; ++size) {
    ShowPlaylist playlist;
    LogCapture log;
    EXPECT_EQ(playlist.DecodeXML(whole.substr(0, size)), Cairn::RESULT_XML_PARSE) << size;
    EXPECT_NE(log.TextWithLevels(), "") << size;
    EXPECT_TRUE(playlist.ShowSequence.empty()) << size;
  }
}

TEST(ShowPlaylistParser, DocumentTypeDeclarationsAreRefused) {
  for (const char* dtd : {"<!DOCTYPE ShowPlaylist [<!ENTITY e SYSTEM \"file:///etc/hostname\">]>",
                          "<!DOCTYPE ShowPlaylist [<!ENTITY a \"aaaa\"><!ENTITY e \"&a;&a;&a;&a;\">]>",
                          "<!DOCTYPE ShowPlaylist SYSTEM \"http://www.strata.example/show.dtd\">"}) {
    ShowPlaylist playlist;
    LogCapture log;
    EXPECT_EQ(playlist.DecodeXML(dtd + Document("<Label>&e;</Label>")), Cairn::RESULT_XML_PARSE);
    EXPECT_NE(log.TextWithLevels(), "");
    EXPECT_EQ(playlist.Label, "");
  }
}

TEST(ShowPlaylistParser, ThreadsMayReadAtTheSameTime) {
  std::atomic<size_t> items = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int n = 0; n < 25; ++n) {
        ShowPlaylist playlist;
        if (playlist.DecodeXML(WholeShow).Success()) items += playlist.ShowSequence.size();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(items, 300u);
}

TEST(ShowPlaylistParser, DeepNestingIsRefused) {
  std::string open;
  std::string close;
  for (int i = 0; i < 100000; ++i) {
    open += "<ShowPlaylist>";
    close += "</ShowPlaylist>";
  }
  ShowPlaylist playlist;
  LogCapture log;
  EXPECT_EQ(playlist.DecodeXML(Sequence(open + close)), Cairn::RESULT_XML_PARSE);
  EXPECT_NE(log.TextWithLevels(), "");
}

}  // namespace
}  // namespace Strata
