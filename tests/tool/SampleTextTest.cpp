// SPDX-License-Identifier: BSD-3-Clause
// The text of a sample show: its font, its images, its documents.
#include "sample/SampleFont.h"
#include "sample/SampleFontFile.h"
#include "sample/SampleImmersive.h"
#include "sample/SampleText.h"
#include "sample/SampleTrackFiles.h"

#include "Judges.h"
#include "TemporaryFolder.h"

#include <QUIRE/TimedTextReader.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>

using namespace Tool;
using Ferro::ui32_t;
using Ferro::ui8_t;
using testing::ElementsAre;
using testing::HasSubstr;
using testsupport::RunJudge;

namespace {

void Write(const std::string& filename, const std::vector<ui8_t>& bytes) {
  std::ofstream(filename, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

std::string Contents(const std::string& filename) {
  std::ostringstream text;
  text << std::ifstream(filename, std::ios::binary).rdbuf();
  return text.str();
}

/// One grey byte for each pixel of a line that ffmpeg writes in the font, 10 pixels for a dot, from the left edge on.
std::string WrittenByOthers(const std::string& text, ui32_t columns) {
  const testsupport::TemporaryFolder folder;
  Write(folder.Path("a.ttf"), MakeSampleFontFile());
  const std::string size = std::to_string(columns * 10) + "x70";
  RunJudge({"ffmpeg", "-v", "error", "-f", "lavfi", "-i", "color=black:s=" + size, "-frames:v", "1", "-vf",
            "format=gray,drawtext=fontfile=" + folder.Path("a.ttf") + ":text=" + text +
                ":fontsize=80:fontcolor=white:x=0:y=0",
            "-f", "rawvideo", "-pix_fmt", "gray", folder.Path("a.raw")});
  return Contents(folder.Path("a.raw"));
}

SampleText::Facts ExampleFacts() {
  SampleText::Facts facts;
  facts.DocumentID = Ferro::UUID::FromHex("10000000-0000-4000-8000-000000000001").value();
  facts.FontID = Ferro::UUID::FromHex("10000000-0000-4000-8000-000000000002").value();
  facts.ImageID = Ferro::UUID::FromHex("10000000-0000-4000-8000-000000000003").value();
  facts.Title = "TITLE";
  facts.Kind = "subtitle";
  facts.ReelNumber = 2;
  facts.Seconds = 1;
  facts.Rate = 25;
  facts.PictureHeight = 180;
  facts.Date = Ferro::Timestamp(1'767'225'600'000);
  return facts;
}

}  // namespace

TEST(SampleFontFile, AddsUpToTheSumOfFonts) {
  const std::vector<ui8_t> font = MakeSampleFontFile();
  ASSERT_EQ(font.size() % 4, 0U);
  ui32_t sum = 0;
  for (size_t i = 0; i < font.size(); ++i) sum += ui32_t{font[i]} << (24 - i % 4 * 8);
  EXPECT_EQ(sum, 0xb1b0afba);
}

TEST(SampleFontFile, HasItsTablesInOrderOfTheirTags) {
  const std::vector<ui8_t> font = MakeSampleFontFile();
  std::vector<std::string> tags;
  for (size_t i = 0; i < 10; ++i) tags.emplace_back(reinterpret_cast<const char*>(font.data()) + 12 + i * 16, 4);
  EXPECT_THAT(tags, ElementsAre("OS/2", "cmap", "glyf", "head", "hhea", "hmtx", "loca", "maxp", "name", "post"));
}

TEST(SampleFontFile, OthersWriteEachCharacterAsItsDots) {
  const std::string text = "H0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";  // none of them leaves the top row empty
  const auto columns = static_cast<ui32_t>(text.size()) * 6;
  const std::string pixels = WrittenByOthers(text, columns);
  ASSERT_EQ(pixels.size(), size_t{columns} * 700);
  for (ui32_t row = 0; row < 7; ++row)
    for (ui32_t column = 0; column < columns; ++column) {
      const bool is_set = column % 6 < 5 && (SampleGlyphOf(text[column / 6])[row] >> (4 - column % 6) & 1) != 0;
      const auto grey = static_cast<ui8_t>(pixels[(size_t{row} * 10 + 5) * columns * 10 + column * 10 + 5]);
      EXPECT_EQ(grey > 127, is_set) << text[column / 6] << " row " << row << " column " << column % 6;
    }
}

TEST(SampleFontFile, SmallLettersLookLikeCapitals) {
  EXPECT_EQ(WrittenByOthers("abcxyz", 36), WrittenByOthers("ABCXYZ", 36));
}

TEST(SampleText, SMPTEDocumentNamesFontAndImageByIdentifier) {
  EXPECT_EQ(SampleText(ExampleFacts()).SMPTEDocument(),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<SubtitleReel xmlns=\"http://www.smpte-ra.org/schemas/428-7/2010/DCST\">\n"
            "  <Id>urn:uuid:10000000-0000-4000-8000-000000000001</Id>\n"
            "  <ContentTitleText>TITLE</ContentTitleText>\n"
            "  <IssueDate>2026-01-01T00:00:00+00:00</IssueDate>\n"
            "  <ReelNumber>2</ReelNumber>\n"
            "  <Language>en</Language>\n"
            "  <EditRate>25 1</EditRate>\n"
            "  <TimeCodeRate>25</TimeCodeRate>\n"
            "  <StartTime>00:00:00:00</StartTime>\n"
            "  <LoadFont ID=\"Sample\">urn:uuid:10000000-0000-4000-8000-000000000002</LoadFont>\n"
            "  <SubtitleList>\n"
            "    <Font ID=\"Sample\">\n"
            "      <Subtitle SpotNumber=\"1\" TimeIn=\"00:00:00:00\" TimeOut=\"00:00:00:12\">\n"
            "        <Text Valign=\"bottom\" Vposition=\"8\">Reel 2 subtitle of second 0</Text>\n"
            "      </Subtitle>\n"
            "      <Subtitle SpotNumber=\"2\" TimeIn=\"00:00:00:12\" TimeOut=\"00:00:01:00\">\n"
            "        <Image Valign=\"bottom\" Vposition=\"8\">urn:uuid:10000000-0000-4000-8000-000000000003</Image>\n"
            "      </Subtitle>\n"
            "    </Font>\n"
            "  </SubtitleList>\n"
            "</SubtitleReel>\n");
}

TEST(SampleText, InteropDocumentNamesFilesAndCountsTicks) {
  const std::string document = SampleText(ExampleFacts()).InteropDocument();
  EXPECT_THAT(document, HasSubstr("<SubtitleID>10000000-0000-4000-8000-000000000001</SubtitleID>"));
  EXPECT_THAT(document, HasSubstr("<LoadFont Id=\"Sample\" URI=\"font.ttf\"/>"));
  EXPECT_THAT(document, HasSubstr("TimeIn=\"00:00:00:125\" TimeOut=\"00:00:01:000\">\n"
                                  "      <Image VAlign=\"bottom\" VPosition=\"8\">image.png</Image>"));
}

TEST(SampleText, WithoutImageALineStandsForItsWholeSecond) {
  SampleText::Facts without = ExampleFacts();
  without.ImageID = Ferro::UUID();
  const std::string document = SampleText(without).SMPTEDocument();
  EXPECT_THAT(document, HasSubstr("TimeIn=\"00:00:00:00\" TimeOut=\"00:00:01:00\""));
  EXPECT_THAT(document, testing::Not(HasSubstr("<Image")));
}

TEST(SampleText, ImageIsTheReelInWhiteWithABorderOnNothing) {
  const testsupport::TemporaryFolder folder;
  Write(folder.Path("a.png"), SampleText(ExampleFacts()).Image());
  RunJudge({"ffmpeg", "-v", "error", "-i", folder.Path("a.png"), "-f", "rawvideo", "-pix_fmt", "rgba",
            folder.Path("a.raw")});
  const std::string pixels = Contents(folder.Path("a.raw"));
  ASSERT_EQ(pixels.size(), 74U * 18 * 4);  // two pixels for a dot: 6 characters of 6 x 7 dots, and the border
  const auto at = [&](size_t x, size_t y) { return pixels.substr((y * 74 + x) * 4, 4); };
  EXPECT_EQ(at(2, 2), "\xff\xff\xff\xff");                    // the upper left dot of the R
  EXPECT_EQ(at(1, 1), std::string("\x00\x00\x00\xff", 4));    // its border
  EXPECT_EQ(at(38, 8), "\xff\xff\xff\xff");                   // the stem of the L
  EXPECT_EQ(at(40, 8), std::string("\x00\x00\x00\xff", 4));   // its border
  EXPECT_EQ(at(43, 8), std::string("\x00\x00\x00\x00", 4));   // the nothing that it encloses
  EXPECT_EQ(at(70, 17), std::string("\x00\x00\x00\xff", 4));  // the border below the 2
  EXPECT_EQ(at(56, 8), std::string("\x00\x00\x00\x00", 4));   // the blank before it
}

TEST(SampleText, TrackFileCarriesItsFontAndItsImage) {
  const testsupport::TemporaryFolder folder;
  SampleOptions options;
  options.Seconds = 1;
  const SampleTrackFiles files(options);
  const SampleTrackFiles::Reel reel = {"FEATURE", 1};
  files.WriteText(folder.Path("a.mxf"), reel, "subtitle");
  const SampleText text = files.Text(reel, "subtitle");

  QUIRE::TimedText::MXFReader reader;
  ASSERT_TRUE(reader.OpenRead(folder.Path("a.mxf")).Success());
  const auto resource = [&](const Ferro::UUID& id) {
    QUIRE::TimedText::FrameBuffer buffer;
    EXPECT_TRUE(reader.ReadAncillaryResource(id, buffer).Success());
    return std::vector<ui8_t>(buffer.Data(), buffer.Data() + buffer.Size());
  };
  EXPECT_EQ(resource(text.About().FontID), MakeSampleFontFile());
  EXPECT_EQ(resource(text.About().ImageID), text.Image());
}

TEST(SampleImmersive, FrameIsAPreambleWithItsNumberAndAnEmptyElement) {
  const std::vector<ui8_t> frame = SampleImmersiveFrame(258, 48);
  ASSERT_EQ(frame.size(), 1619U);
  EXPECT_THAT(std::vector<ui8_t>(frame.begin(), frame.begin() + 10), ElementsAre(1, 0, 0, 6, 0x43, 0, 0, 1, 2, 0));
  EXPECT_TRUE(std::all_of(frame.begin() + 9, frame.begin() + 1608, [](ui8_t byte) { return byte == 0; }));
  EXPECT_THAT(std::vector<ui8_t>(frame.begin() + 1608, frame.end()), ElementsAre(2, 0, 0, 0, 6, 8, 4, 1, 0x13, 0, 0));
}
