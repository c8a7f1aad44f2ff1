// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Types.h>
#include <Ferro/UUID.h>

namespace Assay {

using Ferro::i64_t;
using Ferro::SHA1;
using Ferro::ui32_t;
using Ferro::ui64_t;
using Ferro::ui8_t;
using Ferro::UUID;

}  // namespace Assay
