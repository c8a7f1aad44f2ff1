// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <array>
#include <string_view>

// Namespaces and fixed texts of key delivery messages (ST 430-1, ST 430-3).

namespace Sigil {

inline constexpr char NS_KeyExtensions[] = "http://www.smpte-ra.org/schemas/430-1/2006/KDM";
inline constexpr char NS_Encryption[] = "http://www.w3.org/2001/04/xmlenc#";
inline constexpr char MessageType[] = "http://www.smpte-ra.org/430-1/2006/KDM#kdm-key-type";
inline constexpr char KeyTypeScope[] = "http://www.smpte-ra.org/430-1/2006/KDM#kdm-key-type";
inline constexpr char RSA_OAEP[] = "http://www.w3.org/2001/04/xmlenc#rsa-oaep-mgf1p";
inline constexpr char DigestOfOAEP[] = "http://www.w3.org/2000/09/xmldsig#sha1";
inline constexpr std::array<std::string_view, 6> KeyTypes = {"MDIK", "MDAK", "MDSK", "MDEK", "FMIK", "FMAK"};
inline constexpr size_t EncryptedKeySize = 256;  // bytes: the size of the recipient's RSA key

}  // namespace Sigil
