// SPDX-License-Identifier: BSD-3-Clause
#include "TimelineElements/TextTrack.h"

#include "TrackFixtures.h"

#include <Cairn/Result.h>
#include <QUIRE/Result.h>

#include <filesystem>
#include <fstream>
#include <thread>

namespace {

using Ferro::ui32_t;
using Ferro::UUID;
using QUIRE::TimedText::FrameBuffer;
using Strata::TextTimelineElement;
using testsupport::Bytes;
using testsupport::BytesOf;
using testsupport::TrackFileSpec;
using testsupport::TrackKind;
using NameList = Ferro::ArchivableList<Ferro::ArchivableString>;
using Lines = std::vector<std::string>;

std::string TextOf(const FrameBuffer& buffer) {
  return {reinterpret_cast<const char*>(buffer.RoData()), buffer.Size()};
}

/// A text track and a folder for its files.
class TextTrack : public testsupport::LoggedTest {
 protected:
  void WriteFile(const std::string& name, const std::string& content) {
    std::filesystem::create_directories(std::filesystem::path(Folder.Path(name)).parent_path());
    std::ofstream(Folder.Path(name), std::ios::binary) << content;
  }
  void WriteFile(const std::string& name, const Bytes& content) {
    WriteFile(name, std::string(content.begin(), content.end()));
  }
  Ferro::Result_t Init(const std::string& name) { return Track.InitWithFilename(Folder.Path(name), 4, 100); }

  testsupport::TemporaryFolder Folder;
  TextTimelineElement Track{2400};
};

/// An SMPTE track file.
class SMPTETextTrack : public TextTrack {
 protected:
  void WriteAndInit() {
    ASSERT_EQ(MakeTrackFile(TrackKind::Text, Folder.Path("text.mxf"), Spec), Ferro::RESULT_OK);
    ASSERT_EQ(Init("text.mxf"), Ferro::RESULT_OK);
  }
  void ExpectDocumentAndResources() {
    FrameBuffer buffer;
    ASSERT_TRUE(Track.GetTimedTextData(buffer));
    EXPECT_EQ(TextOf(buffer), MakeText(Spec));
    EXPECT_EQ(buffer.AssetID(), MakeTextDescriptor(Spec).AssetID);
    EXPECT_EQ(buffer.MIMEType(), "text/xml");
    const auto resources = MakeResources(Spec);
    Ferro::UUIDList ids;
    ASSERT_TRUE(Track.AncillaryResourceIDList(ids));
    ASSERT_EQ(ids.size(), resources.size());
    size_t number = 0;
    for (const UUID& id : ids) {
      ASSERT_TRUE(Track.GetTimedTextResourceByID(id, buffer));
      EXPECT_EQ(BytesOf(buffer), resources[number]);
      EXPECT_EQ(buffer.Capacity(), resources[number].size());
      EXPECT_EQ(buffer.AssetID(), id);
      EXPECT_EQ(buffer.MIMEType(), number < Spec.FontSizes.size() ? "application/x-font-opentype" : "image/png");
      ++number;
    }
    EXPECT_EQ(Errors(), Lines{});
  }

