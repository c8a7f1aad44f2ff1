// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Export.h>
#include <Ferro/Result.h>
#include <Ferro/Types.h>

#include <span>

namespace Ferro {

/// Fills `out` with random bytes from the operating system's generator. Any thread may call it.
/// @return RESULT_OK; RESULT_FAIL where the system has no generator, `out` then holding nothing of use.
[[nodiscard]] FERRO_API Result_t FillRandom(std::span<ui8_t> out);

}  // namespace Ferro
