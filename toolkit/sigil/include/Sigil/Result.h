// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Result.h>

namespace Sigil {

using Ferro::Result_t;

// The security library's own results, -300 to -399. The general ones are Ferro's.
inline constexpr Result_t RESULT_SG_CERTIFICATE{-300, "SG_CERTIFICATE", "The certificate could not be read."};
inline constexpr Result_t RESULT_SG_PRIVATE_KEY{-301, "SG_PRIVATE_KEY", "The private key could not be read."};
inline constexpr Result_t RESULT_SG_SIGNER{-302, "SG_SIGNER", "The private key and the certificates make no signer."};
inline constexpr Result_t RESULT_SG_SIGN{-303, "SG_SIGN", "The document could not be signed."};
inline constexpr Result_t RESULT_SG_PASSPHRASE{-304, "SG_PASSPHRASE",
                                               "The private key's passphrase is missing or wrong."};
inline constexpr Result_t RESULT_SG_DOCUMENT{-305, "SG_DOCUMENT", "The document is not of a kind that is signed."};
inline constexpr Result_t RESULT_SG_MESSAGE{-306, "SG_MESSAGE", "The document is not a well-formed key message."};
inline constexpr Result_t RESULT_SG_UNVERIFIED{-307, "SG_UNVERIFIED", "The key message's signature is not valid."};
inline constexpr Result_t RESULT_SG_CONTENT{
    -308, "SG_CONTENT", "The key message is not for this private key, or its content is not sound."};
inline constexpr Result_t RESULT_SG_ARCHIVE{-309, "SG_ARCHIVE", "The archive of key messages is refused."};
inline constexpr Result_t RESULT_SG_NO_MESSAGE{-310, "SG_NO_MESSAGE", "No key message is for the composition."};
inline constexpr Result_t RESULT_SG_NO_VALID_MESSAGE{-311, "SG_NO_VALID_MESSAGE",
                                                     "No key message for the composition serves now."};
inline constexpr Result_t RESULT_SG_NO_KEY{-312, "SG_NO_KEY", "The composition's key message lacks a key."};
inline constexpr Result_t RESULT_SG_DUPLICATE{-313, "SG_DUPLICATE", "The key message is there already."};
inline constexpr Result_t RESULT_SG_KEY_FILE{-314, "SG_KEY_FILE", "The file is no list of keys."};
inline constexpr Result_t RESULT_SG_KEY_CONFLICT{-315, "SG_KEY_CONFLICT",
                                                 "Two different keys have the same identifier."};

}  // namespace Sigil
