// SPDX-License-Identifier: BSD-3-Clause
//
// What `strata check` and `strata timeline` say of keys and signatures: each finding where it is, and where it just is not.
#include "EncryptedShow.h"

#include "JsonSchema.h"
#include "ToldFinding.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace {

using namespace SigilTest;
using testing::HasSubstr;
using testing::Not;

const std::string Window =
    ", from 2026-03-02 08:00:00 (written in +01:00) until 2026-03-09 22:59:59 (written in +01:00)\n";
const std::string Fine =
    "Nothing speaks against this show: 0:02. Contents were not read: --hash finds damage. Its keys are valid until "
    "2026-03-09 22:59:59.\n";
const std::string WillNot = "This show will not play.\n";

/// The answer where the message beside the show serves.
std::string Serves(const std::string& at = "2026-03-05 20:00:00") {
  return "0\n    at " + at + ": BESIDE/kdm.xml serves" + Window + Fine;
}

/// The answer where it does not, for one reason.
std::string Fails(FindingID id, const std::string& facts, const std::string& at = "2026-03-05 20:00:00") {
  return "2\n    at " + at + ": BESIDE/kdm.xml does not serve" + Window +
         Told("error", id, "Secret", " Found: " + facts, "BESIDE/kdm.xml") + WillNot;
}

TEST(CheckKeys, WithoutMessagesTheShowNeedsKeys) {
  const EncryptedShow show;
  EXPECT_EQ(show.Check(), "0\n    at 2026-03-05 20:00:00: no key message\n" +
                              Told("note", FindingID::KdmNone, "Secret") +
                              "This show needs keys for 1 composition: 0:02. Nothing else speaks against it. Contents "
                              "were not read: --hash finds damage.\n");
  EXPECT_THAT(show.Check({"--hash"}), HasSubstr("This show needs keys for 1 composition: 0:02. All files are"));
}

TEST(CheckKeys, AShowInClearNeedsNone) {
  EncryptedShow::Form form;
  form.IsEncrypted = false;
  const EncryptedShow show(form);
  EXPECT_EQ(show.Check(), "0\nNothing speaks against this show: 0:02. Contents were not read: --hash finds damage.\n");
}

TEST(CheckKeys, AMessageServesFromTheStartOfTheCompositionToItsEnd) {
  const EncryptedShow show;
  const std::string kdm = show.Message();
  EXPECT_EQ(show.Check({"--kdm", kdm}), Serves());
  EXPECT_EQ(show.Check({"--kdm", kdm, "--at", "2026-03-02T08:00:00Z"}), Serves("2026-03-02 08:00:00"));
  EXPECT_EQ(
      show.Check({"--kdm", kdm, "--at", "2026-03-02T07:59:59Z"}),
      Fails(FindingID::KdmEarly, "valid from 2026-03-02 08:00:00 (written in +01:00) on.", "2026-03-02 07:59:59"));
  EXPECT_EQ(show.Check({"--kdm", kdm, "--at", "2026-03-09T22:59:57Z"}), Serves("2026-03-09 22:59:57"));
  EXPECT_EQ(show.Check({"--kdm", kdm, "--at", "2026-03-09T22:59:58Z"}),
            Fails(FindingID::KdmLate, "valid until 2026-03-09 22:59:59 (written in +01:00).", "2026-03-09 22:59:58"));
}

TEST(CheckKeys, GiveOrTakeTheSecondsThatAreAllowed) {
  const EncryptedShow show;
  const std::string kdm = show.Message();
  const auto code = [&](const std::string& at, const std::string& seconds) {
    return show.Check({"--kdm", kdm, "--at", at, "--tolerance", seconds}).substr(0, 1);
  };
  EXPECT_EQ(code("2026-03-02T07:59:50Z", "10"), "0");
  EXPECT_EQ(code("2026-03-02T07:59:49Z", "10"), "2");
  EXPECT_EQ(code("2026-03-09T23:00:07Z", "10"), "0");
  EXPECT_EQ(code("2026-03-09T23:00:08Z", "10"), "2");
  EXPECT_EQ(code("2026-03-09T23:00:08Z", "100000"), "1");
}

