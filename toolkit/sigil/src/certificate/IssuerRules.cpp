// SPDX-License-Identifier: BSD-3-Clause
#include "certificate/CertificateRules.h"

#include "certificate/CertificateState.h"

#include <algorithm>

namespace Sigil {
namespace {

using enum Severity;
using enum FindingID;

std::span<const unsigned char> EncodedName(const X509_NAME* name) {
  const unsigned char* bytes = nullptr;
  size_t length = 0;
  if (X509_NAME_get0_der(name, &bytes, &length) != 1) return {};
  return {bytes, length};
}

void CheckAuthority(X509* x, X509* issuer, CertificateJudge& judge) {
  const AuthorityKeyPointer authority(
      static_cast<AUTHORITY_KEYID*>(X509_get_ext_d2i(x, NID_authority_key_identifier, nullptr, nullptr)));
  if (!authority) return;  // which is a finding of its own
  judge.SayIf(authority->keyid == nullptr, CertAuthority, Warning,
              "has an Authority Key Identifier without key identifier");
  judge.SayIf(authority->issuer == nullptr || authority->serial == nullptr, CertAuthority, Warning,
              "has an Authority Key Identifier without name and serial number");
  judge.SayIf(X509_check_akid(issuer, authority.get()) != X509_V_OK, CertAuthority, Error,
              "has an Authority Key Identifier that is not its issuer's");
}

void CheckSignature(X509* x, X509* issuer, CertificateJudge& judge) {
  const bool is_same_name =
      std::ranges::equal(EncodedName(X509_get_issuer_name(x)), EncodedName(X509_get_subject_name(issuer)));
  judge.SayIf(!is_same_name, CertSignature, Error,
              "names an issuer that differs from that certificate's subject in case or kind of text");
  EVP_PKEY* key = X509_get0_pubkey(issuer);
  judge.SayIf(key == nullptr || X509_verify(x, key) != 1, CertSignature, Error, "is not signed with its issuer's key");
}

}  // namespace

void CheckAgainstIssuer(const Certificate& certificate, const ChainPlace& place, FindingList& findings) {
  CertificateJudge judge(certificate, findings);
  X509* x = CertificateState::X509Of(certificate);
  const long length = X509_get_pathlen(x);
  judge.SayIf(!place.IsLeaf && length >= 0 && place.CAsBelow > length, CertChain, Error,
              "allows " + std::to_string(length) + " CAs below it; there are " + std::to_string(place.CAsBelow));
  if (place.Issuer == nullptr) return;
  X509* issuer = CertificateState::X509Of(*place.Issuer);
  CheckAuthority(x, issuer, judge);
  CheckSignature(x, issuer, judge);
  judge.SayIf(certificate.NotBefore() < place.Issuer->NotBefore() || certificate.NotAfter() > place.Issuer->NotAfter(),
              CertDatesNested, Warning, "is valid at times when its issuer's is not");
  judge.SayIf(certificate.Subject().Value(OID_Organization) != place.Issuer->Subject().Value(OID_Organization),
              CertOrganization, Warning, "has another organization than its issuer's");
  judge.SayIf(X509_get_signature_nid(x) != X509_get_signature_nid(issuer), CertAlgorithm, Warning,
              "is signed by another algorithm than its issuer's");
  ERR_clear_error();
}

}  // namespace Sigil
