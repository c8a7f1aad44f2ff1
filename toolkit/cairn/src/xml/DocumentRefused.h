// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>
#include <utility>

namespace Cairn {

/// Thrown by the parser's events to end a parse: the document is outside the limits set for it.
struct DocumentRefused {
  explicit DocumentRefused(std::string reason) : Reason(std::move(reason)) {}
  std::string Reason;
};

/// Thrown by the error reporter to end a parse: the document has had its share of diagnostics.
struct TooManyErrors {};

}  // namespace Cairn
