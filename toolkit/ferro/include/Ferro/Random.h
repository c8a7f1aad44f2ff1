// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Export.h>
#include <Ferro/Types.h>

#include <span>

namespace Ferro {

/// Fills `out` with random bytes from the operating system's generator. Any thread may call it; a generator that fails
/// ends the process, since no caller can go on without identifiers.
FERRO_API void FillRandom(std::span<ui8_t> out);

}  // namespace Ferro
