// SPDX-License-Identifier: BSD-3-Clause
// Certificates of those who sign documents: cert-*. Their rules are tested with libsigil; here each comes through a check.
#include "SignedPackage.h"

#include <Ferro/LogSink.h>
#include <Ferro/TextEncoding.h>

#include <functional>

namespace {

using testsupport::Names;
using testsupport::SignedPackage;
using Recipes = std::vector<testsupport::CertificateRecipe>;  // root, authority, leaf
using Change = std::function<void(Recipes&)>;

/// The document signed with certificates that may not hold: then with sound ones, which are exchanged. The signature does
/// not cover them.
std::string SignedWith(const std::string& xml, const Recipes& recipes) {
  const Sigil::CertificateList chain = SigilTest::Certificates(recipes);
  Ferro::MemoryLogSink log;
  std::string signed_xml = xml;
  const std::string& key = recipes.back().Key;
  const bool is_usual = key == "leaf";
  if (is_usual && Sigil::SignDocument(signed_xml, {SigilTest::Key(key), chain}, log).Success()) return signed_xml;
  std::string data;
  for (const Sigil::Certificate& certificate : chain)
    data += "<ds:X509Data><ds:X509Certificate>" + Ferro::base64encode(certificate.DER()) +
            "</ds:X509Certificate></ds:X509Data>";
  const std::string text = SignedPackage::Sign(xml);
  return SigilTest::Replaced(text, SigilTest::Part(text, "<ds:KeyInfo>", "</ds:KeyInfo>"),
                             "<ds:KeyInfo>" + data + "</ds:KeyInfo>");
}

/// What is found of a clear package signed by a chain that is changed so.
Names With(const Change& change, const char* now = "2026-03-03T12:00:00Z") {
  Recipes recipes = testsupport::SoundRecipes();
  change(recipes);
  const auto sign = [&](const std::string& xml) { return SignedWith(xml, recipes); };
  testsupport::SamplePackage package;
  for (const char* document : {"CPL.xml", "PKL.xml"}) package.EditAll(document, "2024-03-01T", "2026-03-01T");
  const testsupport::TemporaryFolder folder;
  package.Sign(sign, sign).Write(folder.Folder().string());
  Assay::CheckRequest request;
  request.Folders = {folder.Folder().string()};
  request.Depths = {Assay::Depth::Documents};
  request.Now = SigilTest::Time(now).UnixMilliseconds() / 1000;
  Assay::CheckReport report;
  EXPECT_TRUE(Check(request, report).Success());
  return testsupport::NamesOf(report.Findings);
}

TEST(CertificateFindings, SoundOnesHaveNone) {
  EXPECT_EQ(With([](Recipes&) {}), Names{});
}

struct Case {
  const char* Label;
  Change Break;
  Names Expected;
};

// clang-format off
const std::vector<Case>& Cases() {
  static const std::vector<Case> s_Cases = {
    {"version", [](Recipes& r) { r[2].Version = 1; r[2].Extensions.clear(); },
     {"cert-extensions note", "cert-extensions warning", "cert-extensions warning", "cert-extensions warning", "cert-version"}},
    {"authority without constraints", [](Recipes& r) { r[1].RemoveExtension("basicConstraints"); }, {"cert-extensions"}},
    {"no key usage", [](Recipes& r) { r[2].RemoveExtension("keyUsage"); }, {"cert-extensions warning"}},
    {"no key identifier", [](Recipes& r) { r[2].RemoveExtension("subjectKeyIdentifier"); }, {"cert-extensions note"}},
    {"critical", [](Recipes& r) { r[2].Extensions.push_back({"1.2.3.4", "critical,DER:0500"}); }, {"cert-critical"}},
    {"key", [](Recipes& r) { r[2].Key = "rsa1024-leaf"; }, {"cert-key"}},
    {"algorithm", [](Recipes& r) { r[2].Digest = "SHA512"; }, {"cert-algorithm", "cert-algorithm"}},
    {"thumbprint", [](Recipes& r) { r[2].SubjectPart("dnQualifier").Value = testsupport::TestThumbprint("root"); }, {"cert-thumbprint"}},
    {"names", [](Recipes& r) { r[2].Subject.push_back({"C", "AT"}); }, {"cert-names"}},
    {"organization", [](Recipes& r) { r[2].SubjectPart("O").Value = "EXAMPLE.COM"; }, {"cert-organization"}},
    {"role", [](Recipes& r) { r[2].SubjectPart("CN").Value = "CS LE.SIGNER"; }, {"cert-role"}},
    {"serial", [](Recipes& r) { r[2].SerialNumber = "0"; }, {"cert-serial"}},
    {"constraints", [](Recipes& r) { r[1].Extension("basicConstraints") = "critical,CA:FALSE"; }, {"cert-constraints"}},
    {"no path length", [](Recipes& r) { r[1].Extension("basicConstraints") = "critical,CA:TRUE"; }, {"cert-constraints warning"}},
    {"authority's usage", [](Recipes& r) { r[1].Extension("keyUsage") = "cRLSign"; }, {"cert-key-usage"}},
    {"leaf's usage", [](Recipes& r) { r[2].Extension("keyUsage") = "digitalSignature"; }, {"cert-key-usage warning"}},
    {"authority", [](Recipes& r) { r[2].Extension("authorityKeyIdentifier") = "DER:30168014" + std::string(40, '1'); }, {"cert-authority", "cert-authority warning"}},
    {"authority's name", [](Recipes& r) { r[2].Extension("authorityKeyIdentifier") = "keyid:always"; }, {"cert-authority warning"}},
    {"dates", [](Recipes& r) { r[2].NotAfter = "20260228235959Z"; }, {"cert-dates"}},
    {"dates beyond the issuer's", [](Recipes& r) { r[2].NotAfter = "20350101000001Z"; }, {"cert-dates-nested"}},
    {"late end", [](Recipes& r) { for (auto& each : r) each.NotAfter = "20380119031408Z"; }, {"cert-late-end", "cert-late-end", "cert-late-end"}},
    {"just not late", [](Recipes& r) { for (auto& each : r) each.NotAfter = "20380119031407Z"; }, {}},
    {"signature", [](Recipes& r) { r[2].SigningKey = "root"; }, {"cert-signature"}},
    {"chain", [](Recipes& r) { r.erase(r.begin() + 1); r[1].SigningKey = "root"; }, {"cert-chain"}},
    {"signer is an authority", [](Recipes& r) { r[2].Extension("basicConstraints") = "critical,CA:TRUE,pathlen:0"; }, {"cert-signer-ca"}},
  };
  return s_Cases;
}
// clang-format on

TEST(CertificateFindings, EachIsToldOnceForCompositionAndPackingList) {
  for (const Case& each : Cases()) EXPECT_EQ(With(each.Break), each.Expected) << each.Label;
}

TEST(CertificateFindings, WhatRanOutSinceIsNoted) {
  const auto change = [](Recipes& r) { r[2].NotAfter = "20260302000000Z"; };
  EXPECT_EQ(With(change, "2026-03-02T00:00:00Z"), Names{});
  EXPECT_EQ(With(change, "2026-03-02T00:00:01Z"), Names{"cert-expired-today"});
}

}  // namespace
