// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Result.h>

#include <stdexcept>
#include <string>

namespace Tool {

/// Throws std::runtime_error with `what` and the result's text unless it is a success.
inline void SampleRequire(const Ferro::Result_t& result, const std::string& what) {
  if (result.Failure()) throw std::runtime_error(what + ": " + result.Label());
}

}  // namespace Tool
