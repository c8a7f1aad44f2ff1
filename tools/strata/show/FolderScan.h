// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/AssetStore.h>

#include <string>

namespace Tool {

/// Has a store look through a folder, while a progress bar tells how far it is; an interrupt ends it.
/// @return as Cairn::AssetStore::AddFolder.
[[nodiscard]] Cairn::Result_t LookThroughFolder(Cairn::AssetStore& store, const std::string& folder);

}  // namespace Tool
