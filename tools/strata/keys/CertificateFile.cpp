// SPDX-License-Identifier: BSD-3-Clause
#include "CertificateFile.h"

#include "terminal/CommandError.h"
#include "terminal/LogView.h"

#include <Ferro/FileText.h>

#include <algorithm>

namespace Tool {

Sigil::CertificateList ReadCertificateFile(const char* option, const std::string& filename) {
  constexpr Ferro::fsize_t Largest = 1024 * 1024;  // bytes
  const QuietLog log;                              // the result says it all
  std::string bytes;
  Sigil::CertificateList certificates;
  if (const auto result = Ferro::ReadFileIntoString(filename, bytes, Largest); result.Failure())
    throw CommandError(ExitCode::Usage,
                       std::string(option) + ' ' + filename + ": it cannot be read: " + result.Label());
  if (Sigil::ReadCertificates(bytes, certificates, Ferro::DefaultLogSink()).Failure())
    throw CommandError(ExitCode::NotPlayable,
                       std::string(option) + ' ' + filename + ": this is no certificate, or one that is damaged");
  return certificates;
}

Sigil::CertificateList ReadCertificateFiles(const char* option, const std::vector<std::string>& filenames) {
  Sigil::CertificateList all;
  for (const std::string& filename : filenames) {
    const Sigil::CertificateList some = ReadCertificateFile(option, filename);
    all.insert(all.end(), some.begin(), some.end());
  }
  return all;
}

Sigil::Certificate ReadLeaf(const char* option, const std::string& filename) {
  Sigil::CertificateList list = ReadCertificateFile(option, filename);
  const Sigil::CertificateList all = list;
  std::erase_if(list, [&](const Sigil::Certificate& certificate) {
    return std::ranges::any_of(all, [&](const Sigil::Certificate& other) {
      return !(other == certificate) && other.Issuer() == certificate.Subject();
    });
  });
  if (list.size() != 1)
    throw CommandError(ExitCode::Usage, std::string(option) + ' ' + filename +
                                            ": the certificates in this file are not one and its issuers");
  return list.front();
}

std::string NameOf(const Sigil::DistinguishedName& name) {
  const std::string common = name.Value(Sigil::OID_CommonName);
  return common.empty() ? name.Text() : common;
}

}  // namespace Tool
