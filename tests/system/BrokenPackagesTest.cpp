// SPDX-License-Identifier: BSD-3-Clause
//
// Shows that are broken in one way each: one message, which names the file, the thing, the reason and what to do, and the
// exit code that fits.
#include "BrokenShow.h"

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
     "3\nmissing: SampleFeature, reel 2, picture: The file is missing.\n    file  SHOW/Feature/picture-2.mxf\n" +
         CopyAgain + "This show will not play: missing 1 picture.\n"},
    {"MissingPackingList", [](const BrokenShow& show) { show.Remove("Feature/PKL.xml"); },
     "2\nerror: SampleFeature, packing list: The packing list of this package is missing or damaged, so its files "
     "cannot "
     "be verified.\n    file  SHOW/Feature\n" +
         CopyAgain + WillNot},
    {"MissingAssetMap", [](const BrokenShow& show) { show.Remove("Feature/ASSETMAP.xml"); },
     "0\nwarning: package: The asset map is missing or damaged; the files were found without it.\n    file  "
     "SHOW/Feature\n    Other equipment may refuse the package: copy it again from its source.\n" +
         WillPlay},
    {"MissingComposition", [](const BrokenShow& show) { show.Remove("Immersive/CPL.xml"); },
     "3\nmissing: Immersive, composition: The file is missing.\n    file  SHOW/Immersive/CPL.xml\n" + CopyAgain +
         "This show will not play: missing 1 composition.\n"},
    {"FileTooLong",
     [](const BrokenShow& show) { show.Write("Feature/sound-1.mxf", show.Read("Feature/sound-1.mxf") + '!'); },
     "2\nerror: SampleFeature, reel 1, sound: The file does not have the size that the package lists. Expected 881326 "
     "bytes, found 881327 bytes.\n    file  SHOW/Feature/sound-1.mxf\n" +
         CopyAgain + WillNot},
    {"CompositionOfAnotherSize",
     [](const BrokenShow& show) { show.Write("Trailer/CPL.xml", show.Read("Trailer/CPL.xml") + "\n"); },
     "2\nerror: SampleTrailer, composition: The file does not have the size that the package lists. Expected 3461 "
     "bytes, "
     "found 3462 bytes.\n    file  SHOW/Trailer/CPL.xml\n" +
         CopyAgain + WillNot,
     "Trailer/CPL.xml"},
    {"CompositionWithAnotherIdentifier",
     [](const BrokenShow& show) { show.Replace("Trailer/CPL.xml", "58ce4e14-c900", "58ce4e14-c999"); },
     "2\nerror: SampleTrailer, composition: The composition says that it is another asset.\n    file  "
     "SHOW/Trailer/CPL.xml\n" +
         AskAgain + WillNot,
     "Trailer/CPL.xml"},
    {"CompositionInNoPackingList",
     [](const BrokenShow& show) {
       const std::string text = show.Read("Trailer/PKL.xml");
       const size_t begin = text.rfind("<Asset>", text.find("58ce4e14-c900"));
       show.Write("Trailer/PKL.xml",
                  text.substr(0, begin) + text.substr(text.find("</Asset>", begin) + std::string("</Asset>").size()));
     },
     "0\nwarning: SampleTrailer, composition: It lies in the package, but no packing list names it.\n    file  "
     "SHOW/Trailer/CPL.xml\nNothing speaks against this show: 0:01. Contents were not read: --hash finds damage.\n",
     "Trailer/CPL.xml"},
    {"TrackFileInNoPackingList",
     [](const BrokenShow& show) {
       const std::string text = show.Read("Trailer/PKL.xml");
       const size_t begin = text.rfind("<Asset>", text.find(">sound-1.mxf<"));
       show.Write("Trailer/PKL.xml",
                  text.substr(0, begin) + text.substr(text.find("</Asset>", begin) + std::string("</Asset>").size()));
     },
     "2\nerror: SampleTrailer, reel 1, sound: The composition states a digest of the file, but no packing list names "
     "it.\n    file  SHOW/Trailer/sound-1.mxf\n" +
         AskAgain + WillNot,
     "Trailer/CPL.xml"},
    {"SoundShorterThanThePicture",
     [](const BrokenShow& show) { show.Replace("Trailer/CPL.xml", "<Duration>24", "<Duration>20", "<MainSound>"); },
     "0\nwarning: SampleTrailer, reel 1, sound: The asset is not as long as the picture of its reel. Expected 24 edit "
     "units, found 20 edit units.\n    file  SHOW/Trailer/sound-1.mxf\nNothing speaks against this show: 0:01. "
     "Contents "
     "were not read: --hash finds damage.\n",
     "Trailer/CPL.xml"},
    {"ChangedByte",
     [](const BrokenShow& show) {
       std::string sound = show.Read("Feature/sound-1.mxf");
       sound[100'000] ^= 1;
       show.Write("Feature/sound-1.mxf", sound);
     },
     "2\nerror: SampleFeature, reel 1, sound: The file was altered: its digest is not the one that the packing list "
     "gives.\n    file  SHOW/Feature/sound-1.mxf\n" +
         CopyAgain + WillNot,
     "--hash"},
    {"HeaderCut",
     [](const BrokenShow& show) {
       show.Cut("Feature/picture-2.mxf", 5000);
       show.ListSize("Feature/picture-2.mxf");
     },
     "2\nerror: SampleFeature, reel 2, picture: The file is no track file: it is damaged, or something else has its "
     "name.\n    file  SHOW/Feature/picture-2.mxf\n" +
         CopyAgain + WillNot},
    {"BodyCut",
     [](const BrokenShow& show) {
       show.Cut("Feature/picture-2.mxf", 60'000);
       show.ListSize("Feature/picture-2.mxf");
     },
     "2\nerror: SampleFeature, reel 2, picture: The track file is damaged or was cut short: edit unit 23 cannot be "
     "read: its end is missing.\n    file  "
     "SHOW/Feature/picture-2.mxf\n" +
         CopyAgain + WillNot},
    {"EndCut",
     [](const BrokenShow& show) {
       show.Cut("Feature/picture-2.mxf", show.Read("Feature/picture-2.mxf").size() - 300);
       const std::string size = std::to_string(fs::file_size(show.Path("Feature/picture-2.mxf")) + 300);
       EXPECT_NE(show.Read("Feature/PKL.xml").find("<Size>" + size), std::string::npos);
     },
     "2\nerror: SampleFeature, reel 2, picture: The file does not have the size that the package lists. Expected 95868 "
     "bytes, found 95568 bytes.\n    file  SHOW/Feature/picture-2.mxf\n" +
         CopyAgain + WillNot},
    {"EmptyTrackFile",
     [](const BrokenShow& show) {
       show.Cut("Feature/sound-1.mxf", 0);
       show.ListSize("Feature/sound-1.mxf");
     },
     "2\nerror: SampleFeature, reel 1, sound: The file is no track file: it is damaged, or something else has its "
     "name.\n    file  SHOW/Feature/sound-1.mxf\n" +
         CopyAgain + WillNot},
    {"WrongEditRateOfTheComposition",
     [](const BrokenShow& show) {
       for (int i = 0; i < 15; ++i) show.Replace("Feature/CPL.xml", "<EditRate>24 1", "<EditRate>25 1");
     },
     "2\nerror: SampleFeature, reel 1, picture: The file runs at another edit rate than the composition says. Expected "
     "25, found 24.\n    file  SHOW/Feature/picture-1.mxf\n" +
         AskAgain + WillNot},
    {"MixedEditRates",
     [](const BrokenShow& show) { show.Replace("Feature/CPL.xml", "<EditRate>24 1", "<EditRate>25 1", "<MainSound>"); },
     "2\nerror: SampleFeature, reel 1, sound: The edit rate is not the composition's: they must not be mixed. Expected "
     "24, found 25.\n    file  SHOW/Feature/sound-1.mxf\n" +
         AskAgain + WillNot},
    {"SoundInThePicturesPlace",
     [](const BrokenShow& show) {
       fs::copy_file(show.Path("Feature/sound-1.mxf"), show.Path("Feature/picture-1.mxf"),
                     fs::copy_options::overwrite_existing);
       show.ListSize("Feature/picture-1.mxf");
     },
     "2\nerror: SampleFeature, reel 1, picture: The file holds another kind of essence. Expected picture, found "
     "sound.\n    file  SHOW/Feature/picture-1.mxf\n" +
         AskAgain + WillNot},
    {"DurationBeyondTheFile",
     [](const BrokenShow& show) { show.Replace("Feature/CPL.xml", "<Duration>24", "<Duration>30"); },
     "2\nerror: SampleFeature, reel 1, picture: The composition plays beyond the end of the file. Expected 30 edit "
     "units, found 24 edit units.\n    file  SHOW/Feature/picture-1.mxf\n" +
         AskAgain + WillNot},
    {"EntryPointBeyondTheEnd",
     [](const BrokenShow& show) {
       show.Replace("Feature/CPL.xml", "<EntryPoint>0", "<EntryPoint>100");
       show.ListSize("Feature/CPL.xml");
     },
     "2\nerror: SampleFeature, reel 1, picture: The composition plays beyond the end of the file. Expected 124 edit "
     "units, found 24 edit units.\n    file  SHOW/Feature/picture-1.mxf\n" +
         AskAgain + WillNot},
    {"CompositionIsNotXML",
     [](const BrokenShow& show) {
       show.Write("Feature/CPL.xml", Garbage);
       show.ListSize("Feature/CPL.xml");
     },
     "2\nerror: Feature, composition: The composition cannot be read: it is not well-formed "
     "XML.\n    file  SHOW/Feature/CPL.xml\n" +
         CopyAgain + WillNot},
    {"CompositionIsEmpty", [](const BrokenShow& show) { show.Cut("Feature/CPL.xml", 0); },
     "2\nerror: Feature, composition: The file does not have the size that the package lists. Expected 8133 bytes, "
     "found 0 bytes.\n    file  SHOW/Feature/CPL.xml\n" +
         CopyAgain + WillNot},
    {"CompositionIsCutOff",
     [](const BrokenShow& show) {
       show.Cut("Feature/CPL.xml", 3000);
       show.ListSize("Feature/CPL.xml");
     },
     "2\nerror: Feature, composition: The composition cannot be read: line 73: unexpected end of input.\n    file  "
     "SHOW/Feature/CPL.xml\n" +
         CopyAgain + WillNot},
    {"CompositionOfAnUnknownNamespace",
     [](const BrokenShow& show) {
       show.Replace("Feature/CPL.xml", "http://www.smpte-ra.org/schemas/429-7/2006/CPL", "http://another.example/CPL");
       show.ListSize("Feature/CPL.xml");
     },
     "2\nerror: Feature, composition: The composition cannot be read: its namespace is not known here.\n   "
     " file  SHOW/Feature/CPL.xml\n" +
         CopyAgain + WillNot},
    {"CompositionWithoutReels",
     [](const BrokenShow& show) {
       const std::string text = show.Read("Feature/CPL.xml");
       show.Write("Feature/CPL.xml", text.substr(0, text.find("<Reel>")) + text.substr(text.find("</ReelList>")));
       show.ListSize("Feature/CPL.xml");
     },
     "2\nerror: SampleFeature, composition: The composition has no reels.\n    file  SHOW/Feature/CPL.xml\n" +
         CopyAgain + WillNot},
    {"PackingListIsNotXML", [](const BrokenShow& show) { show.Write("Feature/PKL.xml", Garbage); },
     "2\nerror: SampleFeature, packing list: The packing list of this package is missing or damaged, so its files "
     "cannot "
     "be verified.\n    file  SHOW/Feature\n" +
         CopyAgain + WillNot},
    {"AssetMapIsNotXML", [](const BrokenShow& show) { show.Write("Feature/ASSETMAP.xml", Garbage); },
     "0\nwarning: package: The asset map is missing or damaged; the files were found without it.\n    file  "
     "SHOW/Feature\n    Other equipment may refuse the package: copy it again from its source.\n" +
         WillPlay},
    {"ShowIsNotXML", [](const BrokenShow& show) { show.Write("show.xml", Garbage); },
     "2\nstrata: SHOW/show.xml: this file is damaged, or no document of digital cinema: copy it again.\n", "show.xml"},
    {"ShowOfTheFolderIsNotXML", [](const BrokenShow& show) { show.Write("show.xml", Garbage); },
     "2\nstrata: SHOW/show.xml: this document is damaged: it is not well-formed XML. It may be the show that is meant: "
     "copy it again, or name what to take instead:\n  a19e3273-74b1-59c2-bae2-438223953875  "
     "SHOW/before-the-feature.xml  \"Before the feature\"\n"},
    {"ShowIsEmpty", [](const BrokenShow& show) { show.Cut("show.xml", 0); },
     "2\nstrata: SHOW/show.xml: this file is damaged, or no document of digital cinema: copy it again.\n", "show.xml"},
    {"ShowIsCutOff", [](const BrokenShow& show) { show.Cut("show.xml", 700); },
     "2\nerror: show playlist: The show playlist SHOW/show.xml cannot be read: line 21: unexpected end of input.\n"
     "    Make the show playlist again.\n" +
         WillNot,
     "show.xml"},
    {"ShowOfAnUnknownNamespace",
     [](const BrokenShow& show) { show.Replace("show.xml", "http://www.strata.example/ra/xsd/", "http://a.example/"); },
     "2\nstrata: SHOW/show.xml: this playlist cannot be read: its namespace is not known here.\n", "show.xml"},
    {"ShowNamesAnUnknownComposition",
     [](const BrokenShow& show) {
       show.Replace("show.xml", "832bf129-513d-56ec-9f6e-00743329a00d", "00000000-0000-4000-8000-000000000001");
     },
     "3\nmissing: Feature, composition: No store has this composition.\n" + StoreHint +
         "This show will not play: missing 1 composition.\n"},
    {"ShowNamesAnUnknownShow", [](const BrokenShow& show) { show.Remove("before-the-feature.xml"); },
     "3\nmissing: show playlist: No store has the show playlist urn:uuid:a19e3273-74b1-59c2-bae2-438223953875, which "
     "the show contains.\n    Copy the show playlist beside the show, or name its folder with --store.\n"
     "This show will not play: missing 1 show playlist.\n"},
    {"ShowsContainEachOther",
     [](const BrokenShow& show) {
       show.Replace("before-the-feature.xml", "<ShowSequence>",
                    "<ShowSequence><ShowPlaylist><URI>urn:uuid:12882066-0fed-5c52-83e0-cf5e3b96e2bb</URI>"
                    "</ShowPlaylist>");
     },
     "2\nerror: show playlist: The show playlist SHOW/show.xml contains itself.\n"
     "    Make the show playlist again.\n" +
         WillNot,
     "show.xml"},
    {"PathLeavesThePackage",
     [](const BrokenShow& show) {
       fs::rename(show.Path("Feature/sound-1.mxf"), show.Beside("sound-1.mxf"));
       show.Replace("Feature/ASSETMAP.xml", "<Path>sound-1.mxf", "<Path>../../sound-1.mxf");
     },
     "2\nerror: SampleFeature, reel 1, sound: The asset map's path leaves the package.\n    file  "
     "SHOW/Feature/../../sound-1.mxf\n" +
         AskAgain + WillNot},
    {"PathIsAbsolute",
     [](const BrokenShow& show) {
       show.Remove("Feature/sound-1.mxf");
       show.Replace("Feature/ASSETMAP.xml", "<Path>sound-1.mxf", "<Path>/etc/passwd");
     },
     "2\nerror: SampleFeature, reel 1, sound: The asset map's path leaves the package.\n    file  /etc/passwd\n" +
         AskAgain + WillNot},
    {"WrongPathOfAFileThatIsThere",
     [](const BrokenShow& show) {
       show.Replace("Feature/ASSETMAP.xml", "<Path>sound-1.mxf", "<Path>../Trailer/sound-1.mxf");
     },
     "0\nwarning: SampleFeature, reel 1, sound: The asset map's path leaves the package. The file was found without "
     "it. "
     "Expected SHOW/Feature/../Trailer/sound-1.mxf, found SHOW/Feature/sound-1.mxf.\n    file  "
     "SHOW/Feature/sound-1.mxf\n" +
         AskAgain + WillPlay},
    {"AssetMapNamesAFolder",
     [](const BrokenShow& show) {
       fs::create_directory(show.Path("Feature/folder"));
       show.Remove("Feature/sound-1.mxf");
       show.Replace("Feature/ASSETMAP.xml", "<Path>sound-1.mxf", "<Path>folder");
     },
     "2\nerror: SampleFeature, reel 1, sound: It is no regular file but a folder, a pipe, a socket or a device.\n    "
     "file  "
     "SHOW/Feature/folder\n" +
         CopyAgain + WillNot},
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
     "0\nwarning: SampleFeature, reel 1, sound: The file says that it is another asset.\n    file  "
     "SHOW/Feature/sound-1.mxf\n" +
         WillPlay},
    {"PipeForATrackFile",
     [](const BrokenShow& show) {
       show.Remove("Feature/sound-1.mxf");
       EXPECT_EQ(mkfifo(show.Path("Feature/sound-1.mxf").c_str(), 0600), 0);
     },
     "2\nerror: SampleFeature, reel 1, sound: It is no regular file but a folder, a pipe, a socket or a device.\n    "
     "file  "
     "SHOW/Feature/sound-1.mxf\n" +
         CopyAgain + WillNot},
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
     "2\nerror: SampleFeature, reel 1, sound: The file is a symbolic link that leads out of the folder, or nowhere.\n  "
     "  file  "
     "SHOW/Feature/sound-1.mxf\n" +
         CopyAgain + WillNot},
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
     "0\nwarning: SampleFeature, reel 1, subtitle: An image of the text is missing: it will not be shown. "
     "Found no 00000000-0000-4000-8000-000000000001.\n    file  SHOW/Feature/subtitle-1.mxf\n" +
         WillPlay},
    {"SubtitleIsNotXML",
     [](const BrokenShow& show) { show.Replace("Feature/subtitle-1.mxf", "</SubtitleReel>", "</SubtitleRoll>"); },
     "2\nerror: SampleFeature, reel 1, subtitle: The text in the track file is not a well-formed XML document.\n    "
     "file  "
     "SHOW/Feature/subtitle-1.mxf\n" +
         CopyAgain + WillNot},
    {"SoundOf44kHz",
     [](const BrokenShow& show) {
       show.Replace("Feature/sound-1.mxf", SamplingRateTag + Bytes({0, 0, 0xbb, 0x80}),
                    SamplingRateTag + Bytes({0, 0, 0xac, 0x44}));
     },
     "2\nerror: SampleFeature, reel 1, sound: Cinemas cannot play sound with this sampling rate. Expected 48000 or "
     "96000 Hz, found 44100 Hz.\n    file  SHOW/Feature/sound-1.mxf\n" +
         AskAgain + WillNot},
    {"SoundOf16Bits",
     [](const BrokenShow& show) {
       show.Replace("Feature/sound-1.mxf", QuantizationTag + Bytes({0, 0, 0, 24}),
                    QuantizationTag + Bytes({0, 0, 0, 16}));
     },
     "2\nerror: SampleFeature, reel 1, sound: Cinemas cannot play sound with samples of this size. Expected 24 bits, "
     "found 16 bits.\n    file  SHOW/Feature/sound-1.mxf\n" +
         AskAgain + WillNot},
    {"SoundWithoutChannels",
     [](const BrokenShow& show) {
       show.Replace("Feature/sound-1.mxf", ChannelCountTag + Bytes({0, 0, 0, 6}),
                    ChannelCountTag + Bytes({0, 0, 0, 0}));
     },
     "2\nerror: SampleFeature, reel 1, sound: The sound has no channels. Expected at least 1, found 0.\n    file  "
     "SHOW/Feature/sound-1.mxf\n" +
         AskAgain + WillNot},
    {"SoundChangesBetweenReels",
     [](const BrokenShow& show) {
       show.Replace("Feature/sound-2.mxf", SamplingRateTag + Bytes({0, 0, 0xbb, 0x80}),
                    SamplingRateTag + Bytes({0, 1, 0x77, 0x00}));
     },
     "0\nwarning: SampleFeature, reel 2, sound: The format changes from the reel before: some equipment cannot handle "
     "that. "
     "Expected 6 channels at 48000 Hz, found 6 channels at 96000 Hz.\n    file  SHOW/Feature/sound-2.mxf\n"
     "warning: SampleFeature, reel 3, sound: The format changes from the reel before: some equipment cannot handle "
     "that. "
     "Expected 6 channels at 96000 Hz, found 6 channels at 48000 Hz.\n    file  SHOW/Feature/sound-3.mxf\n" +
         WillPlay},
    {"OneReelWithoutSound",
     [](const BrokenShow& show) {
       const std::string text = show.Read("Feature/CPL.xml");
       const size_t end = text.find("</MainSound>") + 12;
       show.Write("Feature/CPL.xml", text.substr(0, text.find("<MainSound>")) + text.substr(end));
       show.ListSize("Feature/CPL.xml");
     },
     "0\nwarning: SampleFeature: Some reels have no sound and will play silence.\n" + WillPlay},
    {"CompositionWithoutSound",
     [](const BrokenShow& show) {
       const std::string text = show.Read("Trailer/CPL.xml");
       const size_t end = text.find("</MainSound>") + 12;
       show.Write("Trailer/CPL.xml", text.substr(0, text.find("<MainSound>")) + text.substr(end));
       show.ListSize("Trailer/CPL.xml");
     },
     "0\nwarning: SampleTrailer: The composition has no sound: some equipment stops there.\n" + WillPlay},
    {"AnotherIntrinsicDuration",
     [](const BrokenShow& show) {
       show.Replace("Feature/CPL.xml", "<IntrinsicDuration>24", "<IntrinsicDuration>99", "<MainPicture>");
     },
     "0\nwarning: SampleFeature, reel 1, picture: The composition says that the file has another length. Expected 99 "
     "edit units, found 24 edit units.\n    file  SHOW/Feature/picture-1.mxf\n" +
         WillPlay},
    {"EncryptedWithoutKeyInTheComposition",
     [](const BrokenShow& show) {
       const std::string text = show.Read("Encrypted/CPL.xml");
       const size_t begin = text.find("<KeyId>");
       const std::string key = text.substr(begin, text.find("</KeyId>", begin) + 8 - begin);
       show.Replace("Encrypted/CPL.xml", key, std::string(key.size(), ' '));
     },
     "2\nerror: SampleEncrypted, reel 1, picture: The file is encrypted, but the composition names no key: no key "
     "delivery fits.\n    file  SHOW/Encrypted/picture-1.mxf\n" +
         AskAgain +
         "error: SampleEncrypted, composition: The digest is not the document's: it was changed after it was signed.\n"
         "    file  SHOW/Encrypted/CPL.xml\n" +
         CopyAgain + WillNot},
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
  EXPECT_EQ(
      show.Check({show.Path("Trailer/CPL.xml"), "--hash"}),
      "2\nerror: SampleTrailer, composition: The composition was altered: its digest is not the one that the packing "
      "list gives.\n    file  SHOW/Trailer/CPL.xml\n" +
          CopyAgain + WillNot);
}

TEST(SupplementalPackage, FindsItsOriginalInAnotherStore) {
  const BrokenShow show;
  fs::copy(show.Path("Feature"), show.Beside("original"), fs::copy_options::recursive);
  for (const char* name : {"Feature/sound-1.mxf", "Feature/picture-2.mxf", "Feature/picture-3.mxf"}) {
    show.Unlist(name);
    show.Remove(name);
  }
  EXPECT_EQ(show.Check(), "3\nmissing: SampleFeature, reel 1, sound: No store has this asset.\n" + StoreHint +
                              "missing: SampleFeature, reel 2, picture: No store has this asset.\n" + StoreHint +
                              "missing: SampleFeature, reel 3, picture: No store has this asset.\n" + StoreHint +
                              "This show will not play: missing 2 pictures, 1 sound.\n");
  fs::create_directory(show.Beside("empty"));
  EXPECT_EQ(show.Check({"--store", show.Beside("empty"), "--store", show.Beside("original"), "--hash"}),
            "0\n" + WillPlayByDigests);
}

}  // namespace
