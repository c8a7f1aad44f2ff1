// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/ShowPlaylist.h>

#include "../../support/LogCapture.h"
#include "../../support/RecordCheck.h"
#include "../../support/SchemaCheck.h"

#include <Ferro/XMLElement.h>
#include <QUIRE/Result.h>

#include <gtest/gtest.h>

namespace Strata {
namespace {

using StrataTest::ID;
using testsupport::LogCapture;

ShowPlaylist::MarkerItem Marker(const char* label, const char* scope, const char* annotation, i32_t offset) {
  ShowPlaylist::MarkerItem marker;
  marker.Label = label;
  marker.Scope = scope;
  marker.Annotation = annotation;
  marker.Offset = offset;
  return marker;
}

// A show that uses everything there is.
void FillShow(ShowPlaylist& playlist) {
  playlist.ID = ID("00112233-4455-6677-8899-aabbccddeeff");
  playlist.Label = "evening";
  playlist.ShowTitle = "Evening & Night";
  playlist.Annotation = "two features";
  playlist.IssueDate = Ferro::Timestamp(1772366400000, 60);
  playlist.Creator = "editor";
  playlist.Issuer = "cinema";
  playlist.EstimatedDuration = 7200;
  playlist.ShowParameters = {{"lights", "down"}, {"curtain", ""}};
  playlist.ShowSequence.push_back(
      std::make_unique<ShowPlaylist::MarkerItem>(Marker("house-lights", "urn:x-cues", "dim", 99)));
  auto composition = std::make_unique<ShowPlaylist::CompositionItem>();
  composition->ID = ID("11111111-2222-3333-4444-555555555555");
  composition->Annotation = "feature";
  composition->EditRate = QUIRE::Rational(24, 1);
  composition->Duration = 172800;
  composition->MarkerList.push_back(Marker("FFOC", ShowPlaylist::StandardMarkersScope, "", 0));
  composition->MarkerList.push_back(Marker("cue", "urn:x-cues", "halfway", 86400));
  playlist.ShowSequence.push_back(std::move(composition));
  auto show = std::make_unique<ShowPlaylist::ShowPlaylistItem>();
  show->URI = "urn:uuid:99999999-8888-7777-6666-555555555555";
  playlist.ShowSequence.push_back(std::move(show));
}

const char* const ShowDocument = R"(<?xml version="1.0" encoding="UTF-8"?>
<ShowPlaylist xmlns="http://www.strata.example/ra/xsd/strata-spl-1">
  <Id>urn:uuid:00112233-4455-6677-8899-aabbccddeeff</Id>
  <Label>evening</Label>
  <ShowTitleText>Evening &amp; Night</ShowTitleText>
  <AnnotationText>two features</AnnotationText>
  <IssueDate>2026-03-01T13:00:00+01:00</IssueDate>
  <Creator>editor</Creator>
  <Issuer>cinema</Issuer>
  <EstimatedDuration>7200</EstimatedDuration>
  <ShowParameters>
    <Parameter>
      <Name>lights</Name>
      <Value>down</Value>
    </Parameter>
    <Parameter>
      <Name>curtain</Name>
      <Value/>
    </Parameter>
  </ShowParameters>
  <ShowSequence>
    <Marker>
      <Label scope="urn:x-cues">house-lights</Label>
      <AnnotationText>dim</AnnotationText>
    </Marker>
    <CompositionPlaylist>
      <CompositionId>urn:uuid:11111111-2222-3333-4444-555555555555</CompositionId>
      <AnnotationText>feature</AnnotationText>
      <EditRate>24 1</EditRate>
      <Duration>172800</Duration>
      <Marker>
        <Label>FFOC</Label>
        <Offset>0</Offset>
      </Marker>
      <Marker>
        <Label scope="urn:x-cues">cue</Label>
        <AnnotationText>halfway</AnnotationText>
        <Offset>86400</Offset>
      </Marker>
    </CompositionPlaylist>
    <ShowPlaylist>
      <URI>urn:uuid:99999999-8888-7777-6666-555555555555</URI>
    </ShowPlaylist>
  </ShowSequence>
</ShowPlaylist>
)";

std::string Encoded(const ShowPlaylist& playlist) {
  std::string out;
  EXPECT_EQ(playlist.EncodeXML(out, Cairn::DFT_NONE), Ferro::RESULT_OK);
  return out;
}

// The text of the first element of that name.
std::string TextOf(const std::string& document, const std::string& name) {
  const size_t start = document.find("<" + name + ">") + name.size() + 2;
  return document.substr(start, document.find("</" + name + ">") - start);
}

TEST(ShowPlaylistEncoder, WritesEverythingThereIs) {
  ShowPlaylist playlist;
  FillShow(playlist);
  EXPECT_EQ(Encoded(playlist), ShowDocument);
}

TEST(ShowPlaylistEncoder, WritesNothingThatIsNotThere) {
  ShowPlaylist playlist;
  playlist.ID = ID("00112233-4455-6677-8899-aabbccddeeff");
  playlist.IssueDate = Ferro::Timestamp(1772366400000);
  EXPECT_EQ(Encoded(playlist), R"(<?xml version="1.0" encoding="UTF-8"?>
<ShowPlaylist xmlns="http://www.strata.example/ra/xsd/strata-spl-1">
  <Id>urn:uuid:00112233-4455-6677-8899-aabbccddeeff</Id>
  <Label>Untitled</Label>
  <ShowTitleText>Untitled</ShowTitleText>
  <IssueDate>2026-03-01T12:00:00+00:00</IssueDate>
  <ShowSequence/>
</ShowPlaylist>
)");
}

TEST(ShowPlaylistEncoder, IdentifierWithoutValueIsWrittenAsZeros) {
  EXPECT_EQ(TextOf(Encoded(ShowPlaylist()), "Id"), "urn:uuid:00000000-0000-0000-0000-000000000000");
}

TEST(ShowPlaylistEncoder, FormatIsNotLookedAt) {
  ShowPlaylist playlist;
  FillShow(playlist);
  for (const auto format : {Cairn::DFT_Interop, Cairn::DFT_DCI_SMPTE, Cairn::DFT_IMF}) {
    std::string out;
    EXPECT_EQ(playlist.EncodeXML(out, format), Ferro::RESULT_OK);
    EXPECT_EQ(out, ShowDocument);
  }
}

TEST(ShowPlaylistEncoder, LabelIsTheTitleLessSingleBlanksAndEverySecondOfARow) {
  const auto label = [](const char* title) {
    ShowPlaylist playlist;
    playlist.ShowTitle = title;
    return TextOf(Encoded(playlist), "Label");
  };
  EXPECT_EQ(label("My  Big Show"), "My BigShow");
  EXPECT_EQ(label("a b c"), "abc");
  EXPECT_EQ(label("a   b"), "a b");
  EXPECT_EQ(label(" a "), "a");
  EXPECT_EQ(label("a\tb"), "a\tb");
  EXPECT_EQ(label("ab"), "ab");
}

TEST(ShowPlaylistEncoder, TitleMadeIntoALabelStaysAsItIs) {
  ShowPlaylist playlist;
  playlist.ShowTitle = "My  Big Show";
  EXPECT_EQ(TextOf(Encoded(playlist), "ShowTitleText"), "My  Big Show");
}

TEST(ShowPlaylistEncoder, MissingTitleIsTheLabel) {
  ShowPlaylist playlist;
  playlist.Label = "my label";
  const std::string document = Encoded(playlist);
  EXPECT_EQ(TextOf(document, "Label"), "my label");
  EXPECT_EQ(TextOf(document, "ShowTitleText"), "my label");
}

TEST(ShowPlaylistEncoder, EstimatedDurationIsWrittenSigned) {
  ShowPlaylist playlist;
  playlist.EstimatedDuration = 0xFFFFFFFF;
  EXPECT_EQ(TextOf(Encoded(playlist), "EstimatedDuration"), "-1");
}

TEST(ShowPlaylistEncoder, DurationIsWrittenUnsigned) {
  ShowPlaylist playlist;
  auto composition = std::make_unique<ShowPlaylist::CompositionItem>();
  composition->Duration = 0xFFFFFFFF;
  composition->EditRate = QUIRE::Rational(-24, 1001);
  playlist.ShowSequence.push_back(std::move(composition));
  const std::string document = Encoded(playlist);
  EXPECT_EQ(TextOf(document, "Duration"), "4294967295");
  EXPECT_EQ(TextOf(document, "EditRate"), "-24 1001");
}

TEST(ShowPlaylistEncoder, StandardMarkersScopeIsLeftOut) {
  Ferro::XMLElement parent("ShowSequence");
  Marker("FFOC", "http://www.strata.example/ra/xsd/strata-spl-1#standard-markers", "", 0).EncodeXML(parent);
  Marker("FFOC", "", "", 0).EncodeXML(parent);
  Marker("FFOC", "http://www.strata.example/ra/xsd/strata-spl-1", "", 0).EncodeXML(parent);
  std::string out;
  ASSERT_EQ(parent.Render(out), Ferro::RESULT_OK);
  EXPECT_EQ(out, R"(<?xml version="1.0" encoding="UTF-8"?>
<ShowSequence>
  <Marker>
    <Label>FFOC</Label>
  </Marker>
  <Marker>
    <Label>FFOC</Label>
  </Marker>
  <Marker>
    <Label scope="http://www.strata.example/ra/xsd/strata-spl-1">FFOC</Label>
  </Marker>
</ShowSequence>
)");
}

TEST(ShowPlaylistEncoder, OffsetIsWrittenWithinACompositionOnly) {
  for (const char* name : {"ShowSequence", "ShowPlaylist"}) {
    Ferro::XMLElement parent(name);
    Marker("cue", "", "", 12).EncodeXML(parent);
    std::string out;
    ASSERT_EQ(parent.Render(out), Ferro::RESULT_OK);
    EXPECT_EQ(out.find("Offset"), std::string::npos);
  }
  Ferro::XMLElement parent("CompositionPlaylist");
  Marker("cue", "", "", -12).EncodeXML(parent);
  std::string out;
  ASSERT_EQ(parent.Render(out), Ferro::RESULT_OK);
  EXPECT_EQ(TextOf(out, "Offset"), "-12");
}

TEST(ShowPlaylistEncoder, ItemOfAnotherTypeIsAFormatErrorAndLogged) {
  for (const int type : {3, 9}) {
    ShowPlaylist playlist;
    FillShow(playlist);
    playlist.ShowSequence.back()->m_Type = static_cast<ShowPlaylist::ShowItemType_t>(type);
    std::string out = "as before";
    LogCapture log;
    EXPECT_EQ(playlist.EncodeXML(out, Cairn::DFT_NONE), QUIRE::RESULT_FORMAT);
    EXPECT_EQ(log.TextWithLevels(), "E Unexpected ShowSequence item type: " + std::to_string(type) + "\n");
    EXPECT_EQ(out, "as before");
  }
}

TEST(ShowPlaylistEncoder, TextThatXMLCannotCarryIsRefused) {
  ShowPlaylist playlist;
  playlist.Annotation = "bell \x07";
  std::string out = "as before";
  EXPECT_EQ(playlist.EncodeXML(out, Cairn::DFT_NONE), Ferro::RESULT_PARAM);
  EXPECT_EQ(out, "as before");
}

TEST(ShowPlaylistEncoder, DocumentsAreValidBySchema) {
  ShowPlaylist full;
  FillShow(full);
  EXPECT_EQ(testsupport::ValidateDocuments(SHOW_PLAYLIST_SCHEMA, {Encoded(full), Encoded(ShowPlaylist())}), "");
}

TEST(ShowPlaylistEncoder, SchemaRefusesWhatIsNoShowPlaylist) {
  EXPECT_NE(testsupport::ValidateDocuments(SHOW_PLAYLIST_SCHEMA,
                                           {"<ShowPlaylist xmlns='http://www.strata.example/ra/xsd/strata-spl-1'/>"}),
            "");
}

}  // namespace
}  // namespace Strata
