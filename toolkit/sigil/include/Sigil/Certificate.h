// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Sigil/DistinguishedName.h>
#include <Sigil/Export.h>
#include <Sigil/Result.h>
#include <Sigil/Types.h>

#include <Cairn/X509CertificateList.h>
#include <Ferro/LogSink.h>

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Sigil {

/// An X.509 certificate. Cheap to copy; copies share what was read, which never changes, so any thread may use them.
class SIGIL_API Certificate {
 public:
  static constexpr size_t MaxSize = 65'536;       // bytes of its DER form
  static constexpr size_t MaxSerialLength = 128;  // bytes; names in documents have it in decimal

  /// Reads one certificate in DER form; `der` holds nothing else.
  /// @return RESULT_OK; RESULT_SG_CERTIFICATE, logged, for anything else; `out` is then unchanged.
  [[nodiscard]] static Result_t FromDER(std::span<const ui8_t> der, std::optional<Certificate>& out,
                                        Ferro::ILogSink& log);

  [[nodiscard]] const DistinguishedName& Subject() const;
  [[nodiscard]] const DistinguishedName& Issuer() const;
  /// Decimal text, with a minus sign where it is negative.
  [[nodiscard]] const std::string& SerialNumber() const;
  /// The first second of the validity, and the last.
  [[nodiscard]] const Timestamp& NotBefore() const;
  [[nodiscard]] const Timestamp& NotAfter() const;
  /// SHA-1 of the signed part (ST 430-2:2017, 5.4): in device lists and key messages.
  [[nodiscard]] const SHA1& Thumbprint() const;
  /// SHA-1 of the RSA public key (ST 430-2:2017, 5.4): the dnQualifier of the subject.
  [[nodiscard]] const SHA1& PublicKeyThumbprint() const;
  /// True when Basic Constraints say so.
  [[nodiscard]] bool IsCA() const;
  /// Subject and issuer are one name; the signature is not looked at.
  [[nodiscard]] bool IsSelfIssued() const;
  [[nodiscard]] std::span<const ui8_t> DER() const;
  /// Ends in a line end.
  [[nodiscard]] std::string PEM() const;

  /// By their bytes.
  friend SIGIL_API bool operator==(const Certificate& lhs, const Certificate& rhs);

 private:
  friend struct CertificateState;
  explicit Certificate(std::shared_ptr<const struct CertificateState> state) : m_State(std::move(state)) {}

  std::shared_ptr<const CertificateState> m_State;  // never null
};

using CertificateList = std::vector<Certificate>;

/// Reads the bytes of a certificate file: one certificate in DER form, or the CERTIFICATE blocks of a PEM text, at most 100,
/// in their order. Other text and blocks are passed over.
/// @return RESULT_OK with at least one certificate; RESULT_SG_CERTIFICATE, logged; `out` is then unchanged.
[[nodiscard]] SIGIL_API Result_t ReadCertificates(std::string_view bytes, CertificateList& out, Ferro::ILogSink& log);
/// The certificates that a document's signature carries, in its order.
/// @return RESULT_OK, also for an empty list; RESULT_SG_CERTIFICATE, logged, when one cannot be read; `out` is then unchanged.
[[nodiscard]] SIGIL_API Result_t ReadCertificates(const Cairn::X509CertificateList& list, CertificateList& out,
                                                  Ferro::ILogSink& log);

}  // namespace Sigil
