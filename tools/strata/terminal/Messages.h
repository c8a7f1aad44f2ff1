// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

// What the program says on standard error, and the colours of words that warn.

namespace Tool {

enum class Tone { Error, Warning };

/// True where `stream` is a terminal that may show colours: neither NO_COLOR (no-color.org) nor TERM=dumb forbids them.
[[nodiscard]] bool ShowsColours(std::FILE* stream);
/// The text in the colour of its tone where `stream` shows colours, else as it is.
[[nodiscard]] std::string InTone(std::string_view text, Tone tone, std::FILE* stream);

/// Prints "strata: MESSAGE" on standard error: what ends the work.
void TellError(std::string_view message);
/// Prints "strata: warning: MESSAGE" on standard error.
void TellWarning(std::string_view message);
/// Prints "strata: MESSAGE" on standard error: what is neither wrong nor unusual.
void TellRemark(std::string_view message);

}  // namespace Tool
