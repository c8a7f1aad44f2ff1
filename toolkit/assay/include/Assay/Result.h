// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Result.h>

namespace Assay {

using Ferro::Result_t;

// The checking library's own results, -400 to -499. The general ones are Ferro's.
inline constexpr Result_t RESULT_AY_NOTHING{-400, "AY_NOTHING", "There is nothing to check: no folder was named."};
inline constexpr Result_t RESULT_AY_DEPTH{-401, "AY_DEPTH", "There is nothing to look at: no depth was named."};

}  // namespace Assay
