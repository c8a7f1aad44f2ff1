// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/AssetRecord.h>

#include <string>

namespace Tool {

/// Where the asset map says that an asset's file lies; the package's folder where it does not say.
[[nodiscard]] std::string MappedPath(const Cairn::AssetRecord& record);

}  // namespace Tool
