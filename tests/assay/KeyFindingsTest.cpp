// SPDX-License-Identifier: BSD-3-Clause
// Key messages for encrypted compositions: kdm-*.
#include "SignedPackage.h"

#include <Sigil/PrivateKey.h>

namespace {

using Assay::CheckReport;
using Assay::Finding;
using Assay::FindingClass;
using Assay::FindingID;
using Assay::KeyAnswer;
using SigilTest::ID;
using SigilTest::Replaced;
using SigilTest::Time;
using testsupport::Names;
using testsupport::NamesOf;
using testsupport::SignedPackage;
using testsupport::TheOne;

/// What is found with another message.
Names With(const Sigil::MessageRequest& request) {
  return SignedPackage().Message(request).Findings();
}
Names With(const std::string& xml) {
  return SignedPackage().Message(xml).Findings();
}

const std::string& SoundMessage() {
  static const std::string s_Text = SigilTest::Made(SignedPackage::SoundRequest());
  return s_Text;
}

TEST(KeyFindings, TheReportTellsWhichMessageServesAndWhen) {
  const CheckReport report = SignedPackage().Report();
  ASSERT_EQ(report.Compositions.size(), 1U);
  ASSERT_EQ(report.Compositions[0].Keys.size(), 1U);
  const KeyAnswer& answer = report.Compositions[0].Keys[0];
  EXPECT_TRUE(answer.Serves() && answer.IsNow && answer.HasMessage());
  EXPECT_EQ(answer.Source, "kdm.xml");
  EXPECT_EQ(answer.MessageID, ID(9));
  EXPECT_EQ(answer.Begin, Time("2026-03-03T12:00:00Z"));
  EXPECT_EQ(answer.NotBefore.EncodeString(), SigilTest::Begin);
  EXPECT_EQ(answer.NotAfter.EncodeString(), SigilTest::End);
}

TEST(KeyFindings, WithoutMessagesItIsNoted) {
  SignedPackage package;
  package.Messages.emplace();
  const CheckReport report = package.Report();
  EXPECT_EQ(NamesOf(report.Findings), Names{"kdm-none"});
  EXPECT_EQ(report.Compositions[0].Keys.at(0).Result, Sigil::RESULT_SG_NO_MESSAGE);
  EXPECT_FALSE(report.Compositions[0].Keys.at(0).HasMessage());
}

TEST(KeyFindings, WithoutAMessageForItTheCompositionDoesNotPlay) {
  Sigil::MessageRequest request = SignedPackage::SoundRequest();
  request.CompositionID = ID(1);
  request.Keys[0].Entry.ID = ID(4);
  EXPECT_EQ(With(request), Names{"kdm-none error"});
}

TEST(KeyFindings, AMessageWithItsKeysIsForAnotherVersion) {
  Sigil::MessageRequest request = SignedPackage::SoundRequest();
  request.CompositionID = ID(1);
  SignedPackage package;
  const CheckReport report = package.Message(request).Report();
  EXPECT_EQ(NamesOf(report.Findings), (Names{"kdm-composition", "kdm-none error"}));
  EXPECT_EQ(report.Findings[0].Found, "kdm.xml: 00000000-0000-4000-8000-000000000001");
  EXPECT_EQ(report.Findings[1].Cause, 0U);
  EXPECT_EQ(report.Findings[1].Found, "1 key message for others");
}

/// What is found when the show begins at that time, and lasts 20 seconds.
Names At(const char* time, Assay::ui32_t tolerance = 0) {
  SignedPackage package;
  package.Request.At = Time(time);
  package.Request.Tolerance = tolerance;
  return package.Findings();
}

TEST(KeyFindings, TheWindowCoversAllOfThePlaying) {
  EXPECT_EQ(At("2026-03-02T07:59:59Z"), Names{"kdm-early"});
  EXPECT_EQ(At("2026-03-02T08:00:00Z"), Names{});
  EXPECT_EQ(At("2026-03-09T22:59:39Z"), Names{});
  EXPECT_EQ(At("2026-03-09T22:59:40Z"), Names{"kdm-late"});
  EXPECT_EQ(At("2026-03-02T07:59:30Z", 30), Names{});
  EXPECT_EQ(At("2026-03-09T22:59:45Z", 6), Names{});
  EXPECT_EQ(At("2026-03-09T22:59:45Z", 5), Names{"kdm-late"});
}

TEST(KeyFindings, AtATimeThatIsAskedForNowIsToldBesideIt) {
  SignedPackage package;
  package.Request.At = Time("2026-03-09T23:00:00Z");
  const CheckReport report = package.Report();
  ASSERT_EQ(report.Compositions[0].Keys.size(), 2U);
  EXPECT_TRUE(report.Compositions[0].Keys[0].IsNow && report.Compositions[0].Keys[0].Serves());
  EXPECT_FALSE(report.Compositions[0].Keys[1].IsNow || report.Compositions[0].Keys[1].Serves());
  const Finding late = TheOne(report.Findings, FindingID::KdmLate);
  EXPECT_EQ(late.Expected, "valid until 2026-03-09T23:00:20+00:00");
  EXPECT_EQ(late.Found, "kdm.xml: valid until 2026-03-09T23:59:59+01:00");
}

TEST(KeyFindings, EachPlaceInTheShowIsAskedFor) {
  SignedPackage package;
  const Assay::UUID id = SignedPackage::SoundRequest().CompositionID;
  package.Request.At = Time("2026-03-09T22:00:00Z");
  package.Request.Starts = {{id, 60}, {id, 3579}, {ID(1), 86'400}};
  EXPECT_EQ(package.Findings(), Names{});
  package.Request.Starts[1].Seconds = 3580;
  const CheckReport report = package.Report();
  EXPECT_EQ(NamesOf(report.Findings), Names{"kdm-late"});
  ASSERT_EQ(report.Compositions[0].Keys.size(), 4U);
  EXPECT_TRUE(report.Compositions[0].Keys[1].Serves());
  EXPECT_FALSE(report.Compositions[0].Keys[3].Serves());
}

TEST(KeyFindings, EveryKeyIsThere) {
  Sigil::MessageRequest request = SignedPackage::SoundRequest();
  request.Keys[0].Entry.ID = ID(4);
  EXPECT_EQ(With(request), Names{"kdm-key-missing"});
}

TEST(KeyFindings, TheSignerIsTheOneOfTheMessage) {
  Sigil::MessageRequest request = SignedPackage::SoundRequest();
  request.ContentAuthenticator = SigilTest::Device()[0].Thumbprint();
  EXPECT_EQ(With(request), Names{"kdm-authenticator"});
  request.ContentAuthenticator.reset();
  EXPECT_EQ(With(request), Names{});
}

TEST(KeyFindings, TheRecipientIsTheOneOfTheMessage) {
  SignedPackage package;
  package.Request.Recipient = SigilTest::Device()[0];
  EXPECT_EQ(package.Findings(), Names{});
  auto recipes = testsupport::DeviceRecipes();
  recipes[2].SerialNumber = "78";
  package.Request.Recipient = SigilTest::Certificates(recipes)[0];
  EXPECT_EQ(package.Findings(), Names{"kdm-recipient"});
  recipes = testsupport::DeviceRecipes();
  recipes[2].SubjectPart("CN").Value = "SM.SERVER";
  package.Request.Recipient = SigilTest::Certificates(recipes)[0];
  EXPECT_EQ(package.Findings(), Names{"kdm-recipient-name"});
}

TEST(KeyFindings, DevicesAreListed) {
  SignedPackage package;
  package.Request.Devices = {SigilTest::Device()[1].Thumbprint()};
  EXPECT_EQ(package.Findings(), Names{});
  Sigil::MessageRequest request = SignedPackage::SoundRequest();
  request.Devices = {SigilTest::Device()[0].Thumbprint()};
  EXPECT_EQ(package.Message(request).Findings(), Names{"kdm-device"});
}

TEST(KeyFindings, TheMessagesSignatureHolds) {
  EXPECT_EQ(With(Replaced(SoundMessage(), "A &lt; B", "A &lt; D")), Names{"kdm-signature"});
  EXPECT_EQ(With(SigilTest::Resigned(Replaced(SoundMessage(), "<IssueDate>2026", "<IssueDate>2036"))),
            Names{"kdm-chain"});
  Sigil::MessageRequest request = SignedPackage::SoundRequest();
  request.NotAfter = Time("2035-01-01T00:00:00Z");
  EXPECT_EQ(With(request), Names{});
  request.NotAfter = Time("2035-01-01T00:00:01Z");
  EXPECT_EQ(With(request), Names{"kdm-window-signer"});
}

TEST(KeyFindings, UnknownKeyTypesAreNoted) {
  const std::string type = "scope=\"http://www.smpte-ra.org/430-1/2006/KDM#kdm-key-type\">MDIK";
  EXPECT_EQ(With(SigilTest::Resigned(Replaced(SoundMessage(), type, ">XXXX"))), Names{"kdm-key-type"});
}

TEST(KeyFindings, TheInsideIsHeldAgainstTheOutsideWithTheRecipientsKey) {
  const Sigil::PrivateKey device = SigilTest::Key("device");
  const Sigil::PrivateKey other = SigilTest::Key("leaf");
  const std::string plain = SigilTest::PlainByOpenSSL(SoundMessage(), 0);
  std::string changed = plain;
  changed[36] ^= 1;  // of the composition's identifier
  SignedPackage package;
  package.Request.Recipient = SigilTest::Device()[0];
  package.Request.PrivateKey = &device;
  EXPECT_EQ(package.Findings(), Names{});
  package.Message(SigilTest::WithPlain(SoundMessage(), 0, changed));
  const CheckReport report = package.Report();
  EXPECT_EQ(NamesOf(report.Findings), Names{"kdm-content"});
  EXPECT_EQ(report.Compositions[0].Keys.at(0).Result, Sigil::RESULT_SG_CONTENT);
  // Another's key tells nothing of it.
  package.Request.PrivateKey = &other;
  EXPECT_EQ(package.Findings(), Names{});
  package.Request.PrivateKey = &device;
  package.Request.Recipient.reset();
  EXPECT_EQ(package.Findings(), Names{});
}

TEST(KeyFindings, WhatCannotBeReadMattersWhereAMessageIsMissing) {
  SignedPackage package;
  EXPECT_TRUE(package.Messages->AddMessage("bad.xml", "<a/>").Failure());
  CheckReport report = package.Report();
  EXPECT_EQ(NamesOf(report.Findings), Names{"kdm-form warning"});
  EXPECT_EQ(report.Findings[0].Place.Document, "bad.xml");
  package.Request.At = Time("2027-01-01T00:00:00Z");
  EXPECT_EQ(package.Findings(), (Names{"kdm-form", "kdm-late"}));
}

TEST(KeyFindings, AnArchiveThatIsRefusedIsTold) {
  const testsupport::TemporaryFolder folder;
  SignedPackage package;
  package.Messages.emplace();
  EXPECT_TRUE(package.Messages->AddFile(folder.Write("kdm.zip", "PK\3\4 and no more")).Failure());
  EXPECT_EQ(package.Findings(), (Names{"kdm-archive", "kdm-none"}));
  EXPECT_TRUE(package.Messages->AddMessage("kdm.xml", SoundMessage()).Success());
  EXPECT_EQ(package.Findings(), Names{"kdm-archive warning"});
}

TEST(KeyFindings, EachOfSigilsFindingsIsOneOfAssays) {
  for (size_t index = 0; index <= static_cast<size_t>(Sigil::FindingID::KdmKeyType); ++index) {
    const auto id = static_cast<Sigil::FindingID>(index);
    const Assay::FindingRule* rule = Assay::FindRule(Sigil::FindingName(id));
    ASSERT_NE(rule, nullptr);
    const auto severity = rule->Classes.Usual() == FindingClass::Error     ? Sigil::Severity::Error
                          : rule->Classes.Usual() == FindingClass::Warning ? Sigil::Severity::Warning
                                                                           : Sigil::Severity::Note;
    const Finding finding = Assay::FindingOf(Sigil::Finding{id, severity, "A text."});
    EXPECT_STREQ(RuleOf(finding.ID).Name, Sigil::FindingName(id));
    EXPECT_EQ(finding.Class, rule->Classes.Usual());
    EXPECT_EQ(finding.Found, "A text");
  }
}

}  // namespace
