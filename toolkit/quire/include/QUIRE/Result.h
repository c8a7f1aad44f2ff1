// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Result.h>

namespace QUIRE {

using Ferro::Result_t;

// The track-file library's own results, -100 to -199. The general ones are Ferro's.
inline constexpr Result_t RESULT_FORMAT{-101, "FORMAT", "The file is not a proper D-Cinema track file."};
inline constexpr Result_t RESULT_RANGE{-102, "RANGE", "Requested edit unit is out of range."};
inline constexpr Result_t RESULT_CRYPT_CTX{-103, "CRYPT_CTX", "AESEncContext required when writing to encrypted file."};
inline constexpr Result_t RESULT_CRYPT_INIT{-104, "CRYPT_INIT", "Error initializing block cipher context."};
inline constexpr Result_t RESULT_CHECKFAIL{-105, "CHECKFAIL", "The check value did not decrypt correctly: wrong key."};
inline constexpr Result_t RESULT_HMACFAIL{-106, "HMACFAIL", "HMAC authentication failure: the frame was altered."};
inline constexpr Result_t RESULT_HMAC_CTX{-107, "HMAC_CTX", "HMAC context not present."};
inline constexpr Result_t RESULT_RAW_ESS{-108, "RAW_ESS", "Unknown raw essence type."};
inline constexpr Result_t RESULT_RAW_FORMAT{-109, "RAW_FORMAT", "Raw essence format invalid."};
inline constexpr Result_t RESULT_SPHASE{-110, "SPHASE", "Stereoscopic phase mismatch."};
inline constexpr Result_t RESULT_LARGE_PTO{-111, "LARGE_PTO", "Plaintext offset exceeds frame buffer size."};
inline constexpr Result_t RESULT_DECRYPT_CTX{-112, "DECRYPT_CTX",
                                             "The essence is encrypted: reading it takes its key."};
inline constexpr Result_t RESULT_ALGORITHM{-113, "ALGORITHM",
                                           "Encrypted or authenticated by an algorithm that is not known."};
inline constexpr Result_t RESULT_CUT{-114, "CUT",
                                     "The file does not hold this edit unit: it is cut off or incomplete."};
inline constexpr Result_t RESULT_NOT_ENCRYPTED{-115, "NOT_ENCRYPTED", "The frame is not encrypted."};
inline constexpr Result_t RESULT_SEQUENCE{-116, "SEQUENCE", "The frame belongs to another place in the track file."};

}  // namespace QUIRE