  TrackFileSpec Spec;
};

TEST_F(SMPTETextTrack, SaysWhatTheFileSays) {
  WriteAndInit();
  EXPECT_EQ(Track.AssetID(), Spec.AssetID);
  EXPECT_EQ(Track.EditRate(), QUIRE::Rational(24, 1));
  EXPECT_EQ(Track.TextEssenceFormat(), Cairn::DFT_DCI_SMPTE);
  EXPECT_EQ(Track.EntryPoint(), 4u);
  EXPECT_EQ(Track.Duration(), 100u);
  EXPECT_FALSE(Track.KeyID().HasValue());
}

TEST_F(SMPTETextTrack, IntrinsicDurationIsThatOfTheConstruction) {
  Spec.Duration = 77;
  WriteAndInit();
  EXPECT_EQ(Track.IntrinsicDuration(), 2400u);
}

TEST_F(SMPTETextTrack, DocumentAlone) {
  WriteAndInit();
  ExpectDocumentAndResources();
}

TEST_F(SMPTETextTrack, FontsAndImages) {
  Spec.FontSizes = {1000, 50000};
  Spec.ImageSizes = {82, 3000, 200000};
  WriteAndInit();
  ExpectDocumentAndResources();
}

TEST_F(SMPTETextTrack, InitialisedTwiceItListsItsResourcesOnce) {
  Spec.FontSizes = {1000};
  Spec.ImageSizes = {82, 3000};
  WriteAndInit();
  WriteAndInit();
  ExpectDocumentAndResources();
}

TEST_F(SMPTETextTrack, TwentyResources) {
  Spec.FontSizes = {5000};
  for (size_t i = 0; i < 19; ++i) Spec.ImageSizes.push_back(100 + 997 * i);
  WriteAndInit();
  ExpectDocumentAndResources();
}

TEST_F(SMPTETextTrack, ResourcesThatShrinkAndGrowFitTheirBuffers) {
  Spec.ImageSizes = {100000, 90, 200000, 90, 1000};
  WriteAndInit();
  ExpectDocumentAndResources();
}

TEST_F(SMPTETextTrack, DocumentLargerThanTheFirstPartitionGap) {
  // Each resource's name stands in the document, twice; the header partition grows slower.
  Spec.ImageSizes.assign(200, 82);
  WriteAndInit();
  ASSERT_GT(MakeText(Spec).size(), 16384u);
  ExpectDocumentAndResources();
}

TEST_F(SMPTETextTrack, EncryptedFileGivesCiphertextAndKeyID) {
  Spec.Key = testsupport::TrackFileKey();
  Spec.ImageSizes = {1000};
  WriteAndInit();
  EXPECT_EQ(Track.KeyID(), Spec.Key->KeyID);
  const std::string text = MakeText(Spec);
  FrameBuffer buffer;
  ASSERT_TRUE(Track.GetTimedTextData(buffer));
  EXPECT_EQ(buffer.SourceLength(), text.size());
  EXPECT_EQ(buffer.Size(), 32 + (text.size() / 16 + 1) * 16);
  EXPECT_EQ(TextOf(buffer).find("urn:uuid"), std::string::npos);
  Ferro::UUIDList ids;
  ASSERT_TRUE(Track.AncillaryResourceIDList(ids));
  ASSERT_EQ(ids.size(), 1u);
  ASSERT_TRUE(Track.GetTimedTextResourceByID(ids.front(), buffer));
  EXPECT_EQ(buffer.SourceLength(), 1000u);
  EXPECT_EQ(buffer.Size(), 32u + 1008u);
}

TEST_F(SMPTETextTrack, UnknownResourceLeavesTheOutput) {
  WriteAndInit();
  FrameBuffer buffer;
  ASSERT_EQ(buffer.Capacity(5), Ferro::RESULT_OK);
  buffer.Size(5);
  EXPECT_FALSE(Track.GetTimedTextResourceByID(UUID::Random(), buffer));
  EXPECT_FALSE(Track.GetTimedTextResourceByName("font.ttf", buffer));
  EXPECT_EQ(buffer.Size(), 5u);
}

TEST_F(SMPTETextTrack, ListsReplaceWhatTheyAreGiven) {
  Spec.ImageSizes = {100};
  WriteAndInit();
  Ferro::UUIDList ids{UUID::Random(), UUID::Random(), UUID::Random()};
  NameList names{"a", "b"};
  EXPECT_TRUE(Track.AncillaryResourceIDList(ids));
  EXPECT_TRUE(Track.AncillaryResourceNameList(names));
  EXPECT_EQ(ids.size(), 1u);
  EXPECT_TRUE(names.empty());
}

TEST_F(SMPTETextTrack, OutputOfAnotherSizeIsMadeToFit) {
  WriteAndInit();
  FrameBuffer buffer;
  ASSERT_EQ(buffer.Capacity(1 << 20), Ferro::RESULT_OK);
  ASSERT_TRUE(Track.GetTimedTextData(buffer));
  EXPECT_EQ(buffer.Capacity(), MakeText(Spec).size());
  EXPECT_EQ(TextOf(buffer), MakeText(Spec));
}

TEST_F(SMPTETextTrack, KeyOfAnMXFFileDecidesWhateverFollows) {
  WriteFile("key.xml", std::string("\x06\x0e\x2b\x34", 4) + std::string(1000, '<'));
  EXPECT_EQ(Init("key.xml"), QUIRE::RESULT_FORMAT);
  EXPECT_EQ(Track.TextEssenceFormat(), Cairn::DFT_DCI_SMPTE);
}

TEST_F(SMPTETextTrack, TrackFileOfAnotherKindIsRefused) {
  ASSERT_EQ(MakeTrackFile(TrackKind::Sound, Folder.Path("sound.mxf")), Ferro::RESULT_OK);
  EXPECT_EQ(Init("sound.mxf"), QUIRE::RESULT_FORMAT);
}

using SMPTETextTrackDeathTest = SMPTETextTrack;

TEST_F(SMPTETextTrackDeathTest, IndexPackWithFewerPartitionsThanResources) {
  Spec.ImageSizes = {100, 100, 100};
  ASSERT_EQ(MakeTrackFile(TrackKind::Text, Folder.Path("text.mxf"), Spec), Ferro::RESULT_OK);
  testsupport::CutIndexPack(Folder.Path("text.mxf"), 3);
  EXPECT_DEATH(static_cast<void>(Init("text.mxf")), "Assertion '!buf_size_list.empty\\(\\)' failed\\.");
}

TEST_F(SMPTETextTrack, IndexPackWithFewerPartitionsThanResourcesIsRefusedWhereAsked) {
  Spec.ImageSizes = {100, 100, 100};
  const std::string name = Folder.Path("text.mxf");
  for (const size_t partitions : {size_t{5}, size_t{4}}) {  // header, document, and three images; then one less
    ASSERT_EQ(MakeTrackFile(TrackKind::Text, name, Spec), Ferro::RESULT_OK);
    testsupport::CutIndexPack(name, partitions);
    TextTimelineElement track(2400, Strata::ShortIndexPack::Refuse);
    const bool fits = partitions == 5;
    EXPECT_EQ(track.InitWithFilename(name, 0, 1), fits ? Ferro::RESULT_OK : QUIRE::RESULT_FORMAT);
    EXPECT_EQ(Errors(), fits ? Lines{} : Lines{name + ": too few partitions in the index pack for 3 resources\n"});
  }
}

TEST_F(SMPTETextTrack, ResourceThatCannotBeReadIsLoggedAndReturned) {
  Spec.ImageSizes = {100000, 100000};
  const std::string name = Folder.Path("text.mxf");
  ASSERT_EQ(MakeTrackFile(TrackKind::Text, name, Spec), Ferro::RESULT_OK);
  // Overwrites the key and length before the last image.
  std::ifstream in(name, std::ios::binary);
  std::string content((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  const size_t last = content.rfind("\x89PNG");
  ASSERT_NE(last, std::string::npos);
  content.replace(last - 25, 25, 25, '\xee');
  WriteFile("text.mxf", content);
  EXPECT_TRUE(Init("text.mxf").Failure());
  const UUID id = MakeTextDescriptor(Spec).ResourceList[1].ResourceID;
  ASSERT_FALSE(Errors().empty());
  EXPECT_EQ(Errors().back(), id.EncodeString() + ": The file is not a proper D-Cinema track file.");
}

/// An Interop document.
class InteropTextTrack : public TextTrack {
 protected:
  static std::string Document(const Lines& fonts, const Lines& images) {
    std::string text =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<DCSubtitle Version=\"1.0\">\n"
        "<SubtitleID>11223344-5566-4778-899a-abbccddeeff0</SubtitleID>\n<MovieTitle>Title</MovieTitle>\n"
        "<ReelNumber>1</ReelNumber>\n<Language>English</Language>\n";
    for (const auto& font : fonts) text += "<LoadFont Id=\"" + font + "\" URI=\"" + font + "\"/>\n";
    int spot = 0;
    for (const auto& image : images) {
      text += "<Subtitle SpotNumber=\"" + std::to_string(++spot) +
              "\" TimeIn=\"00:00:01:000\" TimeOut=\"00:00:02:000\"><Image VAlign=\"bottom\" VPosition=\"5\">" + image +
              "</Image></Subtitle>\n";
    }
    return text + "</DCSubtitle>\n";
  }
  Lines Names() {
    NameList names{"stale"};
    EXPECT_TRUE(Track.AncillaryResourceNameList(names));
    return {names.begin(), names.end()};
  }
  void ExpectResource(const std::string& name, const std::string& content, const std::string& mime_type) {
    FrameBuffer buffer;
    ASSERT_TRUE(Track.GetTimedTextResourceByName(name, buffer)) << name;
    EXPECT_EQ(TextOf(buffer), content);
    EXPECT_EQ(buffer.Capacity(), content.size());
    EXPECT_EQ(buffer.MIMEType(), mime_type) << name;
  }
};

TEST_F(InteropTextTrack, SaysWhatTheDocumentSays) {
  WriteFile("sub/text.xml", Document({}, {}));
  ASSERT_EQ(Init("sub/text.xml"), Ferro::RESULT_OK);
  EXPECT_EQ(Track.AssetID().EncodeString(), "11223344-5566-4778-899a-abbccddeeff0");
  EXPECT_EQ(Track.TextEssenceFormat(), Cairn::DFT_Interop);
  EXPECT_FALSE(Track.EditRate().HasValue());
  EXPECT_EQ(Track.IntrinsicDuration(), 2400u);
  EXPECT_EQ(Track.EntryPoint(), 4u);
  EXPECT_EQ(Track.Duration(), 100u);
  FrameBuffer buffer;
  ASSERT_TRUE(Track.GetTimedTextData(buffer));
  EXPECT_EQ(TextOf(buffer), Document({}, {}));
  EXPECT_EQ(buffer.AssetID(), Track.AssetID());
  EXPECT_EQ(buffer.MIMEType(), "text/xml;asdcpKind=Subtitle");
}

TEST_F(InteropTextTrack, FontsAndImagesAreTakenFromTheDocumentsFolder) {
  WriteFile("sub/text.xml", Document({"font.ttf"}, {"one.png", "images/two.png"}));
  WriteFile("sub/font.ttf", "the font");
  WriteFile("sub/one.png", "first image");
  WriteFile("sub/images/two.png", "second");
  ASSERT_EQ(Init("sub/text.xml"), Ferro::RESULT_OK);
  EXPECT_EQ(Names(), (Lines{"font.ttf", "one.png", "images/two.png"}));
  ExpectResource("font.ttf", "the font", "application/ttf");
  ExpectResource("one.png", "first image", "image/png");
  ExpectResource("images/two.png", "second", "image/png");
  EXPECT_EQ(Errors(), Lines{});
  Ferro::UUIDList ids{UUID::Random()};
  EXPECT_TRUE(Track.AncillaryResourceIDList(ids));
  EXPECT_TRUE(ids.empty());
}

TEST_F(InteropTextTrack, UpperCasePNGIsTypedAsAFont) {
  WriteFile("text.xml", Document({}, {"ONE.PNG", "two.Png", "three.png"}));
  for (const char* name : {"ONE.PNG", "two.Png", "three.png"}) WriteFile(name, "x");
  ASSERT_EQ(Init("text.xml"), Ferro::RESULT_OK);
  ExpectResource("ONE.PNG", "x", "application/ttf");
  ExpectResource("two.Png", "x", "application/ttf");
  ExpectResource("three.png", "x", "image/png");
}

TEST_F(InteropTextTrack, NamesAreComparedByteByByte) {
  WriteFile("text.xml", Document({}, {"one.png"}));
  WriteFile("one.png", "x");
  ASSERT_EQ(Init("text.xml"), Ferro::RESULT_OK);
  FrameBuffer buffer;
  EXPECT_FALSE(Track.GetTimedTextResourceByName("One.png", buffer));
  EXPECT_FALSE(Track.GetTimedTextResourceByName("one.png ", buffer));
}

TEST_F(InteropTextTrack, MissingResourcesAreLoggedAndTheOthersLoaded) {
  WriteFile("text.xml", Document({"missing.ttf"}, {"one.png", "folder", "two.png"}));
  WriteFile("one.png", "1");
  WriteFile("folder/file", "");
  WriteFile("two.png", "2");
  ASSERT_EQ(Init("text.xml"), Ferro::RESULT_OK);
  EXPECT_EQ(Names(), (Lines{"one.png", "two.png"}));
  EXPECT_EQ(Errors(), (Lines{Folder.Path("missing.ttf") + ": The requested item was not found.",
                             Folder.Path("folder") + ": Filename is not a regular file."}));
  FrameBuffer buffer;
  EXPECT_FALSE(Track.GetTimedTextResourceByName("missing.ttf", buffer));
}

TEST_F(InteropTextTrack, ResourceOutsideTheDocumentsFolderIsRefused) {
  WriteFile("secret.png", "secret");
  WriteFile("sub/text.xml", Document({}, {"../secret.png", "/etc/hostname"}));
  ASSERT_EQ(Init("sub/text.xml"), Ferro::RESULT_OK);
  EXPECT_EQ(Names(), Lines{});
  ASSERT_EQ(Errors().size(), 2u);
  EXPECT_EQ(Errors().front(), Folder.Path("sub/../secret.png") + ": The path leaves its package.");
}

TEST_F(InteropTextTrack, NameWithAStepUpIsRefusedEvenWhereItLeadsBack) {
  WriteFile("sub/one.png", "one");
  WriteFile("sub/images/two.png", "two");
  WriteFile("sub/logo..png", "dots are no step");
  WriteFile("sub/text.xml", Document({}, {"images/../one.png", "../sub/one.png", "logo..png"}));
  ASSERT_EQ(Init("sub/text.xml"), Ferro::RESULT_OK);
  EXPECT_EQ(Names(), Lines{"logo..png"});
  EXPECT_EQ(Errors().size(), 2u);
}

TEST_F(InteropTextTrack, LinkOutOfTheDocumentsFolderIsRefusedAndOneInsideFollowed) {
  namespace fs = std::filesystem;
  WriteFile("secret.png", "secret");
  WriteFile("sub/text.xml", Document({}, {"in.png", "out.png", "folder/secret.png"}));
  WriteFile("sub/images/one.png", "one");
  fs::create_symlink("images/one.png", Folder.Path("sub/in.png"));
  fs::create_symlink("../secret.png", Folder.Path("sub/out.png"));
  fs::create_directory_symlink("..", Folder.Path("sub/folder"));
  ASSERT_EQ(Init("sub/text.xml"), Ferro::RESULT_OK);
  EXPECT_EQ(Names(), Lines{"in.png"});
  EXPECT_EQ(Errors(), (Lines{Folder.Path("sub/out.png") + ": The path leaves its package.",
                             Folder.Path("sub/folder/secret.png") + ": The path leaves its package."}));
}

TEST_F(InteropTextTrack, DocumentAndItsFilesMayBeReachedByLinks) {
  namespace fs = std::filesystem;
  WriteFile("package/text.xml", Document({"font.ttf"}, {}));
  WriteFile("package/font.ttf", "the font");
  fs::create_directory_symlink("package", Folder.Path("linked"));
  ASSERT_EQ(Init("linked/text.xml"), Ferro::RESULT_OK);
  EXPECT_EQ(Names(), Lines{"font.ttf"});

  fs::create_directory(Folder.Path("store"));
  fs::create_symlink("../package/text.xml", Folder.Path("store/text.xml"));
  fs::create_symlink("../package/font.ttf", Folder.Path("store/font.ttf"));
  ASSERT_EQ(Init("store/text.xml"), Ferro::RESULT_OK);
  EXPECT_EQ(Names(), Lines{"font.ttf"});
}

TEST_F(InteropTextTrack, InitialisedTwiceItListsItsResourcesOnce) {
  WriteFile("text.xml", Document({"font.ttf"}, {"one.png"}));
  WriteFile("other.xml", Document({"font.ttf"}, {}));
  WriteFile("font.ttf", "the font");
  WriteFile("one.png", "1");
  ASSERT_EQ(Init("text.xml"), Ferro::RESULT_OK);
  ASSERT_EQ(Init("text.xml"), Ferro::RESULT_OK);
  EXPECT_EQ(Names(), (Lines{"font.ttf", "one.png"}));
  ASSERT_EQ(Init("other.xml"), Ferro::RESULT_OK);
  EXPECT_EQ(Names(), Lines{"font.ttf"});
  FrameBuffer buffer;
  EXPECT_FALSE(Track.GetTimedTextResourceByName("one.png", buffer));
}

TEST_F(InteropTextTrack, EmptyResourceIsKept) {
  WriteFile("text.xml", Document({}, {"empty.png"}));
  WriteFile("empty.png", "");
  ASSERT_EQ(Init("text.xml"), Ferro::RESULT_OK);
  ExpectResource("empty.png", "", "image/png");
}

TEST_F(InteropTextTrack, LargeDocumentIsReadWhole) {
  Lines images(20000, "one.png");
  WriteFile("one.png", "1");
  const std::string document = Document({}, images);
  ASSERT_GT(document.size(), 1u << 20);
  WriteFile("text.xml", document);
  ASSERT_EQ(Init("text.xml"), Ferro::RESULT_OK);
  EXPECT_EQ(Names(), Lines{"one.png"});
  FrameBuffer buffer;
  ASSERT_TRUE(Track.GetTimedTextData(buffer));
  EXPECT_EQ(TextOf(buffer), document);
}

TEST_F(TextTrack, FileOfFewerThanSixteenBytesIsAFormatError) {
  for (size_t size : {0u, 1u, 15u}) {
    WriteFile("short", std::string(size, '<'));
    EXPECT_EQ(Init("short"), QUIRE::RESULT_FORMAT) << size;
  }
  WriteFile("short", std::string("\x06\x0e\x2b\x34", 4));
  EXPECT_EQ(Init("short"), QUIRE::RESULT_FORMAT);
}

TEST_F(TextTrack, FileThatCannotBeOpened) {
  EXPECT_EQ(Init("none"), Ferro::RESULT_NOT_FOUND);
  EXPECT_EQ(Init(""), Ferro::RESULT_NOTAFILE);
}

TEST_F(TextTrack, AnyOtherStartIsParsedAsInterop) {
  WriteFile("a", std::string("\x06\x0e\x2b\x35", 4) + std::string(100, 'x'));
  EXPECT_EQ(Init("a"), Cairn::RESULT_XML_PARSE);
  EXPECT_EQ(Track.TextEssenceFormat(), Cairn::DFT_Interop);
  WriteFile("b", "<?xml version=\"1.0\"?><Other/>");
  EXPECT_EQ(Init("b"), Cairn::RESULT_XML_NAMESPACE);
}

TEST_F(TextTrack, FailedInitSetsNoTimes) {
  WriteFile("a", std::string(100, 'x'));
  EXPECT_TRUE(Init("a").Failure());
  EXPECT_EQ(Track.EntryPoint(), 0u);
  EXPECT_EQ(Track.Duration(), 0u);
  EXPECT_EQ(Track.GetSpanDuration(), 0u);
}

TEST_F(InteropTextTrack, SpanDurationIsTheDurationUntilItIsSet) {
  WriteFile("text.xml", Document({}, {}));
  ASSERT_EQ(Init("text.xml"), Ferro::RESULT_OK);
  EXPECT_EQ(Track.GetSpanDuration(), Track.Duration());
  Track.SetSpanDuration(500);
  EXPECT_EQ(Track.GetSpanDuration(), 500u);
  EXPECT_EQ(Track.Duration(), 100u);
}

TEST_F(TextTrack, HasNoFrames) {
  Track.MakeReady();
  Track.ReadyFrameAtLocation(5);
  Track.BufferLock();
  EXPECT_EQ(Track.FrameBuffer().Size(), 0u);
  EXPECT_EQ(Track.FrameBuffer().Capacity(), 0u);
  EXPECT_EQ(&Track.REyeFrameBuffer(), &Track.FrameBuffer());
  EXPECT_EQ(Track.FrameBufferSize(), 0u);
  EXPECT_EQ(Track.REyeFrameBufferSize(), 0u);
  Track.BufferUnlock();
  EXPECT_TRUE(Track.MakeDormant());
  EXPECT_TRUE(Track.MakeDormant());
}

TEST_F(TextTrack, PictureAndSoundOperationsAnswerNothing) {
  EXPECT_FALSE(Track.HasStereoImage());
  EXPECT_EQ(Track.ImageWidth(), 0u);
  EXPECT_EQ(Track.ImageHeight(), 0u);
  EXPECT_EQ(Track.SampleRate(), 0u);
  EXPECT_EQ(Track.SampleSize(), 0u);
  EXPECT_EQ(Track.ChannelCount(), 0u);
  EXPECT_FALSE(Track.ChannelAssignment().HasValue());
  EXPECT_EQ(Track.MCALabelString(), "");
}

TEST_F(TextTrack, IdentityIsWhatItsCreatorSets) {
  Track.SetIdentity(Strata::TRKT_OFF_SCREEN_TEXT, 5, "name", "fr");
  EXPECT_EQ(Track.TrackType(), Strata::TRKT_OFF_SCREEN_TEXT);
  EXPECT_EQ(Track.ChannelID(), 5u);
  EXPECT_EQ(Track.AssetName(), "name");
  EXPECT_EQ(Track.Language(), "fr");
}

TEST_F(InteropTextTrack, BufferLockKeepsInitOut) {
  WriteFile("text.xml", Document({}, {}));
  Track.BufferLock();
  std::thread initialising([this] { EXPECT_EQ(Init("text.xml"), Ferro::RESULT_OK); });
  EXPECT_FALSE(Track.AssetID().HasValue());
  Track.BufferUnlock();
  initialising.join();
  EXPECT_TRUE(Track.AssetID().HasValue());
}

}  // namespace
