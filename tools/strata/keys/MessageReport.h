// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "terminal/JsonReport.h"

#include <Sigil/KeyMessage.h>

#include <string>

namespace Tool {

/// "valid", "invalid", "not signed".
[[nodiscard]] const char* SignatureStateName(Sigil::SignatureState state);
/// "valid, by CS.name", "invalid: the first reason", "not signed".
[[nodiscard]] std::string SignatureText(const Sigil::SignatureReport& report);
/// "MDIK 0123..., MDAK 4567...": without the keys.
[[nodiscard]] std::string KeyListText(const Sigil::KeyMessage& message);

/// A message as some lines of text, each indented by two blanks.
[[nodiscard]] std::string MessageText(const Sigil::KeyMessage& message);
[[nodiscard]] Json MessageJson(const Sigil::KeyMessage& message);

}  // namespace Tool
