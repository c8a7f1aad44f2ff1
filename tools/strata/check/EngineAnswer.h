// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "findings/Finding.h"
#include "show/Inputs.h"

namespace Tool {

/// What the engine says of the show when it loads it.
struct EngineAnswer {
  bool Loads = false;
  FindingList Findings;  ///< what it logs, and why it refuses the show
  Ferro::ui32_t DurationSeconds = 0;
};

[[nodiscard]] EngineAnswer LoadShow(const Inputs& inputs);

}  // namespace Tool
