// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/IAssetLookup.h>

namespace Cairn {

IAssetLookup::~IAssetLookup() = default;

}  // namespace Cairn
