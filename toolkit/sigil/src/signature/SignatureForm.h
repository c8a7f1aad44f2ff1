// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "signature/SignedDocument.h"

#include <Sigil/Certificate.h>
#include <Sigil/Finding.h>

#include <Ferro/LogSink.h>

#include <string>

namespace Sigil {

/// A signature's elements, once they were found to be of the one form that is followed.
struct SignatureForm {
  xercesc::DOMElement* Signature = nullptr;  ///< null: not signed
  xercesc::DOMElement* KeyInfo = nullptr;
  CertificateList Certificates;  ///< in the document's order
};

/// Finds the document's signature and looks at all of it before any of it is followed. The first error ends that; warnings
/// and notes do not.
void ReadSignatureForm(const SignedDocument& document, SignatureForm& form, FindingList& findings,
                       Ferro::ILogSink& log);

/// A name of an issuer and a serial number, as documents have them.
struct IssuerSerial {
  std::string IssuerName;
  std::string SerialNumber;

  [[nodiscard]] bool IsEmpty() const { return IssuerName.empty() && SerialNumber.empty(); }
  /// True when they are that certificate's: names are compared as parsed, numbers without leading zeros.
  [[nodiscard]] bool Names(const Certificate& certificate) const;
};
/// Reads the children X509IssuerName and X509SerialNumber.
[[nodiscard]] IssuerSerial ReadIssuerSerial(const xercesc::DOMElement* parent);

}  // namespace Sigil
