// SPDX-License-Identifier: BSD-3-Clause
#include "certificate/CertificateRules.h"

#include "base/Quoted.h"
#include "certificate/CertificateState.h"

#include <openssl/rsa.h>

#include <array>

namespace Sigil {
namespace {

using enum Severity;
using enum FindingID;

constexpr i64_t EndOf32BitTime = 0x7FFFFFFF;  // 2038-01-19T03:14:07Z, seconds

i64_t Seconds(const Timestamp& time) {
  return time.UnixMilliseconds() / 1000;
}

void CheckVersion(X509* x, CertificateJudge& judge) {
  judge.SayIf(X509_get_version(x) != X509_VERSION_3, CertVersion, Error, "is not of X.509 version 3");
}

bool HasExtension(const X509* x, int nid) {
  return X509_get_ext_by_NID(x, nid, -1) >= 0;
}

void CheckExtensions(X509* x, const ChainPlace& place, CertificateJudge& judge) {
  judge.SayIf((X509_get_extension_flags(x) & EXFLAG_INVALID) != 0, CertExtensions, Error,
              "has an extension that is malformed or there twice");
  judge.SayIf(!HasExtension(x, NID_basic_constraints), CertExtensions, place.IsLeaf ? Warning : Error,
              "has no Basic Constraints");
  judge.SayIf(!HasExtension(x, NID_key_usage), CertExtensions, Warning, "has no Key Usage");
  judge.SayIf(!HasExtension(x, NID_authority_key_identifier), CertExtensions, Warning,
              "has no Authority Key Identifier");
  judge.SayIf(!HasExtension(x, NID_subject_key_identifier), CertExtensions, Note, "has no Subject Key Identifier");
  for (int i = 0; i < X509_get_ext_count(x); ++i) {
    X509_EXTENSION* extension = X509_get_ext(x, i);
    if (X509_EXTENSION_get_critical(extension) == 0 || X509_supported_extension(extension) == 1) continue;
    judge.Say(CertCritical, Error, "has a critical extension that is not known");
  }
}

void CheckKey(X509* x, CertificateJudge& judge) {
  const EVP_PKEY* key = X509_get0_pubkey(x);
  if (key == nullptr || EVP_PKEY_get_base_id(key) != EVP_PKEY_RSA) {
    judge.Say(CertKey, Error, "has a key that is not RSA");
    return;
  }
  const int bits = EVP_PKEY_get_bits(key);
  judge.SayIf(bits != 2048, CertKey, Error, "has an RSA key of " + std::to_string(bits) + " bits, not 2048");
  BIGNUM* exponent = nullptr;
  const bool is_usual = EVP_PKEY_get_bn_param(key, "e", &exponent) == 1 && BN_is_word(exponent, RSA_F4) == 1;
  BN_free(exponent);
  judge.SayIf(!is_usual, CertKey, Error, "has an RSA key whose exponent is not 65537");
}

void CheckAlgorithm(X509* x, const ChainContext& context, CertificateJudge& judge) {
  const int nid = X509_get_signature_nid(x);
  if (nid == NID_sha256WithRSAEncryption) return;
  if (nid != NID_sha1WithRSAEncryption) {
    judge.Say(CertAlgorithm, Warning, "is signed with neither SHA-256 nor SHA-1 and RSA");
  } else if (context.Format != Cairn::DFT_Interop) {
    judge.Say(CertAlgorithm, Warning, "is signed with SHA-1, which only Interop has");
  }
}

void CheckThumbprint(const Certificate& certificate, CertificateJudge& judge) {
  const std::string qualifier = certificate.Subject().Value(OID_DnQualifier);
  if (qualifier.empty()) {
    judge.Say(CertThumbprint, Error, "has no dnQualifier");
  } else if (qualifier != certificate.PublicKeyThumbprint().EncodeBase64()) {
    judge.Say(CertThumbprint, Error, "has a dnQualifier that is not the thumbprint of its key");
  }
}

void CheckName(const DistinguishedName& name, const std::string& whose, CertificateJudge& judge) {
  struct Part {
    const char* Type;
    const char* Keyword;
  };
  static constexpr std::array Parts = {Part{OID_CommonName, "CN"}, Part{OID_Organization, "O"},
                                       Part{OID_OrganizationalUnit, "OU"}, Part{OID_DnQualifier, "dnQualifier"}};
  size_t known = 0;
  for (const auto& [type, keyword] : Parts) {
    const size_t count = name.Count(type);
    known += count;
    judge.SayIf(count == 0, CertNames, Warning, whose + " has no " + keyword);
    judge.SayIf(count > 1, CertNames, Warning, whose + " has more than one " + keyword);
  }
  judge.SayIf(known != name.Attributes.size(), CertNames, Warning, whose + " has more than CN, O, OU and dnQualifier");
  bool is_printable = true;
  for (const auto& attribute : name.Attributes) is_printable = is_printable && attribute.IsPrintable;
  judge.SayIf(!is_printable, CertNames, Warning, whose + " has a text that is no PrintableString");
}

void CheckNames(const Certificate& certificate, CertificateJudge& judge) {
  CheckName(certificate.Subject(), "has a subject that", judge);
  CheckName(certificate.Issuer(), "has an issuer that", judge);
  judge.SayIf(certificate.Subject().Value(OID_Organization).empty(), CertOrganization, Warning,
              "has no organization in its subject");
}

void CheckRole(const Certificate& certificate, const ChainPlace& place, const ChainContext& context,
               CertificateJudge& judge) {
  const std::string name = certificate.Subject().Value(OID_CommonName);
  const size_t stop = name.find('.');
  if (stop == std::string::npos || stop + 1 == name.size()) {
    judge.Say(CertRole, Warning, "has a CN without roles, a full stop and a name");
    return;
  }
  const std::string roles = name.substr(0, stop);
  if (!place.IsLeaf) {
    judge.SayIf(!roles.empty(), CertRole, Warning, "is a CA's and has the role " + Quoted(roles));
  } else if (context.IsSigner) {
    judge.SayIf(roles != "CS", CertRole, Warning,
                "signs documents and has the role " + Quoted(roles) + " in place of CS");
  } else {
    judge.SayIf(roles.empty(), CertRole, Warning, "is a device's and has no role");
  }
}

void CheckSerialNumber(X509* x, CertificateJudge& judge) {
  const BNPointer number(ASN1_INTEGER_to_BN(X509_get0_serialNumber(x), nullptr));
  judge.SayIf(BN_is_zero(number.get()) == 1 || BN_is_negative(number.get()) == 1, CertSerial, Warning,
              "has a serial number that is not positive");
  judge.SayIf(BN_num_bits(number.get()) > 64, CertSerial, Warning, "has a serial number of more than 64 bits");
}

void CheckConstraints(X509* x, const ChainPlace& place, CertificateJudge& judge) {
  auto* constraints = static_cast<BASIC_CONSTRAINTS*>(X509_get_ext_d2i(x, NID_basic_constraints, nullptr, nullptr));
  if (constraints == nullptr) return;  // which is a finding of its own
  const bool is_ca = constraints->ca != 0;
  const bool has_length = constraints->pathlen != nullptr;
  const bool is_zero = has_length && ASN1_INTEGER_get(constraints->pathlen) == 0;
  BASIC_CONSTRAINTS_free(constraints);
  if (place.IsLeaf) {
    judge.SayIf(!is_ca && has_length && !is_zero, CertConstraints, Warning, "is no CA's and has a path length");
    return;
  }
  judge.SayIf(!is_ca, CertConstraints, Error, "is no CA's and signs certificates");
  judge.SayIf(is_ca && !has_length, CertConstraints, Warning, "is a CA's and has no path length");
}

void CheckKeyUsage(X509* x, const ChainPlace& place, CertificateJudge& judge) {
  if ((X509_get_extension_flags(x) & EXFLAG_KUSAGE) == 0) return;  // which is a finding of its own
  const ui32_t usage = X509_get_key_usage(x);
  if (place.IsLeaf) {
    judge.SayIf((usage & KU_DIGITAL_SIGNATURE) == 0, CertKeyUsage, Warning, "may not be used for signatures");
    judge.SayIf((usage & KU_KEY_ENCIPHERMENT) == 0, CertKeyUsage, Warning, "may not be used to encrypt keys");
    judge.SayIf((usage & (KU_KEY_CERT_SIGN | KU_CRL_SIGN)) != 0, CertKeyUsage, Warning,
                "is a leaf and may sign certificates or lists of revoked ones");
    return;
  }
  judge.SayIf((usage & KU_KEY_CERT_SIGN) == 0, CertKeyUsage, Error, "may not sign certificates, and does");
  judge.SayIf((usage & ~ui32_t{KU_KEY_CERT_SIGN | KU_CRL_SIGN}) != 0, CertKeyUsage, Warning,
              "is a CA's and may be used for more than signing certificates");
}

void CheckDates(const Certificate& certificate, const ChainContext& context, CertificateJudge& judge) {
  const i64_t at = Seconds(context.At);
  judge.SayIf(at < Seconds(certificate.NotBefore()), CertDates, Error,
              "is not valid before " + certificate.NotBefore().EncodeString());
  const bool is_over = at > Seconds(certificate.NotAfter());
  judge.SayIf(is_over, CertDates, Error, "is not valid after " + certificate.NotAfter().EncodeString());
  judge.SayIf(!is_over && context.Today && Seconds(*context.Today) > Seconds(certificate.NotAfter()), CertExpiredToday,
              Note, "ran out on " + certificate.NotAfter().EncodeString());
  judge.SayIf(Seconds(certificate.NotAfter()) > EndOf32BitTime, CertLateEnd, Note,
              "is valid beyond 2038-01-19, which some devices cannot count to");
}

}  // namespace

CertificateJudge::CertificateJudge(const Certificate& certificate, FindingList& findings)
    : m_Name("The certificate " + Quoted(certificate.Subject().Value(OID_CommonName)) + ' '), m_Findings(findings) {}

void CertificateJudge::Say(FindingID id, Severity severity, const std::string& what) {
  m_Findings.push_back({id, severity, m_Name + what + '.'});
}

void CertificateJudge::SayIf(bool is_so, FindingID id, Severity severity, const std::string& what) {
  if (is_so) Say(id, severity, what);
}

void CheckAlone(const Certificate& certificate, const ChainPlace& place, const ChainContext& context,
                FindingList& findings) {
  X509* x = CertificateState::X509Of(certificate);
  CertificateJudge judge(certificate, findings);
  CheckVersion(x, judge);
  CheckExtensions(x, place, judge);
  CheckKey(x, judge);
  CheckAlgorithm(x, context, judge);
  CheckThumbprint(certificate, judge);
  CheckNames(certificate, judge);
  CheckRole(certificate, place, context, judge);
  CheckSerialNumber(x, judge);
  CheckConstraints(x, place, judge);
  CheckKeyUsage(x, place, judge);
  CheckDates(certificate, context, judge);
  judge.SayIf(place.IsLeaf && context.IsSigner && certificate.IsCA(), CertSignerCA, Error,
              "is a CA's and signs a document");
  ERR_clear_error();
}

}  // namespace Sigil
