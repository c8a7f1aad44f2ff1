// SPDX-License-Identifier: BSD-3-Clause
//
// What whoever holds the keys can do: look at frames, verify them, play them.
#include "EncryptedShow.h"

#include "JsonSchema.h"
#include "TrackFileMaker.h"

#include <Ferro/FileText.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace {

using namespace SigilTest;
using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;
using testsupport::TrackKind;

std::string TextOf(const std::string& filename) {
  std::string text;
  EXPECT_EQ(Ferro::ReadFileIntoString(filename, text), Ferro::RESULT_OK) << filename;
  return text;
}

/// The plaintext of an edit unit, as the show's files were made.
std::string Plain(TrackKind kind, unsigned number, bool right_eye = false) {
  testsupport::TrackFileSpec spec;
  spec.Duration = 48;
  const testsupport::Bytes bytes = testsupport::MakeFrame(kind, spec, number, right_eye);
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

EncryptedShow::Form Stereoscopic() {
  EncryptedShow::Form form;
  form.IsStereoscopic = true;
  return form;
}

TEST(OpenedFrames, OfAShowAndOfAFileAreDecrypted) {
  const EncryptedShow show;
  const std::string keys = show.KeyFile();
  const std::string out = show.Beside("frame.j2c");
  for (const std::string& name : {show.Path(), show.Path("picture.mxf")}) {
    EXPECT_THAT(show.Run({"frame", name, "--at", "7", "--out", out, "--key-file", keys}), HasSubstr("0\n"));
    EXPECT_TRUE(TextOf(out) == Plain(TrackKind::Picture, 7)) << name;
  }
  const std::string sound = show.Beside("sound.bin");
  EXPECT_THAT(show.Run({"frame", show.Path(), "--at", "7", "--channel", "sound", "--out", sound, "--key-file", keys}),
              HasSubstr("0\n"));
  EXPECT_TRUE(TextOf(sound) == Plain(TrackKind::Sound, 7));
}

TEST(OpenedFrames, WithAMessageAndItsPrivateKey) {
  const EncryptedShow show;
  const std::string out = show.Beside("frame.j2c");
  EXPECT_THAT(show.Run({"frame", show.Path(), "--at", "0", "--out", out, "--kdm", show.Message(), "--private-key",
                        show.DeviceKey()}),
              AllOf(HasSubstr("0\n"), Not(HasSubstr("ciphertext"))));
  EXPECT_TRUE(TextOf(out) == Plain(TrackKind::Picture, 0));
  std::filesystem::rename(show.Beside("kdm.xml"), show.Path("kdm.xml"));
  EXPECT_THAT(show.Run({"frame", show.Path(), "--at", "1", "--out", out, "--private-key", show.DeviceKey()}),
              HasSubstr("0\n"));
  EXPECT_TRUE(TextOf(out) == Plain(TrackKind::Picture, 1));
}

TEST(OpenedFrames, OfBothEyes) {
  const EncryptedShow show(Stereoscopic());
  const std::string out = show.Beside("frame.j2c");
  for (const std::string& name : {show.Path(), show.Path("picture.mxf")})
    for (const bool is_right : {false, true}) {
      EXPECT_THAT(show.Run({"frame", name, "--at", "5", "--channel", is_right ? "right" : "left", "--out", out,
                            "--key-file", show.KeyFile()}),
                  HasSubstr("0\n"));
      EXPECT_TRUE(TextOf(out) == Plain(TrackKind::StereoscopicPicture, 5, is_right)) << name << is_right;
    }
}

TEST(OpenedFrames, OfTextWithWhatBelongsToIt) {
  const EncryptedShow show;
  testsupport::TrackFileSpec spec;
  spec.Key.emplace().KeyID = ID(4);
  spec.Key->Key.fill(0x11);
  spec.FontSizes = {300};
  const std::string file = show.Beside("text.mxf");
  ASSERT_EQ(testsupport::MakeTrackFile(TrackKind::Text, file, spec), Ferro::RESULT_OK);
  const std::string out = show.Beside("text.xml");
  EXPECT_THAT(show.Run({"frame", file, "--at", "0", "--out", out, "--key-file", show.KeyFile()}), HasSubstr("0\n"));
  EXPECT_EQ(TextOf(out), testsupport::MakeText(spec));
}

TEST(OpenedFrames, AnotherKeyOpensNothing) {
  const EncryptedShow show;
  const std::string out = show.Beside("frame.j2c");
  for (const std::string& name : {show.Path(), show.Path("picture.mxf")}) {
    EXPECT_THAT(show.Run({"frame", name, "--at", "0", "--out", out, "--key-file", show.KeyFile("33")}),
                HasSubstr("2\n"));
    EXPECT_FALSE(std::filesystem::exists(out));
  }
}

TEST(OpenedFrames, NothingOfAKeyIsShown) {
  const EncryptedShow show;
  const std::string key = show.DeviceKey();
  const std::string secret = TextOf(key).substr(40, 40);
  const std::string answer = show.Run({"-v", "frame", show.Path(), "--at", "0", "--out", show.Beside("frame.j2c"),
                                       "--kdm", show.Message(), "--private-key", key, "--key-file", show.KeyFile()});
  EXPECT_THAT(answer, AllOf(HasSubstr("0\n"), Not(HasSubstr("111111")), Not(HasSubstr(secret))));
  EXPECT_THAT(show.Run({"info", key}), AllOf(HasSubstr("device.key: private key\n"), Not(HasSubstr(secret))));
}

TEST(OpenedPlay, VerifiesEncryptedFrames) {
  const EncryptedShow show;
  const std::vector<std::string> play = {"play",     show.Path(),  "--speed",     "max",
                                         "--verify", "--key-file", show.KeyFile()};
  EXPECT_THAT(show.Run(play), AllOf(HasSubstr("0\n"), HasSubstr("Of these 96 were encrypted: all are as they were "
                                                                "written.\n")));
  std::vector<std::string> json = play;
  json.emplace_back("--json");
  StrataProgram report(json);
  EXPECT_EQ(report.Wait(), 0);
  ExpectMatchesSchema(report.Output(), "strata-play-1");
  EXPECT_THAT(report.Output(), AllOf(HasSubstr("\"decrypted\": 96"), HasSubstr("\"altered\": 0")));
  show.Alter("sound.mxf");
  EXPECT_THAT(show.Run(play),
              AllOf(HasSubstr("2\n"), HasSubstr(", sound: the encrypted frame is not as it was written: "),
                    HasSubstr("Of these 96 were encrypted: 1 are not as they were written.\n")));
}

TEST(OpenedPlay, VerifiesBothEyes) {
  const EncryptedShow show(Stereoscopic());
  EXPECT_THAT(show.Run({"play", show.Path(), "--speed", "max", "--verify", "--key-file", show.KeyFile()}),
              HasSubstr("Of these 96 were encrypted: all are as they were written.\n"));
}

TEST(OpenedCheck, VerifiesEveryFrameOfEncryptedFiles) {
  const EncryptedShow show;
  const std::vector<std::string> arguments = {"--kdm", show.Message(), "--private-key", show.DeviceKey()};
  EXPECT_THAT(show.Check(arguments),
              AllOf(HasSubstr("0\n"), HasSubstr("All 96 frames of 2 encrypted files are as they were written.")));
  show.Alter("sound.mxf");
  const std::string answer = show.Check(arguments);
  EXPECT_THAT(answer, AllOf(HasSubstr("2\n"),
                            HasSubstr("error: Secret, reel 1, sound: An encrypted frame was altered. Found: 1 of "
                                      "48 frames, the first of them edit unit "),
                            HasSubstr("\n    file  SHOW/sound.mxf\n"), Not(HasSubstr("picture: "))));
}

TEST(OpenedCheck, AnotherKeyFailsOnEveryFrame) {
  const EncryptedShow show;
  EXPECT_THAT(
      show.Check({"--kdm", show.Message(), "--key-file", show.KeyFile("33")}),
      HasSubstr("error: Secret, reel 1, picture: An encrypted frame was altered. Found: 48 of 48 frames, the first of "
                "them edit unit 0 of the file: "));
}

TEST(OpenedCheck, ReportsAsJson) {
  const EncryptedShow show;
  StrataProgram check({"check", show.Path(), "--json", "--key-file", show.KeyFile()});
  check.Wait();
  ExpectMatchesSchema(check.Output(), "strata-check-1");
  EXPECT_THAT(check.Output(), HasSubstr("\"verified\": {\n    \"files\": 2,\n    \"frames\": 96\n  }"));
}

TEST(InfoSecurity, TellsWhoSignedAndWhetherItHolds) {
  const EncryptedShow show;
  EXPECT_THAT(
      show.Run({"info", show.Path("CPL.xml")}),
      AllOf(HasSubstr("0\n"), HasSubstr("\n  signature\n    state               valid\n    chain\n      "),
            ContainsRegex("\n      [^\n]*CN=CS\\.SIGNER[^\n]*, issued by [^\n]+, valid from [^\n]+, thumbprint "),
            ContainsRegex("\n      [^\n]*, a root, valid from ")));
  EncryptedShow::Form form;
  form.Composition = [](const std::string& xml) { return Replaced(EncryptedShow::Sign(xml), ">Secret<", ">Public<"); };
  form.PackingList = [](const std::string& xml) { return xml; };
  const EncryptedShow changed(form);
  EXPECT_THAT(changed.Run({"info", changed.Path("CPL.xml")}),
              AllOf(HasSubstr("2\n"), HasSubstr("\n    state               invalid\n"),
                    HasSubstr("\n  problem: Its signature is invalid. The digest is not the document's")));
  EXPECT_THAT(changed.Run({"info", changed.Path("PKL.xml")}),
              AllOf(HasSubstr("0\n"), HasSubstr("\n    state               not signed\n")));
}

TEST(InfoSecurity, DescribesKeyMessagesAndCertificates) {
  const EncryptedShow show;
  EXPECT_THAT(show.Run({"info", show.Message()}),
              AllOf(HasSubstr("0\nBESIDE/kdm.xml: key delivery message\n"),
                    HasSubstr("2026-03-09 22:59:59 (written in +01:00)"), HasSubstr("any device, authenticated")));
  EXPECT_THAT(show.Run({"info", show.Write("cut.xml", Replaced(SoundMessage(), "<KeyType", "<OtherType"))}),
              AllOf(HasSubstr("2\n"), HasSubstr("\n  problem: ")));
  EXPECT_THAT(show.Run({"info", show.DeviceCertificate()}),
              AllOf(HasSubstr("0\nBESIDE/device.pem: certificate\n"), HasSubstr(Device().front().Subject().Text())));
  StrataProgram json(
      {"info", show.Message(), show.DeviceCertificate(), show.Path("CPL.xml"), show.DeviceKey(), "--json"});
  EXPECT_EQ(json.Wait(), 0) << json.Output();
  ExpectMatchesSchema(json.Output(), "strata-info-1");
}

TEST(InfoSecurity, VerifiesTheFramesOfATrackFile) {
  const EncryptedShow show;
  const auto info = [&](const std::string& keys) {
    return show.Run({"info", show.Path("sound.mxf"), "--key-file", keys});
  };
  EXPECT_THAT(info(show.KeyFile()), AllOf(HasSubstr("0\n"), HasSubstr("\n  verified frames       48\n")));
  show.Alter("sound.mxf");
  EXPECT_THAT(info(show.KeyFile()),
              AllOf(HasSubstr("2\n"), HasSubstr("\n  problem: 1 frame is not as it was written: edit unit ")));
  EXPECT_THAT(info(show.Write("a.keys", ID(9).EncodeString() + ":00112233445566778899aabbccddeeff")),
              AllOf(HasSubstr("2\n"), HasSubstr("\n  problem: Its key is not among those at hand")));
}

}  // namespace
