// SPDX-License-Identifier: BSD-3-Clause
#include <Sigil/Finding.h>

#include <Ferro/Assert.h>

#include <algorithm>
#include <iterator>

namespace Sigil {
namespace {

// In the order of FindingID.
constexpr const char* s_Names[] = {
    "cert-version",     "cert-extensions",    "cert-critical",      "cert-key",          "cert-algorithm",
    "cert-thumbprint",  "cert-names",         "cert-organization",  "cert-role",         "cert-serial",
    "cert-constraints", "cert-key-usage",     "cert-authority",     "cert-dates",        "cert-dates-nested",
    "cert-signature",   "cert-chain",         "cert-expired-today", "cert-late-end",     "cert-signer-ca",
    "sign-invalid",     "sign-form",          "sign-method",        "sign-keyinfo",      "sign-signer",
    "kdm-form",         "kdm-archive",        "kdm-signature",      "kdm-chain",         "kdm-window-signer",
    "kdm-early",        "kdm-late",           "kdm-composition",    "kdm-authenticator", "kdm-key-missing",
    "kdm-recipient",    "kdm-recipient-name", "kdm-device",         "kdm-key-type",
};
static_assert(std::size(s_Names) == static_cast<size_t>(FindingID::KdmKeyType) + 1);

}  // namespace

const char* FindingName(FindingID id) {
  const auto index = static_cast<size_t>(id);
  FERRO_ASSERT(index < std::size(s_Names));
  return s_Names[index];
}

bool HasErrors(const FindingList& findings) {
  return std::ranges::any_of(findings, [](const Finding& finding) { return finding.Severity == Severity::Error; });
}

}  // namespace Sigil