TEST(CheckKeys, ATimeWithoutOffsetIsLocal) {
  const EncryptedShow show;
  const std::string kdm = show.Message();
  EXPECT_EQ(show.Check({"--kdm", kdm, "--at", "2026-03-02 08:00"}), Serves("2026-03-02 08:00:00"));
  EXPECT_EQ(show.Check({"--kdm", kdm, "--at", "2026-03-02T09:00:00+01:00"}), Serves("2026-03-02 08:00:00"));
  EXPECT_EQ(show.Check({"--at", "tonight"}),
            "1\nstrata: --at tonight: this is no time like 20:00, \"2026-03-01 20:00\" or 2026-03-01T20:00:00+01:00\n");
}

TEST(CheckKeys, NowIsToldBesideTheTimeThatCounts) {
  const EncryptedShow show;
  StrataProgram check({"check", show.Path(), "--kdm", show.Message(), "--at", "2026-03-05T20:00:00Z"});
  EXPECT_EQ(check.Wait(), 0);
  EXPECT_THAT(check.Output(), HasSubstr("\n    now: " + show.Beside("kdm.xml") + " does not serve, from "));
  StrataProgram now({"check", show.Path(), "--kdm", show.Message()});
  EXPECT_EQ(now.Wait(), 2);
  EXPECT_THAT(now.Output(), HasSubstr("error: Secret: The key message is not valid any more. Found: valid until "));
}

TEST(CheckKeys, MessagesAreFoundBesideTheShowInFoldersAndInArchives) {
  const EncryptedShow show;
  EXPECT_EQ(show.Check({"--kdm", show.Write("all.zip", EncryptedShow::Zip({{"cinema/screen.xml", SoundMessage()}}))}),
            "0\n    at 2026-03-05 20:00:00: BESIDE/all.zip: cinema/screen.xml serves" + Window + Fine);
  std::filesystem::create_directory(show.Beside("cinema"));
  show.Message("cinema/screen.kdm.xml", SoundRequest());
  EXPECT_EQ(show.Check({"--kdm", show.Beside("cinema")}),
            "0\n    at 2026-03-05 20:00:00: BESIDE/cinema/screen.kdm.xml serves" + Window + Fine);
  show.Message("show/kdm.xml", SoundRequest());
  EXPECT_EQ(show.Check(), "0\n    at 2026-03-05 20:00:00: SHOW/kdm.xml serves" + Window + Fine);
  EXPECT_EQ(show.Check({"--kdm", show.Beside("nothing.xml")}),
            "1\nstrata: BESIDE/nothing.xml: there is no such file or folder\n");
}

TEST(CheckKeys, AMessageForAnotherCompositionIsNone) {
  const EncryptedShow show;
  Sigil::MessageRequest request = SoundRequest();
  request.CompositionID = ID(2);
  EXPECT_EQ(show.Check({"--kdm", show.Message("kdm.xml", request)}),
            "2\n    at 2026-03-05 20:00:00: no key message\n" +
                Told("error", FindingID::KdmNone, "Secret", " Found: a key message for something else.") + WillNot);
}

TEST(CheckKeys, AllKeysMustBeThere) {
  const EncryptedShow show;
  Sigil::MessageRequest request = SoundRequest();
  request.Keys.pop_back();
  EXPECT_EQ(show.Check({"--kdm", show.Message("kdm.xml", request)}),
            Fails(FindingID::KdmKeyMissing, "The key message has no key " + ID(5).EncodeString() + '.'));
}

