// SPDX-License-Identifier: BSD-3-Clause
#include "Judges.h"
#include "MessageSamples.h"
#include "TemporaryFolder.h"

#include <LogCapture.h>

#include <gtest/gtest.h>

namespace {

using namespace SigilTest;
using testsupport::LogCapture;

TEST(KeyMessage, WhatIsMadeIsReadAsItWasAskedFor) {
  Sigil::MessageRequest request = SoundRequest();
  request.Annotation = "note";
  request.DeviceListID = ID(7);
  request.DeviceListDescription = "all";
  request.ForensicMarkFlags = {"http://www.smpte-ra.org/430-1/2006/KDM#mrkflg-picture-disable"};
  const Sigil::KeyMessage message = ReadMessage(Made(request));
  EXPECT_EQ(message.ID, ID(9));
  EXPECT_EQ(message.Annotation, "note");
  EXPECT_EQ(message.IssueDate, Time(Noon));
  EXPECT_EQ(message.Recipient.IssuerName, Device()[0].Issuer().Text());
  EXPECT_EQ(message.Recipient.SerialNumber, "77");
  EXPECT_EQ(message.Recipient.SubjectName, Device()[0].Subject().Text());
  EXPECT_EQ(message.CompositionID, ID(1));
  EXPECT_EQ(message.ContentTitle, "A < B & C");
  EXPECT_EQ(message.ContentAuthenticator, Signer().Chain[0].Thumbprint());
  EXPECT_EQ(message.NotBefore.EncodeString(), Begin);
  EXPECT_EQ(message.NotAfter.EncodeString(), End);
  EXPECT_EQ(message.DeviceListID, "urn:uuid:00000000-0000-4000-8000-000000000007");
  EXPECT_EQ(message.DeviceListDescription, "all");
  EXPECT_EQ(message.Devices, std::vector{Sigil::AnyTrustedDevice()});
  EXPECT_EQ(message.Keys, (std::vector<Sigil::KeyEntry>{{ID(4), "MDIK", ""}, {ID(5), "MDAK", ""}}));
  EXPECT_EQ(message.ForensicMarkFlags, request.ForensicMarkFlags);
  EXPECT_EQ(message.EncryptedKeys.size(), 2U);
  EXPECT_EQ(Verdict(Made(request)), "valid\n");
  EXPECT_EQ(Sigil::AnyTrustedDevice().EncodeBase64(), "2jmj7l5rSw0yVb/vlWAYkK/YBwk=");
}

TEST(KeyMessage, XmlsecAcceptsItsSignature) {
  const testsupport::TemporaryFolder folder;
  const std::string space = "http://www.smpte-ra.org/schemas/430-3/2006/ETM:";
  testsupport::RunJudge({"xmlsec1", "--verify", "--id-attr:Id", space + "AuthenticatedPublic", "--id-attr:Id",
                         space + "AuthenticatedPrivate", "--verification-time", "2026-03-01 12:00:00", "--trusted-pem",
                         folder.Write("root.pem", Signer().Chain.back().PEM()), folder.Write("a.xml", SoundMessage())});
}

TEST(KeyMessage, WhatXmlsecSignsIsValidWithAndWithoutComments) {
  EXPECT_EQ(Verdict(Resigned(SoundMessage())), "valid\n");
  const std::string c14n = "http://www.w3.org/TR/2001/REC-xml-c14n-20010315";
  EXPECT_EQ(Verdict(Resigned(Replaced(SoundMessage(), c14n, c14n + "#WithComments"))), "valid\n");
}

TEST(KeyMessage, EveryFormulationIsToldByItsName) {
  using enum Sigil::Formulation;
  const Sigil::SHA1 device = Device()[0].Thumbprint();
  const Sigil::SHA1 other = Device()[1].Thumbprint();
  struct Case {
    bool HasAuthenticator;
    std::vector<Sigil::SHA1> Devices;
    Sigil::Formulation Expected;
    const char* Name;
  };
  const std::vector<Case> cases = {{false, {device}, RecipientAlone, "recipient alone"},
                                   {false, {}, AnyDevice, "any device"},
                                   {false, {device, other}, NamedDevices, "named devices"},
                                   {true, {}, AuthenticatedAnyDevice, "any device, authenticated"},
                                   {true, {device}, AuthenticatedNamedDevices, "named devices, authenticated"}};
  for (const Case& expected : cases) {
    Sigil::MessageRequest request = SoundRequest();
    if (!expected.HasAuthenticator) request.ContentAuthenticator.reset();
    request.Devices = expected.Devices;
    const Sigil::KeyMessage message = ReadMessage(Made(request));
    EXPECT_EQ(message.Formulation(), expected.Expected);
    EXPECT_STREQ(Sigil::FormulationName(message.Formulation()), expected.Name);
    EXPECT_EQ(message.IsForAnyDevice(), expected.Devices.empty());
    EXPECT_EQ(Opened(message), "OK");
  }
}

std::string Reason(const std::string& xml) {
  LogCapture log;
  Sigil::KeyMessage message;
  message.Annotation = "before";
  EXPECT_EQ(Sigil::KeyMessage::Read(xml, {}, message, log), Sigil::RESULT_SG_MESSAGE);
  EXPECT_EQ(message.Annotation, "before");
  return log.Text();
}

TEST(KeyMessage, EachDepartureFromItsFormIsRefusedWithItsReason) {
  const std::string& xml = SoundMessage();
  const auto key = [&](const std::string& what) { return Part(xml, "<" + what, "</" + what + ">"); };
  struct Case {
    std::string What;
    std::string By;
    std::string Reason;
  };
  const std::string recipient = key("Recipient");
  const std::string encrypted = key("enc:EncryptedKey");
  const std::string value = key("enc:CipherValue");
  const std::vector<Case> cases = {
      {"KDM#kdm-key-type</MessageType>", "KDM#other</MessageType>", "its type is not that of key messages"},
      {key("MessageId"), "", "it has no MessageId"},
      {"urn:uuid:00000000-0000-4000-8000-000000000009", "9", "MessageId is \"9\", not a UUID"},
      {key("RequiredExtensions"), "", "it has no RequiredExtensions"},
      {recipient, recipient + recipient, "it has more than one Recipient"},
      {"<ds:X509SerialNumber>77</ds:X509SerialNumber>", "", "it does not name its recipient"},
      {key("CompositionPlaylistId"), "", "it has no CompositionPlaylistId"},
      {key("ContentAuthenticator"), "<ContentAuthenticator>AAAA</ContentAuthenticator>",
       "ContentAuthenticator is \"AAAA\", not a thumbprint"},
      {Begin, "2026-03-02T09:00:00",
       "ContentKeysNotValidBefore is \"2026-03-02T09:00:00\", not a time with its offset"},
      {End, "tomorrow", "ContentKeysNotValidAfter is \"tomorrow\", not a time with its offset"},
      {End, "2026-03-02T08:59:59+01:00", "its window ends before it begins"},
      {key("CertificateThumbprint"), "", "its device list is empty"},
      {key("CertificateThumbprint"), "<Device/>", "its device list has an element \"Device\""},
      {Part(xml, "<TypedKeyId>", "</TypedKeyId>"), "<Key/>", "its key list has an element \"Key\""},
      {key("KeyIdList"), "<KeyIdList/>", "its key list is empty"},
      {"000000000005</KeyId>", "000000000004</KeyId>", "it has the key 00000000-0000-4000-8000-000000000004 twice"},
      {Part(xml, "<KeyId>", "</KeyId>"), "", "it has a key type without keys"},
      {Part(xml, "<TypedKeyId>", "</TypedKeyId>"), "", "it lists 1 keys and has 2"},
      {encrypted, "", "it lists 2 keys and has 1"},
      {encrypted, "<enc:EncryptedData xmlns:enc=\"http://www.w3.org/2001/04/xmlenc#\"/>",
       "it has \"EncryptedData\" among its encrypted keys"},
      {"xmlenc#rsa-oaep-mgf1p", "xmlenc#rsa-1_5", "its keys are not encrypted by RSA-OAEP with SHA-1"},
      {"\"><ds:DigestMethod Algorithm=\"http://www.w3.org/2000/09/xmldsig#sha1\"/>",
       "\"><ds:DigestMethod Algorithm=\"http://www.w3.org/2001/04/xmlenc#sha256\"/>",
       "its keys are not encrypted by RSA-OAEP with SHA-1"},
      {"<ds:DigestMethod Algorithm=\"http://www.w3.org/2000/09/xmldsig#sha1\"/></enc:",
       "<enc:OAEPparams>AQ==</enc:OAEPparams></enc:", "its keys are not encrypted by RSA-OAEP with SHA-1"},
      {value, "<enc:CipherValue>" + value.substr(21), "it has an encrypted key that is not Base64 of 256 bytes"},
      {value, "<enc:CipherReference URI=\"http://localhost/\"/>", "it has no CipherValue"},
  };
  for (const Case& bad : cases)
    EXPECT_EQ(Reason(Replaced(xml, bad.What, bad.By)), "Key message refused: " + bad.Reason + '\n');
  EXPECT_EQ(Reason(SignedComposition()), "Key message refused: it is a document of another kind\n");
}

TEST(KeyMessage, AMebibyteIsTheMost) {
  std::string xml = SoundMessage();
  xml.resize(Sigil::KeyMessage::MaxSize, '\n');
  LogCapture log;
  Sigil::KeyMessage message;
  EXPECT_EQ(Sigil::KeyMessage::Read(xml, {}, message, log), Ferro::RESULT_OK);
  EXPECT_EQ(Sigil::KeyMessage::Read(xml + '\n', {}, message, log), Ferro::RESULT_TOOLARGE);
  EXPECT_EQ(log.Text(), "Key message refused: it has more than 1048576 bytes\n");
}

TEST(KeyMessage, EveryCutOfItIsRefused) {
  LogCapture log;
  Sigil::KeyMessage message;
  for (size_t size = 0; size + 2 < SoundMessage().size(); size += 97)
    EXPECT_TRUE(Sigil::KeyMessage::Read(SoundMessage().substr(0, size), {}, message, log).Failure()) << size;
}

TEST(KeyMessage, ItsSignatureCoversBothPartsAndNothingElseIsThere) {
  const std::string& xml = SoundMessage();
  const std::string open = Part(xml, "<AuthenticatedPublic", "</AuthenticatedPublic>");
  const auto refused = [](const std::string& text) { return "invalid\nE " + text + '\n'; };
  EXPECT_EQ(Verdict(Replaced(xml, "#ID_AuthenticatedPublic", "#ID_AuthenticatedPrivate")),
            refused("sign-form: The signature does not cover the message's two parts."));
  EXPECT_EQ(Verdict(Replaced(xml, "#ID_AuthenticatedPublic", "")),
            refused("sign-form: The signature does not cover the message's two parts."));
  EXPECT_EQ(Verdict(Replaced(xml, " Id=\"ID_AuthenticatedPublic\"", "")),
            refused("sign-form: The message's AuthenticatedPublic has not the Id ID_AuthenticatedPublic."));
  EXPECT_EQ(
      Verdict(Replaced(xml, "<NonCriticalExtensions/>", "<NonCriticalExtensions Id=\"ID_AuthenticatedPublic\"/>")),
      refused("sign-form: The message has an Id of a signed part at more than one element."));
  EXPECT_EQ(
      Verdict(Replaced(xml, "<NonCriticalExtensions/>", "<NonCriticalExtensions ID=\"ID_AuthenticatedPrivate\"/>")),
      refused("sign-form: The message has an Id of a signed part at more than one element."));
  EXPECT_EQ(Verdict(Replaced(xml, open, "<Other/>" + open)),
            refused("sign-form: The message has no AuthenticatedPublic in its place."));
  EXPECT_EQ(Verdict(Replaced(xml, "</ds:Signature>", "</ds:Signature><Other/>")),
            refused("sign-form: The message has other parts than its signed ones and the signature."));
  // The signed part moved into another, where the reference still finds it.
  const std::string forged = Replaced(Replaced(open, "ID_AuthenticatedPublic", "x"), "<NonCriticalExtensions/>",
                                      "<NonCriticalExtensions>" + open + "</NonCriticalExtensions>");
  EXPECT_EQ(Verdict(Replaced(xml, open, forged)),
            refused("sign-form: The message's AuthenticatedPublic has not the Id ID_AuthenticatedPublic."));
  EXPECT_EQ(Verdict(Replaced(xml, "A &lt; B", "A &lt; D")),
            refused("sign-invalid: The digest is not the document's: it was changed after it was signed."));
}

TEST(KeyMessage, WeakAlgorithmsThatCompositionsMayHaveAreRefused) {
  const auto refused = [](const std::string& text) { return "invalid\nE sign-method: " + text + '\n'; };
  EXPECT_EQ(Verdict(Replaced(SoundMessage(), "http://www.w3.org/2001/04/xmldsig-more#rsa-sha256",
                             "http://www.w3.org/2000/09/xmldsig#rsa-sha1")),
            refused("The signature method \"http://www.w3.org/2000/09/xmldsig#rsa-sha1\" is not allowed."));
  EXPECT_EQ(Verdict(Replaced(SoundMessage(), "http://www.w3.org/2001/04/xmlenc#sha256",
                             "http://www.w3.org/2000/09/xmldsig#sha1")),
            refused("The digest method \"http://www.w3.org/2000/09/xmldsig#sha1\" is not allowed."));
}

TEST(KeyMessage, OnlyASoundRequestIsFulfilled) {
  using Request = Sigil::MessageRequest;
  const std::vector<std::pair<std::string, void (*)(Request&)>> cases = {
      {"it has no recipient", [](Request& r) { r.Recipient.reset(); }},
      {"its recipient's key is not RSA of 2048 bits",
       [](Request& r) { r.Recipient = Certificates(testsupport::DeviceRecipes("rsa1024-leaf"))[0]; }},
      {"it has no composition", [](Request& r) { r.CompositionID.Reset(); }},
      {"its window ends before it begins", [](Request& r) { std::swap(r.NotBefore, r.NotAfter); }},
      {"it has no keys", [](Request& r) { r.Keys.clear(); }},
      {"a key identifier is missing or there twice", [](Request& r) { r.Keys[1].Entry.ID = r.Keys[0].Entry.ID; }},
      {"a key identifier is missing or there twice", [](Request& r) { r.Keys[1].Entry.ID.Reset(); }},
      {"a key is not of 16 bytes", [](Request& r) { r.Keys[0].Key.Truncate(15); }},
      {"a key's type is not known", [](Request& r) { r.Keys[0].Entry.Type = "XXXX"; }}};
  for (const auto& [reason, spoil] : cases) {
    Request request = SoundRequest();
    spoil(request);
    LogCapture log;
    std::string xml = "before";
    EXPECT_EQ(Sigil::MakeKeyMessage(request, Signer(), xml, log), Ferro::RESULT_PARAM);
    EXPECT_EQ(log.Text(), "Key message not made: " + reason + '\n');
    EXPECT_EQ(xml, "before");
  }
  LogCapture log;
  std::string xml = "before";
  EXPECT_EQ(Sigil::MakeKeyMessage(SoundRequest(), {Key("root"), Signer().Chain}, xml, log), Sigil::RESULT_SG_SIGNER);
  EXPECT_EQ(log.Text(), "Key message not made: the private key is not that of the chain's leaf\n");
  EXPECT_EQ(xml, "before");
}

}  // namespace
