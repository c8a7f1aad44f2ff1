// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Sigil/Certificate.h>
#include <Sigil/Finding.h>

#include <Ferro/LogSink.h>

#include <xercesc/dom/DOMElement.hpp>

#include <string>

namespace Sigil {

/// Reads the certificates of a signature. Nothing is followed that points elsewhere; a key that stands beside them is
/// passed over.
/// @return empty, or why it is refused.
[[nodiscard]] std::string ReadKeyInfo(const xercesc::DOMElement* key_info, CertificateList& out, FindingList& findings,
                                      Ferro::ILogSink& log);

}  // namespace Sigil
