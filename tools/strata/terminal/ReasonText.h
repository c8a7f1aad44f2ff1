// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Result.h>

#include <string>

namespace Tool {

/// Why something failed, as it stands behind "FILE: ", without a full stop: "this user may not open it".
[[nodiscard]] std::string ReasonText(const Ferro::Result_t& result);

}  // namespace Tool
