// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/Types.h>
#include <Strata/Version.h>

#include <array>
#include <cstdio>

namespace Strata {

const char* Version() {
  return "2.0.3";
}

const char* ProtocolVersion() {
  constexpr ui32_t major = 0;
  constexpr ui32_t minor = 2;
  // Formatted once, so that callers on several threads never see the buffer change.
  static const auto text = [] {
    std::array<char, 16> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%u.%u", major, minor);
    return buffer;
  }();
  return text.data();
}

}  // namespace Strata
