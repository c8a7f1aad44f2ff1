// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/ShowPlaylist.h>

#include "../../support/LogCapture.h"
#include "../../support/SchemaCheck.h"
#include "../../support/TestSeed.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <random>
#include <vector>

// Show playlists of all shapes, written and read again. STRATA_TEST_SEED repeats a run.

namespace Strata {
namespace {

class Maker {
 public:
  explicit Maker(ui64_t seed) : m_Random(seed) {}

  void Fill(ShowPlaylist& playlist) {
    playlist.ID = ID();
    playlist.Label = Text();
    playlist.ShowTitle = Text();
    playlist.Annotation = Text();
    playlist.IssueDate = Ferro::Timestamp(Between(0, 4102444800000), static_cast<i32_t>(Between(-839, 839)));
    playlist.Creator = Text();
    playlist.Issuer = Text();
    playlist.EstimatedDuration = Count();
    for (auto n = Between(0, 2); n > 0; --n) playlist.ShowParameters.push_back({Text(), Text()});
    for (auto n = Between(0, 6); n > 0; --n) playlist.ShowSequence.push_back(Item());
  }

 private:
  i64_t Between(i64_t least, i64_t most) { return std::uniform_int_distribution<i64_t>(least, most)(m_Random); }

  UUID ID() {
    std::array<ui8_t, 16> bytes{};
    for (ui8_t& byte : bytes) byte = static_cast<ui8_t>(Between(0, 255));
    return UUID(bytes);
  }

