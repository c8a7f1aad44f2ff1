// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/Types.h>

namespace Cairn {

/// The family of formats a document or track file belongs to.
enum DCPFormat_t : ui32_t { DFT_NONE = 0, DFT_Interop = 1, DFT_DCI_SMPTE = 2, DFT_IMF = 3, DFT_MAX = 4 };

}  // namespace Cairn
