// SPDX-License-Identifier: BSD-3-Clause
#include <Sigil/CertificateChain.h>

#include "certificate/CertificateRules.h"
#include "certificate/CertificateState.h"

#include <algorithm>
#include <functional>

namespace Sigil {
namespace {

using enum Severity;
using enum FindingID;

constexpr size_t MaxCertificates = 100;

/// True when `issuer` is named as the issuer of `certificate`, in whatever case.
bool IsNamedAsIssuer(const Certificate& certificate, const Certificate& issuer) {
  return X509_NAME_cmp(X509_get_issuer_name(CertificateState::X509Of(certificate)),
                       X509_get_subject_name(CertificateState::X509Of(issuer))) == 0;
}

bool IsSignedBy(const Certificate& certificate, const Certificate& issuer) {
  EVP_PKEY* key = X509_get0_pubkey(CertificateState::X509Of(issuer));
  const bool is_signed = key != nullptr && X509_verify(CertificateState::X509Of(certificate), key) == 1;
  ERR_clear_error();
  return is_signed;
}

bool IssuesNone(const Certificate& certificate, const CertificateList& all) {
  return std::ranges::none_of(
      all, [&](const Certificate& other) { return !(other == certificate) && IsNamedAsIssuer(other, certificate); });
}

/// Takes certificates out of a heap one after another and puts them into a chain.
class ChainBuilder {
 public:
  ChainBuilder(std::span<const Certificate> certificates, ChainReport& report) : m_Report(report) {
    for (const Certificate& certificate : certificates) {
      if (std::ranges::find(m_Heap, certificate) == m_Heap.end())
        m_Heap.push_back(certificate);
      else
        m_Report.HasRepeats = true;
    }
  }

  void Build() {
    size_t leaf = 0;
    if (!FindLeaf(leaf)) return;
    for (size_t next = leaf; next < m_Heap.size(); next = FindIssuer(m_Report.Chain.back())) {
      m_Report.Chain.push_back(m_Heap[next]);
      m_Heap.erase(m_Heap.begin() + static_cast<ptrdiff_t>(next));
      if (m_Report.Chain.back().IsSelfIssued()) break;
    }
    m_Report.Strays = std::move(m_Heap);
  }

 private:
  /// The one that issued none of the others; a CA only where there is no other.
  bool FindLeaf(size_t& found) {
    std::vector<size_t> leaves;
    std::vector<size_t> authorities;
    for (size_t i = 0; i < m_Heap.size(); ++i)
      if (IssuesNone(m_Heap[i], m_Heap)) (m_Heap[i].IsCA() ? authorities : leaves).push_back(i);
    const std::vector<size_t>& candidates = leaves.empty() ? authorities : leaves;
    if (candidates.size() == 1) {
      found = candidates.front();
      return true;
    }
    Say(candidates.empty() ? "No certificate of the chain is its leaf." : "The chain has more than one leaf.");
    return false;
  }

  /// Of several with the issuer's name, the one whose key signed; m_Heap.size() when there is none.
  [[nodiscard]] size_t FindIssuer(const Certificate& certificate) const {
    size_t named = m_Heap.size();
    for (size_t i = 0; i < m_Heap.size(); ++i) {
      if (!IsNamedAsIssuer(certificate, m_Heap[i])) continue;
      if (IsSignedBy(certificate, m_Heap[i])) return i;
      named = std::min(named, i);
    }
    return named;
  }

  void Say(const char* text) { m_Report.Findings.push_back({CertChain, Error, text}); }

  ChainReport& m_Report;
  CertificateList m_Heap;  // not yet in the chain
};

void CheckEnd(const ChainReport& report, const ChainContext& context, FindingList& findings) {
  const Certificate& last = report.Chain.back();
  const bool has_root = last.IsSelfIssued();
  if (!has_root) findings.push_back({CertChain, Error, "The chain does not end in a self-signed root."});
  if (report.Chain.size() < 3)
    findings.push_back({CertChain, Error, "The chain has fewer certificates than a leaf, a CA and a root."});
  if (has_root && !context.TrustedRoots.empty() &&
      std::ranges::find(context.TrustedRoots, last) == context.TrustedRoots.end())
    findings.push_back({CertChain, Error, "The chain ends in a root that is not one of the trusted roots."});
}

FindingID RuleOf(int error) {
  switch (error) {
    case X509_V_ERR_CERT_SIGNATURE_FAILURE:
      return CertSignature;
    case X509_V_ERR_INVALID_CA:
    case X509_V_ERR_INVALID_NON_CA:
      return CertConstraints;
    case X509_V_ERR_KEYUSAGE_NO_CERTSIGN:
      return CertKeyUsage;
    case X509_V_ERR_AKID_SKID_MISMATCH:
    case X509_V_ERR_AKID_ISSUER_SERIAL_MISMATCH:
      return CertAuthority;
    case X509_V_ERR_UNHANDLED_CRITICAL_EXTENSION:
      return CertCritical;
    case X509_V_ERR_INVALID_EXTENSION:
      return CertExtensions;
    default:
      return CertChain;
  }
}

/// What OpenSSL refuses is refused, whatever the rules above found. Dates are left to them: it takes the last second of a
/// validity for its end.
void AskOpenSSL(const ChainReport& report, FindingList& findings) {
  const StorePointer store(X509_STORE_new());
  X509_STORE_add_cert(store.get(), CertificateState::X509Of(report.Chain.back()));
  const std::unique_ptr<STACK_OF(X509), void (*)(STACK_OF(X509)*)> others(sk_X509_new_null(),
                                                                          [](STACK_OF(X509) * s) { sk_X509_free(s); });
  for (const Certificate& certificate : report.Chain) sk_X509_push(others.get(), CertificateState::X509Of(certificate));
  const StoreContextPointer context(X509_STORE_CTX_new());
  X509_STORE_CTX_init(context.get(), store.get(), CertificateState::X509Of(report.Chain.front()), others.get());
  X509_STORE_CTX_set_flags(context.get(), X509_V_FLAG_NO_CHECK_TIME);
  if (X509_verify_cert(context.get()) != 1) {
    const int error = X509_STORE_CTX_get_error(context.get());
    findings.push_back({RuleOf(error), Error,
                        std::string("OpenSSL refuses the chain: ") + X509_verify_cert_error_string(error) + '.'});
  }
  ERR_clear_error();
}

}  // namespace

ChainReport CheckChain(std::span<const Certificate> certificates, const ChainContext& context) {
  ChainReport report;
  if (certificates.empty() || certificates.size() > MaxCertificates) {
    report.Findings.push_back(
        {CertChain, Error,
         certificates.empty() ? "There is no certificate." : "There are more than 100 certificates."});
    return report;
  }
  ChainBuilder(certificates, report).Build();
  if (report.Chain.empty()) return report;

  ChainPlace place;
  for (size_t i = 0; i < report.Chain.size(); ++i) {
    const Certificate& certificate = report.Chain[i];
    const bool is_last = i + 1 == report.Chain.size();
    place.IsLeaf = i == 0;
    place.Issuer = !is_last ? &report.Chain[i + 1] : (certificate.IsSelfIssued() ? &certificate : nullptr);
    CheckAlone(certificate, place, context, report.Findings);
    CheckAgainstIssuer(certificate, place, report.Findings);
    if (i > 0 && !certificate.IsSelfIssued()) ++place.CAsBelow;
  }
  CheckEnd(report, context, report.Findings);
  if (!HasErrors(report.Findings)) AskOpenSSL(report, report.Findings);
  return report;
}

}  // namespace Sigil
