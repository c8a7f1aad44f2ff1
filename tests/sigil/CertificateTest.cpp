// SPDX-License-Identifier: BSD-3-Clause
#include "Judges.h"
#include "TemporaryFolder.h"
#include "TestCertificates.h"

#include <LogCapture.h>
#include <gtest/gtest.h>

namespace {

using namespace SigilTest;
using testsupport::LogCapture;

std::span<const Sigil::ui8_t> Bytes(const std::string& text) {
  return {reinterpret_cast<const Sigil::ui8_t*>(text.data()), text.size()};
}

TEST(Certificate, FieldsAreThoseItWasMadeOf) {
  const auto list = Certificates(testsupport::SoundRecipes());
  ASSERT_EQ(list.size(), 3U);
  const Sigil::Certificate& leaf = list[0];
  std::string qualifier = testsupport::TestThumbprint("authority");
  for (size_t at = 0; (at = qualifier.find('+', at)) != std::string::npos; at += 2) qualifier.insert(at, "\\");
  EXPECT_EQ(leaf.Issuer().Text(), "dnQualifier=" + qualifier + ",CN=.AUTHORITY,OU=EXAMPLE.ORG,O=EXAMPLE.ORG");
  EXPECT_EQ(leaf.Subject().Value(Sigil::OID_CommonName), "CS.SIGNER");
  EXPECT_EQ(leaf.SerialNumber(), "9223372036854775808");
  EXPECT_EQ(leaf.NotBefore().EncodeString(), "2025-01-01T00:00:00+00:00");
  EXPECT_EQ(leaf.NotAfter().EncodeString(), "2035-01-01T00:00:00+00:00");
  EXPECT_EQ(leaf.PublicKeyThumbprint().EncodeBase64(), testsupport::TestThumbprint("leaf"));
  EXPECT_FALSE(leaf.IsCA());
  EXPECT_TRUE(list[1].IsCA());
  EXPECT_FALSE(list[1].IsSelfIssued());
  EXPECT_TRUE(list[2].IsSelfIssued());
  EXPECT_EQ(list[2].Subject(), list[1].Issuer());
}

// The signed part, cut out and digested by programs that know nothing of this.
TEST(Certificate, ThumbprintIsTheDigestOfTheSignedPart) {
  const auto made = testsupport::MakeCertificates(testsupport::SoundRecipes()).front();
  const testsupport::TemporaryFolder folder;
  const std::string der = folder.Write("a.der", testsupport::EncodeDER(made));
  testsupport::RunJudge(
      {"openssl", "asn1parse", "-inform", "DER", "-in", der, "-strparse", "4", "-noout", "-out", folder.Path("tbs")});
  const std::string said = testsupport::RunJudge({"openssl", "dgst", "-sha1", "-r", folder.Path("tbs")});
  EXPECT_EQ(Certificates(testsupport::SoundRecipes()).front().Thumbprint().EncodeHex(), said.substr(0, 40));
}

TEST(Certificate, PEMTextsWithOtherThingsBetweenAreRead) {
  std::string text = "leaf first\n";
  for (const auto& made : testsupport::MakeCertificates(testsupport::SoundRecipes()))
    text += testsupport::EncodePEM(made) + "and\n";
  text += testsupport::TestKeyPEM("leaf");
  Sigil::CertificateList list;
  LogCapture log;
  ASSERT_EQ(Sigil::ReadCertificates(text, list, log), Ferro::RESULT_OK);
  EXPECT_EQ(list, Certificates(testsupport::SoundRecipes()));
  Sigil::CertificateList again;
  ASSERT_EQ(Sigil::ReadCertificates(list[1].PEM(), again, log), Ferro::RESULT_OK);
  EXPECT_EQ(again, Sigil::CertificateList{list[1]});
  EXPECT_EQ(log.Text(), "");
}

TEST(Certificate, AHundredInOneFileAreTheMost) {
  const std::string pem =
      testsupport::EncodePEM(testsupport::MakeCertificates({testsupport::SoundRecipes()[0]}).front());
  std::string text;
  for (int i = 0; i < 100; ++i) text += pem;
  Sigil::CertificateList list;
  LogCapture log;
  ASSERT_EQ(Sigil::ReadCertificates(text, list, log), Ferro::RESULT_OK);
  EXPECT_EQ(list.size(), 100U);
  EXPECT_EQ(Sigil::ReadCertificates(text + pem, list, log), Sigil::RESULT_SG_CERTIFICATE);
  EXPECT_EQ(log.Text(), "Certificate refused: the file has more than 100 certificates\n");
  EXPECT_EQ(list.size(), 100U);
}

TEST(Certificate, ADamagedFileIsRefusedAndChangesNothing) {
  const std::string pem =
      testsupport::EncodePEM(testsupport::MakeCertificates({testsupport::SoundRecipes()[0]}).front());
  std::string damaged = pem;
  damaged[100] = '!';
  struct Case {
    std::string Bytes;
    const char* Text;
  };
  const std::vector<Case> cases = {
      {"", "Certificate refused: the file holds none\n"},
      {"hello", "Certificate refused: the file holds none\n"},
      {testsupport::TestKeyPEM("leaf"), "Certificate refused: the file holds none\n"},
      {"-----BEGIN X509 CRL-----\nAAAA\n-----END X509 CRL-----\n", "Certificate refused: the file holds none\n"},
      {pem + damaged, "Certificate refused: a block of its PEM text is damaged\n"},
      {pem.substr(0, pem.size() - 30), "Certificate refused: a block of its PEM text is damaged\n"},
      {"\x30\x82\x01", "Certificate refused: it is no X.509 certificate\n"},
  };
  const auto before = Certificates({testsupport::SoundRecipes()[0]});
  for (const Case& bad : cases) {
    Sigil::CertificateList list = before;
    LogCapture log;
    EXPECT_EQ(Sigil::ReadCertificates(bad.Bytes, list, log), Sigil::RESULT_SG_CERTIFICATE);
    EXPECT_EQ(log.Text(), bad.Text);
    EXPECT_EQ(list, before);
  }
}

TEST(Certificate, EveryCutOfTheBytesIsRefused) {
  const std::string der =
      testsupport::EncodeDER(testsupport::MakeCertificates({testsupport::SoundRecipes()[0]}).front());
  LogCapture log;
  std::optional<Sigil::Certificate> certificate;
  for (size_t size = 0; size < der.size(); ++size)
    ASSERT_EQ(Sigil::Certificate::FromDER(Bytes(der).first(size), certificate, log), Sigil::RESULT_SG_CERTIFICATE)
        << size;
  EXPECT_FALSE(certificate);
  EXPECT_EQ(Sigil::Certificate::FromDER(Bytes(der), certificate, log), Ferro::RESULT_OK);
}

TEST(Certificate, BytesBehindItAndOtherEncodingsAreRefused) {
  const std::string der =
      testsupport::EncodeDER(testsupport::MakeCertificates({testsupport::SoundRecipes()[0]}).front());
  LogCapture log;
  std::optional<Sigil::Certificate> certificate;
  const std::string longer = der + '\0';
  EXPECT_EQ(Sigil::Certificate::FromDER(Bytes(longer), certificate, log), Sigil::RESULT_SG_CERTIFICATE);
  // The outer sequence with a length of three bytes where two do.
  const std::string wide = std::string("\x30\x83\0", 3) + der.substr(2);
  EXPECT_EQ(Sigil::Certificate::FromDER(Bytes(wide), certificate, log), Sigil::RESULT_SG_CERTIFICATE);
  const std::string large(Sigil::Certificate::MaxSize + 1, '\x30');
  EXPECT_EQ(Sigil::Certificate::FromDER(Bytes(large), certificate, log), Sigil::RESULT_SG_CERTIFICATE);
  EXPECT_EQ(log.Text(),
            "Certificate refused: it is not in DER form, or bytes follow it\n"
            "Certificate refused: it is not in DER form, or bytes follow it\n"
            "Certificate refused: it has more than 65536 bytes\n");
  EXPECT_FALSE(certificate);
}

TEST(Certificate, ASerialNumberOf128BytesIsTheLongest) {
  auto recipes = std::vector{testsupport::SoundRecipes()[0]};
  recipes[0].SerialNumber = '1' + std::string(307, '0');  // 1021 bits
  EXPECT_EQ(Certificates(recipes)[0].SerialNumber(), recipes[0].SerialNumber);
  recipes[0].SerialNumber += "00";  // 1027 bits
  const std::string der = testsupport::EncodeDER(testsupport::MakeCertificates(recipes)[0]);
  LogCapture log;
  std::optional<Sigil::Certificate> certificate;
  EXPECT_EQ(Sigil::Certificate::FromDER(Bytes(der), certificate, log), Sigil::RESULT_SG_CERTIFICATE);
  EXPECT_EQ(log.Text(), "Certificate refused: its serial number is too long\n");
}

TEST(Certificate, ThoseOfADocumentAreReadInItsOrder) {
  const auto sound = Certificates(testsupport::SoundRecipes());
  Cairn::X509CertificateList document;
  for (const Sigil::Certificate& certificate : sound)
    document.push_back({"", "", {certificate.DER().begin(), certificate.DER().end()}});
  Sigil::CertificateList list;
  LogCapture log;
  ASSERT_EQ(Sigil::ReadCertificates(document, list, log), Ferro::RESULT_OK);
  EXPECT_EQ(list, sound);
  document.push_back({});
  EXPECT_EQ(Sigil::ReadCertificates(document, list, log), Sigil::RESULT_SG_CERTIFICATE);
  EXPECT_EQ(list, sound);
}

}  // namespace
