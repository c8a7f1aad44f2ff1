// SPDX-License-Identifier: BSD-3-Clause
#include "EncryptedShow.h"

#include "JsonSchema.h"
#include "Judges.h"
#include "TerminalProgram.h"

#include <Ferro/FileText.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace {

using namespace SigilTest;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

const std::string Within = "2026-03-05T20:00:00Z";

std::string TextOf(const std::string& filename) {
  std::string text;
  EXPECT_EQ(Ferro::ReadFileIntoString(filename, text), Ferro::RESULT_OK) << filename;
  return text;
}

TEST(KdmList, TellsWhatAMessageSays) {
  const EncryptedShow show;
  const std::string answer = show.Run({"kdm", "list", show.Message()});
  EXPECT_THAT(answer, AllOf(HasSubstr("0\nBESIDE/kdm.xml\n  composition           A < B & C (" + ID(1).EncodeString()),
                            HasSubstr("\n  valid                 from 2026-03-02 08:00:00 (written in +01:00) until "
                                      "2026-03-09 22:59:59 (written in +01:00)\n"),
                            HasSubstr("\n  devices               any device, authenticated\n"),
                            HasSubstr("\n  signature             valid, by "),
                            HasSubstr("\n  keys                  MDIK " + ID(4).EncodeString() + ", MDAK " +
                                      ID(5).EncodeString() + "\n1 key message.\n")));
}

TEST(KdmList, TellsWhatCannotBeRead) {
  const EncryptedShow show;
  const std::string zip =
      show.Write("all.zip", EncryptedShow::Zip({{"a.xml", SoundMessage()}, {"b.xml", SoundMessage()}}));
  EXPECT_THAT(show.Run({"kdm", "list", zip}),
              AllOf(HasSubstr("0\nBESIDE/all.zip: a.xml\n"), HasSubstr("\n1 key message.\n")));
  const std::string cut = show.Write("cut.xml", SoundMessage().substr(0, 500));
  EXPECT_THAT(show.Run({"kdm", "list", cut, zip}),
              AllOf(HasSubstr("2\n"), HasSubstr("\nproblem: BESIDE/cut.xml: "), HasSubstr("\n1 key message.\n")));
  EXPECT_EQ(show.Run({"kdm", "list", show.Beside("none")}),
            "1\nstrata: BESIDE/none: there is no such file or folder\n");
}

TEST(KdmList, ReportsAsJson) {
  const EncryptedShow show;
  StrataProgram list({"kdm", "list", show.Message(), show.Write("cut.xml", "<a/>"), "--json"});
  EXPECT_EQ(list.Wait(), 2);
  ExpectMatchesSchema(list.Output(), "strata-kdm-list-1");
  EXPECT_THAT(list.Output(), AllOf(HasSubstr("\"not_before\": \"2026-03-02T09:00:00+01:00\""),
                                   HasSubstr("\"signature\": \"valid\""), HasSubstr("\"id\": \"kdm-form\"")));
}

TEST(KdmCheck, AMessageServesWhatItIsFor) {
  const EncryptedShow show;
  const std::vector<std::string> all = {"kdm",
                                        "check",
                                        show.Message(),
                                        "--at",
                                        Within,
                                        "--composition",
                                        show.Path("CPL.xml"),
                                        "--recipient",
                                        show.DeviceCertificate(),
                                        "--private-key",
                                        show.DeviceKey()};
  EXPECT_THAT(show.Run(all),
              AllOf(HasSubstr("0\n"), HasSubstr("\nThe key message serves.\n"), Not(HasSubstr("error"))));
}

TEST(KdmCheck, EachReasonIsTold) {
  const EncryptedShow show;
  const std::string kdm = show.Message();
  const auto check = [&](std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"kdm", "check", kdm});
    return show.Run(arguments);
  };
  EXPECT_THAT(
      check({"--at", "2026-03-02 07:59:59"}),
      HasSubstr(
          "error: The key message is not valid yet. Found: valid from 2026-03-02 08:00:00 (written in +01:00) on.\n"));
  EXPECT_THAT(check({"--at", "2026-03-09 22:59:59"}), HasSubstr("\nThe key message serves.\n"));
  EXPECT_THAT(check({"--at", "2026-03-09 22:59:59", "--composition", show.Path("CPL.xml")}),
              AllOf(HasSubstr("2\n"), HasSubstr("error: The key message is not valid any more. Found: valid until "),
                    HasSubstr("\nThe key message does not serve.\n")));
  const std::string other = show.Write("other.key", testsupport::TestKeyPEM("leaf"));
  EXPECT_THAT(
      check({"--at", Within, "--private-key", other}),
      HasSubstr(
          "error: What is locked inside the key message does not agree with its outside. Found: the private key does "
          "not open it.\n"));
  EXPECT_THAT(check({"--at", Within, "--composition", show.Path("PKL.xml")}),
              HasSubstr("2\nstrata: SHOW/PKL.xml: this is no composition that can be read: "));
  EXPECT_THAT(check({"--at", Within, "--composition", show.Path("none.xml")}), HasSubstr("1\nstrata: SHOW/none.xml: "));
  Sigil::MessageRequest request = SoundRequest();
  request.CompositionID = ID(2);
  show.Message("kdm.xml", request);
  EXPECT_THAT(
      check({"--at", Within, "--composition", show.Path("CPL.xml")}),
      HasSubstr(
          "error: The key message is for another composition. Found: The key message is for another composition, " +
          ID(2).EncodeString() + ".\n"));
}

