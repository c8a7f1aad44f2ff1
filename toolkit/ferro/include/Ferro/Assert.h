// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Export.h>

namespace Ferro {

/// Prints `file:line: function: Assertion 'expression' failed.` to standard error and aborts the process.
[[noreturn]] FERRO_API void AssertFailed(const char* file, unsigned line, const char* function,
                                         const char* expression) noexcept;

}  // namespace Ferro

// Assertions guard against programming errors and are compiled into every build.

/// Asserts `expression`; the message shows the expression as written and the enclosing function.
#define FERRO_ASSERT(expression) FERRO_ASSERT_TEXT(expression, #expression)

/// Asserts `condition`; the message shows the given text in place of the expression.
#define FERRO_ASSERT_TEXT(condition, text) FERRO_ASSERT_IN(condition, text, __PRETTY_FUNCTION__)

/// Asserts `condition`; both the expression's text and the function's are given, so every compiler prints the same.
#define FERRO_ASSERT_IN(condition, text, function) \
  ((condition) ? static_cast<void>(0) : ::Ferro::AssertFailed(__FILE__, __LINE__, function, text))