TEST(CheckKeys, WhoSignedTheCompositionIsWhomTheMessageSays) {
  const EncryptedShow show;
  Sigil::MessageRequest request = SoundRequest();
  request.ContentAuthenticator = Device().front().Thumbprint();
  EXPECT_EQ(show.Check({"--kdm", show.Message("kdm.xml", request)}),
            Fails(FindingID::KdmAuthenticator, "The composition is not signed by whom the key message says."));
  request.ContentAuthenticator.reset();
  EXPECT_EQ(show.Check({"--kdm", show.Message("kdm.xml", request)}), Serves());
}

TEST(CheckKeys, TheRecipientIsWhoWasAskedFor) {
  const EncryptedShow show;
  const std::string kdm = show.Message();
  EXPECT_EQ(show.Check({"--kdm", kdm, "--recipient", show.DeviceCertificate()}), Serves());
  auto recipes = testsupport::DeviceRecipes("other");
  recipes.back().SerialNumber = "4711";
  const std::string other = show.Write("other.pem", Certificates(recipes).front().PEM());
  const std::string answer = show.Check({"--kdm", kdm, "--recipient", other});
  EXPECT_THAT(
      answer,
      HasSubstr(
          "error: Secret: The key message is for another server. Found: The key message is for another recipient, "));
  EXPECT_THAT(answer, HasSubstr(WillNot));
  EXPECT_EQ(show.Check({"--recipient", show.Write("none.pem", "nobody")}),
            "2\nstrata: --recipient BESIDE/none.pem: this is no certificate, or one that is damaged\n");
}

TEST(CheckKeys, DevicesThatAreNotListedAreToldOf) {
  const EncryptedShow show;
  Sigil::MessageRequest request = SoundRequest();
  const std::vector<std::string> asked = {"--kdm", show.Beside("kdm.xml"), "--device", show.DeviceCertificate()};
  request.Devices = {Device().front().Thumbprint()};
  show.Message("kdm.xml", request);
  EXPECT_EQ(show.Check(asked), Serves());
  request.Devices = {Device().back().Thumbprint()};
  show.Message("kdm.xml", request);
  EXPECT_EQ(show.Check(asked), "0\n    at 2026-03-05 20:00:00: BESIDE/kdm.xml serves" + Window +
                                   Told("warning", FindingID::KdmDevice, "Secret",
                                        " Found: The key message does not list the device " +
                                            Device().front().Thumbprint().EncodeBase64() + ".",
                                        "BESIDE/kdm.xml") +
                                   Fine);
}

TEST(CheckKeys, AWindowBeyondTheSignersValidityIsToldOf) {
  const EncryptedShow show;
  Sigil::MessageRequest request = SoundRequest();
  request.NotAfter = Time("2035-01-01T00:00:01Z");
  EXPECT_THAT(show.Check({"--kdm", show.Message("kdm.xml", request)}),
              HasSubstr("warning: Secret: The key message is valid for longer than its signer's certificate. Found: "));
  request.NotAfter = Time("2035-01-01T00:00:00Z");
  EXPECT_THAT(show.Check({"--kdm", show.Message("kdm.xml", request)}), Not(HasSubstr("warning")));
}

TEST(CheckKeys, AMessageThatWasChangedDoesNotServe) {
  const EncryptedShow show;
  show.Write("kdm.xml", Replaced(SoundMessage(), "A &lt; B", "A &gt; B"));
  const std::string answer = show.Check({"--kdm", show.Beside("kdm.xml")});
  EXPECT_THAT(
      answer,
      HasSubstr("error: Secret: The key message's signature is not valid. Found: The key message's signature is "
                "invalid. The digest is not"));
  EXPECT_THAT(answer, HasSubstr("Ask for the message again, in an archive.\n" + WillNot));
}