TEST(KdmCheck, ReportsAsJson) {
  const EncryptedShow show;
  StrataProgram check({"kdm", "check", show.Message(), "--at", "2026-03-01T20:00:00Z", "--json"});
  EXPECT_EQ(check.Wait(), 2);
  ExpectMatchesSchema(check.Output(), "strata-kdm-check-1");
  EXPECT_THAT(check.Output(), AllOf(HasSubstr("\"serves\": false"), HasSubstr("\"id\": \"kdm-early\"")));
}

/// What makes a message from a key file, with other options behind it.
class KdmMake : public testing::Test {
 protected:
  std::vector<std::string> Arguments(const std::vector<std::string>& more) const {
    std::vector<std::string> arguments = {"kdm",
                                          "make",
                                          m_Show.Path("CPL.xml"),
                                          "--recipient",
                                          m_Show.DeviceCertificate(),
                                          "--signer",
                                          SignerFile(),
                                          "--signer-key",
                                          m_Show.Write("leaf.key", testsupport::TestKeyPEM("leaf")),
                                          "--out",
                                          m_Show.Beside("made.xml")};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
  }
  std::vector<std::string> InWindow(std::vector<std::string> more) const {
    more.insert(more.end(), {"--from", "2026-03-01T09:00:00+01:00", "--until", "2026-03-08T03:00:00+01:00"});
    return Arguments(more);
  }
  std::string SignerFile() const {
    std::string pem;
    for (const Sigil::Certificate& certificate : Signer().Chain) pem += certificate.PEM();
    return m_Show.Write("signer.pem", pem);
  }
  std::string Checked() const {
    return m_Show.Run({"kdm", "check", m_Show.Beside("made.xml"), "--at", Within, "--composition",
                       m_Show.Path("CPL.xml"), "--recipient", m_Show.DeviceCertificate(), "--private-key",
                       m_Show.DeviceKey()});
  }

  EncryptedShow m_Show;
};

TEST_F(KdmMake, FromAKeyFile) {
  const std::string answer = m_Show.Run(InWindow({"--key-file", m_Show.KeyFile(), "--annotation", "For tonight"}));
  EXPECT_THAT(answer, AllOf(HasSubstr("0\nBESIDE/made.xml\n"), HasSubstr("\n  annotation            For tonight\n"),
                            HasSubstr("any device, authenticated"), HasSubstr("MDIK " + ID(4).EncodeString())));
  EXPECT_THAT(Checked(), HasSubstr("\nThe key message serves.\n"));
  const std::string xml = TextOf(m_Show.Beside("made.xml"));
  EXPECT_EQ(Opened(ReadMessage(xml)), "OK");
  EXPECT_EQ(PlainByOpenSSL(xml, 0).substr(122), std::string(16, '\x11'));
  EXPECT_EQ(PlainByOpenSSL(xml, 1).substr(122), std::string(16, '\x22'));
}

TEST_F(KdmMake, FromAMessageThatIsOpened) {
  const std::string answer = m_Show.Run(InWindow(
      {"--kdm", m_Show.Message(), "--private-key", m_Show.DeviceKey(), "--device", m_Show.DeviceCertificate()}));
  EXPECT_THAT(answer, AllOf(HasSubstr("0\n"), HasSubstr("named devices, authenticated: " +
                                                        Device().front().Thumbprint().EncodeBase64())));
  EXPECT_THAT(Checked(), HasSubstr("\nThe key message serves.\n"));
}

TEST_F(KdmMake, ReportsAsJson) {
  std::vector<std::string> arguments = InWindow({"--key-file", m_Show.KeyFile(), "--json"});
  StrataProgram make(arguments);
  EXPECT_EQ(make.Wait(), 0) << make.Errors();
  ExpectMatchesSchema(make.Output(), "strata-kdm-make-1");
}

