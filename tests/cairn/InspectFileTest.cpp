// SPDX-License-Identifier: BSD-3-Clause
#include "EssenceMaker.h"
#include "StoreFixture.h"
#include "TrackFileMaker.h"

#include <Cairn/InspectFile.h>

#include <gtest/gtest.h>

namespace CairnTest {
namespace {

using namespace Cairn;
using namespace std::string_literals;
using testsupport::TrackKind;

FileContent Inspect(const std::string& bytes) {
  const testsupport::TemporaryFolder folder;
  PutText(folder.Path("file"), bytes);
  FileContent content;
  EXPECT_EQ(InspectFile(folder.Path("file"), content), Ferro::RESULT_OK);
  return content;
}

std::string Document(const std::string& root, const std::string& inside) {
  return "<?xml version=\"1.0\"?>\n<!-- a comment -->\n<x:" + root +
         " xmlns:x=\"http://www.smpte-ra.org/schemas/0/\">" + inside + "</x:" + root + ">";
}

TEST(InspectFile, DocumentIsKnownByItsRootElement) {
  const std::string id = "<x:Id> URN:UUID:00000000-0000-4000-8000-0000000000AB\n</x:Id>";
  const std::pair<const char*, FileType_t> kinds[] = {
      {"CompositionPlaylist", FT_CPL}, {"PackingList", FT_PKL},   {"AssetMap", FT_ASSETMAP},
      {"SubtitleReel", FT_DCST},       {"ShowPlaylist", FT_SHOW}, {"ResourcePresentationList", FT_RPL},
  };
  for (const auto& [root, type] : kinds) {
    EXPECT_EQ(Inspect(Document(root, id)).Type, type) << root;
    EXPECT_EQ(Inspect(Document(root, id)).ID, SampleID(0xab)) << root;
  }
  EXPECT_EQ(Inspect(Document("VolumeIndex", "")).Type, FT_VOLINDEX);
  EXPECT_EQ(Inspect(Document("DCinemaSecurityMessage", "")).Type, FT_KDM);
  EXPECT_EQ(Inspect(Document("html", "")).Type, FT_XML);
  EXPECT_EQ(Inspect("<CompositionPlaylist xmlns=\"http://quayside.example/\"/>").Type, FT_XML);
}

TEST(InspectFile, ElementOfAnotherNamespaceIsAnotherDocument) {
  const std::string id = "<Id>urn:uuid:00000000-0000-4000-8000-0000000000ab</Id>";
  for (const char* root : {"CompositionPlaylist", "PackingList", "AssetMap", "VolumeIndex", "ShowPlaylist"})
    for (const char* name :
         {"", "http://vendor.example/2020/cpl", "urn:x", "http://www.digicine.com.vendor.example/"}) {
      const std::string open = root + (" xmlns=\"" + std::string(name)) + "\"";
      const FileContent content = Inspect("<" + open + ">" + id + "</" + root + ">");
      EXPECT_EQ(content.Type, FT_XML) << open;
      EXPECT_FALSE(content.ID.HasValue()) << open;
    }
}

TEST(InspectFile, WhyADocumentCannotBeReadIsTold) {
  const std::string name = " xmlns=\"http://www.smpte-ra.org/schemas/429-7/2006/CPL\"";
  const std::string rest = "<CompositionPlaylist" + name + "><Id>urn:uuid:00000000-0000-4000-8000-0000000000ab</Id>";
  const std::string end = "</CompositionPlaylist>";
  const FileContent good = Inspect("<?xml version=\"1.0\"?>" + rest + end);
  EXPECT_EQ(good.Problem, DP_NONE);
  EXPECT_EQ(good.Reason, "");
  const FileContent page = Inspect("<?xml version=\"1.0\" encoding=\"windows-1252\"?>" + rest + end);
  EXPECT_EQ(page.Type, FT_CPL);
  EXPECT_EQ(page.Problem, DP_ENCODING);
  EXPECT_EQ(page.Reason, "the encoding \"WINDOWS-1252\" is not supported");
  EXPECT_FALSE(page.ID.HasValue());
  const FileContent wrong = Inspect("<?xml version=\"1.0\" encoding=\"UTF-16\"?>" + rest + end);
  EXPECT_EQ(wrong.Problem, DP_ENCODING);
  EXPECT_EQ(wrong.Reason, "the encoding \"UTF-16\" is declared, but the text is not UTF-16");
  const FileContent cut = Inspect("<?xml version=\"1.0\"?>" + rest);
  EXPECT_EQ(cut.Problem, DP_MALFORMED);
  EXPECT_NE(cut.Reason, "");
  EXPECT_EQ(cut.Reason.find('\n'), std::string::npos);
  EXPECT_EQ(Inspect("<?xml version=\"1.0\" encoding=\"windows-1252\"?><html/>").Problem, DP_NONE);
}

TEST(InspectFile, InteropSubtitleBearsItsIDWithoutPrefix) {
  const FileContent content = Inspect(
      "\xef\xbb\xbf<DCSubtitle "
      "Version=\"1.1\"><SubtitleID>00000000-0000-4000-8000-0000000000ab</SubtitleID></DCSubtitle>");
  EXPECT_EQ(content.Type, FT_TI_SUBTITLE);
  EXPECT_EQ(content.ID, SampleID(0xab));
}

TEST(InspectFile, TrackFileIsKnownByItsHeader) {
  const std::pair<TrackKind, FileType_t> kinds[] = {
      {TrackKind::Picture, FT_QUIRE_JP2K_J2C}, {TrackKind::StereoscopicPicture, FT_QUIRE_JP2K_J2C_S},
      {TrackKind::MPEG2, FT_QUIRE_MPEG2_VES},  {TrackKind::Sound, FT_QUIRE_PCM},
      {TrackKind::Data, FT_QUIRE_DCDATA},      {TrackKind::Atmos, FT_QUIRE_ATMOS},
      {TrackKind::Text, FT_QUIRE_TIMED_TEXT}};
  const testsupport::TemporaryFolder folder;
  for (const bool is_encrypted : {false, true})
    for (const auto& [kind, type] : kinds) {
      testsupport::TrackFileSpec spec;
      spec.AssetID = SampleID(static_cast<ui32_t>(type));
      if (is_encrypted) spec.Key.emplace();
      ASSERT_TRUE(
          testsupport::MakeTrackFile(kind, folder.Path("track.xml"), spec).Success());  // the name does not count
      FileContent content;
      EXPECT_EQ(InspectFile(folder.Path("track.xml"), content), Ferro::RESULT_OK);
      EXPECT_EQ(content.Type, type);
      EXPECT_EQ(content.ID, spec.AssetID);
    }
}

TEST(InspectFile, OtherFilesAreKnownByTheirFirstBytes) {
  EXPECT_EQ(Inspect("\x89PNG\r\n\x1a\n....").Type, FT_TI_PNG);
  EXPECT_EQ(Inspect("\x00\x01\x00\x00...."s).Type, FT_TI_TRUETYPE);
  EXPECT_EQ(Inspect("true....").Type, FT_TI_TRUETYPE);
  EXPECT_EQ(Inspect("OTTO....").Type, FT_OPENTYPE);
  EXPECT_EQ(Inspect("\xff\x4f\xff\x51....").Type, FT_J2C);
  EXPECT_EQ(Inspect("\x00\x00\x01\xb3...."s).Type, FT_MPEG2_VES);
  EXPECT_EQ(Inspect("RIFF....WAVEfmt ").Type, FT_WAV);
  EXPECT_EQ(Inspect("RF64....WAVEds64").Type, FT_WAV);
  EXPECT_EQ(Inspect("RIFF....AVI LIST").Type, FT_UNKNOWN);
  EXPECT_EQ(Inspect("RIFF").Type, FT_UNKNOWN);
  EXPECT_EQ(Inspect("notes").Type, FT_UNKNOWN);
  EXPECT_EQ(Inspect("").Type, FT_UNKNOWN);
}

TEST(InspectFile, BrokenFilesAreAnAnswer) {
  const testsupport::LogCapture log;
  const FileContent cut = Inspect(
      "<CompositionPlaylist xmlns=\"http://www.smpte-ra.org/x\"><Id>urn:uuid:00000000-0000-4000-8000-0000000000ab</I");
  EXPECT_EQ(cut.Type, FT_CPL);
  EXPECT_FALSE(cut.ID.HasValue());
  EXPECT_FALSE(Inspect(Document("PackingList", "<x:Id>no identifier</x:Id>")).ID.HasValue());
  EXPECT_EQ(Inspect("<!DOCTYPE a [<!ENTITY b SYSTEM \"file:///etc/passwd\">]><CompositionPlaylist "
                    "xmlns=\"http://www.smpte-ra.org/x\">&b;</CompositionPlaylist>")
                .ID.HasValue(),
            false);
  EXPECT_EQ(Inspect("<").Type, FT_UNKNOWN);
  EXPECT_EQ(log.Text(), "");
  const std::string mxf = "\x06\x0e\x2b\x34\x02\x05\x01\x01\x0d\x01\x02\x01\x01\x02\x04\x00\x83\xff\xff\xff"s;
  EXPECT_EQ(Inspect(mxf).Type, FT_MXF);
}

TEST(InspectFile, TrackFileCutAnywhereIsAnAnswer) {
  const testsupport::LogCapture log;
  const testsupport::TemporaryFolder folder;
  ASSERT_TRUE(testsupport::MakeTrackFile(TrackKind::Sound, folder.Path("file")).Success());
  for (std::uintmax_t size = 8192; size > 64; size -= 61) {
    std::filesystem::resize_file(folder.Path("file"), size);
    FileContent content;
    EXPECT_EQ(InspectFile(folder.Path("file"), content), Ferro::RESULT_OK) << size;
  }
}

TEST(InspectFile, WhatIsNoFileIsRefused) {
  FileContent content;
  EXPECT_EQ(InspectFile("/nowhere/file", content), Ferro::RESULT_NOT_FOUND);
  EXPECT_EQ(InspectFile("/", content), Ferro::RESULT_NOTAFILE);
}

}  // namespace
}  // namespace CairnTest
