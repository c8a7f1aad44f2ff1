// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Types.h>

/// What a player of shows needs above the engine.
namespace Lantern {

using Ferro::i32_t;
using Ferro::ui32_t;
using Ferro::ui64_t;
using Ferro::ui8_t;

}  // namespace Lantern
