// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/AssetInfo.h>

namespace Strata {

/// What the asset store knows of one asset: the same record under the protocol's name.
using AssetInfo = Cairn::AssetInfo;

}  // namespace Strata
