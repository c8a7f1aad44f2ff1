// SPDX-License-Identifier: BSD-3-Clause
#include "SampleSigner.h"

#include "SampleCertificates.h"
#include "SampleRequire.h"
#include "terminal/CommandError.h"

#include <Ferro/ILogSink.h>
#include <Ferro/Path.h>

#include <filesystem>
#include <span>
#include <string_view>
#include <utility>

namespace Tool {

namespace {

constexpr Ferro::i64_t Day = 24 * 60 * 60 * 1000;  // milliseconds

constexpr std::string_view ReadMe =
    "The keys and certificates in this folder are worthless. They are for tests, everybody has them, and they are the\n"
    "same in every sample show. Trust nothing that is signed with them, and encrypt nothing for them.\n"
    "\n"
    "key-message.xml          opens the encrypted composition of this show, for a year from when the show was made\n"
    "recipient.pem            certificate of the server that the message is for\n"
    "recipient-key.pem        its private key, without a passphrase\n"
    "signer-chain.pem         certificates of who signed the documents and the message, up to the root\n"
    "signer-key.pem           the signer's private key, without a passphrase\n";

Sigil::CertificateList Certificates(std::string_view pem) {
  Sigil::CertificateList list;
  SampleRequire(Sigil::ReadCertificates(pem, list, Ferro::DefaultLogSink()), "certificates of the sample");
  return list;
}

Sigil::PrivateKey SignerKey() {
  std::optional<Sigil::PrivateKey> key;
  const std::span bytes(reinterpret_cast<const Ferro::ui8_t*>(SampleSignerKey.data()), SampleSignerKey.size());
  SampleRequire(Sigil::PrivateKey::FromPEM(bytes, {}, key, Ferro::DefaultLogSink()), "private key of the sample");
  return *key;
}

void WriteText(const std::string& filename, std::string_view text) {
  WriteSampleFile(filename, text);
}

}  // namespace

SampleSigner::SampleSigner()
    : m_Identity({SignerKey(), Certificates(SampleSignerChain)}),
      m_Recipient(Certificates(SampleRecipientCertificate).front()) {}

void SampleSigner::Sign(std::string& xml, const std::string& filename) const {
  SampleRequire(Sigil::SignDocument(xml, *m_Identity, Ferro::DefaultLogSink()), filename);
}

std::string SampleSigner::MakeMessage(const Cairn::CompositionPlaylist& composition,
                                      std::vector<Sigil::ContentKey> keys, const Ferro::Timestamp& now,
                                      bool has_authenticator) const {
  const Ferro::i64_t second = now.UnixMilliseconds() / 1000 * 1000;
  Sigil::MessageRequest request;
  request.Annotation = "Worthless test keys of a sample show";
  request.IssueDate = Ferro::Timestamp(second);
  request.Recipient = m_Recipient;
  request.CompositionID = composition.ID;
  request.ContentTitle = composition.ContentTitle;
  if (has_authenticator) request.ContentAuthenticator = m_Identity->Chain.front().Thumbprint();
  request.NotBefore = Ferro::Timestamp(second - Day);
  request.NotAfter = Ferro::Timestamp(second + 365 * Day);
  request.Keys = std::move(keys);
  std::string xml;
  SampleRequire(Sigil::MakeKeyMessage(request, *m_Identity, xml, Ferro::DefaultLogSink()), "key message");
  return xml;
}

void WriteSampleKeys(const std::string& folder, const std::string& message) {
  std::filesystem::create_directory(folder);
  WriteText(Ferro::PathJoin(folder, "README.txt"), ReadMe);
  WriteText(Ferro::PathJoin(folder, "key-message.xml"), message);
  WriteText(Ferro::PathJoin(folder, "recipient.pem"), SampleRecipientCertificate);
  WriteText(Ferro::PathJoin(folder, "recipient-key.pem"), SampleRecipientKey);
  WriteText(Ferro::PathJoin(folder, "signer-chain.pem"), SampleSignerChain);
  WriteText(Ferro::PathJoin(folder, "signer-key.pem"), SampleSignerKey);
}

}  // namespace Tool