TEST(CheckKeys, WhatCannotBeReadMattersWhereAMessageLacks) {
  const EncryptedShow show;
  const std::string cut = show.Write("cut.xml", SoundMessage().substr(0, 2000));
  const std::string zip = show.Write("all.zip", EncryptedShow::Zip({{"../kdm.xml", SoundMessage()}}));
  const std::string without = show.Check({"--kdm", cut, "--kdm", zip});
  EXPECT_THAT(without,
              HasSubstr("\nerror: The archive of key messages cannot be used. Found: The archive is refused: "));
  EXPECT_THAT(without, HasSubstr("\n    file  BESIDE/all.zip\n"));
  EXPECT_THAT(without, HasSubstr("\n    file  BESIDE/cut.xml\n"));
  EXPECT_THAT(without, HasSubstr(WillNot));
  const std::string with = show.Check({"--kdm", cut, "--kdm", zip, "--kdm", show.Message()});
  EXPECT_THAT(with,
              HasSubstr("\nwarning: The archive of key messages cannot be used. Found: The archive is refused: "));
  EXPECT_THAT(with, HasSubstr(Fine));
}

TEST(CheckKeys, RootsThatAreTrustedAreTheOnlyOnes) {
  const EncryptedShow show;
  const std::string kdm = show.Message();
  const std::string own = show.Write("own.pem", Signer().Chain.back().PEM());
  EXPECT_EQ(show.Check({"--kdm", kdm, "--trust", own}), Serves());
  auto recipes = testsupport::SoundRecipes();
  recipes.front().SerialNumber = "815";
  const std::string other = show.Write("other.pem", Certificates(recipes).back().PEM());
  const std::string answer = show.Check({"--kdm", kdm, "--trust", other});
  EXPECT_THAT(answer, HasSubstr("error: Secret: The chain of certificates is not complete. Found: "));
  EXPECT_THAT(answer, HasSubstr("error: Secret: The certificates of the key message's signer do not hold. Found: "));
  EXPECT_THAT(answer, HasSubstr("Ask for a package that is signed with a complete chain."));
  EXPECT_EQ(answer.substr(0, 1), "2");
}

TEST(CheckSignatures, ADocumentThatWasChangedIsRefused) {
  EncryptedShow::Form form;
  form.Composition = [](const std::string& xml) { return Replaced(EncryptedShow::Sign(xml), ">Secret<", ">Public<"); };
  form.PackingList = [](const std::string& xml) { return Replaced(EncryptedShow::Sign(xml), ">Issuer<", ">Other<"); };
  const EncryptedShow show(form);
  const std::string changed = " Found: The digest is not the document's: it was changed after it was signed.";
  const std::string answer = show.Check();
  EXPECT_THAT(answer, HasSubstr(ToldBare("error", FindingID::SignInvalid, "Public", changed, "SHOW/CPL.xml") +
                                Told("error", FindingID::SignInvalid, "", changed, "SHOW/PKL.xml")));
  EXPECT_EQ(answer.substr(0, 1), "2");
}

TEST(CheckSignatures, WhatIsNotFollowedIsRefused) {
  EncryptedShow::Form form;
  form.Composition = [](const std::string& xml) {
    return Replaced(EncryptedShow::Sign(xml), "xmldsig-more#rsa-sha256", "xmldsig-more#hmac-sha256");
  };
  form.PackingList = [](const std::string& xml) {
    return Replaced(EncryptedShow::Sign(xml), "URI=\"\"", "URI=\"http://nowhere.invalid/\"");
  };
  const EncryptedShow show(form);
  StrataProgram check({"check", show.Path(), "--json"});
  check.Wait();
  ExpectMatchesSchema(check.Output(), "strata-check-1");
  EXPECT_THAT(check.Output(), HasSubstr("\"id\": \"sign-method\""));
  EXPECT_THAT(check.Output(), HasSubstr("\"id\": \"sign-form\""));
}

