// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "SignedSamples.h"

#include <Sigil/ContentKeys.h>

#include <string>
#include <vector>

namespace SigilTest {

inline constexpr char Begin[] = "2026-03-02T09:00:00+01:00";
inline constexpr char End[] = "2026-03-09T23:59:59+01:00";

/// 00000000-0000-4000-8000-0000000000xx
Sigil::UUID ID(unsigned char last);
/// The certificate of the device that messages are for, and its chain.
Sigil::CertificateList Device();
/// A key of 16 times that byte.
Sigil::ContentKey ContentKeyOf(unsigned char id, const std::string& type, unsigned char byte);
/// For the device: picture and sound of the composition ID(1), issued at Noon, any device, authenticated.
Sigil::MessageRequest SoundRequest();
/// The message of a request.
std::string Made(const Sigil::MessageRequest& request);
const std::string& SoundMessage();

/// Reads and expects success.
Sigil::KeyMessage ReadMessage(const std::string& xml);
/// What opening gives: "OK", or the result's symbol; nothing may be told but the label.
std::string Opened(const Sigil::KeyMessage& message, const std::string& key = "device");

/// A message signed anew by xmlsec1 after it was changed.
std::string Resigned(const std::string& xml, const std::string& key = "leaf");
/// The message's n-th encrypted key exchanged for another plaintext, encrypted for the device by the openssl program, and
/// signed anew.
std::string WithPlain(const std::string& xml, size_t index, const std::string& plain);
/// The n-th plaintext, as the openssl program decrypts it.
std::string PlainByOpenSSL(const std::string& xml, size_t index);

}  // namespace SigilTest
