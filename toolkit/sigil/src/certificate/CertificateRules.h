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

/// Checks the rules about a certificate by itself.
void CheckAlone(const Certificate& certificate, const ChainPlace& place, const ChainContext& context,
                FindingList& findings);
/// Checks the rules that involve its issuer.
void CheckAgainstIssuer(const Certificate& certificate, const ChainPlace& place, FindingList& findings);

}  // namespace Sigil
