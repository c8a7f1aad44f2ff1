// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/Types.h>

#include <list>
#include <string>
#include <vector>

namespace Cairn {

/// One certificate of a signer chain, as a document's signature carries it (XML Signature, 4.4.4). Nothing is verified.
struct X509Certificate {
  std::string IssuerName;    ///< RFC 4514 form, as written
  std::string SerialNumber;  ///< decimal text; may exceed 64 bits
  std::vector<ui8_t> DER;    ///< the certificate's bytes; empty when absent or not Base64

  friend bool operator==(const X509Certificate&, const X509Certificate&) = default;
};

/// Leaf first, root last, in the order of the document.
using X509CertificateList = std::list<X509Certificate>;

}  // namespace Cairn
