// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/MXF/Partition.h>

#include <optional>
#include <span>
#include <string>

namespace QUIRE::MXF {

/// Partition::Read without a log line: the reason of the failure, `partition` being unchanged, or no value.
[[nodiscard]] std::optional<std::string> ParsePartition(std::span<const ui8_t> bytes, ui64_t offset,
                                                        Partition& partition);

}  // namespace QUIRE::MXF
