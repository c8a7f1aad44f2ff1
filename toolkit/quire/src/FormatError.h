// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Result.h>
#include <QUIRE/Types.h>

namespace QUIRE {

/// Logs one line at error level: the message, then the offset in the file where the fault lies. Returns RESULT_FORMAT.
[[nodiscard]] Result_t FormatError(ui64_t offset, const char* format, ...) __attribute__((format(printf, 2, 3)));

}  // namespace QUIRE
