// SPDX-License-Identifier: BSD-3-Clause
//
// Shows that are broken in one way each: one message, which names the file, the thing, the reason and what to do, and the
// exit code that fits.
#include "BrokenShow.h"
#include "ToldFinding.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

namespace {

namespace fs = std::filesystem;

const std::string Garbage("\0\x01\xfe not XML \0", 14);
const std::string CopyAgain = "    Copy the package again from its source.\n";
const std::string AskAgain = "    The package was made wrong: ask for a corrected one.\n";
const std::string StoreHint = "    Copy the package that holds it, or name its folder with --store.\n";
const std::string WillNot = "This show will not play.\n";
const std::string WillPlay =
    "This show needs keys for 1 composition: 0:07. Nothing else speaks against it. Contents were not read: --hash "
    "finds "
    "damage.\n";
const std::string WillPlayByDigests =
    "This show needs keys for 1 composition: 0:07. All files are as their packing lists say.\n";

struct Case {
  std::string Name;
  void (*Break)(const BrokenShow& show);
  std::string Answer;         ///< of BrokenShow::Check
  std::string Argument = "";  ///< below the show's folder, or an option; empty: the show's folder
};

std::ostream& operator<<(std::ostream& stream, const Case& broken) {
  return stream << broken.Name;
}

std::string Bytes(std::initializer_list<int> values) {
  std::string text;
  for (const int value : values) text += static_cast<char>(value);
  return text;
}

// Local tags of a sound descriptor with the lengths of their values (ST 382, ST 377-1, F.4.2).
const std::string SamplingRateTag = Bytes({0x3d, 0x03, 0, 8});
const std::string ChannelCountTag = Bytes({0x3d, 0x07, 0, 4});
const std::string QuantizationTag = Bytes({0x3d, 0x01, 0, 4});

const Case Cases[] = {
    {"MissingTrackFile", [](const BrokenShow& show) { show.Remove("Feature/picture-2.mxf"); },
     "3\n" +
         Told("missing", FindingID::PklAssetMissing, "SampleFeature, reel 2, picture", "",
              "SHOW/Feature/picture-2.mxf") +
         "This show will not play: missing 1 picture.\n"},
    {"MissingPackingList", [](const BrokenShow& show) { show.Remove("Feature/PKL.xml"); },
     "2\n" + Told("error", FindingID::PklMissing, "SampleFeature", "", "SHOW/Feature") + WillNot},
    {"MissingAssetMap", [](const BrokenShow& show) { show.Remove("Feature/ASSETMAP.xml"); },
     "2\n" + Told("error", FindingID::AmMissing, "", "", "SHOW/Feature") + WillNot},
    {"MissingComposition", [](const BrokenShow& show) { show.Remove("Immersive/CPL.xml"); },
     "3\n" + Told("missing", FindingID::PklAssetMissing, "Immersive", "", "SHOW/Immersive/CPL.xml") +
         "This show will not play: missing 1 composition.\n"},
    {"FileTooLong",
     [](const BrokenShow& show) { show.Write("Feature/sound-1.mxf", show.Read("Feature/sound-1.mxf") + '!'); },
     "2\n" +
         Told("error", FindingID::PklAssetSize, "SampleFeature, reel 1, sound",
              " Expected 881326 bytes, found 881327 bytes.", "SHOW/Feature/sound-1.mxf") +
         WillNot},
    {"CompositionOfAnotherSize",
     [](const BrokenShow& show) { show.Write("Trailer/CPL.xml", show.Read("Trailer/CPL.xml") + "\n"); },
     "2\n" +
         Told("error", FindingID::PklAssetSize, "SampleTrailer", " Expected 3461 bytes, found 3462 bytes.",
              "SHOW/Trailer/CPL.xml") +
         WillNot,
     "Trailer/CPL.xml"},
    {"CompositionWithAnotherIdentifier",
     [](const BrokenShow& show) { show.Replace("Trailer/CPL.xml", "58ce4e14-c900", "58ce4e14-c999"); },
     "2\n" + Told("error", FindingID::CplID, "SampleTrailer", "", "SHOW/Trailer/CPL.xml") + WillNot, "Trailer/CPL.xml"},
    {"CompositionInNoPackingList",
     [](const BrokenShow& show) {
       const std::string text = show.Read("Trailer/PKL.xml");
       const size_t begin = text.rfind("<Asset>", text.find("58ce4e14-c900"));
       show.Write("Trailer/PKL.xml",
                  text.substr(0, begin) + text.substr(text.find("</Asset>", begin) + std::string("</Asset>").size()));
     },
     "0\n" + Told("warning", FindingID::PklUnlisted, "SampleTrailer", "", "SHOW/Trailer/CPL.xml") +
         "Nothing speaks against this show: 0:01. Contents were not read: --hash finds damage.\n",
     "Trailer/CPL.xml"},
    {"TrackFileInNoPackingList",
     [](const BrokenShow& show) {
       const std::string text = show.Read("Trailer/PKL.xml");
       const size_t begin = text.rfind("<Asset>", text.find(">sound-1.mxf<"));
       show.Write("Trailer/PKL.xml",
                  text.substr(0, begin) + text.substr(text.find("</Asset>", begin) + std::string("</Asset>").size()));
     },
     "2\n" +
         Told("error", FindingID::ShowRefused, "",
              " Found: MainSound digest does not match reel 1 of 58ce4e14-c900-51d0-9c92-8e0aeba732ae, asset "
              "9c695350-78df-57e0-9878-c68f4732696d.") +
         Told("warning", FindingID::PklUnlisted, "SampleTrailer, reel 1, sound", "", "SHOW/Trailer/sound-1.mxf") +
         WillNot,
     "Trailer/CPL.xml"},
    {"SoundShorterThanThePicture",
     [](const BrokenShow& show) { show.Replace("Trailer/CPL.xml", "<Duration>24", "<Duration>20", "<MainSound>"); },
     "0\n" +
         Told("warning", FindingID::ReelDurations, "SampleTrailer, reel 1, sound",
              " Expected 24 edit units, found 20 edit units.", "SHOW/Trailer/sound-1.mxf") +
         "Nothing speaks against this show: 0:01. Contents were not read: --hash finds damage.\n",
     "Trailer/CPL.xml"},
    {"ChangedByte",
     [](const BrokenShow& show) {
       std::string sound = show.Read("Feature/sound-1.mxf");
       sound[100'000] ^= 1;
       show.Write("Feature/sound-1.mxf", sound);
     },
     "2\n" + Told("error", FindingID::PklAssetHash, "SampleFeature, reel 1, sound", "", "SHOW/Feature/sound-1.mxf") +
         WillNot,
     "--hash"},
    {"HeaderCut",
     [](const BrokenShow& show) {
       show.Cut("Feature/picture-2.mxf", 5000);
       show.ListSize("Feature/picture-2.mxf");
     },
     "2\n" +
         Told("error", FindingID::FileDamaged, "SampleFeature, reel 2, picture", " Found: no track file.",
              "SHOW/Feature/picture-2.mxf") +
         WillNot},
    {"BodyCut",
     [](const BrokenShow& show) {
       show.Cut("Feature/picture-2.mxf", 60'000);
       show.ListSize("Feature/picture-2.mxf");
     },
     "2\n" +
         Told("error", FindingID::FileDamaged, "SampleFeature, reel 2, picture",
              " Found: edit unit 23 of the file: its end is missing.", "SHOW/Feature/picture-2.mxf") +
         WillNot},
    {"EndCut",
     [](const BrokenShow& show) {
       show.Cut("Feature/picture-2.mxf", show.Read("Feature/picture-2.mxf").size() - 300);
       const std::string size = std::to_string(fs::file_size(show.Path("Feature/picture-2.mxf")) + 300);
       EXPECT_NE(show.Read("Feature/PKL.xml").find("<Size>" + size), std::string::npos);
     },
     "2\n" +
         Told("error", FindingID::PklAssetSize, "SampleFeature, reel 2, picture",
              " Expected 95868 bytes, found 95568 bytes.", "SHOW/Feature/picture-2.mxf") +
         WillNot},
    {"EmptyTrackFile",
     [](const BrokenShow& show) {
       show.Cut("Feature/sound-1.mxf", 0);
       show.ListSize("Feature/sound-1.mxf");
     },
     "2\n" +
         Told("error", FindingID::FileDamaged, "SampleFeature, reel 1, sound", " Found: no track file.",
              "SHOW/Feature/sound-1.mxf") +
         WillNot},
    {"WrongEditRateOfTheComposition",
     [](const BrokenShow& show) {
       for (int i = 0; i < 15; ++i) show.Replace("Feature/CPL.xml", "<EditRate>24 1", "<EditRate>25 1");
     },
     "2\n" +
         Told("error", FindingID::ReelRateFile, "SampleFeature, reel 1, picture", " Expected 25, found 24.",
              "SHOW/Feature/picture-1.mxf") +
         WillNot},
    {"MixedEditRates",
     [](const BrokenShow& show) { show.Replace("Feature/CPL.xml", "<EditRate>24 1", "<EditRate>25 1", "<MainSound>"); },
     "2\n" +
         Told("error", FindingID::ReelEditRate, "SampleFeature, reel 1, sound", " Expected 24, found 25.",
              "SHOW/Feature/sound-1.mxf") +
         WillNot},
    {"SoundInThePicturesPlace",
     [](const BrokenShow& show) {
       fs::copy_file(show.Path("Feature/sound-1.mxf"), show.Path("Feature/picture-1.mxf"),
                     fs::copy_options::overwrite_existing);
       show.ListSize("Feature/picture-1.mxf");
     },
     "2\n" +
         Told("error", FindingID::ReelAssetKind, "SampleFeature, reel 1, picture", " Expected picture, found sound.",
              "SHOW/Feature/picture-1.mxf") +
         WillNot},
    {"DurationBeyondTheFile",
     [](const BrokenShow& show) { show.Replace("Feature/CPL.xml", "<Duration>24", "<Duration>30"); },
     "2\n" +
         Told("error", FindingID::ReelEntryBeyond, "SampleFeature, reel 1, picture",
              " Expected 24 edit units, found 30 edit units.", "SHOW/Feature/picture-1.mxf") +
         WillNot},
    {"EntryPointBeyondTheEnd",
     [](const BrokenShow& show) {
       show.Replace("Feature/CPL.xml", "<EntryPoint>0", "<EntryPoint>100");
       show.ListSize("Feature/CPL.xml");
     },
     "2\n" +
         Told("error", FindingID::ReelEntryBeyond, "SampleFeature, reel 1, picture",
              " Expected 24 edit units, found 124 edit units.", "SHOW/Feature/picture-1.mxf") +
         WillNot},
    {"CompositionIsNotXML",
     [](const BrokenShow& show) {
       show.Write("Feature/CPL.xml", Garbage);
       show.ListSize("Feature/CPL.xml");
     },
     "2\n" +
         Told("error", FindingID::CplSchema, "Feature", " Found: it is not well-formed XML.", "SHOW/Feature/CPL.xml") +
         WillNot},
    {"CompositionIsEmpty", [](const BrokenShow& show) { show.Cut("Feature/CPL.xml", 0); },
     "2\n" +
         Told("error", FindingID::PklAssetSize, "Feature", " Expected 8133 bytes, found 0 bytes.",
              "SHOW/Feature/CPL.xml") +
         WillNot},
    {"CompositionIsCutOff",
     [](const BrokenShow& show) {
       show.Cut("Feature/CPL.xml", 3000);
       show.ListSize("Feature/CPL.xml");
     },
     "2\n" +
         Told("error", FindingID::CplSchema, "Feature", " Found: line 73: unexpected end of input.",
              "SHOW/Feature/CPL.xml") +
         WillNot},
    {"CompositionOfAnUnknownNamespace",
     [](const BrokenShow& show) {
       show.Replace("Feature/CPL.xml", "http://www.smpte-ra.org/schemas/429-7/2006/CPL", "http://another.example/CPL");
       show.ListSize("Feature/CPL.xml");
     },
     "2\n" +
         Told("error", FindingID::CplSchema, "Feature", " Found: its namespace is not known here.",
              "SHOW/Feature/CPL.xml") +
         WillNot},
    {"CompositionWithoutReels",
     [](const BrokenShow& show) {
       const std::string text = show.Read("Feature/CPL.xml");
       show.Write("Feature/CPL.xml", text.substr(0, text.find("<Reel>")) + text.substr(text.find("</ReelList>")));
       show.ListSize("Feature/CPL.xml");
     },
     "2\n" + Told("error", FindingID::CplNoReel, "SampleFeature", "", "SHOW/Feature/CPL.xml") + WillNot},
    {"PackingListIsNotXML", [](const BrokenShow& show) { show.Write("Feature/PKL.xml", Garbage); },
     "2\n" + Told("error", FindingID::PklMissing, "SampleFeature", "", "SHOW/Feature") + WillNot},
    {"AssetMapIsNotXML", [](const BrokenShow& show) { show.Write("Feature/ASSETMAP.xml", Garbage); },
     "2\n" + Told("error", FindingID::AmMissing, "", "", "SHOW/Feature") + WillNot},
    {"ShowIsNotXML", [](const BrokenShow& show) { show.Write("show.xml", Garbage); },
     "2\nstrata: SHOW/show.xml: this file is damaged, or no document of digital cinema: copy it again.\n", "show.xml"},
    {"ShowOfTheFolderIsNotXML", [](const BrokenShow& show) { show.Write("show.xml", Garbage); },
     "2\nstrata: SHOW/show.xml: this document is damaged: it is not well-formed XML. It may be the show that is meant: "
     "copy it again, or name what to take instead:\n  a19e3273-74b1-59c2-bae2-438223953875  "
     "SHOW/before-the-feature.xml  \"Before the feature\"\n"},
    {"ShowIsEmpty", [](const BrokenShow& show) { show.Cut("show.xml", 0); },
     "2\nstrata: SHOW/show.xml: this file is damaged, or no document of digital cinema: copy it again.\n", "show.xml"},
    {"ShowIsCutOff", [](const BrokenShow& show) { show.Cut("show.xml", 700); },
     "2\n" +
         Told("error", FindingID::ShowUnreadable, "", " Found: line 21: unexpected end of input.", "SHOW/show.xml") +
         WillNot,
     "show.xml"},
    {"ShowOfAnUnknownNamespace",
     [](const BrokenShow& show) { show.Replace("show.xml", "http://www.strata.example/ra/xsd/", "http://a.example/"); },
     "2\nstrata: SHOW/show.xml: this playlist cannot be read: its namespace is not known here.\n", "show.xml"},
    {"ShowNamesAnUnknownComposition",
     [](const BrokenShow& show) {
       show.Replace("show.xml", "832bf129-513d-56ec-9f6e-00743329a00d", "00000000-0000-4000-8000-000000000001");
     },
     "3\n" +
         Told("missing", FindingID::ShowCompositionMissing, "Feature",
              " Found: 00000000-0000-4000-8000-000000000001.") +
         "This show will not play: missing 1 composition.\n"},
    {"ShowNamesAnUnknownShow", [](const BrokenShow& show) { show.Remove("before-the-feature.xml"); },
     "3\n" + Told("missing", FindingID::ShowMissing, "", " Found: urn:uuid:a19e3273-74b1-59c2-bae2-438223953875.") +
         "This show will not play: missing 1 show playlist.\n"},
    {"ShowsContainEachOther",
     [](const BrokenShow& show) {
       show.Replace("before-the-feature.xml", "<ShowSequence>",
                    "<ShowSequence><ShowPlaylist><URI>urn:uuid:12882066-0fed-5c52-83e0-cf5e3b96e2bb</URI>"
                    "</ShowPlaylist>");
     },
     "2\n" + Told("error", FindingID::ShowLoop, "", "", "SHOW/show.xml") + WillNot, "show.xml"},
    {"PathLeavesThePackage",
     [](const BrokenShow& show) {
       fs::rename(show.Path("Feature/sound-1.mxf"), show.Beside("sound-1.mxf"));
       show.Replace("Feature/ASSETMAP.xml", "<Path>sound-1.mxf", "<Path>../../sound-1.mxf");
     },
     "2\n" + Told("error", FindingID::AmPath, "SampleFeature, reel 1, sound", "", "SHOW/Feature/../../sound-1.mxf") +
         WillNot},
    {"PathIsAbsolute",
     [](const BrokenShow& show) {
       show.Remove("Feature/sound-1.mxf");
       show.Replace("Feature/ASSETMAP.xml", "<Path>sound-1.mxf", "<Path>/etc/passwd");
     },
     "2\n" + Told("error", FindingID::AmPath, "SampleFeature, reel 1, sound", "", "/etc/passwd") + WillNot},
    {"WrongPathOfAFileThatIsThere",
     [](const BrokenShow& show) {
       show.Replace("Feature/ASSETMAP.xml", "<Path>sound-1.mxf", "<Path>../Trailer/sound-1.mxf");
     },
     "0\n" +
         Told("warning", FindingID::AmPath, "SampleFeature, reel 1, sound",
              " Expected SHOW/Feature/../Trailer/sound-1.mxf, found SHOW/Feature/sound-1.mxf.",
              "SHOW/Feature/sound-1.mxf") +
         WillPlay},
    {"AssetMapNamesAFolder",
     [](const BrokenShow& show) {
       fs::create_directory(show.Path("Feature/folder"));
       show.Remove("Feature/sound-1.mxf");
       show.Replace("Feature/ASSETMAP.xml", "<Path>sound-1.mxf", "<Path>folder");
     },
     "2\n" +
         Told("error", FindingID::FileUnreadable, "SampleFeature, reel 1, sound",
              " Found: It is no regular file but a folder, a pipe, a socket or a device.", "SHOW/Feature/folder") +
         WillNot},
    {"OneIdentifierForTwoFiles",
     [](const BrokenShow& show) {
       std::string sound = show.Read("Feature/sound-1.mxf");
       sound[100'000] ^= 1;
       show.Write("aside.mxf", sound);
     },
     "0\n" + WillPlayByDigests, "--hash"},
    {"FileOfAnotherAsset",
     [](const BrokenShow& show) {
       fs::copy_file(show.Path("Trailer/sound-1.mxf"), show.Path("Feature/sound-1.mxf"),
                     fs::copy_options::overwrite_existing);
     },
     "0\n" + Told("warning", FindingID::FileID, "SampleFeature, reel 1, sound", "", "SHOW/Feature/sound-1.mxf") +
         WillPlay},
    {"PipeForATrackFile",
     [](const BrokenShow& show) {
       show.Remove("Feature/sound-1.mxf");
       EXPECT_EQ(mkfifo(show.Path("Feature/sound-1.mxf").c_str(), 0600), 0);
     },
     "2\n" +
         Told("error", FindingID::FileUnreadable, "SampleFeature, reel 1, sound",
              " Found: It is no regular file but a folder, a pipe, a socket or a device.", "SHOW/Feature/sound-1.mxf") +
         WillNot},
    {"PipeForTheShow",
     [](const BrokenShow& show) {
       show.Remove("show.xml");
       EXPECT_EQ(mkfifo(show.Path("show.xml").c_str(), 0600), 0);
     },
     "2\nstrata: SHOW/show.xml: the file cannot be read: it is a folder, a device or a pipe.\n", "show.xml"},
    {"LinkToItself",
     [](const BrokenShow& show) {
       show.Remove("Feature/sound-1.mxf");
       fs::create_symlink("sound-1.mxf", show.Path("Feature/sound-1.mxf"));
     },
     "2\n" +
         Told("error", FindingID::FileUnreadable, "SampleFeature, reel 1, sound",
              " Found: The file is a symbolic link that leads out of the folder, or nowhere.",
              "SHOW/Feature/sound-1.mxf") +
         WillNot},
    {"LinkToTheFolderAbove",
     [](const BrokenShow& show) { fs::create_directory_symlink("..", show.Path("Feature/up")); }, "0\n" + WillPlay},
    {"SubtitleImageIsMissing",
     [](const BrokenShow& show) {
       const std::string text = show.Read("Feature/subtitle-1.mxf");
       const size_t begin = text.find("<Text ");
       const std::string line = text.substr(begin, text.find("</Text>", begin) + 7 - begin);
       std::string image = "<Image>urn:uuid:00000000-0000-4000-8000-000000000001</Image>";
       ASSERT_LE(image.size(), line.size());
       image.resize(line.size(), ' ');
       show.Replace("Feature/subtitle-1.mxf", line, image);
     },
     "2\n" +
         Told("error", FindingID::TextImageMissing, "SampleFeature, reel 1, subtitle",
              " Expected 00000000-0000-4000-8000-000000000001.", "SHOW/Feature/subtitle-1.mxf") +
         WillNot},
    {"SubtitleIsNotXML",
     [](const BrokenShow& show) { show.Replace("Feature/subtitle-1.mxf", "</SubtitleReel>", "</SubtitleRoll>"); },
     "2\n" +
         Told("error", FindingID::TextSchema, "SampleFeature, reel 1, subtitle", " Found: no well-formed XML.",
              "SHOW/Feature/subtitle-1.mxf") +
         WillNot},
    {"SoundOf44kHz",
     [](const BrokenShow& show) {
       show.Replace("Feature/sound-1.mxf", SamplingRateTag + Bytes({0, 0, 0xbb, 0x80}),
                    SamplingRateTag + Bytes({0, 0, 0xac, 0x44}));
     },
     "2\n" +
         Told("error", FindingID::SoundRate, "SampleFeature, reel 1, sound",
              " Expected 48000 or 96000 Hz, found 44100 Hz.", "SHOW/Feature/sound-1.mxf") +
         WillNot},
    {"SoundOf16Bits",
     [](const BrokenShow& show) {
       show.Replace("Feature/sound-1.mxf", QuantizationTag + Bytes({0, 0, 0, 24}),
                    QuantizationTag + Bytes({0, 0, 0, 16}));
     },
     "2\n" +
         Told("error", FindingID::SoundBits, "SampleFeature, reel 1, sound", " Expected 24 bits, found 16 bits.",
              "SHOW/Feature/sound-1.mxf") +
         WillNot},
    {"SoundWithoutChannels",
     [](const BrokenShow& show) {
       show.Replace("Feature/sound-1.mxf", ChannelCountTag + Bytes({0, 0, 0, 6}),
                    ChannelCountTag + Bytes({0, 0, 0, 0}));
     },
     "2\n" +
         Told("error", FindingID::SoundChannels, "SampleFeature, reel 1, sound", " Expected at least 1, found 0.",
              "SHOW/Feature/sound-1.mxf") +
         WillNot},
    {"SoundChangesBetweenReels",
     [](const BrokenShow& show) {
       show.Replace("Feature/sound-2.mxf", SamplingRateTag + Bytes({0, 0, 0xbb, 0x80}),
                    SamplingRateTag + Bytes({0, 1, 0x77, 0x00}));
     },
     "0\n" +
         ToldBare("warning", FindingID::SoundChanges, "SampleFeature, reel 2, sound",
                  " Expected 6 channels at 48000 Hz, found 6 channels at 96000 Hz.", "SHOW/Feature/sound-2.mxf") +
         Told("warning", FindingID::SoundChanges, "SampleFeature, reel 3, sound",
              " Expected 6 channels at 96000 Hz, found 6 channels at 48000 Hz.", "SHOW/Feature/sound-3.mxf") +
         WillPlay},
    {"OneReelWithoutSound",
     [](const BrokenShow& show) {
       const std::string text = show.Read("Feature/CPL.xml");
       const size_t end = text.find("</MainSound>") + 12;
       show.Write("Feature/CPL.xml", text.substr(0, text.find("<MainSound>")) + text.substr(end));
       show.ListSize("Feature/CPL.xml");
     },
     "0\n" + Told("warning", FindingID::ReelSoundSome, "SampleFeature") + WillPlay},
    {"CompositionWithoutSound",
     [](const BrokenShow& show) {
       const std::string text = show.Read("Trailer/CPL.xml");
       const size_t end = text.find("</MainSound>") + 12;
       show.Write("Trailer/CPL.xml", text.substr(0, text.find("<MainSound>")) + text.substr(end));
       show.ListSize("Trailer/CPL.xml");
     },
     "0\n" + Told("warning", FindingID::CplSoundMissing, "SampleTrailer") + WillPlay},
    {"AnotherIntrinsicDuration",
     [](const BrokenShow& show) {
       show.Replace("Feature/CPL.xml", "<IntrinsicDuration>24", "<IntrinsicDuration>99", "<MainPicture>");
     },
     "2\n" +
         Told("error", FindingID::ReelIntrinsic, "SampleFeature, reel 1, picture",
              " Expected 24 edit units, found 99 edit units.", "SHOW/Feature/picture-1.mxf") +
         WillNot},
    {"EncryptedWithoutKeyInTheComposition",
     [](const BrokenShow& show) {
       const std::string text = show.Read("Encrypted/CPL.xml");
       const size_t begin = text.find("<KeyId>");
       const std::string key = text.substr(begin, text.find("</KeyId>", begin) + 8 - begin);
       show.Replace("Encrypted/CPL.xml", key, std::string(key.size(), ' '));
     },
     "2\n" +
         Told("error", FindingID::ReelKeyMissing, "SampleEncrypted, reel 1, picture",
              " Found: c6bd76f2-fbfe-5b5a-aed6-a7c24e339911.", "SHOW/Encrypted/picture-1.mxf") +
         Told("error", FindingID::SignInvalid, "SampleEncrypted",
              " Found: The digest is not the document's: it was changed after it was signed.",
              "SHOW/Encrypted/CPL.xml") +
         WillNot},
};

class BrokenPackage : public testing::TestWithParam<Case> {};

TEST_P(BrokenPackage, GivesOneClearMessageAndTheExitCodeThatFits) {
  const BrokenShow show;
  GetParam().Break(show);
  std::vector<std::string> arguments;
  const std::string& argument = GetParam().Argument;
  if (!argument.empty()) arguments.push_back(argument.starts_with("--") ? argument : show.Path(argument));
  EXPECT_EQ(show.Check(arguments), GetParam().Answer);
}

INSTANTIATE_TEST_SUITE_P(Check, BrokenPackage, testing::ValuesIn(Cases),
                         [](const auto& test) { return test.param.Name; });

TEST(BrokenPackage, AlteredCompositionIsFoundByItsDigest) {
  const BrokenShow show;
  show.Replace("Trailer/CPL.xml", "<Issuer>Strata", "<Issuer>Stroto");
  EXPECT_EQ(show.Check({show.Path("Trailer/CPL.xml"), "--hash"}),
            "2\n" + Told("error", FindingID::CplHash, "SampleTrailer", "", "SHOW/Trailer/CPL.xml") + WillNot);
}

TEST(SupplementalPackage, FindsItsOriginalInAnotherStore) {
  const BrokenShow show;
  fs::copy(show.Path("Feature"), show.Beside("original"), fs::copy_options::recursive);
  for (const char* name : {"Feature/sound-1.mxf", "Feature/picture-2.mxf", "Feature/picture-3.mxf"}) {
    show.Unlist(name);
    show.Remove(name);
  }
  EXPECT_EQ(show.Check(), "3\n" + ToldBare("missing", FindingID::CplAssetExternal, "SampleFeature, reel 1, sound") +
                              ToldBare("missing", FindingID::CplAssetExternal, "SampleFeature, reel 2, picture") +
                              Told("missing", FindingID::CplAssetExternal, "SampleFeature, reel 3, picture") +
                              "This show will not play: missing 2 pictures, 1 sound.\n");
  fs::create_directory(show.Beside("empty"));
  EXPECT_EQ(show.Check({"--store", show.Beside("empty"), "--store", show.Beside("original"), "--hash"}),
            "0\n" + WillPlayByDigests);
}

}  // namespace
