// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace testsupport {

/// True when the test program runs under a sanitizer, where tests that repeat much repeat less.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool Sanitized = true;
#elif defined(__has_feature)
inline constexpr bool Sanitized = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
inline constexpr bool Sanitized = false;
#endif

}  // namespace testsupport
