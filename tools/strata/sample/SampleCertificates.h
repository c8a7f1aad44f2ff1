// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string_view>

namespace Tool {

// Certificates and private keys of sample shows, as PEM texts. They are public and the same in all sample shows: what is
// signed by the one or encrypted for the other means nothing.

/// The signer's chain, leaf first, root last.
extern const std::string_view SampleSignerChain;
extern const std::string_view SampleSignerKey;
/// The server that key messages are made for; issued by the same authority.
extern const std::string_view SampleRecipientCertificate;
extern const std::string_view SampleRecipientKey;

}  // namespace Tool
