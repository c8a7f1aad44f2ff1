// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Types.h>

namespace QUIRE {

using Ferro::fsize_t;
using Ferro::i16_t;
using Ferro::i32_t;
using Ferro::i64_t;
using Ferro::i8_t;
using Ferro::ui16_t;
using Ferro::ui32_t;
using Ferro::ui64_t;
using Ferro::ui8_t;

}  // namespace QUIRE
