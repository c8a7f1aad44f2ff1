// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/AssetStore.h>

#include <string>

// What takes long of an asset store, while a progress bar tells how far it is. An interrupt ends it: RESULT_CANCELLED.

namespace Tool {

/// As Cairn::AssetStore::AddFolder.
[[nodiscard]] Cairn::Result_t ScanFolder(Cairn::AssetStore& store, const std::string& folder);
/// As Cairn::AssetStore::Refresh.
[[nodiscard]] Cairn::Result_t RescanFolders(Cairn::AssetStore& store);
/// As Cairn::AssetStore::VerifyDigests; no identifiers are none, not all.
[[nodiscard]] Cairn::Result_t VerifyDigests(Cairn::AssetStore& store, const Cairn::UUIDList& ids,
                                            Ferro::ui32_t threads = 0);

}  // namespace Tool
