// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Sigil/Certificate.h>

#include <string>
#include <vector>

namespace Tool {

/// Reads the certificates of a file, PEM or DER; at least one. Throws CommandError. `option` is what the user gave it with.
[[nodiscard]] Sigil::CertificateList ReadCertificateFile(const char* option, const std::string& filename);
/// All certificates of several files.
[[nodiscard]] Sigil::CertificateList ReadCertificateFiles(const char* option,
                                                          const std::vector<std::string>& filenames);
/// Of several certificates the leaf: the one that issued none of the others. Throws CommandError where there is not just one.
[[nodiscard]] Sigil::Certificate ReadLeaf(const char* option, const std::string& filename);

/// The common name, or all of the name where it has none.
[[nodiscard]] std::string NameOf(const Sigil::DistinguishedName& name);

}  // namespace Tool
