// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "h__Reader.h"

#include <QUIRE/DCDataDescriptor.h>

namespace QUIRE {

/// What the descriptors of auxiliary data and of immersive audio have in common.
[[nodiscard]] Result_t FillDCData(h__Reader& reader, DCData::DCDataDescriptor& descriptor);

}  // namespace QUIRE
