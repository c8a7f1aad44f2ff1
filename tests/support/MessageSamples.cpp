// SPDX-License-Identifier: BSD-3-Clause
#include "MessageSamples.h"

#include "Judges.h"
#include "TemporaryFolder.h"

#include <LogCapture.h>

#include <Ferro/TextEncoding.h>

#include <gtest/gtest.h>

namespace SigilTest {
namespace {

constexpr char ValueStart[] = "<enc:CipherValue>";

/// Where the n-th encrypted key stands, as offset and length of its Base64.
std::pair<size_t, size_t> PlaceOf(const std::string& xml, size_t index) {
  size_t at = 0;
  for (size_t i = 0; i <= index; ++i) at = xml.find(ValueStart, at) + sizeof(ValueStart) - 1;
  return {at, xml.find('<', at) - at};
}

std::string Blanked(const std::string& xml, const std::string& name) {
  std::string text = xml;
  for (size_t at = 0; (at = text.find('<' + name + '>', at)) != std::string::npos; ++at)
    text.replace(at, text.find("</" + name + '>', at) - at, '<' + name + '>');
  return text;
}

}  // namespace

Sigil::UUID ID(unsigned char last) {
  Sigil::ui8_t bytes[16] = {};
  bytes[6] = 0x40;
  bytes[8] = 0x80;
  bytes[15] = last;
  return Sigil::UUID(bytes);
}

Sigil::CertificateList Device() {
  return Certificates(testsupport::DeviceRecipes());
}

Sigil::ContentKey ContentKeyOf(unsigned char id, const std::string& type, unsigned char byte) {
  Sigil::ContentKey key{{ID(id), type, {}}, {}};
  EXPECT_TRUE(key.Key.Assign(std::vector<Sigil::ui8_t>(16, byte)));
  return key;
}

Sigil::MessageRequest SoundRequest() {
  Sigil::MessageRequest request;
  request.MessageID = ID(9);
  request.IssueDate = Time(Noon);
  request.Recipient = Device().front();
  request.CompositionID = ID(1);
  request.ContentTitle = "A < B & C";
  request.ContentAuthenticator = Signer().Chain.front().Thumbprint();
  request.NotBefore = Time(Begin);
  request.NotAfter = Time(End);
  request.Keys.push_back(ContentKeyOf(4, "MDIK", 0x11));
  request.Keys.push_back(ContentKeyOf(5, "MDAK", 0x22));
  return request;
}

std::string Made(const Sigil::MessageRequest& request) {
  std::string xml;
  EXPECT_EQ(Sigil::MakeKeyMessage(request, Signer(), xml, Ferro::DefaultLogSink()), Ferro::RESULT_OK);
  return xml;
}

const std::string& SoundMessage() {
  static const std::string s_Text = Made(SoundRequest());
  return s_Text;
}

Sigil::KeyMessage ReadMessage(const std::string& xml) {
  Sigil::KeyMessage message;
  EXPECT_EQ(Sigil::KeyMessage::Read(xml, {}, message, Ferro::DefaultLogSink()), Ferro::RESULT_OK);
  return message;
}

std::string Opened(const Sigil::KeyMessage& message, const std::string& key) {
  testsupport::LogCapture log;
  Sigil::ContentKeys keys;
  const Sigil::Result_t result = Sigil::ContentKeys::Open(message, Key(key), keys, log);
  EXPECT_EQ(log.Text(), result.Success() ? "" : std::string("Key message not opened: ") + result.Label() + '\n');
  EXPECT_EQ(keys.Keys.empty(), result.Failure());
  return result.Symbol();
}

std::string Resigned(const std::string& xml, const std::string& key) {
  const testsupport::TemporaryFolder folder;
  const std::string blank = Blanked(Blanked(xml, "ds:DigestValue"), "ds:SignatureValue");
  const std::string space = "http://www.smpte-ra.org/schemas/430-3/2006/ETM:";
  return testsupport::RunJudge({"xmlsec1", "--sign", "--id-attr:Id", space + "AuthenticatedPublic", "--id-attr:Id",
                                space + "AuthenticatedPrivate", "--privkey-pem",
                                folder.Write("key.pem", testsupport::TestKeyPEM(key)), folder.Write("a.xml", blank)});
}

std::string WithPlain(const std::string& xml, size_t index, const std::string& plain) {
  const testsupport::TemporaryFolder folder;
  const std::string encrypted = testsupport::RunJudge(
      {"openssl", "pkeyutl", "-encrypt", "-certin", "-inkey", folder.Write("device.pem", Device().front().PEM()), "-in",
       folder.Write("plain", plain), "-pkeyopt", "rsa_padding_mode:oaep", "-pkeyopt", "rsa_oaep_md:sha1"});
  const auto [at, length] = PlaceOf(xml, index);
  std::string text = xml;
  text.replace(at, length,
               Ferro::base64encode({reinterpret_cast<const Sigil::ui8_t*>(encrypted.data()), encrypted.size()}));
  return Resigned(text);
}

std::string PlainByOpenSSL(const std::string& xml, size_t index) {
  const testsupport::TemporaryFolder folder;
  const auto [at, length] = PlaceOf(xml, index);
  std::vector<Sigil::ui8_t> encrypted;
  EXPECT_TRUE(Ferro::base64decode(xml.substr(at, length), encrypted));
  return testsupport::RunJudge(
      {"openssl", "pkeyutl", "-decrypt", "-inkey", folder.Write("key.pem", testsupport::TestKeyPEM("device")), "-in",
       folder.Write("encrypted", {reinterpret_cast<const char*>(encrypted.data()), encrypted.size()}), "-pkeyopt",
       "rsa_padding_mode:oaep", "-pkeyopt", "rsa_oaep_md:sha1"});
}

}  // namespace SigilTest
