// SPDX-License-Identifier: BSD-3-Clause
// Certificate files: reading, names as texts, and chains of whatever was read.
#include "QuietLog.h"

#include <Sigil/CertificateChain.h>

#include <Ferro/Assert.h>

#include <algorithm>
#include <string_view>

namespace {

void CheckName(const Sigil::DistinguishedName& name) {
  const auto can_be_read = [](const auto& attribute) {
    return !attribute.Type.empty() && attribute.Type.size() <= 1000;
  };
  const auto again = Sigil::DistinguishedName::FromText(name.Text());
  if (name.Attributes.size() <= 100 && std::ranges::all_of(name.Attributes, can_be_read)) FERRO_ASSERT(again == name);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size) {
  static QuietLog log;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  if (const auto name = Sigil::DistinguishedName::FromText(bytes)) CheckName(*name);
  Sigil::CertificateList list;
  if (Sigil::ReadCertificates(bytes, list, log).Failure()) return 0;
  for (const Sigil::Certificate& certificate : list) {
    CheckName(certificate.Subject());
    CheckName(certificate.Issuer());
    Sigil::CertificateList again;
    FERRO_ASSERT(Sigil::ReadCertificates(certificate.PEM(), again, log).Success());
    FERRO_ASSERT(again.size() == 1 && again.front() == certificate);
  }
  Sigil::ChainContext context;
  context.At = Sigil::Timestamp(1'772'366'400'000);
  context.Today = context.At;
  const Sigil::ChainReport report = Sigil::CheckChain(list, context);
  FERRO_ASSERT(report.Chain.size() + report.Strays.size() <= list.size());
  FERRO_ASSERT(!report.Holds() || report.Chain.size() >= 3);
  return 0;
}