TEST_F(KdmMake, WhatDoesNotFitIsRefusedInASentence) {
  const std::string keys = m_Show.KeyFile();
  EXPECT_THAT(m_Show.Run(InWindow({})), HasSubstr("2\nstrata: there is no key " + ID(4).EncodeString() + ", which"));
  EXPECT_EQ(m_Show.Run(Arguments({"--key-file", keys, "--from", "2026-03-08 03:00", "--until", "2026-03-08 03:00"})),
            "1\nstrata: --until 2026-03-08 03:00: this is not after --from 2026-03-08 03:00\n");
  EXPECT_THAT(m_Show.Run(Arguments({"--key-file", keys, "--from", "soon", "--until", "2026-03-08 03:00"})),
              HasSubstr("1\nstrata: --from soon: this is no time"));
  EXPECT_EQ(m_Show.Run(InWindow({"--key-file", m_Show.Write("bad.keys", ID(4).EncodeString() + ":11\n")})),
            "1\nstrata: --key-file BESIDE/bad.keys: Key file: line 1 is not an identifier, a colon and a key of 32 "
            "hexadecimal digits\n");
  EXPECT_EQ(m_Show.Run(InWindow({"--kdm", m_Show.Message()})),
            "1\nstrata: --kdm: a key message opens nothing without its --private-key\n");
  const std::string leaf = m_Show.Write("leaf.key", testsupport::TestKeyPEM("leaf"));
  EXPECT_EQ(m_Show.Run(InWindow({"--kdm", m_Show.Message(), "--private-key", leaf})),
            "2\nstrata: --private-key: it does not open the key message BESIDE/kdm.xml\n");
  std::vector<std::string> other = InWindow({"--key-file", keys});
  other[8] = m_Show.DeviceKey();
  EXPECT_THAT(m_Show.Run(other), HasSubstr("2\nstrata: the key message cannot be made: "));
  EXPECT_FALSE(std::filesystem::exists(m_Show.Beside("made.xml")));
}

TEST_F(KdmMake, AnUnsignedCompositionIsTold) {
  EncryptedShow::Form form;
  form.Composition = [](const std::string& xml) { return xml; };
  const EncryptedShow unsigned_show(form);
  std::vector<std::string> arguments = InWindow({"--key-file", m_Show.KeyFile()});
  arguments[2] = unsigned_show.Path("CPL.xml");
  const std::string answer = m_Show.Run(arguments);
  EXPECT_THAT(answer, AllOf(HasSubstr("0\n"), HasSubstr("devices               any device\n"),
                            HasSubstr("strata: warning: "), HasSubstr("the composition has no valid signature")));
}

TEST_F(KdmMake, APassphraseComesFromAFileOrFromTheTerminal) {
  const std::string key = m_Show.Beside("locked.key");
  testsupport::RunJudge(
      {"openssl", "pkcs8", "-topk8", "-in", m_Show.DeviceKey(), "-out", key, "-passout", "pass:secret"});
  const std::string kdm = m_Show.Message();
  const auto check = [&](const std::vector<std::string>& more) {
    std::vector<std::string> arguments = {"kdm", "check", kdm, "--at", Within, "--private-key", key};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
  };
  const auto file = [&](const std::string& text) { return m_Show.Write("passphrase", text); };
  EXPECT_THAT(m_Show.Run(check({"--passphrase-file", file("secret\n")})), HasSubstr("\nThe key message serves.\n"));
  EXPECT_EQ(m_Show.Run(check({"--passphrase-file", file("wrong")})),
            "2\nstrata: --private-key BESIDE/locked.key: The private key's passphrase is missing or wrong.\n");
  EXPECT_THAT(m_Show.Run(check({"--passphrase-file", m_Show.Beside("none")})),
              HasSubstr("1\nstrata: --passphrase-file "));

  StrataProgram nobody(check({}), "", "", {"setsid", "--wait"});
  EXPECT_EQ(nobody.Wait(), 1);
  EXPECT_THAT(nobody.Errors(), HasSubstr("this key has a passphrase, and there is no terminal to ask for it"));

  TerminalProgram asked(check({}));
  ASSERT_TRUE(asked.WaitFor("Passphrase of "));
  EXPECT_FALSE(asked.Echoes());
  asked.Type("secret\n");
  EXPECT_EQ(asked.Wait(), 0);
  EXPECT_THAT(asked.Screen(), AllOf(HasSubstr("The key message serves."), Not(HasSubstr("secret"))));

  TerminalProgram given_up(check({}));
  ASSERT_TRUE(given_up.WaitFor("Passphrase of "));
  given_up.Signal(SIGINT);
  EXPECT_EQ(given_up.Wait(), 4);
}

}  // namespace
