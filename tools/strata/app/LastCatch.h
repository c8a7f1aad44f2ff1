// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "terminal/ExitCode.h"

#include <functional>

namespace Tool {

/// Does the whole program's work. What is thrown out of it is told on standard error, and is NotPlayable.
[[nodiscard]] ExitCode LastCatch(const std::function<ExitCode()>& work) noexcept;

}  // namespace Tool
