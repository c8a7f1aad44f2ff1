// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/Export.h>
#include <Strata/Types.h>

#include <Cairn/TaskState.h>

namespace Strata {

/// What a task of the asset store does. The values travel in protocol records and never change.
enum TaskType_t : ui32_t { TT_INIT = 0, TT_INGEST = 1, TT_TEST = 2, TT_REGISTER = 3, TT_DELETE = 4 };

/// The task type's name for display, "*UNKNOWN*" for a value that is none. The text is constant and never freed.
[[nodiscard]] STRATA_API const char* StringTaskType(TaskType_t type);

}  // namespace Strata

namespace Cairn {

/// The task state's name for display, "*UNKNOWN*" for a value that is none. The text is constant and never freed.
[[nodiscard]] STRATA_API const char* StringTaskState(TaskState_t state);

}  // namespace Cairn
