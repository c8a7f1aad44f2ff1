// SPDX-License-Identifier: BSD-3-Clause
#include "JsonSchema.h"
#include "MxfBuilder.h"
#include "SampleFolder.h"

#include <fstream>

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using Json = nlohmann::json;

namespace {

class Info : public SampleFolder {
 protected:
  /// Runs the command on one path; the item it reports.
  Json Of(const std::string& path, int exit_code = 0) const {
    StrataProgram info({"info", path, "--json"});
    EXPECT_EQ(info.Wait(), exit_code) << path << info.Errors();
    EXPECT_EQ(info.Errors(), "") << path;
    ExpectMatchesSchema(info.Output(), "strata-info-1");
    const Json report = Json::parse(info.Output());
    EXPECT_EQ(report["items"].size(), 1U);
    EXPECT_EQ(report["items"][0]["path"], path);
    EXPECT_EQ(report["items"][0].contains("problems"), exit_code != 0) << path;
    return report["items"][0];
  }

  /// Writes a file beside the show; its path.
  std::string Write(const std::string& name, const std::string& content) const {
    std::ofstream(Beside(name), std::ios::binary) << content;
    return Beside(name);
  }
};

TEST_F(Info, PictureTrackFile) {
  const Json item = Of(Show("Trailer/picture-1.mxf"));
  EXPECT_EQ(item["kind"], "JPEG 2000 picture track file");
  EXPECT_EQ(item["picture"]["width"], 96);
  EXPECT_EQ(item["picture"]["height"], 64);
  EXPECT_EQ(item["picture"]["bits"], 12);
  EXPECT_EQ(item["edit_rate"], "24 1");
  EXPECT_EQ(item["duration"], 24);
  EXPECT_EQ(item["label_set"], "SMPTE");
  EXPECT_EQ(item["encrypted"], false);
  EXPECT_EQ(item["index"], (Json{{"health", "good"}, {"covers", 24}}));
  EXPECT_EQ(item["structure"]["partitions"].size(), 3U);
}

TEST_F(Info, SoundTrackFileWithItsConfiguration) {
  const Json item = Of(Show("Trailer/sound-1.mxf"));
  EXPECT_EQ(item["sound"]["channels"], 6);
  EXPECT_EQ(item["sound"]["bits"], 24);
  EXPECT_EQ(item["sound"]["sampling_rate"], "48000 1");
  EXPECT_THAT(item["sound"]["configuration"].get<std::string>(), HasSubstr("L,R,C,LFE,Ls,Rs"));
  EXPECT_GT(item["index"]["edit_unit_bytes"], 36000);
}

TEST_F(Info, StereoscopicEncryptedTextAndImmersiveTrackFiles) {
  EXPECT_EQ(Of(Show("Stereoscopic/picture-1.mxf"))["picture"]["stereoscopic"], true);
  const Json encrypted = Of(Show("Encrypted/picture-1.mxf"));
  EXPECT_EQ(encrypted["encrypted"], true);
  EXPECT_TRUE(encrypted["encryption"].contains("key_id"));
  const Json text = Of(Show("Feature/subtitle-1.mxf"));
  EXPECT_EQ(text["kind"], "timed-text track file");
  EXPECT_TRUE(text["text"].contains("namespace"));
  EXPECT_EQ(Of(Show("Immersive/immersive-1.mxf"))["kind"], "immersive-audio track file");
}

TEST_F(Info, Documents) {
  const Json cpl = Of(Show("Feature/CPL.xml"));
  EXPECT_EQ(cpl["kind"], "composition playlist");
  EXPECT_EQ(cpl["reels"].size(), 3U);
  EXPECT_EQ(cpl["reels"][0]["duration"], 24);
  EXPECT_EQ(cpl["duration"], 72);
  EXPECT_EQ(Of(Show("Feature/PKL.xml"))["assets"].size(), 13U);
  EXPECT_EQ(Of(Show("Feature/ASSETMAP.xml"))["assets"].size(), 14U);
  EXPECT_EQ(Of(Show("Feature/VOLINDEX.xml"))["volume"], 1);
  const Json show = Of(Show("show.xml"));
  EXPECT_EQ(show["kind"], "show playlist");
  EXPECT_EQ(show["title"], "Sample show");
  EXPECT_EQ(show["sequence"][0], (Json{{"kind", "marker"}, {"label", "SHOW_START"}}));
  EXPECT_EQ(show["sequence"][1]["kind"], "show playlist");
}

TEST_F(Info, TimedTextAndPresentationListByTheirElements) {
  const Json text = Of(Write("text.xml",
                             "<SubtitleReel xmlns='http://www.smpte-ra.org/schemas/428-7/2010/DCST'>"
                             "<Id>urn:uuid:11111111-2222-4333-8444-555555555555</Id>"
                             "<ContentTitleText>A title</ContentTitleText><EditRate>24 1</EditRate><LoadFont/>"
                             "<SubtitleList><Subtitle><Text>a</Text><Text>b</Text></Subtitle></SubtitleList>"
                             "</SubtitleReel>"));
  EXPECT_EQ(text["kind"], "timed-text document");
  EXPECT_EQ(text["id"], "11111111-2222-4333-8444-555555555555");
  EXPECT_EQ(text["title"], "A title");
  EXPECT_EQ(text["edit_rate"], "24 1");
  EXPECT_EQ(text["spots"], 1);
  EXPECT_EQ(text["texts"], 2);
  EXPECT_EQ(text["fonts"], 1);
  const Json subtitle = Of(Write("subtitle.xml",
                                 "<DCSubtitle><SubtitleID>11111111-2222-4333-8444-555555555555</SubtitleID>"
                                 "<LoadFont Id='f' URI='font.ttf'/><Subtitle SpotNumber='1' TimeIn='00:00:01:000'"
                                 " TimeOut='00:00:02:000'><Text>a</Text></Subtitle></DCSubtitle>"));
  EXPECT_EQ(subtitle["kind"], "Interop subtitle");
  EXPECT_EQ(subtitle["spots"], 1);
  EXPECT_EQ(subtitle["files"], Json({"font.ttf"}));
  const Json list = Of(Write("rpl.xml",
                             "<ResourcePresentationList xmlns='http://www.smpte-ra.org/schemas/430-11/2010/RPL'>"
                             "<PlayoutID>7</PlayoutID></ResourcePresentationList>"));
  EXPECT_EQ(list["kind"], "resource presentation list");
  EXPECT_EQ(list["playout_id"], "7");
}

TEST_F(Info, FolderTellsOfItsPackages) {
  const Json item = Of(Show("Trailer"));
  EXPECT_EQ(item["kind"], "folder");
  EXPECT_EQ(item["packages"].size(), 1U);
  EXPECT_EQ(item["assets"].size(), 4U);
  std::filesystem::remove(Show("Trailer/sound-1.mxf"));
  const Json broken = Of(Show("Trailer"), 2);
  EXPECT_THAT(broken["problems"].dump(), AllOf(HasSubstr("/Trailer/sound-1.mxf: "), HasSubstr("missing")));
}

TEST_F(Info, TruncatedTrackFileLosesItsIndexAndFrames) {
  std::filesystem::resize_file(Show("Trailer/sound-1.mxf"), 20'000);
  const Json item = Of(Show("Trailer/sound-1.mxf"), 2);
  EXPECT_EQ(item["index"]["health"], "missing");
  EXPECT_THAT(item["problems"].dump(), HasSubstr("The file holds 0 of 24 edit units."));
}

TEST_F(Info, OverwrittenFrameIsFoundThroughTheIndex) {
  const std::string path = Show("Trailer/sound-1.mxf");
  {
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(200'000);
    file << std::string(100'000, '\0');
  }
  const Json item = Of(path, 2);
  EXPECT_EQ(item["index"]["health"], "damaged");
  // Edit units of 36,020 bytes from byte 16,520 on: the sixth begins at 196,620, the seventh in what was overwritten.
  EXPECT_THAT(item["problems"].dump(), HasSubstr("Edit unit 6 is not where the index says"));
}

TEST_F(Info, BrokenAndUnknownFilesSayWhy) {
  std::filesystem::resize_file(Show("Trailer/picture-1.mxf"), 3000);
  EXPECT_EQ(Of(Show("Trailer/picture-1.mxf"), 2)["problems"],
            Json({"The header of this MXF file is damaged: copy the file again."}));
  EXPECT_EQ(Of(Write("empty", ""), 2)["problems"], Json({"The file is empty."}));
  EXPECT_EQ(Of(Write("text", "hello\n"), 2)["kind"], "unknown file");
  EXPECT_EQ(Of(Write("other.xml", "<a xmlns='urn:other'/>"), 2)["kind"], "XML document");
  EXPECT_EQ(Of("/dev/null", 2)["kind"], "device");
  EXPECT_EQ(Of(Beside("nothing"), 1)["problems"], Json({"There is no such file or folder."}));
}

/// Tests of files that other equipment makes, built byte by byte.
class InfoOfMXF : public Info {
 protected:
  static testsupport::MxfBuilder Pictures() {
    testsupport::MxfBuilder builder(testsupport::MxfBuilder::JP2K);
    builder.Frames = {testsupport::Bytes(100, 1), testsupport::Bytes(120, 2), testsupport::Bytes(90, 3)};
    return builder;
  }
  Json Of(testsupport::MxfBuilder builder) const {
    const testsupport::Bytes bytes = builder.Build();
    return Info::Of(Write("built.mxf", std::string(bytes.begin(), bytes.end())), 2);
  }

  static constexpr Ferro::ui16_t OperationalPattern = 0x3b09;
  static constexpr Ferro::ui16_t EssenceContainer = 0x3004;
  static constexpr Ferro::ui16_t PictureCoding = 0x3201;
  static constexpr Ferro::ui16_t DisplayHeight = 0x3208;
  static constexpr Ferro::ui16_t DisplayWidth = 0x3209;
};

TEST_F(InfoOfMXF, SystemItemsAreNoDamage) {
  testsupport::MxfBuilder builder = Pictures();
  builder.Overrides["Preface"][OperationalPattern] = testsupport::Hex("060e2b34.04010101.0d010201.01010900");
  builder.FillBeforeEssence = builder.FillBetweenFrames =
      testsupport::Hex("060e2b34.02050101.0d010301.04010100 83000004 00000000");
  const Json item = Of(builder);
  EXPECT_EQ(item["problems"], Json({"This is OP1a, with system items: not a D-Cinema track file."}));
  EXPECT_EQ(item["index"], (Json{{"health", "good"}, {"covers", 3}}));
}

TEST_F(InfoOfMXF, DisplayedSizeStandsBesideTheStoredOne) {
  testsupport::MxfBuilder builder = Pictures();
  builder.Overrides["Descriptor"][DisplayHeight] = testsupport::Hex("00000010");
  builder.Overrides["Descriptor"][DisplayWidth] = testsupport::Hex("00000020");
  const testsupport::Bytes bytes = builder.Build();
  const std::string path = Write("built.mxf", std::string(bytes.begin(), bytes.end()));
  const Json picture = Info::Of(path)["picture"];
  EXPECT_EQ(picture["display_width"], 32);
  EXPECT_EQ(picture["display_height"], 16);
  StrataProgram info({"info", path});
  EXPECT_EQ(info.Wait(), 0);
  EXPECT_THAT(info.Output(), HasSubstr(" stored, 32\u00d716 displayed\n"));
}

TEST_F(InfoOfMXF, ClipWrappedPicturesAreNotCutOff) {
  testsupport::MxfBuilder builder = Pictures();
  builder.Overrides["Descriptor"][EssenceContainer] = testsupport::Hex("060e2b34.04010107.0d010301.020c0200");
  const Json item = Of(builder);
  EXPECT_EQ(item["problems"], Json({"This is OP-Atom, clip-wrapped: not a D-Cinema track file."}));
  EXPECT_FALSE(item.contains("index"));
}

TEST_F(InfoOfMXF, CodingOfOtherTradesIsToldByItsName) {
  testsupport::MxfBuilder builder = Pictures();
  builder.Overrides["Descriptor"][PictureCoding] = testsupport::Hex("060e2b34.0401010d.04010202.03010115");
  const Json item = Of(builder);
  EXPECT_EQ(item["problems"],
            Json({"Its pictures are coded as JPEG 2000, broadcast profile, which D-Cinema does not use."}));
  EXPECT_EQ(item["picture"]["coding_text"], "JPEG 2000, broadcast profile");
}

TEST_F(InfoOfMXF, AlgorithmsAreWhatTheFileSays) {
  const Json usual = Info::Of(Show("Encrypted/picture-1.mxf"))["encryption"];
  EXPECT_EQ(usual["cipher"], "AES-128 CBC");
  EXPECT_EQ(usual["integrity_algorithm"], "HMAC-SHA1");
}

TEST_F(Info, NothingIsToldThatNoDocumentSays) {
  const std::string start =
      "<ShowPlaylist xmlns='http://www.strata.example/ra/xsd/strata-spl-1'>"
      "<Id>urn:uuid:11111111-2222-4333-8444-555555555555</Id>";
  const std::string end = "<ShowTitleText>t</ShowTitleText><ShowSequence/></ShowPlaylist>";
  EXPECT_FALSE(Of(Write("show.xml", start + end)).contains("issue_date"));
  EXPECT_FALSE(Of(Write("show.xml", start + "<IssueDate>yesterday</IssueDate>" + end)).contains("issue_date"));
  EXPECT_EQ(Of(Write("show.xml", start + "<IssueDate>2026-03-01T12:00:00+00:00</IssueDate>" + end))["issue_date"],
            "2026-03-01T12:00:00+00:00");
  const Json subtitle = Of(Write("subtitle.xml",
                                 "<DCSubtitle><SubtitleID>11111111-2222-4333-8444-555555555555</SubtitleID>"
                                 "</DCSubtitle>"));
  EXPECT_FALSE(subtitle.contains("reel_number"));
}

TEST_F(Info, VolumesThatNoDocumentCountsAreNotCounted) {
  const std::string name = " xmlns=\"http://www.smpte-ra.org/schemas/429-9/2007/AM\">";
  const std::string id = "<Id>urn:uuid:00000000-0000-4000-8000-000000000001</Id>";
  const Json map = Of(Write("map.xml", "<AssetMap" + name + id + "<AssetList/></AssetMap>"));
  EXPECT_FALSE(map.contains("volumes"));
  const Json volume = Of(Write("volume.xml", "<VolumeIndex" + name + "</VolumeIndex>"), 2);
  EXPECT_FALSE(volume.contains("volume"));
  EXPECT_THAT(volume["problems"].at(0).get<std::string>(), HasSubstr("The document cannot be read in full: "));
}

TEST_F(Info, RawEssenceOutsideTrackFiles) {
  // The sizes stand in the header chunk alone; the rest of the image is not looked at.
  const Json image =
      Of(Write("a.png", std::string("\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR\0\0\0\x20\0\0\0\x10\x08\x06\0\0\0", 29)));
  EXPECT_EQ(image["kind"], "PNG image");
  EXPECT_EQ(image["picture"], (Json{{"width", 32}, {"height", 16}, {"bits", 8}}));
  const std::string wave(
      "RIFF\x2c\0\0\0WAVEfmt \x10\0\0\0\x01\0\x02\0\x80\xbb\0\0\0\x65\x04\0\x06\0\x18\0data\x06\0\0\0abcdef", 50);
  const Json sound = Of(Write("a.wav", wave));
  EXPECT_EQ(sound["sound"], (Json{{"channels", 2}, {"bits", 24}, {"sampling_rate", "48000 1"}}));
}

TEST_F(Info, TextHasEveryFactOnALine) {
  StrataProgram info({"info", Show("Trailer/picture-1.mxf"), Show("show.xml")});
  EXPECT_EQ(info.Wait(), 0);
  EXPECT_THAT(
      info.Output(),
      AllOf(HasSubstr("picture-1.mxf: JPEG 2000 picture track file\n"),
            HasSubstr("  description           96\u00d764, 24 fps, 0:01\n"),
            HasSubstr("  edit rate             24 edit units per second\n"),
            HasSubstr("  duration              0:01, 24 edit units\n"),
            HasSubstr("    size                96\u00d764\n"), HasSubstr("    aspect ratio        1.50:1\n"),
            HasSubstr("      body at byte 16384, stream 1\n"), HasSubstr("    marker SHOW_START\n"),
            HasSubstr("      marker CREDITS at edit unit 48\n"), Not(HasSubstr("_text")), Not(HasSubstr("24 1"))));
}

TEST_F(Info, TextSpeaksOfSoundAndCompositionsInTheWordsOfTheTrade) {
  StrataProgram info({"info", Show("Feature/sound-1.mxf"), Show("Feature/CPL.xml"), Show("Immersive/immersive-1.mxf")});
  EXPECT_EQ(info.Wait(), 0);
  EXPECT_THAT(info.Output(),
              AllOf(HasSubstr("  description           5.1, 48 kHz, 24 bit, 0:01\n"),
                    HasSubstr("    channels            6: L, R, C, LFE, Ls, Rs\n"),
                    HasSubstr("    sampling rate       48 kHz\n"), Not(HasSubstr("51(L")),
                    HasSubstr("  description           24 fps, en with en subtitles, captions, SMPTE, 3 reels\n"),
                    HasSubstr("      picture: plays 24 of 24 edit units, "),
                    HasSubstr("      sound en: plays 24 of 24 edit units, "),
                    HasSubstr("    coding              immersive audio\n"), Not(HasSubstr("060e2b34"))));
}

TEST_F(Info, MissingFilesAreToldByPathKindAndTitle) {
  std::filesystem::remove(Show("Feature/sound-2.mxf"));
  std::filesystem::remove(Show("Trailer/CPL.xml"));
  const Json item = Of(Show(), 2);
  const auto problem = [&](const std::string& text) {
    const auto& all = item["problems"];
    return std::find(all.begin(), all.end(), Json(text)) != all.end();
  };
  EXPECT_TRUE(problem(Show("Feature/sound-2.mxf") + ": SampleFeature, reel 2, sound: The file is missing."))
      << item["problems"];
  EXPECT_TRUE(problem(Show("Trailer/CPL.xml") + ": Trailer, composition: The file is missing.")) << item["problems"];
  const auto is_sound = [&](const Json& asset) {
    return asset.value("missing_file", "") == Show("Feature/sound-2.mxf");
  };
  const auto sound = std::find_if(item["assets"].begin(), item["assets"].end(), is_sound);
  ASSERT_NE(sound, item["assets"].end());
  EXPECT_EQ((*sound)["kind"], "missing file");
  EXPECT_EQ((*sound)["use"], "SampleFeature, reel 2, sound");

  StrataProgram text({"info", Show()});
  EXPECT_EQ(text.Wait(), 2);
  EXPECT_THAT(text.Output(),
              AllOf(HasSubstr("    missing file, Feature/sound-2.mxf, of SampleFeature, reel 2, sound, "),
                    HasSubstr("    composition playlist, Feature/CPL.xml, \"SampleFeature\", 24 fps, en with "
                              "en subtitles, captions, SMPTE, 3 reels, "),
                    Not(HasSubstr("unknown"))));
}

TEST_F(Info, CompositionOfAnIMFPackageIsSaidToBeOne) {
  std::ofstream(Show("Trailer/CPL.xml"))
      << "<CompositionPlaylist xmlns=\"http://www.smpte-ra.org/schemas/2067-3/2016\">"
         "<Id>urn:uuid:58ce4e14-c900-51d0-9c92-8e0aeba732ae</Id><ContentTitle>A "
         "master</ContentTitle></CompositionPlaylist>";
  const std::string sentence = "This belongs to an IMF package; cinema servers do not play it.";
  EXPECT_EQ(Of(Show("Trailer/CPL.xml"), 2)["problems"], Json({sentence}));
  StrataProgram check({"check", Show("Trailer/CPL.xml")});
  EXPECT_EQ(check.Wait(), 2);
  EXPECT_THAT(check.Output(), AllOf(HasSubstr("Expected a digital cinema package, found an IMF package"),
                                    Not(HasSubstr("cannot be read")), Not(HasSubstr("opy "))));
}

TEST_F(Info, BrokenXMLIsToldWithItsLine) {
  std::ofstream(Show("Trailer/CPL.xml")) << "<?xml version=\"1.0\"?>\n<CompositionPlaylist "
                                            "xmlns=\"http://www.smpte-ra.org/schemas/429-7/2006/CPL\">\n<Id>x</ID>\n";
  EXPECT_THAT(Of(Show("Trailer/CPL.xml"), 2)["problems"].dump(), HasSubstr("cannot be read in full: line 3: "));
  StrataProgram check({"check", Show("Trailer/CPL.xml")});
  EXPECT_EQ(check.Wait(), 2);
  EXPECT_THAT(check.Output(),
              HasSubstr(": The composition does not have the form that compositions have. Found: line 3: "));
  EXPECT_THAT(check.Output(), Not(HasSubstr("00000000-0000")));
}

TEST_F(Info, WithoutAPathItIsAUsageError) {
  StrataProgram info({"info"});
  EXPECT_EQ(info.Wait(), 1);
}

}  // namespace
