// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Result.h>

#include <string>

namespace Ferro {

/// The result for an errno that open() left behind.
[[nodiscard]] Result_t ResultOfOpenError(int error);
/// RESULT_OK for a text that can be a file's name: not empty (RESULT_NULL_STR), without NUL (RESULT_NOT_FOUND).
[[nodiscard]] Result_t CheckFilename(const std::string& filename);

}  // namespace Ferro
