// SPDX-License-Identifier: BSD-3-Clause
// Signed documents of all kinds.
#include "QuietLog.h"

#include <Sigil/DocumentSignature.h>

#include <Ferro/Assert.h>

#include <string>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size) {
  static QuietLog log;
  Sigil::SignatureReport report;
  if (Sigil::VerifySignature(std::string(data, data + size), {}, report, log).Failure()) return 0;
  const bool is_invalid = report.State == Sigil::SignatureState::Invalid;
  FERRO_ASSERT(is_invalid == !report.Reason().empty());
  FERRO_ASSERT(report.State != Sigil::SignatureState::Valid || report.Chain.Holds());
  return 0;
}
