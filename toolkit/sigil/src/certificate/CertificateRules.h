// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Sigil/CertificateChain.h>

#include <string>

namespace Sigil {

/// Where a certificate stands in its chain.
struct ChainPlace {
  bool IsLeaf = false;
  int CAsBelow = 0;                     ///< issuers between it and the leaf that were issued by another
  const Certificate* Issuer = nullptr;  ///< itself for a root; null where the issuer is not there
};

/// Writes down findings about one certificate.
class CertificateJudge {
 public:
  CertificateJudge(const Certificate& certificate, FindingList& findings);

  /// `what` goes on behind the certificate's name: "has no serial number".
  void Say(FindingID id, Severity severity, const std::string& what);
  void SayIf(bool is_so, FindingID id, Severity severity, const std::string& what);

 private:
  std::string m_Name;
  FindingList& m_Findings;
};

/// Holds a certificate against the rules that it follows or breaks alone.
void CheckAlone(const Certificate& certificate, const ChainPlace& place, const ChainContext& context,
                FindingList& findings);
/// Holds it against those that speak of its issuer.
void CheckAgainstIssuer(const Certificate& certificate, const ChainPlace& place, FindingList& findings);

}  // namespace Sigil
