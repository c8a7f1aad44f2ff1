// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string_view>

namespace Tool {

// Certificates and private keys of sample shows, as PEM texts. They are the same in all sample shows and public: nothing
// that is signed by the one or encrypted for the other means anything.

/// Of who signs, leaf first, with its root.
extern const std::string_view SampleSignerChain;
extern const std::string_view SampleSignerKey;
/// Of the server that key messages are for, made by the same authority.
extern const std::string_view SampleRecipientCertificate;
extern const std::string_view SampleRecipientKey;

}  // namespace Tool
