// SPDX-License-Identifier: BSD-3-Clause
#include <Sigil/Certificate.h>

#include "certificate/CertificateState.h"

#include <Ferro/SHA1Digest.h>
#include <openssl/pem.h>

#include <algorithm>
#include <optional>

namespace Sigil {
namespace {

constexpr size_t MaxCertificateCount = 100;  // of one file

SHA1 DigestOf(std::span<const ui8_t> bytes) {
  Ferro::SHA1Digest digest;
  digest.Update(bytes);
  return digest.Finish();
}

/// The signed part: the first element of the outer sequence. Empty when the lengths do not fit.
std::span<const ui8_t> SignedPart(std::span<const ui8_t> der) {
  const unsigned char* at = der.data();
  long length = 0;
  int tag = 0;
  int tag_class = 0;
  // 0x20: constructed, with a definite length.
  if (ASN1_get_object(&at, &length, &tag, &tag_class, static_cast<long>(der.size())) != 0x20) return {};
  const unsigned char* begin = at;
  const auto left = static_cast<long>(der.size() - static_cast<size_t>(at - der.data()));
  if (ASN1_get_object(&at, &length, &tag, &tag_class, left) != 0x20) return {};
  return {begin, at + length};
}

bool IsEncodedAs(const X509* x, std::span<const ui8_t> der) {
  unsigned char* bytes = nullptr;
  const int length = i2d_X509(x, &bytes);
  const bool is_same = length > 0 && std::ranges::equal(std::span(bytes, static_cast<size_t>(length)), der);
  OPENSSL_free(bytes);
  return is_same;
}

bool ReadTime(const ASN1_TIME* time, Timestamp& out) {
  const ASN1_TIME* const epoch = ASN1_TIME_set(nullptr, 0);
  int days = 0;
  int seconds = 0;
  const bool is_time =
      epoch != nullptr && ASN1_TIME_check(time) == 1 && ASN1_TIME_diff(&days, &seconds, epoch, time) == 1;
  ASN1_TIME_free(const_cast<ASN1_TIME*>(epoch));
  if (is_time) out = Timestamp((i64_t{days} * 86'400 + seconds) * 1000);
  return is_time;
}

bool ReadSerialNumber(const X509* x, std::string& out) {
  const BNPointer number(ASN1_INTEGER_to_BN(X509_get0_serialNumber(x), nullptr));
  if (!number || static_cast<size_t>(BN_num_bytes(number.get())) > Certificate::MaxSerialLength) return false;
  char* text = BN_bn2dec(number.get());
  if (text == nullptr) return false;
  out = text;
  OPENSSL_free(text);
  return true;
}

/// Fills what is read from the certificate that `state` holds. Returns what is wrong, null for nothing.
const char* Fill(CertificateState& state) {
  X509* x = state.X.get();
  if (!IsEncodedAs(x, state.DER)) return "it is not in DER form, or bytes follow it";
  if (!ReadSerialNumber(x, state.SerialNumber)) return "its serial number is too long";
  if (!ReadTime(X509_get0_notBefore(x), state.NotBefore) || !ReadTime(X509_get0_notAfter(x), state.NotAfter))
    return "its dates are malformed";
  state.Subject = NameFrom(X509_get_subject_name(x));
  state.Issuer = NameFrom(X509_get_issuer_name(x));
  const std::span<const ui8_t> signed_part = SignedPart(state.DER);
  if (signed_part.empty()) return "it is not in DER form";
  state.Thumbprint = DigestOf(signed_part);
  const ASN1_BIT_STRING* key = X509_get0_pubkey_bitstr(x);
  state.PublicKeyThumbprint = DigestOf({ASN1_STRING_get0_data(key), static_cast<size_t>(ASN1_STRING_length(key))});
  // The first call reads the extensions; those that follow, from any thread, only look at what it found.
  X509_check_purpose(x, -1, 0);
  state.IsCA = (X509_get_extension_flags(x) & EXFLAG_BCONS) != 0 && (X509_get_extension_flags(x) & EXFLAG_CA) != 0;
  return nullptr;
}

Result_t Refuse(Ferro::ILogSink& log, const char* reason) {
  ERR_clear_error();
  log.Error("Certificate refused: %s\n", reason);
  return RESULT_SG_CERTIFICATE;
}

// A certificate in PEM form is not encrypted; without this the terminal would be asked.
int NoPassphrase(char*, int, int, void*) {
  return -1;
}

Result_t ReadPEM(std::string_view text, CertificateList& out, Ferro::ILogSink& log) {
  if (text.size() > MaxCertificateCount * Certificate::MaxSize) return Refuse(log, "the file is too large");
  const BIOPointer bio(BIO_new_mem_buf(text.data(), static_cast<int>(text.size())));
  CertificateList list;
  while (const X509Pointer x{PEM_read_bio_X509(bio.get(), nullptr, NoPassphrase, nullptr)}) {
    if (list.size() == MaxCertificateCount) return Refuse(log, "the file has more than 100 certificates");
    unsigned char* bytes = nullptr;
    const int length = i2d_X509(x.get(), &bytes);
    std::optional<Certificate> certificate;
    const Result_t result = Certificate::FromDER({bytes, static_cast<size_t>(std::max(length, 0))}, certificate, log);
    OPENSSL_free(bytes);
    if (result.Failure()) return result;
    list.push_back(*certificate);
  }
  // Behind the last block there is no start line; anything else is a damaged block.
  const bool is_end = ERR_GET_REASON(ERR_peek_last_error()) == PEM_R_NO_START_LINE;
  if (!is_end) return Refuse(log, "a block of its PEM text is damaged");
  if (list.empty()) return Refuse(log, "the file holds none");
  ERR_clear_error();
  out = std::move(list);
  return Ferro::RESULT_OK;
}

}  // namespace

Result_t Certificate::FromDER(std::span<const ui8_t> der, std::optional<Certificate>& out, Ferro::ILogSink& log) {
  if (der.size() > MaxSize) return Refuse(log, "it has more than 65536 bytes");
  auto state = std::make_shared<CertificateState>();
  const unsigned char* at = der.data();
  state->X.reset(d2i_X509(nullptr, &at, static_cast<long>(der.size())));
  if (!state->X) return Refuse(log, "it is no X.509 certificate");
  state->DER.assign(der.begin(), der.end());
  if (const char* reason = Fill(*state); reason != nullptr) return Refuse(log, reason);
  ERR_clear_error();
  out = CertificateState::Wrap(std::move(state));
  return Ferro::RESULT_OK;
}

const DistinguishedName& Certificate::Subject() const {
  return m_State->Subject;
}

const DistinguishedName& Certificate::Issuer() const {
  return m_State->Issuer;
}

const std::string& Certificate::SerialNumber() const {
  return m_State->SerialNumber;
}

const Timestamp& Certificate::NotBefore() const {
  return m_State->NotBefore;
}

const Timestamp& Certificate::NotAfter() const {
  return m_State->NotAfter;
}

const SHA1& Certificate::Thumbprint() const {
  return m_State->Thumbprint;
}

const SHA1& Certificate::PublicKeyThumbprint() const {
  return m_State->PublicKeyThumbprint;
}

bool Certificate::IsCA() const {
  return m_State->IsCA;
}

bool Certificate::IsSelfIssued() const {
  return m_State->Subject == m_State->Issuer;
}

std::span<const ui8_t> Certificate::DER() const {
  return m_State->DER;
}

std::string Certificate::PEM() const {
  const BIOPointer bio(BIO_new(BIO_s_mem()));
  PEM_write_bio_X509(bio.get(), m_State->X.get());
  return TextOf(bio.get());
}

bool operator==(const Certificate& lhs, const Certificate& rhs) {
  return lhs.m_State->DER == rhs.m_State->DER;
}

Result_t ReadCertificates(std::string_view bytes, CertificateList& out, Ferro::ILogSink& log) {
  // The tag of a sequence, followed by a length in its long form.
  const bool is_der = bytes.size() > 1 && bytes[0] == '\x30' && static_cast<unsigned char>(bytes[1]) >= 0x80;
  if (!is_der) return ReadPEM(bytes, out, log);
  std::optional<Certificate> certificate;
  const std::span<const ui8_t> der(reinterpret_cast<const ui8_t*>(bytes.data()), bytes.size());
  const Result_t result = Certificate::FromDER(der, certificate, log);
  if (result.Success()) out = {*certificate};
  return result;
}

Result_t ReadCertificates(const Cairn::X509CertificateList& list, CertificateList& out, Ferro::ILogSink& log) {
  CertificateList certificates;
  for (const Cairn::X509Certificate& entry : list) {
    std::optional<Certificate> certificate;
    if (const Result_t result = Certificate::FromDER(entry.DER, certificate, log); result.Failure()) return result;
    certificates.push_back(*certificate);
  }
  out = std::move(certificates);
  return Ferro::RESULT_OK;
}

}  // namespace Sigil
