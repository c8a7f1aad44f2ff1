// SPDX-License-Identifier: BSD-3-Clause
#include "Judges.h"
#include "TemporaryFolder.h"
#include "TestCertificates.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

namespace {

using namespace SigilTest;
using testsupport::CertificateRecipe;
using Recipes = std::vector<CertificateRecipe>;  // root, authority, leaf
using Change = std::function<void(Recipes&, Sigil::ChainContext&)>;

struct Rule {
  const char* Finding;  // as Lines has it
  Change Break;
  Change AlmostBreak;  // provokes no finding of this rule
};

void Nothing(Recipes&, Sigil::ChainContext&) {}

Sigil::ChainContext SoundContext() {
  Sigil::ChainContext context;
  context.At = Time(Noon);
  return context;
}

void SetBoth(Recipes& r, const std::string& not_before, const std::string& not_after) {
  for (CertificateRecipe& recipe : r) {
    recipe.NotBefore = not_before;
    recipe.NotAfter = not_after;
  }
}

// Another authority below the first, which takes the leaf over.
void AddAuthority(Recipes& r, const std::string& constraints) {
  CertificateRecipe second = r[1];
  second.Key = "authority2";
  second.SigningKey = "authority";
  second.SubjectPart("CN").Value = ".AUTHORITY2";
  second.SerialNumber = "3";
  second.Extension("basicConstraints") = constraints;
  r[2].SigningKey = "authority2";
  r.insert(r.begin() + 2, second);
}

// clang-format off
std::vector<Rule> FormRules() {
  return {
    {"E cert-version: The certificate \"CS.SIGNER\" is not of X.509 version 3.",
     [](Recipes& r, auto&) { r[2].Version = 1; r[2].Extensions.clear(); }, Nothing},
    {"W cert-extensions: The certificate \"CS.SIGNER\" has no Basic Constraints.",
     [](Recipes& r, auto&) { r[2].RemoveExtension("basicConstraints"); }, Nothing},
    {"E cert-extensions: The certificate \".AUTHORITY\" has no Basic Constraints.",
     [](Recipes& r, auto&) { r[1].RemoveExtension("basicConstraints"); }, Nothing},
    {"W cert-extensions: The certificate \"CS.SIGNER\" has no Key Usage.",
     [](Recipes& r, auto&) { r[2].RemoveExtension("keyUsage"); }, Nothing},
    {"W cert-extensions: The certificate \"CS.SIGNER\" has no Authority Key Identifier.",
     [](Recipes& r, auto&) { r[2].RemoveExtension("authorityKeyIdentifier"); }, Nothing},
    {"N cert-extensions: The certificate \"CS.SIGNER\" has no Subject Key Identifier.",
     [](Recipes& r, auto&) { r[2].RemoveExtension("subjectKeyIdentifier"); }, Nothing},
    {"E cert-extensions: The certificate \"CS.SIGNER\" has an extension that is malformed or there twice.",
     [](Recipes& r, auto&) { r[2].Extensions.push_back(r[2].Extensions[0]); }, Nothing},
    {"E cert-critical: The certificate \"CS.SIGNER\" has a critical extension that is not known.",
     [](Recipes& r, auto&) { r[2].Extensions.push_back({"1.2.3.4", "critical,DER:0500"}); },
     [](Recipes& r, auto&) { r[2].Extensions.push_back({"1.2.3.4", "DER:0500"}); }},
    {"E cert-key: The certificate \"CS.SIGNER\" has an RSA key of 1024 bits, not 2048.",
     [](Recipes& r, auto&) { r[2].Key = "rsa1024-leaf"; }, Nothing},
    {"E cert-key: The certificate \"CS.SIGNER\" has an RSA key of 2056 bits, not 2048.",
     [](Recipes& r, auto&) { r[2].Key = "rsa2056-leaf"; }, Nothing},
    {"E cert-key: The certificate \"CS.SIGNER\" has an RSA key whose exponent is not 65537.",
     [](Recipes& r, auto&) { r[2].Key = "e3-leaf"; }, Nothing},
    {"E cert-key: The certificate \"CS.SIGNER\" has a key that is not RSA.",
     [](Recipes& r, auto&) { r[2].Key = "ec-leaf"; }, Nothing},
    {"W cert-algorithm: The certificate \".AUTHORITY\" is signed with SHA-1, which only Interop has.",
     [](Recipes& r, auto&) { for (auto& recipe : r) recipe.Digest = "SHA1"; },
     [](Recipes& r, Sigil::ChainContext& c) { for (auto& recipe : r) recipe.Digest = "SHA1"; c.Format = Cairn::DFT_Interop; }},
    {"W cert-algorithm: The certificate \"CS.SIGNER\" is signed by another algorithm than its issuer's.",
     [](Recipes& r, Sigil::ChainContext& c) { r[2].Digest = "SHA1"; c.Format = Cairn::DFT_Interop; }, Nothing},
    {"W cert-algorithm: The certificate \"CS.SIGNER\" is signed with neither SHA-256 nor SHA-1 and RSA.",
     [](Recipes& r, auto&) { r[2].Digest = "SHA512"; }, Nothing},
    {"E cert-thumbprint: The certificate \"CS.SIGNER\" has a dnQualifier that is not the thumbprint of its key.",
     [](Recipes& r, auto&) { r[2].SubjectPart("dnQualifier").Value = testsupport::TestThumbprint("root"); }, Nothing},
    {"E cert-thumbprint: The certificate \"CS.SIGNER\" has no dnQualifier.",
     [](Recipes& r, auto&) { r[2].Subject.pop_back(); }, Nothing},
    {"W cert-serial: The certificate \"CS.SIGNER\" has a serial number that is not positive.",
     [](Recipes& r, auto&) { r[2].SerialNumber = "0"; }, [](Recipes& r, auto&) { r[2].SerialNumber = "1"; }},
    {"W cert-serial: The certificate \"CS.SIGNER\" has a serial number that is not positive.",
     [](Recipes& r, auto&) { r[2].SerialNumber = "-1"; }, Nothing},
    {"W cert-serial: The certificate \"CS.SIGNER\" has a serial number of more than 64 bits.",
     [](Recipes& r, auto&) { r[2].SerialNumber = "18446744073709551616"; },
     [](Recipes& r, auto&) { r[2].SerialNumber = "18446744073709551615"; }},
  };
}

std::vector<Rule> NameRules() {
  return {
    {"W cert-names: The certificate \"CS.SIGNER\" has a subject that has no OU.",
     [](Recipes& r, auto&) { r[2].Subject.erase(r[2].Subject.begin() + 1); },
     [](Recipes& r, auto&) { std::swap(r[2].Subject[0], r[2].Subject[1]); }},
    {"W cert-names: The certificate \"CS.SIGNER\" has a subject that has more than one OU.",
     [](Recipes& r, auto&) { r[2].Subject.push_back({"OU", "B"}); }, Nothing},
    {"W cert-names: The certificate \"CS.SIGNER\" has a subject that has more than CN, O, OU and dnQualifier.",
     [](Recipes& r, auto&) { r[2].Subject.push_back({"C", "AT"}); }, Nothing},
    {"W cert-names: The certificate \"CS.SIGNER\" has an issuer that has more than CN, O, OU and dnQualifier.",
     [](Recipes& r, auto&) { r[1].Subject.push_back({"C", "AT"}); }, Nothing},
    {"W cert-names: The certificate \"CS.SIGNER\" has a subject that has a text that is no PrintableString.",
     [](Recipes& r, auto&) { r[2].SubjectPart("OU").Kind = V_ASN1_UTF8STRING; }, Nothing},
    {"W cert-organization: The certificate \"CS.SIGNER\" has another organization than its issuer's.",
     [](Recipes& r, auto&) { r[2].SubjectPart("O").Value = "EXAMPLE.COM"; }, Nothing},
    {"W cert-organization: The certificate \"CS.SIGNER\" has no organization in its subject.",
     [](Recipes& r, auto&) { r[2].Subject.erase(r[2].Subject.begin()); }, Nothing},
    {"W cert-role: The certificate \"SIGNER\" has a CN without roles, a full stop and a name.",
     [](Recipes& r, auto&) { r[2].SubjectPart("CN").Value = "SIGNER"; }, Nothing},
    {"W cert-role: The certificate \"CS.\" has a CN without roles, a full stop and a name.",
     [](Recipes& r, auto&) { r[2].SubjectPart("CN").Value = "CS."; },
     [](Recipes& r, auto&) { r[2].SubjectPart("CN").Value = "CS.A.B"; }},
    {"W cert-role: The certificate \"CS LE.SIGNER\" signs documents and has the role \"CS LE\" in place of CS.",
     [](Recipes& r, auto&) { r[2].SubjectPart("CN").Value = "CS LE.SIGNER"; },
     [](Recipes& r, Sigil::ChainContext& c) { r[2].SubjectPart("CN").Value = "CS LE.SIGNER"; c.IsSigner = false; }},
    {"W cert-role: The certificate \"CS.AUTHORITY\" is a CA's and has the role \"CS\".",
     [](Recipes& r, auto&) { r[1].SubjectPart("CN").Value = "CS.AUTHORITY"; }, Nothing},
    {"W cert-role: The certificate \".DEVICE\" is a device's and has no role.",
     [](Recipes& r, Sigil::ChainContext& c) { r[2].SubjectPart("CN").Value = ".DEVICE"; c.IsSigner = false; }, Nothing},
  };
}

std::vector<Rule> UseRules() {
  return {
    {"E cert-constraints: The certificate \".AUTHORITY\" is no CA's and signs certificates.",
     [](Recipes& r, auto&) { r[1].Extension("basicConstraints") = "critical,CA:FALSE"; }, Nothing},
    {"W cert-constraints: The certificate \".AUTHORITY\" is a CA's and has no path length.",
     [](Recipes& r, auto&) { r[1].Extension("basicConstraints") = "critical,CA:TRUE"; },
     [](Recipes& r, auto&) { r[1].Extension("basicConstraints") = "CA:TRUE,pathlen:240"; }},
    {"W cert-constraints: The certificate \"CS.SIGNER\" is no CA's and has a path length.",
     [](Recipes& r, auto&) { r[2].Extension("basicConstraints") = "critical,CA:FALSE,pathlen:1"; },
     [](Recipes& r, auto&) { r[2].Extension("basicConstraints") = "critical,CA:FALSE,pathlen:0"; }},
    {"E cert-key-usage: The certificate \".AUTHORITY\" may not sign certificates, and does.",
     [](Recipes& r, auto&) { r[1].Extension("keyUsage") = "cRLSign"; },
     [](Recipes& r, auto&) { r[1].Extension("keyUsage") = "keyCertSign,cRLSign"; }},
    {"W cert-key-usage: The certificate \".AUTHORITY\" is a CA's and may be used for more than signing certificates.",
     [](Recipes& r, auto&) { r[1].Extension("keyUsage") = "keyCertSign,digitalSignature"; }, Nothing},
    {"W cert-key-usage: The certificate \"CS.SIGNER\" may not be used for signatures.",
     [](Recipes& r, auto&) { r[2].Extension("keyUsage") = "keyEncipherment"; },
     [](Recipes& r, auto&) { r[2].Extension("keyUsage") = "digitalSignature,keyEncipherment,dataEncipherment"; }},
    {"W cert-key-usage: The certificate \"CS.SIGNER\" may not be used to encrypt keys.",
     [](Recipes& r, auto&) { r[2].Extension("keyUsage") = "digitalSignature"; }, Nothing},
    {"W cert-key-usage: The certificate \"CS.SIGNER\" is a leaf and may sign certificates or lists of revoked ones.",
     [](Recipes& r, auto&) { r[2].Extension("keyUsage") = "digitalSignature,keyEncipherment,cRLSign"; }, Nothing},
    {"W cert-authority: The certificate \"CS.SIGNER\" has an Authority Key Identifier without name and serial number.",
     [](Recipes& r, auto&) { r[2].Extension("authorityKeyIdentifier") = "keyid:always"; }, Nothing},
    {"W cert-authority: The certificate \"CS.SIGNER\" has an Authority Key Identifier without key identifier.",
     [](Recipes& r, auto&) { r[2].Extension("authorityKeyIdentifier") = "issuer:always"; }, Nothing},
    {"E cert-authority: The certificate \"CS.SIGNER\" has an Authority Key Identifier that is not its issuer's.",
     [](Recipes& r, auto&) { r[2].Extension("authorityKeyIdentifier") = "DER:30168014" + std::string(40, '1'); }, Nothing},
    {"E cert-signer-ca: The certificate \"CS.SIGNER\" is a CA's and signs a document.",
     [](Recipes& r, auto&) { r[2].Extension("basicConstraints") = "critical,CA:TRUE,pathlen:0"; },
     [](Recipes& r, Sigil::ChainContext& c) { r[2].Extension("basicConstraints") = "critical,CA:TRUE,pathlen:0"; c.IsSigner = false; }},
  };
}

std::vector<Rule> TimeRules() {
  return {
    {"E cert-dates: The certificate \".AUTHORITY\" is not valid before 2025-01-01T00:00:00+00:00.",
     [](Recipes&, Sigil::ChainContext& c) { c.At = Time("2024-12-31T23:59:59Z"); },
     [](Recipes&, Sigil::ChainContext& c) { c.At = Time("2025-01-01T00:00:00Z"); }},
    {"E cert-dates: The certificate \"CS.SIGNER\" is not valid after 2035-01-01T00:00:00+00:00.",
     [](Recipes&, Sigil::ChainContext& c) { c.At = Time("2035-01-01T00:00:01Z"); },
     [](Recipes&, Sigil::ChainContext& c) { c.At = Time("2035-01-01T00:00:00.999Z"); }},
    {"W cert-dates-nested: The certificate \"CS.SIGNER\" is valid at times when its issuer's is not.",
     [](Recipes& r, auto&) { r[2].NotAfter = "20350101000001Z"; },
     [](Recipes& r, auto&) { r[2].NotBefore = "20260101000000Z"; r[2].NotAfter = "20340101000000Z"; }},
    {"W cert-dates-nested: The certificate \"CS.SIGNER\" is valid at times when its issuer's is not.",
     [](Recipes& r, auto&) { r[2].NotBefore = "20241231235959Z"; }, Nothing},
    {"N cert-expired-today: The certificate \"CS.SIGNER\" ran out on 2035-01-01T00:00:00+00:00.",
     [](Recipes&, Sigil::ChainContext& c) { c.Today = Time("2035-01-01T00:00:01Z"); },
     [](Recipes&, Sigil::ChainContext& c) { c.Today = Time("2035-01-01T00:00:00Z"); }},
    {"N cert-late-end: The certificate \"CS.SIGNER\" is valid beyond 2038-01-19, which some devices cannot count to.",
     [](Recipes& r, auto&) { SetBoth(r, "20250101000000Z", "20380119031408Z"); },
     [](Recipes& r, auto&) { SetBoth(r, "20250101000000Z", "20380119031407Z"); }},
  };
}

std::vector<Rule> ChainRules() {
  return {
    {"E cert-signature: The certificate \"CS.SIGNER\" is not signed with its issuer's key.",
     [](Recipes& r, auto&) { r[2].SigningKey = "root"; }, Nothing},
    {"E cert-signature: The certificate \"CS.SIGNER\" names an issuer that differs from that certificate's subject in case or kind of text.",
     [](Recipes& r, auto&) { r[2].Issuer = r[1].Subject; r[2].Issuer[2].Value = ".Authority"; }, Nothing},
    {"E cert-signature: The certificate \"CS.SIGNER\" names an issuer that differs from that certificate's subject in case or kind of text.",
     [](Recipes& r, auto&) { r[2].Issuer = r[1].Subject; r[2].Issuer[2].Kind = V_ASN1_UTF8STRING; },
     [](Recipes& r, auto&) { r[2].Issuer = r[1].Subject; }},
    {"E cert-chain: The certificate \".AUTHORITY\" allows 0 CAs below it; there are 1.",
     [](Recipes& r, auto&) { AddAuthority(r, "critical,CA:TRUE,pathlen:0"); },
     [](Recipes& r, auto&) { r[1].Extension("basicConstraints") = "critical,CA:TRUE,pathlen:1"; AddAuthority(r, "critical,CA:TRUE,pathlen:0"); }},
    {"E cert-constraints: The certificate \"CS.AUTHORITY2\" is no CA's and signs certificates.",  // a leaf that signs
     [](Recipes& r, auto&) { AddAuthority(r, "critical,CA:FALSE"); r[2].SubjectPart("CN").Value = "CS.AUTHORITY2"; }, Nothing},
    {"E cert-chain: The chain has fewer certificates than a leaf, a CA and a root.",
     [](Recipes& r, auto&) { r.erase(r.begin() + 1); r[1].SigningKey = "root"; }, Nothing},
    {"E cert-chain: The chain ends in a root that is not one of the trusted roots.",
     [](Recipes&, Sigil::ChainContext& c) { c.TrustedRoots = {Certificates(testsupport::SoundRecipes())[1]}; },
     [](Recipes&, Sigil::ChainContext& c) { c.TrustedRoots = {Certificates(testsupport::SoundRecipes())[2]}; }},
  };
}
// clang-format on

std::vector<Rule> AllRules() {
  std::vector<Rule> all;
  for (const auto& rules : {FormRules(), NameRules(), UseRules(), TimeRules(), ChainRules()})
    all.insert(all.end(), rules.begin(), rules.end());
  return all;
}

struct Made {
  Recipes Parts = testsupport::SoundRecipes();
  Sigil::ChainContext Context = SoundContext();
  Sigil::CertificateList List;

