// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/AssetStore.h>

#include <string>

namespace Tool {

/// Where the asset index of this user lies when no other one is named: $XDG_DATA_HOME/strata/store.sqlite, else
/// ~/.local/share/strata/store.sqlite (XDG Base Directory Specification). Empty where there is no home.
[[nodiscard]] std::string DefaultIndexFile();

/// Opens a store over an index; without a name it lies in memory.
/// @param busy_timeout_ms  how long to wait for another program that works with it.
/// @return false, with a text for the user in `problem`, when it cannot be used.
[[nodiscard]] bool OpenIndexFile(const std::string& index, Cairn::AssetStore& store, std::string& problem,
                                 Ferro::ui32_t busy_timeout_ms = 30'000);

/// The failure of a store's index, in words for the user; empty where there is none.
[[nodiscard]] std::string IndexFailure(const Cairn::AssetStore& store, const std::string& index);

}  // namespace Tool
