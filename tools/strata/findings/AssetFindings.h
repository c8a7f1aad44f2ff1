// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Finding.h"
#include "show/MappedPath.h"

#include <Cairn/AssetRecord.h>

#include <string>

namespace Tool {

/// What a store sees wrong with an asset, a finding for each problem, with its file and sizes. Those that keep the asset
/// from being used come first.
[[nodiscard]] FindingList FindingsOfAsset(const Cairn::AssetRecord& record, MappedPaths& paths);

/// What a store sees wrong with a package as a whole. An asset map that is missing because it could not be
/// understood is told once.
[[nodiscard]] FindingList FindingsOfPackage(const Cairn::PackageRecord& package);

/// What a scan of a folder could not read, as a warning.
[[nodiscard]] Finding FindingOfUnreadable(const Cairn::UnreadableEntry& entry);

/// A sentence as findings have values.
[[nodiscard]] std::string WithoutFullStop(std::string text);

/// "1234 bytes".
[[nodiscard]] std::string BytesCount(Ferro::ui64_t bytes);

}  // namespace Tool
