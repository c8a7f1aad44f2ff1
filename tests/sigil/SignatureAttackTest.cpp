// SPDX-License-Identifier: BSD-3-Clause
// Signatures that are not to be believed, each refused with a sentence of its own.
#include "SignedSamples.h"

#include <gtest/gtest.h>

namespace {

using namespace SigilTest;

const std::string& Sound() {
  return SignedComposition();
}

std::string Signature() {
  return Part(Sound(), "<ds:Signature ", "</ds:Signature>");
}

std::string Refused(const std::string& finding) {
  return "invalid\nE " + finding + '\n';
}

TEST(SignatureAttack, TwoSignaturesAreRefused) {
  EXPECT_EQ(Verdict(Replaced(Sound(), "</CompositionPlaylist>", Signature() + "</CompositionPlaylist>")),
            Refused("sign-form: The document has more than one signature."));
  EXPECT_EQ(
      Verdict(Replaced(Sound(), "<ReelList>", "<ReelList><Signature xmlns=\"http://www.w3.org/2000/09/xmldsig#\"/>")),
      Refused("sign-form: The document has more than one signature."));
}

TEST(SignatureAttack, AMovedSignatureIsRefused) {
  EXPECT_EQ(Verdict(Replaced(Replaced(Sound(), Signature(), ""), "<ReelList>", "<ReelList>" + Signature())),
            Refused("sign-form: The signature is not a child of the document element."));
}

// The signed document as it was, inside another that says something else.
TEST(SignatureAttack, AWrappedDocumentIsRefused) {
  const std::string inner = Sound().substr(Sound().find("<CompositionPlaylist"));
  const std::string other = Replaced(Composition(Cairn::DFT_DCI_SMPTE), "<Duration>48", "<Duration>24");
  EXPECT_EQ(Verdict(Replaced(other, "</CompositionPlaylist>", inner + "</CompositionPlaylist>")),
            Refused("sign-form: The signature is not a child of the document element."));
  // With the signature taken out, and pointing at what it once covered.
  const std::string unsigned_inner =
      Replaced(Replaced(inner, Signature(), ""), "<CompositionPlaylist", "<CompositionPlaylist Id=\"x\"");
  EXPECT_EQ(
      Verdict(Replaced(other, "</CompositionPlaylist>",
                       unsigned_inner + Replaced(Signature(), "URI=\"\"", "URI=\"#x\"") + "</CompositionPlaylist>")),
      Refused("sign-form: The signature covers \"#x\" in place of the whole document."));
  EXPECT_EQ(Verdict(Replaced(other, "</CompositionPlaylist>", Signature() + "</CompositionPlaylist>")),
            Refused("sign-invalid: The digest is not the document's: it was changed after it was signed."));
}

TEST(SignatureAttack, ASecondDocumentElementIsNoDocument) {
  EXPECT_EQ(Verdict(Sound() + Composition(Cairn::DFT_DCI_SMPTE).substr(Sound().find("<CompositionPlaylist"))),
            "XML_PARSE");
}

TEST(SignatureAttack, EntitiesAreNoDocument) {
  EXPECT_EQ(Verdict(Replaced(Sound(), "<CompositionPlaylist", "<!DOCTYPE x [<!ENTITY e \"a\">]><CompositionPlaylist")),
            "XML_PARSE");
}

// Canonical XML passes over the comment, and so does whoever reads the value.
TEST(SignatureAttack, ACommentInAValueChangesNeitherTheValueNorItsSignature) {
  EXPECT_EQ(Verdict(Replaced(Sound(), "<Duration>48", "<Duration>4<!-- -->8")), "valid\n");
  EXPECT_EQ(Verdict(Replaced(Sound(), "CN=.AUTHORITY", "CN=.AUTHO<!-- -->RITY")), "valid\n");
}

TEST(SignatureAttack, ReferencesElsewhereAreNotFollowed) {
  const auto with_uri = [](const std::string& uri) {
    return Verdict(Replaced(Sound(), "URI=\"\"", "URI=\"" + uri + '"'));
  };
  EXPECT_EQ(with_uri("#xpointer(/)"),
            Refused("sign-form: The signature covers \"#xpointer(/)\" in place of the whole document."));
  EXPECT_EQ(with_uri("file:///etc/passwd"),
            Refused("sign-form: The signature covers \"file:///etc/passwd\" in place of the whole document."));
  EXPECT_EQ(with_uri("http://localhost/"),
            Refused("sign-form: The signature covers \"http://localhost/\" in place of the whole document."));
  EXPECT_EQ(Verdict(Replaced(Sound(), " URI=\"\"", "")),
            Refused("sign-form: The signature's reference points nowhere."));
  EXPECT_EQ(Verdict(Replaced(Sound(), " URI=\"\"", " URI=\"\" Type=\"http://www.w3.org/2000/09/xmldsig#Manifest\"")),
            Refused("sign-form: The signature's reference is of a type."));
  const std::string reference = Part(Sound(), "<ds:Reference ", "</ds:Reference>");
  EXPECT_EQ(Verdict(Replaced(Sound(), reference, reference + reference)),
            Refused("sign-form: The signature has not exactly one reference."));
  EXPECT_EQ(Verdict(Replaced(Sound(), reference, reference + reference + reference)),
            Refused("sign-form: The signature has more than two references."));
  EXPECT_EQ(Verdict(Replaced(Sound(), reference, "")),
            Refused("sign-form: The signature has not exactly one reference."));
}

TEST(SignatureAttack, ObjectsAndPointersToKeysAreNotFollowed) {
  EXPECT_EQ(Verdict(Replaced(Sound(), "</ds:Signature>", "<ds:Object/></ds:Signature>")),
            Refused("sign-form: The signature has an element \"Object\", which is not followed."));
  EXPECT_EQ(Verdict(Replaced(Sound(), "</ds:SignedInfo>", "<ds:Manifest/></ds:SignedInfo>")),
            Refused("sign-form: The signature has an element \"Manifest\", which is not followed."));
  EXPECT_EQ(Verdict(Replaced(Sound(), "<ds:KeyInfo>", "<ds:KeyInfo><ds:RetrievalMethod URI=\"http://localhost/\"/>")),
            Refused("sign-form: The signature's KeyInfo has an element \"RetrievalMethod\", which is not followed."));
}

TEST(SignatureAttack, ListsOfRevokedCertificatesAreRefused) {
  const auto with = [](const std::string& element) {
    return Verdict(Replaced(Sound(), "<ds:X509Data>", "<ds:X509Data>" + element));
  };
  const auto in_key_info = [](const std::string& element) {
    return Verdict(Replaced(Sound(), "<ds:KeyInfo><ds:X509Data>", "<ds:KeyInfo><ds:X509Data>" + element));
  };
  EXPECT_EQ(in_key_info("<ds:X509CRL>AAAA</ds:X509CRL>"),
            Refused("sign-form: The signature has a list of revoked certificates, which is not followed."));
  EXPECT_EQ(in_key_info("<ds:X509SKI>AAAA</ds:X509SKI>"), "valid\n");
  // A certificate in another namespace is none.
  EXPECT_EQ(in_key_info("<X509Certificate xmlns=\"urn:x\">AAAA</X509Certificate>"), "valid\n");
  EXPECT_EQ(with("<ds:X509CRL/>"),  // in Signer, which is signed
            Refused("sign-invalid: The digest is not the document's: it was changed after it was signed."));
}

TEST(SignatureAttack, AKeyBesideTheChainIsPassedOver) {
  const std::string value =
      "<ds:KeyValue><ds:RSAKeyValue><ds:Modulus>AQAB</ds:Modulus><ds:Exponent>AQAB</ds:Exponent></ds:RSAKeyValue></"
      "ds:KeyValue>";
  EXPECT_EQ(Verdict(Replaced(Sound(), "<ds:KeyInfo>", "<ds:KeyInfo>" + value)), "valid\n");
  EXPECT_EQ(Verdict(Replaced(Sound(), Part(Sound(), "<ds:KeyInfo>", "</ds:KeyInfo>"),
                             "<ds:KeyInfo>" + value + "</ds:KeyInfo>")),
            Refused("sign-form: The signature has no certificate."));
}

TEST(SignatureAttack, OtherAlgorithmsAreRefused) {
  const std::string method = "http://www.w3.org/2001/04/xmldsig-more#rsa-sha256";
  for (const std::string other :
       {"http://www.w3.org/2000/09/xmldsig#hmac-sha1", "http://www.w3.org/2000/09/xmldsig#dsa-sha1",
        "http://www.w3.org/2001/04/xmldsig-more#rsa-md5", "http://www.w3.org/2001/04/xmldsig-more#rsa-sha512"})
    EXPECT_EQ(Verdict(Replaced(Sound(), method, other)),
              Refused("sign-method: The signature method \"" + other + "\" is not allowed."));
  for (const std::string other : {"http://www.w3.org/2001/10/xml-exc-c14n#", "http://www.w3.org/2006/12/xml-c14n11"})
    EXPECT_EQ(Verdict(Replaced(Sound(), "http://www.w3.org/TR/2001/REC-xml-c14n-20010315", other)),
              Refused("sign-method: The canonicalization \"" + other + "\" is not allowed."));
  for (const std::string other :
       {"http://www.w3.org/2001/04/xmldsig-more#md5", "http://www.w3.org/2001/04/xmlenc#sha512"})
    EXPECT_EQ(Verdict(Replaced(Sound(), "http://www.w3.org/2000/09/xmldsig#sha1", other)),
              Refused("sign-method: The digest method \"" + other + "\" is not allowed."));
  EXPECT_EQ(Verdict(Replaced(Sound(), "rsa-sha256\"/>",
                             "rsa-sha256\"><ds:HMACOutputLength>1</ds:HMACOutputLength></ds:SignatureMethod>")),
            Refused("sign-method: The signature has an algorithm with parameters."));
}

TEST(SignatureAttack, OtherTransformsAreRefused) {
  const std::string enveloped = "http://www.w3.org/2000/09/xmldsig#enveloped-signature";
  for (const std::string other :
       {"http://www.w3.org/TR/1999/REC-xpath-19991116", "http://www.w3.org/TR/1999/REC-xslt-19991116",
        "http://www.w3.org/2002/06/xmldsig-filter2", "http://www.w3.org/2000/09/xmldsig#base64"})
    EXPECT_EQ(Verdict(Replaced(Sound(), enveloped, other)),
              Refused("sign-method: The transform \"" + other + "\" is not allowed."));
  const std::string transform = Part(Sound(), "<ds:Transform ", "/>");
  EXPECT_EQ(Verdict(Replaced(Sound(), transform, transform + transform)),
            Refused("sign-method: The signature has not exactly one transform."));
  EXPECT_EQ(Verdict(Replaced(Sound(), transform, "")),
            Refused("sign-method: The signature has not exactly one transform."));
  EXPECT_EQ(Verdict(Replaced(Sound(), transform, Replaced(transform, "/>", "><ds:XPath>1</ds:XPath></ds:Transform>"))),
            Refused("sign-method: The signature has an algorithm with parameters."));
}

/// The composition signed by a chain that no signer would sign with: the certificates are exchanged afterwards, which the
/// signature does not cover.
std::string WithCertificates(const Sigil::CertificateList& list) {
  std::string key_info = "<ds:KeyInfo>";
  for (const Sigil::Certificate& certificate : list) {
    key_info += "<ds:X509Data><ds:X509Certificate>" + Ferro::base64encode(certificate.DER()) +
                "</ds:X509Certificate></ds:X509Data>";
  }
  return Replaced(Sound(), Part(Sound(), "<ds:KeyInfo>", "</ds:KeyInfo>"), key_info + "</ds:KeyInfo>");
}

TEST(SignatureAttack, ChainsThatDoNotHoldAreRefused) {
  auto recipes = testsupport::SoundRecipes();
  recipes[2].Extension("basicConstraints") = "critical,CA:TRUE,pathlen:0";
  EXPECT_EQ(Verdict(WithCertificates(Certificates(recipes))),
            Refused("cert-signer-ca: The certificate \"CS.SIGNER\" is a CA's and signs a document."));
  recipes = testsupport::SoundRecipes();
  recipes[2].SigningKey = "root";
  EXPECT_EQ(Verdict(WithCertificates(Certificates(recipes))),
            Refused("cert-signature: The certificate \"CS.SIGNER\" is not signed with its issuer's key."));
  recipes = testsupport::SoundRecipes();
  recipes[2].Key = "leaf2";
  EXPECT_EQ(Verdict(WithCertificates(Certificates(recipes))).substr(0, 88),
            Refused("sign-invalid: The signature value is not of the signer's key.").substr(0, 88));
  const auto sound = Certificates(testsupport::SoundRecipes());
  auto two = sound;
  two.push_back(Certificates(recipes).front());
  EXPECT_EQ(Verdict(WithCertificates(two)), Refused("cert-chain: The chain has more than one leaf."));
}

TEST(SignatureAttack, RepeatsStraysAndAnotherOrderAreWarnedOf) {
  const auto sound = Certificates(testsupport::SoundRecipes());
  auto list = sound;
  list.push_back(sound[1]);
  EXPECT_EQ(Verdict(WithCertificates(list)), "valid\nW sign-keyinfo: The signature has a certificate twice.\n");
  auto recipes = testsupport::SoundRecipes();
  recipes.resize(1);
  recipes[0].SubjectPart("CN").Value = ".OTHER";
  list = sound;
  list.push_back(Certificates(recipes)[0]);
  EXPECT_EQ(Verdict(WithCertificates(list)),
            "valid\nW sign-keyinfo: The signature has a certificate that is not of its chain.\n");
  EXPECT_EQ(Verdict(WithCertificates({sound[2], sound[0], sound[1]})),
            "valid\nW sign-keyinfo: The signature's first certificate is not the signer's.\n");
  const std::string key_info = Part(Sound(), "<ds:KeyInfo>", "</ds:KeyInfo>");
  EXPECT_EQ(
      Verdict(Replaced(Sound(), key_info, Replaced(key_info, "<ds:X509SerialNumber>9", "<ds:X509SerialNumber>8"))),
      "valid\nW sign-keyinfo: The signature has a certificate under another issuer or serial number.\n");
}

TEST(SignatureAttack, TooManyAndMalformedCertificatesAreRefused) {
  const auto sound = Certificates(testsupport::SoundRecipes());
  Sigil::CertificateList many = sound;
  while (many.size() < 20) many.push_back(sound[2]);
  EXPECT_EQ(Verdict(WithCertificates(many)), "valid\nW sign-keyinfo: The signature has a certificate twice.\n");
  many.push_back(sound[2]);
  EXPECT_EQ(Verdict(WithCertificates(many)), Refused("sign-form: The signature has more than 20 certificates."));

  auto recipes = testsupport::SoundRecipes();
  recipes[2].Extensions.push_back({"1.2.3.4", "DER:0482FA00" + std::string(2 * 64'000, '0')});
  const auto large = Certificates(recipes)[0];
  EXPECT_EQ(Verdict(WithCertificates({large, sound[1]})),
            Refused("sign-form: The signature has more than 65536 bytes of certificates."));
  const std::string certificate = Part(Sound(), "<ds:X509Certificate>", "</ds:X509Certificate>");
  EXPECT_EQ(Verdict(Replaced(Sound(), certificate, "<ds:X509Certificate>*</ds:X509Certificate>")),
            Refused("sign-form: The signature has a certificate that is not Base64."));
  EXPECT_EQ(Verdict(Replaced(Sound(), certificate, "<ds:X509Certificate>AAAA</ds:X509Certificate>")),
            Refused("sign-form: The signature has a certificate that cannot be read."));
}

}  // namespace
