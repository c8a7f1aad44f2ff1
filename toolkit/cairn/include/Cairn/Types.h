// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Types.h>
#include <Ferro/UUID.h>

namespace Cairn {

using Ferro::fsize_t;
using Ferro::i32_t;
using Ferro::i64_t;
using Ferro::SHA1;
using Ferro::ui16_t;
using Ferro::ui32_t;
using Ferro::ui64_t;
using Ferro::ui8_t;
using Ferro::UUID;
using Ferro::UUIDList;

}  // namespace Cairn
