// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Sigil/Export.h>
#include <Sigil/Types.h>

#include <string>
#include <vector>

namespace Sigil {

/// What a finding is worth.
enum class Severity : ui8_t {
  Error,    ///< what was looked at is not to be relied on
  Warning,  ///< it departs from the standard, and still holds
  Note      ///< worth knowing
};

/// The rules that certificates, signatures and key messages are held against. FindingName gives their public names.
enum class FindingID : ui8_t {
  // Certificates and chains (ST 430-2:2017). Errors unless said otherwise.
  CertVersion,       ///< X.509 version 3
  CertExtensions,    ///< required extensions: a warning; a note for the Subject Key Identifier; an error for a CA's
                     ///< Basic Constraints
  CertCritical,      ///< no unknown critical extension
  CertKey,           ///< RSA of 2048 bits with exponent 65537
  CertAlgorithm,     ///< sha256WithRSA, in Interop also sha1WithRSA, one along the chain: a warning
  CertThumbprint,    ///< dnQualifier is the public-key thumbprint
  CertNames,         ///< subject and issuer have one each of CN, O, OU, dnQualifier: a warning
  CertOrganization,  ///< O is not empty and the same along the chain: a warning
  CertRole,          ///< roles in CN: a warning
  CertSerial,        ///< the serial number is positive, at most 64 bits: a warning
  CertConstraints,   ///< Basic Constraints: a warning; an error for an issuer that is no CA
  CertKeyUsage,      ///< Key Usage: a warning; an error for a CA that may not sign certificates
  CertAuthority,     ///< Authority Key Identifier: a warning where incomplete, an error where it names another key
  CertDates,         ///< the validity covers the time that counts
  CertDatesNested,   ///< the validity lies within the issuer's: a warning
  CertSignature,     ///< signed with the issuer's key; the issuer's name is its subject, byte for byte
  CertChain,         ///< leaf, at least one CA, self-signed root; path lengths
  CertExpiredToday,  ///< ran out since: a note
  CertLateEnd,       ///< valid beyond 2038-01-19 03:14:07 UTC: a note
  CertSignerCA,      ///< no CA signs documents
  // Signatures of documents (RFC 3275, ST 429-7, ST 429-8, ST 430-3).
  SignInvalid,  ///< digest and signature value are those of the document
  SignForm,     ///< of the one form that is followed
  SignMethod,   ///< allowed algorithms; a warning where they are the other flavour's
  SignKeyInfo,  ///< each certificate once, leaf first, none beside the chain: a warning
  SignSigner,   ///< Signer names the leaf: a warning
  // Key delivery messages (ST 430-1).
  KdmForm,           ///< can be read as a key message
  KdmArchive,        ///< the archive that it came in is within the limits
  KdmSignature,      ///< signed, and the signature is valid
  KdmChain,          ///< its signer's chain holds
  KdmWindowSigner,   ///< the window lies within the signer's validity: a warning
  KdmEarly,          ///< the window has begun
  KdmLate,           ///< the window is not over
  KdmComposition,    ///< for that composition
  KdmAuthenticator,  ///< the composition is signed by whom the message says
  KdmKeyMissing,     ///< has every key that the composition needs
  KdmRecipient,      ///< for that recipient
  KdmRecipientName,  ///< names the recipient as its certificate does: a warning
  KdmDevice,         ///< lists the devices that are to play it: a warning
  KdmKeyType,        ///< key types are known: a note
};

struct Finding {
  FindingID ID;
  Sigil::Severity Severity;
  std::string
      Text;  ///< a sentence for users, without line end; quoted names are cut short and free of control characters

  friend bool operator==(const Finding&, const Finding&) = default;
};

using FindingList = std::vector<Finding>;

/// The public name of a rule: "cert-version". Never null.
[[nodiscard]] SIGIL_API const char* FindingName(FindingID id);
/// True when some finding is an error.
[[nodiscard]] SIGIL_API bool HasErrors(const FindingList& findings);

}  // namespace Sigil