  explicit Made(const Change& change) {
    change(Parts, Context);
    List = Certificates(Parts);
  }
};

TEST(CertificateChain, ASoundOneHasNoFindings) {
  const Made made(Nothing);
  const auto report = Sigil::CheckChain(made.List, made.Context);
  EXPECT_EQ(Lines(report.Findings), "");
  EXPECT_EQ(report.Chain, made.List);
  EXPECT_TRUE(report.Holds());
  EXPECT_TRUE(report.Strays.empty());
  EXPECT_FALSE(report.HasRepeats);
}

TEST(CertificateChain, EachRuleIsToldWhereItIsBroken) {
  for (const Rule& rule : AllRules()) {
    const Made made(rule.Break);
    const auto report = Sigil::CheckChain(made.List, made.Context);
    const std::string lines = '\n' + Lines(report.Findings);
    EXPECT_NE(lines.find('\n' + std::string(rule.Finding) + '\n'), std::string::npos)
        << rule.Finding << "\nfound:" << lines;
    EXPECT_EQ(report.Holds(), lines.find("\nE ") == std::string::npos);
  }
}

TEST(CertificateChain, NoRuleIsToldWhereItIsJustKept) {
  for (const Rule& rule : AllRules()) {
    const Made made(rule.AlmostBreak);
    const std::string lines = Lines(Sigil::CheckChain(made.List, made.Context).Findings);
    const std::string name = std::string(rule.Finding).substr(2, std::string(rule.Finding).find(':') - 1);
    EXPECT_EQ(lines.find(name), std::string::npos) << rule.Finding << "\nfound: " << lines;
  }
}

/// What `openssl verify` says of the chain at the context's time.
bool HoldsForOpenSSL(const Made& made) {
  const testsupport::TemporaryFolder folder;
  std::string others;
  for (const auto& certificate : made.List) others += certificate.PEM();
  // The last second of the validity is inside (RFC 5280, 4.1.2.5); OpenSSL takes it for the end.
  Sigil::i64_t at = made.Context.At.UnixMilliseconds() / 1000;
  if (at == made.List.front().NotAfter().UnixMilliseconds() / 1000) --at;
  const std::string command = "openssl verify -attime " + std::to_string(at) + " -no-CApath -no-CAstore -CAfile '" +
                              folder.Write("root", made.List.back().PEM()) + "' -untrusted '" +
                              folder.Write("others", others) + "' '" + folder.Write("leaf", made.List.front().PEM()) +
                              "' >/dev/null 2>&1";
  return std::system(command.c_str()) == 0;
}

TEST(CertificateChain, WhatOpenSSLRefusesDoesNotHold) {
  ASSERT_TRUE(HoldsForOpenSSL(Made(Nothing)));
  int refused = 0;
  for (const Rule& rule : AllRules()) {
    for (const Change* change : {&rule.Break, &rule.AlmostBreak}) {
      const Made made(*change);
      if (HoldsForOpenSSL(made)) continue;
      ++refused;
      EXPECT_FALSE(Sigil::CheckChain(made.List, made.Context).Holds()) << rule.Finding;
    }
  }
  EXPECT_GE(refused, 8);
}

TEST(CertificateChain, WhatOnlyOpenSSLKnowsOfIsToldInItsWords) {
  const Made made([](Recipes& r, auto&) {
    r[2].Extensions.push_back({"proxyCertInfo", "critical,DER:300C300A06082B06010505071500"});
  });
  EXPECT_EQ(
      Lines(Sigil::CheckChain(made.List, made.Context).Findings),
      "E cert-chain: OpenSSL refuses the chain: proxy certificates not allowed, please set the appropriate flag.\n");
}

TEST(CertificateChain, TheOrderThatTheyComeInIsOfNoMatter) {
  const Made made([](Recipes& r, auto&) {
    r[1].Extension("basicConstraints") = "critical,CA:TRUE,pathlen:1";
    AddAuthority(r, "critical,CA:TRUE,pathlen:0");
  });
  std::vector<size_t> order = {0, 1, 2, 3};
  do {
    Sigil::CertificateList shuffled;
    for (const size_t i : order) shuffled.push_back(made.List[i]);
    const auto report = Sigil::CheckChain(shuffled, made.Context);
    EXPECT_EQ(report.Chain, made.List);
    EXPECT_EQ(Lines(report.Findings), "");
  } while (std::ranges::next_permutation(order).found);
}

TEST(CertificateChain, RepeatsAndStraysAreSetApart) {
  const Made made(Nothing);
  const Made other([](Recipes& r, auto&) {
    r[0].Key = r[0].SigningKey = r[1].SigningKey = "root2";
    r[0].SubjectPart("CN").Value = ".OTHER";
  });
  Sigil::CertificateList list = made.List;
  list.push_back(list[1]);
  list.push_back(other.List[2]);
  const auto report = Sigil::CheckChain(list, made.Context);
  EXPECT_EQ(report.Chain, made.List);
  EXPECT_TRUE(report.HasRepeats);
  EXPECT_EQ(report.Strays, Sigil::CertificateList{other.List[2]});
  EXPECT_TRUE(report.Holds());
}

TEST(CertificateChain, TwoLeavesMakeNoChain) {
  const Made made(Nothing);
  const Made other([](Recipes& r, auto&) { r[2].Key = "leaf2"; });
  Sigil::CertificateList list = made.List;
  list.push_back(other.List[0]);
  const auto report = Sigil::CheckChain(list, made.Context);
  EXPECT_EQ(Lines(report.Findings), "E cert-chain: The chain has more than one leaf.\n");
  EXPECT_FALSE(report.Holds());
}

TEST(CertificateChain, WithoutItsRootOrItsAuthorityItDoesNotHold) {
  const Made made(Nothing);
  const Sigil::CertificateList no_root = {made.List[0], made.List[1]};
  EXPECT_EQ(Lines(Sigil::CheckChain(no_root, made.Context).Findings),
            "E cert-chain: The chain does not end in a self-signed root.\n"
            "E cert-chain: The chain has fewer certificates than a leaf, a CA and a root.\n");
  const Sigil::CertificateList no_authority = {made.List[0], made.List[2]};
  EXPECT_FALSE(Sigil::CheckChain(no_authority, made.Context).Holds());
}

TEST(CertificateChain, NoCertificateAndTooManyMakeNoChain) {
  const Made made(Nothing);
  EXPECT_EQ(Lines(Sigil::CheckChain({}, made.Context).Findings), "E cert-chain: There is no certificate.\n");
  const Sigil::CertificateList many(101, made.List[0]);
  EXPECT_EQ(Lines(Sigil::CheckChain(many, made.Context).Findings),
            "E cert-chain: There are more than 100 certificates.\n");
}

// Two roots that name each other as their issuers.
TEST(CertificateChain, ACircleHasNoLeaf) {
  const Made made([](Recipes& r, auto&) {
    r.pop_back();
    r[0].Issuer = r[1].Subject;
    r[0].Issuer.back().Value = testsupport::TestThumbprint("authority");
  });
  Sigil::CertificateList list = made.List;
  EXPECT_EQ(Lines(Sigil::CheckChain(list, made.Context).Findings),
            "E cert-chain: No certificate of the chain is its leaf.\n");
}

TEST(CertificateChain, ADevicesHoldsForADevice) {
  Sigil::ChainContext context = SoundContext();
  context.IsSigner = false;
  EXPECT_EQ(Lines(Sigil::CheckChain(Certificates(testsupport::DeviceRecipes()), context).Findings), "");
}

}  // namespace
