// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/Types.h>

namespace Cairn {

/// The state of a task of the asset store.
enum TaskState_t : ui32_t { TS_NEW = 0, TS_READY = 1, TS_RUNNING = 2, TS_HALTED = 3, TS_FAILURE = 4, TS_SUCCESS = 5 };

}  // namespace Cairn