TEST(CheckSignatures, DocumentsOfEncryptedContentAreSigned) {
  const auto unsigned_document = [](std::string xml) { return xml; };
  const std::string missing = "The document is not signed.\n    file  SHOW/";
  for (const bool is_encrypted : {true, false}) {
    EncryptedShow::Form composition;
    composition.Composition = unsigned_document;
    composition.IsEncrypted = is_encrypted;
    std::string answer = EncryptedShow(composition).Check();
    EXPECT_EQ(answer.starts_with('2'), is_encrypted) << answer;
    EXPECT_EQ(answer.find("error: Secret: " + missing + "CPL.xml\n") != answer.npos, is_encrypted) << answer;

    EncryptedShow::Form list;
    list.PackingList = unsigned_document;
    list.IsEncrypted = is_encrypted;
    answer = EncryptedShow(list).Check();
    EXPECT_EQ(answer.find("error: " + missing + "PKL.xml\n") != answer.npos, is_encrypted) << answer;
  }
}

TEST(CheckSignatures, ACertificateThatRanOutSinceIsNotedOnce) {
  EncryptedShow::Form form;
  form.Composition = form.PackingList = [](const std::string& xml) {
    auto recipes = testsupport::SoundRecipes();
    recipes.back().NotAfter = "20260601000000Z";
    return Signed(xml, Signer(recipes));
  };
  const EncryptedShow show(form);
  StrataProgram check({"check", show.Path()});
  EXPECT_EQ(check.Wait(), 0);
  const std::string answer = check.Output();
  const size_t at = answer.find("\nnote: Secret: A certificate has run out");
  ASSERT_NE(at, std::string::npos) << answer;
  EXPECT_EQ(answer.find("\nnote: A certificate"), std::string::npos) << answer;
}

TEST(CheckKeys, ReportsAsJson) {
  const EncryptedShow show;
  StrataProgram check({"check", show.Path(), "--json", "--kdm", show.Message(), "--at", "2026-03-05T20:00:00Z"});
  EXPECT_EQ(check.Wait(), 0);
  ExpectMatchesSchema(check.Output(), "strata-check-1");
  EXPECT_THAT(check.Output(), HasSubstr("\"playable\": true,\n"));
  EXPECT_THAT(check.Output(), HasSubstr("\"needs_keys\": 0,\n"));
  EXPECT_THAT(check.Output(), HasSubstr("\"at\": \"2026-03-05T20:00:00+00:00\",\n          \"now\": false,\n          "
                                        "\"serves\": true,\n          \"result\": \"OK\",\n"));
  EXPECT_THAT(check.Output(), HasSubstr("\"result\": \"SX_NO_VALID_KDM\""));
  EXPECT_THAT(check.Output(), HasSubstr("\"not_after\": \"2026-03-09T23:59:59+01:00\""));
  StrataProgram without({"check", show.Path(), "--json"});
  EXPECT_EQ(without.Wait(), 0);
  ExpectMatchesSchema(without.Output(), "strata-check-1");
  EXPECT_THAT(without.Output(), HasSubstr("\"playable\": false,\n"));
  EXPECT_THAT(without.Output(), HasSubstr("\"needs_keys\": 1,\n"));
  EXPECT_THAT(without.Output(), HasSubstr("\"result\": \"SX_NO_KDM\""));
}

TEST(TimelineKeys, TellWhetherAMessageServes) {
  const EncryptedShow show;
  const std::vector<std::string> at = {"--at", "2026-03-05T20:00:00Z", "--width", "200"};
  std::vector<std::string> arguments = {"timeline", show.Path()};
  arguments.insert(arguments.end(), at.begin(), at.end());
  EXPECT_THAT(show.Run(arguments), HasSubstr("no key message"));
  EXPECT_THAT(show.Run(arguments),
              HasSubstr("note: Secret: The composition is encrypted: it plays only with its keys."));
  arguments.insert(arguments.end(), {"--kdm", show.Message()});
  EXPECT_THAT(show.Run(arguments), HasSubstr("       at 2026-03-05 20:00:00: BESIDE/kdm.xml serves, from "));
  StrataProgram json({"timeline", show.Path(), "--json", "--kdm", show.Message()});
  EXPECT_EQ(json.Wait(), 2);
  ExpectMatchesSchema(json.Output(), "strata-timeline-1");
  EXPECT_THAT(json.Output(), HasSubstr("\"id\": \"kdm-late\""));
}

}  // namespace
