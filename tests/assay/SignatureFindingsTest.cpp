// SPDX-License-Identifier: BSD-3-Clause
// Signatures of compositions and packing lists: sign-*.
#include "FoundNames.h"
#include "SignedPackage.h"

#include <Ferro/TextEncoding.h>

#include <filesystem>

namespace {

using Assay::CheckReport;
using Assay::FindingClass;
using Assay::FindingID;
using SigilTest::Part;
using SigilTest::Replaced;
using testsupport::Names;
using testsupport::SamplePackage;
using testsupport::SignedAnew;
using testsupport::SignedPackage;
using testsupport::TheOne;

/// What is found where the signed composition is changed so.
Names AfterSigning(const SamplePackage::Signing& change) {
  return SignedPackage()
      .SignComposition([&](const std::string& xml) { return change(SignedPackage::Sign(xml)); })
      .Findings();
}

TEST(SignatureFindings, ASignedPackageHasNone) {
  SignedPackage package;
  EXPECT_EQ(package.Report().Findings, Assay::FindingList());
}

TEST(SignatureFindings, ClearContentUnsignedIsNoted) {
  const CheckReport report = SamplePackage().Report();
  ASSERT_EQ(testsupport::FoundNames(report.Findings), (Names{"sign-missing note", "sign-missing note"}));
  EXPECT_EQ(report.Findings[0].Place.Document, "PKL.xml");
  EXPECT_EQ(report.Findings[1].Place.Document, "CPL.xml");
  EXPECT_TRUE(report.Findings[1].Place.Composition.HasValue());
  EXPECT_FALSE(report.Compositions[0].IsEncrypted());
}

TEST(SignatureFindings, EncryptedContentIsSigned) {
  const auto keep = [](const std::string& xml) { return xml; };
  SignedPackage composition;
  composition.SignComposition(keep);
  // A message that names a signer is not for it.
  EXPECT_EQ(composition.Findings(), (Names{"kdm-authenticator", "sign-missing"}));
  SignedPackage list;
  list.Package.Sign(SignedPackage::Sign, keep);
  const CheckReport report = list.Report();
  EXPECT_EQ(testsupport::NamesOf(report.Findings), Names{"sign-missing"});
  EXPECT_EQ(report.Findings[0].Place.Document, "PKL.xml");
  EXPECT_EQ(report.Packages[0].Worst, FindingClass::Error);
  EXPECT_EQ(report.Compositions[0].Worst, std::nullopt);
}

TEST(SignatureFindings, AChangedDocumentIsToldWithWhatFollows) {
  SignedPackage package;
  package.SignComposition(
      [](const std::string& xml) { return Replaced(SignedPackage::Sign(xml), "<Issuer>Issuer", "<Issuer>Other"); });
  const CheckReport report = package.Report();
  EXPECT_EQ(testsupport::NamesOf(report.Findings), (Names{"kdm-authenticator", "sign-invalid"}));
  EXPECT_EQ(report.Findings[0].ID, FindingID::SignInvalid);
  EXPECT_EQ(report.Findings[0].Found, "The digest is not the document's: it was changed after it was signed");
  EXPECT_EQ(report.Findings[1].Cause, 0U);
  EXPECT_EQ(report.Compositions[0].Worst, FindingClass::Error);
}

TEST(SignatureFindings, WhatIsNotFollowedIsRefused) {
  const auto of = [](const char* from, const char* to) {
    return AfterSigning([&](const std::string& xml) { return Replaced(xml, from, to); });
  };
  EXPECT_EQ(of("URI=\"\"", "URI=\"#a\""), (Names{"kdm-authenticator", "sign-form"}));
  EXPECT_EQ(of("2001/04/xmldsig-more#rsa-sha256", "2000/09/xmldsig#hmac-sha1"),
            (Names{"kdm-authenticator", "sign-method"}));
  // Deep inside, where no signature belongs; a document with one is never taken for unsigned.
  EXPECT_EQ(AfterSigning([](const std::string& xml) {
              const std::string signature = Part(xml, "<ds:Signature ", "</ds:Signature>");
              return Replaced(Replaced(xml, signature, ""), "<ReelList>", "<ReelList>" + signature);
            }),
            (Names{"cpl-schema", "kdm-authenticator", "sign-form"}));
}

TEST(SignatureFindings, TheOtherFlavoursMethodIsWarnedOf) {
  EXPECT_EQ(AfterSigning([](const std::string& xml) {
              return SignedAnew(Replaced(xml, "2001/04/xmldsig-more#rsa-sha256", "2000/09/xmldsig#rsa-sha1"));
            }),
            Names{"sign-method warning"});
  EXPECT_EQ(AfterSigning(SignedAnew), Names{});
}

TEST(SignatureFindings, CertificatesAreThereOnce) {
  EXPECT_EQ(AfterSigning([](const std::string& xml) {
              const std::string info = Part(xml, "<ds:KeyInfo>", "</ds:KeyInfo>");
              const std::string first = Part(info, "<ds:X509Data>", "</ds:X509Data>");
              return Replaced(xml, "</ds:KeyInfo>", first + "</ds:KeyInfo>");
            }),
            Names{"sign-keyinfo"});
}

TEST(SignatureFindings, TheSignerIsWhoSigned) {
  EXPECT_EQ(AfterSigning([](const std::string& xml) {
              const std::string signer = Part(xml, "<Signer ", "</Signer>");
              return SignedAnew(Replaced(xml, signer, Replaced(signer, "9223372036854775808", "5")));
            }),
            Names{"sign-signer"});
}

TEST(SignatureFindings, RootsAreTrustedAsTheHostSays) {
  SignedPackage package;
  package.Request.TrustedRoots = {SigilTest::Signer().Chain.back()};
  EXPECT_EQ(package.Findings(), Names{});
  package.Request.TrustedRoots = {SigilTest::Signer().Chain.front()};
  EXPECT_EQ(package.Findings(), (Names{"cert-chain", "kdm-authenticator"}));
}

TEST(SignatureFindings, ACertificateIsToldOnceAndCountsForEachDocument) {
  auto recipes = testsupport::SoundRecipes();
  recipes[2].RemoveExtension("keyUsage");
  const auto sign = [&](const std::string& xml) { return SigilTest::Signed(xml, SigilTest::Signer(recipes)); };
  const testsupport::TemporaryFolder folder;
  for (const char* name : {"a", "b"}) {
    SamplePackage package;
    for (const char* document : {"CPL.xml", "PKL.xml"}) package.EditAll(document, "2024-03-01T", "2026-03-01T");
    if (*name == 'b') package.EditAll("CPL.xml", "</Issuer>", " B</Issuer>");
    std::filesystem::create_directory(folder.Path(name));
    package.Sign(sign, sign).Write(folder.Path(name));
  }
  Assay::CheckRequest request;
  request.Folders = {folder.Folder().string()};
  request.Depths = {Assay::Depth::Documents};
  CheckReport report;
  ASSERT_TRUE(Check(request, report).Success());
  EXPECT_EQ(testsupport::NamesOf(report.Findings), (Names{"cert-extensions warning", "cpl-duplicate-id"}));
  EXPECT_EQ(TheOne(report.Findings, FindingID::CertExtensions).Found, "The certificate \"CS.SIGNER\" has no Key Usage");
  EXPECT_EQ(report.Packages[0].Worst, FindingClass::Warning);
  EXPECT_EQ(report.Compositions[0].Worst, FindingClass::Warning);
  EXPECT_EQ(report.Packages[1].Worst, FindingClass::Error);
}

}  // namespace
