// SPDX-License-Identifier: BSD-3-Clause
#include "Judges.h"
#include "SchemaCheck.h"
#include "SignedSamples.h"
#include "TemporaryFolder.h"

#include <LogCapture.h>

#include <Cairn/CompositionPlaylist.h>

#include <gtest/gtest.h>

namespace {

using namespace SigilTest;
using testsupport::LogCapture;

std::vector<std::string> UnsignedSamples() {
  return {Composition(Cairn::DFT_DCI_SMPTE), Composition(Cairn::DFT_Interop), PackingList(Cairn::DFT_DCI_SMPTE),
          PackingList(Cairn::DFT_Interop)};
}

TEST(DocumentSignature, WhatIsSignedIsValid) {
  for (const std::string& xml : UnsignedSamples()) {
    EXPECT_EQ(Verdict(xml), "not signed\n");
    EXPECT_EQ(Verdict(Signed(xml)), "valid\n");
  }
}

TEST(DocumentSignature, SigningAddsTwoElementsAndChangesNothingElse) {
  const std::string xml = Composition(Cairn::DFT_DCI_SMPTE);
  std::string text = Signed(xml);
  text = Replaced(text, Part(text, "<Signer ", "</Signer>\n"), "");
  text = Replaced(text, Part(text, "<ds:Signature ", "</ds:Signature>\n"), "");
  EXPECT_EQ(text, xml);
  Cairn::CompositionPlaylist composition;
  ASSERT_EQ(composition.DecodeXML(SignedComposition()), Cairn::Result_t(Ferro::RESULT_OK));
  EXPECT_EQ(composition.SignatureMode, Cairn::SM_UNTESTED);
  EXPECT_EQ(composition.SignatureChain.size(), 3U);
}

// An independent program takes the chain from the document, and trusts the root alone.
TEST(DocumentSignature, XmlsecAcceptsWhatIsSigned) {
  const testsupport::TemporaryFolder folder;
  const std::string root = folder.Write("root.pem", Signer().Chain.back().PEM());
  for (const std::string& xml : UnsignedSamples())
    testsupport::RunJudge({"xmlsec1", "--verify", "--trusted-pem", root, "--verification-time", "2026-03-01 12:00:00",
                           folder.Write("signed.xml", Signed(xml))});
}

/// The document as xmlsec1 signs it, with the methods of `template_changes`.
std::string SignedByXmlsec(const std::string& xml,
                           const std::vector<std::pair<std::string, std::string>>& template_changes,
                           const std::pair<std::string, std::string>& document_change = {}) {
  const testsupport::TemporaryFolder folder;
  const std::string text = Signed(xml);
  std::string signature = Part(text, "<ds:Signature ", "</ds:Signature>");
  signature = Replaced(signature, Part(signature, "<ds:DigestValue>", "</ds:DigestValue>"), "<ds:DigestValue/>");
  signature =
      Replaced(signature, Part(signature, "<ds:SignatureValue>", "</ds:SignatureValue>"), "<ds:SignatureValue/>");
  signature = Replaced(signature, Part(signature, "<ds:KeyInfo>", "</ds:KeyInfo>"),
                       "<ds:KeyInfo><ds:X509Data><ds:X509Certificate/></ds:X509Data></ds:KeyInfo>");
  for (const auto& [what, by] : template_changes) signature = Replaced(signature, what, by);
  std::string unsigned_text = Replaced(text, Part(text, "<ds:Signature ", "</ds:Signature>"), signature);
  unsigned_text = Replaced(unsigned_text, document_change.first, document_change.second);
  std::string key = folder.Write("key.pem", testsupport::TestKeyPEM("leaf"));
  for (const auto& certificate : Signer().Chain)
    key += ',' + folder.Write(certificate.SerialNumber() + ".pem", certificate.PEM());
  return testsupport::RunJudge({"xmlsec1", "--sign", "--privkey-pem", key, folder.Write("a.xml", unsigned_text)});
}

TEST(DocumentSignature, WhatXmlsecSignsIsValid) {
  const std::string c14n = "http://www.w3.org/TR/2001/REC-xml-c14n-20010315";
  const std::string smpte = Composition(Cairn::DFT_DCI_SMPTE);
  EXPECT_EQ(Verdict(SignedByXmlsec(smpte, {})), "valid\n");
  EXPECT_EQ(Verdict(SignedByXmlsec(
                smpte, {{c14n, c14n + "#WithComments"}, {"<ds:SignedInfo>", "<ds:SignedInfo><!-- signed -->"}})),
            "valid\n");
  EXPECT_EQ(Verdict(SignedByXmlsec(
                smpte, {{"http://www.w3.org/2000/09/xmldsig#sha1", "http://www.w3.org/2001/04/xmlenc#sha256"}})),
            "valid\n");
  EXPECT_EQ(Verdict(SignedByXmlsec(Replaced(smpte, "<ReelList", "<?pi data?><!-- x --><ReelList"), {})), "valid\n");
  EXPECT_EQ(Verdict(SignedByXmlsec(Composition(Cairn::DFT_Interop), {})), "valid\n");
}

TEST(DocumentSignature, WithoutAnIssueDateTheChainCannotBeJudged) {
  EXPECT_EQ(Verdict(Replaced(SignedByXmlsec(Composition(Cairn::DFT_DCI_SMPTE), {}), Noon, "today")),
            "invalid\nE sign-invalid: The digest is not the document's: it was changed after it was signed.\n");
  const std::string dateless = Part(Composition(Cairn::DFT_DCI_SMPTE), "<IssueDate>", "</IssueDate>");
  EXPECT_EQ(Verdict(SignedByXmlsec(Composition(Cairn::DFT_DCI_SMPTE), {}, {dateless, "<IssueDate>today</IssueDate>"})),
            "invalid\nE sign-form: The document has no issue date to judge its signer's certificates by.\n");
}

TEST(DocumentSignature, TheStandardsSchemasAcceptWhatIsSigned) {
  const std::string folder = testsupport::SchemaFolder();
  if (folder.empty()) GTEST_SKIP() << "NOT RUN: STRATA_SCHEMAS does not name the folder of the standards' schemas";
  EXPECT_EQ(testsupport::ValidateDocuments(folder + "/all-smpte-cpl.xsd", {Signed(Composition(Cairn::DFT_DCI_SMPTE))}),
            "");
  EXPECT_EQ(testsupport::ValidateDocuments(folder + "/all-interop-cpl.xsd", {Signed(Composition(Cairn::DFT_Interop))}),
            "");
  EXPECT_EQ(
      testsupport::ValidateDocuments(folder + "/smpte-429-8-2007-PKL.xsd", {Signed(PackingList(Cairn::DFT_DCI_SMPTE))}),
      "");
  EXPECT_EQ(testsupport::ValidateDocuments(folder + "/interop-PROTO-ASDCP-PKL-20040311.xsd",
                                           {Signed(PackingList(Cairn::DFT_Interop))}),
            "");
}

// Declarations that are there again, undone and not used; attributes out of order, inherited and with escapes.
TEST(DocumentSignature, NamespacesAreCanonicalAsXmlsecHasThem) {
  const std::string hard =
      "<ReelList xmlns:x=\"urn:x\" xmlns:y=\"urn:y\"><x:A xmlns:x=\"urn:x\" xmlns=\"\"><b xmlns=\"urn:b\" "
      "xmlns:y=\"urn:z\" y:z='&#9;&quot;' xml:lang=\"en\" z=\"1\" x:a=\"2\" a=\"&lt;3\"/><c xmlns=\"\" "
      "xmlns:x=\"urn:x2\"><x:d/><y:d xmlns:y=\"urn:y\">&#13;&gt;</y:d></c></x:A><?p q ?>";
  EXPECT_EQ(Verdict(SignedByXmlsec(Replaced(Composition(Cairn::DFT_DCI_SMPTE), "<ReelList>", hard), {})), "valid\n");
  const std::string around = "<?before x?><!-- c --><?before?>";
  const std::string xml =
      Replaced(Composition(Cairn::DFT_DCI_SMPTE), "<CompositionPlaylist", around + "<CompositionPlaylist");
  EXPECT_EQ(Verdict(SignedByXmlsec(xml + "<?behind?>", {})), "valid\n");
}

TEST(DocumentSignature, ItsStateIsOneThatDocumentModelsHave) {
  EXPECT_EQ(Sigil::SignatureModeOf(Sigil::SignatureState::NotSigned), Cairn::SM_NONE);
  EXPECT_EQ(Sigil::SignatureModeOf(Sigil::SignatureState::Valid), Cairn::SM_VALID);
  EXPECT_EQ(Sigil::SignatureModeOf(Sigil::SignatureState::Invalid), Cairn::SM_INVALID);
}

TEST(DocumentSignature, MethodsOfTheOtherFlavourAreWarnedOf) {
  const std::string sha1 = "http://www.w3.org/2000/09/xmldsig#rsa-sha1";
  const std::string sha256 = "http://www.w3.org/2001/04/xmldsig-more#rsa-sha256";
  EXPECT_EQ(Verdict(SignedByXmlsec(Composition(Cairn::DFT_DCI_SMPTE), {{sha256, sha1}})),
            "valid\nW sign-method: The signature method is rsa-sha1, which only Interop documents have.\n");
  EXPECT_EQ(Verdict(SignedByXmlsec(PackingList(Cairn::DFT_Interop), {{sha1, sha256}})),
            "valid\nW sign-method: The signature method is rsa-sha256, which only SMPTE documents have.\n");
}

TEST(DocumentSignature, EmptyAndForeignSignaturesAreNone) {
  const std::string xml = Composition(Cairn::DFT_DCI_SMPTE);
  const auto with = [&](const std::string& elements) {
    return Verdict(Replaced(xml, "</CompositionPlaylist>", elements + "</CompositionPlaylist>"));
  };
  EXPECT_EQ(with("<Signer/><Signature/>"), "not signed\n");
  EXPECT_EQ(with("<Signature><SignedInfo/></Signature>"), "not signed\n");
  EXPECT_EQ(with("<Signature xmlns='http://www.w3.org/2000/09/xmldsig#'/>"), "not signed\n");
  EXPECT_EQ(with("<Signature xmlns='http://www.w3.org/2000/09/xmldsig#'><SignedInfo/></Signature>"),
            "invalid\nE sign-form: The signature has no SignatureValue in its place.\n");
}

std::string WithCarriageReturns(const std::string& text) {
  std::string result;
  for (const char c : text) result += c == '\n' ? std::string("\r\n") : std::string(1, c);
  return result;
}

std::string InUTF16(const std::string& text) {
  std::string result = "\xFE\xFF";
  for (size_t i = 0; i < text.size(); ++i) {
    const auto c = static_cast<unsigned char>(text[i]);
    const bool is_two = c >= 0xC0;
    result += static_cast<char>(is_two ? (c & 0x1F) >> 2 : 0);
    result += static_cast<char>(is_two ? (c & 3) << 6 | (text[++i] & 0x3F) : c);
  }
  return result;
}

TEST(DocumentSignature, OtherCommentsQuotesLineEndsAndEncodingsLeaveItValid) {
  const std::string& xml = SignedComposition();
  EXPECT_EQ(Verdict(Replaced(xml, "<ReelList>", "<ReelList><!-- no part of the canonical form -->")), "valid\n");
  EXPECT_EQ(Verdict(xml + "<!-- behind -->"), "valid\n");
  EXPECT_EQ(Verdict(Replaced(xml, "URI=\"\"", "URI = ''")), "valid\n");
  EXPECT_EQ(Verdict(Replaced(xml, "a &lt; b &amp; c", "<![CDATA[a < b & c]]>")), "valid\n");
  EXPECT_EQ(Verdict(WithCarriageReturns(xml)), "valid\n");
  EXPECT_EQ(Verdict("\xEF\xBB\xBF" + xml), "valid\n");
  EXPECT_EQ(Verdict(InUTF16(Replaced(xml, "encoding=\"UTF-8\"", "encoding=\"UTF-16\""))), "valid\n");
}

TEST(DocumentSignature, AnyOtherChangeMakesItInvalid) {
  const std::string& xml = SignedComposition();
  const std::string changed =
      "invalid\nE sign-invalid: The digest is not the document's: it was changed after it was signed.\n";
  EXPECT_EQ(Verdict(Replaced(xml, "<Duration>48", "<Duration>47")), changed);
  EXPECT_EQ(Verdict(Replaced(xml, "\n  <", "\n   <")), changed);
  EXPECT_EQ(Verdict(Replaced(xml, "<ReelList>", "<ReelList><?pi?>")), changed);
  EXPECT_EQ(Verdict(xml + "<?pi?>"), changed);
  EXPECT_EQ(Verdict(Replaced(xml, "<ReelList>", "<ReelList xmlns:x=\"urn:x\">")), changed);
  EXPECT_EQ(Verdict(xml.substr(0, xml.size() / 2)), "XML_PARSE");
  EXPECT_EQ(Verdict(""), "XML_PARSE");
  EXPECT_EQ(Verdict("<a/>"), "SG_DOCUMENT");
}

TEST(DocumentSignature, ADigestThatIsNoneIsInvalid) {
  const std::string& xml = SignedComposition();
  const std::string digest = Part(xml, "<ds:DigestValue>", "</ds:DigestValue>");
  for (const char* other : {"<ds:DigestValue>*</ds:DigestValue>", "<ds:DigestValue>AAAA</ds:DigestValue>"})
    EXPECT_EQ(Verdict(Replaced(xml, digest, other)),
              "invalid\nE sign-invalid: The digest is not the document's: it was changed after it was signed.\n");
  EXPECT_EQ(Verdict(Replaced(xml, digest, "<ds:DigestValue/>")),
            "invalid\nE sign-form: The signature cannot be computed.\n");
}

TEST(DocumentSignature, AnotherValueThanTheSignersIsInvalid) {
  const std::string& xml = SignedComposition();
  const std::string value = Part(xml, "<ds:SignatureValue>", "</ds:SignatureValue>");
  const std::string other =
      Part(Signed(PackingList(Cairn::DFT_DCI_SMPTE)), "<ds:SignatureValue>", "</ds:SignatureValue>");
  const std::string refused = "invalid\nE sign-invalid: The signature value is not of the signer's key.\n";
  EXPECT_EQ(Verdict(Replaced(xml, value, other)), refused);
  EXPECT_EQ(Verdict(Replaced(xml, value, "<ds:SignatureValue>AAAA</ds:SignatureValue>")), refused);
  EXPECT_EQ(Verdict(Replaced(xml, value, "<ds:SignatureValue/>")), refused);
  EXPECT_EQ(Verdict(Replaced(xml, value, "<ds:SignatureValue>*</ds:SignatureValue>")), refused);
  EXPECT_EQ(Verdict(Replaced(xml, value,
                             "<ds:SignatureValue><!-- x -->" + value.substr(19, 9) + "<!-- -->" + value.substr(28))),
            "valid\n");
}

TEST(DocumentSignature, ItsChainIsJudgedAtTheIssueDate) {
  auto recipes = testsupport::SoundRecipes();
  recipes[2].NotAfter = "20260301115959Z";
  std::string xml = Replaced(Composition(Cairn::DFT_DCI_SMPTE), Noon, "2026-03-01T12:59:59+01:00");
  const std::string text = Signed(xml, Signer(recipes));
  EXPECT_EQ(Verdict(text), "valid\n");
  EXPECT_EQ(Verdict(text, {Time(Noon), {}}),
            "valid\nN cert-expired-today: The certificate \"CS.SIGNER\" ran out on 2026-03-01T11:59:59+00:00.\n");

  LogCapture log;
  std::string late = Composition(Cairn::DFT_DCI_SMPTE);
  EXPECT_EQ(Sigil::SignDocument(late, Signer(recipes), log), Sigil::RESULT_SG_SIGNER);
  EXPECT_EQ(log.Text(),
            "Document not signed: The certificate \"CS.SIGNER\" is not valid after 2026-03-01T11:59:59+00:00.\n");
  EXPECT_EQ(late, Composition(Cairn::DFT_DCI_SMPTE));
}

TEST(DocumentSignature, RootsToTrustMayBeNamed) {
  auto others = testsupport::SoundRecipes();
  others[0].SerialNumber = "5";
  EXPECT_EQ(Verdict(SignedComposition(), {{}, {Certificates(testsupport::SoundRecipes()).back()}}), "valid\n");
  EXPECT_EQ(Verdict(SignedComposition(), {{}, {Certificates(others).back()}}),
            "invalid\nE cert-chain: The chain ends in a root that is not one of the trusted roots.\n");
}

TEST(DocumentSignature, TheSignerNamedIsComparedWithTheLeaf) {
  const std::string& xml = SignedComposition();
  const std::string signer = Part(xml, "<Signer ", "</Signer>");
  EXPECT_NE(signer.find("<ds:X509SerialNumber>9223372036854775808<"), std::string::npos);
  // Signed anew by xmlsec1, whose template has the other signer in it.
  const auto other = [&](const std::string& element) {
    const testsupport::TemporaryFolder folder;
    std::string text = Replaced(xml, signer, element);
    text = Replaced(text, Part(text, "<ds:DigestValue>", "</ds:DigestValue>"), "<ds:DigestValue/>");
    text = Replaced(text, Part(text, "<ds:SignatureValue>", "</ds:SignatureValue>"), "<ds:SignatureValue/>");
    return Verdict(
        testsupport::RunJudge({"xmlsec1", "--sign", "--privkey-pem",
                               folder.Write("key.pem", testsupport::TestKeyPEM("leaf")), folder.Write("a.xml", text)}));
  };
  EXPECT_EQ(other(signer), "valid\n");
  EXPECT_EQ(other(Replaced(signer, "9223372036854775808", "09223372036854775808")), "valid\n");
  EXPECT_EQ(other("<Signer/>"), "valid\nW sign-signer: The document does not name its signer.\n");
  EXPECT_EQ(other(""), "valid\nW sign-signer: The document does not name its signer.\n");
  const std::string differs = "valid\nW sign-signer: The signer that the document names is not the one who signed.\n";
  EXPECT_EQ(other(Replaced(signer, "9223372036854775808", "9223372036854775809")), differs);
  EXPECT_EQ(other(Replaced(signer, "CN=.AUTHORITY", "CN=.Authority")), differs);
  EXPECT_EQ(other(Replaced(signer, "CN=.AUTHORITY", "CN")), differs);
}

TEST(DocumentSignature, OnlyAnUnsignedDocumentWithADateIsSigned) {
  const std::string xml = Composition(Cairn::DFT_DCI_SMPTE);
  struct Case {
    std::string Text;
    Sigil::Result_t Result;
    const char* Message;
  };
  const std::vector<Case> cases = {
      {SignedComposition(), Sigil::RESULT_SG_SIGN, "Document not signed: it has a signer or a signature already\n"},
      {Replaced(xml, Noon, "today"), Sigil::RESULT_SG_SIGN, "Document not signed: it has no issue date\n"},
      {xml + "<!-- </CompositionPlaylist> -->", Sigil::RESULT_SG_SIGN,
       "Document not signed: there is no place for a signature\n"},
      {"<a/>", Sigil::RESULT_SG_DOCUMENT, "The document is not of a kind that is signed.\n"},
  };
  for (const Case& bad : cases) {
    LogCapture log;
    std::string text = bad.Text;
    EXPECT_EQ(Sigil::SignDocument(text, Signer(), log), bad.Result);
    EXPECT_EQ(log.Text(), bad.Message);
    EXPECT_EQ(text, bad.Text);
  }
  LogCapture log;
  std::string text = xml;
  EXPECT_EQ(Sigil::SignDocument(text, {Key("root"), Signer().Chain}, log), Sigil::RESULT_SG_SIGNER);
  EXPECT_EQ(log.Text(), "Document not signed: the private key is not that of the chain's leaf\n");
}

}  // namespace