  ui32_t Count() {
    constexpr ui32_t edges[] = {0, 1, 24, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
    return Between(0, 1) == 0 ? edges[Between(0, 5)] : static_cast<ui32_t>(Between(0, 0xFFFFFFFF));
  }

  std::string Text() {
    static const std::vector<std::string> pieces{"a",
                                                 "Z",
                                                 "0",
                                                 " ",
                                                 "  ",
                                                 "\n",
                                                 "\r",
                                                 "\r\n",
                                                 "\t",
                                                 "<",
                                                 ">",
                                                 "&",
                                                 "\"",
                                                 "'",
                                                 "]]>",
                                                 "&amp;",
                                                 "\xC3\xA4",
                                                 "\xE6\x98\xA0\xE7\x94\xBB",
                                                 "\xF0\x9F\x8E\xAC"};
    std::string text;
    for (auto n = Between(0, 8); n > 0; --n) text += pieces[static_cast<size_t>(Between(0, i64_t(pieces.size()) - 1))];
    return text;
  }

  std::string Scope() {
    switch (Between(0, 2)) {
      case 0:
        return "";
      case 1:
        return ShowPlaylist::StandardMarkersScope;
      default:
        return "urn:x-" + std::to_string(Count());
    }
  }

  ShowPlaylist::MarkerItem Marker() {
    ShowPlaylist::MarkerItem marker;
    marker.Label = Text();
    marker.Scope = Scope();
    marker.Annotation = Text();
    marker.Offset = static_cast<i32_t>(Count());
    return marker;
  }

  std::unique_ptr<ShowPlaylist::CompositionItem> Composition() {
    auto composition = std::make_unique<ShowPlaylist::CompositionItem>();
    composition->ID = ID();
    composition->Annotation = Text();
    composition->EditRate = QUIRE::Rational(static_cast<i32_t>(Count()), static_cast<i32_t>(Count()));
    composition->Duration = Count();
    for (auto n = Between(0, 3); n > 0; --n) composition->MarkerList.push_back(Marker());
    return composition;
  }

  std::unique_ptr<ShowPlaylist::ShowItem> Item() {
    switch (Between(0, 2)) {
      case 0:
        return Composition();
      case 1:
        return std::make_unique<ShowPlaylist::MarkerItem>(Marker());
      default: {
        auto show = std::make_unique<ShowPlaylist::ShowPlaylistItem>();
        show->URI = "urn:uuid:" + ID().EncodeString();
        return show;
      }
    }
  }

  std::mt19937_64 m_Random;
};

// What the document says less: the standard scope, annotations of markers, signs of offsets.
void ExpectReadBack(const ShowPlaylist::MarkerItem& read, const ShowPlaylist::MarkerItem& written, bool placed) {
  EXPECT_EQ(read.Label, written.Label);
  EXPECT_EQ(read.Scope, written.Scope == ShowPlaylist::StandardMarkersScope ? "" : written.Scope);
  EXPECT_EQ(read.Annotation, "");
  if (!placed) {
    EXPECT_EQ(read.Offset, 0);
  } else if (written.Offset == std::numeric_limits<i32_t>::min()) {
    EXPECT_EQ(read.Offset, std::numeric_limits<i32_t>::max());
  } else {
    EXPECT_EQ(read.Offset, std::abs(written.Offset));
  }
}

void ExpectReadBack(const ShowPlaylist::CompositionItem& read, const ShowPlaylist::CompositionItem& written) {
  EXPECT_EQ(read.ID, written.ID);
  EXPECT_EQ(read.Annotation, written.Annotation);
  EXPECT_EQ(read.EditRate, written.EditRate);
  EXPECT_EQ(read.Duration, written.Duration);
  ASSERT_EQ(read.MarkerList.size(), written.MarkerList.size());
  auto marker = written.MarkerList.begin();
  for (const auto& read_marker : read.MarkerList) ExpectReadBack(read_marker, *marker++, true);
}

void ExpectReadBack(const ShowPlaylist::ShowItem& read, const ShowPlaylist::ShowItem& written) {
  ASSERT_EQ(read.m_Type, written.m_Type);
  if (read.m_Type == ShowPlaylist::SIT_CPL) {
    ExpectReadBack(dynamic_cast<const ShowPlaylist::CompositionItem&>(read),
                   dynamic_cast<const ShowPlaylist::CompositionItem&>(written));
  } else if (read.m_Type == ShowPlaylist::SIT_MARKER) {
    ExpectReadBack(dynamic_cast<const ShowPlaylist::MarkerItem&>(read),
                   dynamic_cast<const ShowPlaylist::MarkerItem&>(written), false);
  } else {
    EXPECT_EQ(dynamic_cast<const ShowPlaylist::ShowPlaylistItem&>(read).URI,
              dynamic_cast<const ShowPlaylist::ShowPlaylistItem&>(written).URI);
  }
}

void ExpectReadBack(const ShowPlaylist& read, const ShowPlaylist& written) {
  EXPECT_EQ(read.ID, written.ID);
  if (!written.Label.empty()) {
    EXPECT_EQ(read.Label, written.Label);
  }
  if (!written.ShowTitle.empty()) {
    EXPECT_EQ(read.ShowTitle, written.ShowTitle);
  } else {
    EXPECT_EQ(read.ShowTitle, written.Label.empty() ? "Untitled" : written.Label);
  }
  EXPECT_EQ(read.Annotation, written.Annotation);
  EXPECT_EQ(read.IssueDate, written.IssueDate);
  EXPECT_EQ(read.IssueDate.OffsetMinutes(), written.IssueDate.OffsetMinutes());
  EXPECT_EQ(read.Creator, written.Creator);
  EXPECT_EQ(read.Issuer, written.Issuer);
  EXPECT_EQ(read.EstimatedDuration, written.EstimatedDuration);
  EXPECT_TRUE(read.ShowParameters.empty());
  ASSERT_EQ(read.ShowSequence.size(), written.ShowSequence.size());
  auto item = written.ShowSequence.begin();
  for (const auto& read_item : read.ShowSequence) ExpectReadBack(*read_item, **item++);
}

TEST(ShowPlaylistRoundTrip, GeneratedModelsAreReadAsTheyWereWritten) {
  testsupport::LogCapture log;
  std::vector<std::string> documents;
  const ui32_t first = testsupport::TestSeed(1);
  for (ui32_t seed = first; seed < first + 500; ++seed) {
    SCOPED_TRACE("STRATA_TEST_SEED=" + std::to_string(seed));
    ShowPlaylist written;
    Maker(seed).Fill(written);
    std::string document;
    ASSERT_EQ(written.EncodeXML(document, Cairn::DFT_NONE), Ferro::RESULT_OK);
    ShowPlaylist read;
    ASSERT_EQ(read.DecodeXML(document), Ferro::RESULT_OK) << document;
    ExpectReadBack(read, written);
    ASSERT_FALSE(testing::Test::HasFailure()) << document;
    documents.push_back(std::move(document));
  }
  EXPECT_EQ(log.TextWithLevels(), "");
  EXPECT_EQ(testsupport::ValidateDocuments(SHOW_PLAYLIST_SCHEMA, documents), "");
}

}  // namespace
}  // namespace Strata
