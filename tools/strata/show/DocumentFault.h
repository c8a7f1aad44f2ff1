// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/LogEntry.h>
#include <Ferro/Result.h>

#include <string>
#include <vector>

namespace Tool {

/// What a composition playlist of the interoperable master format is, instead of why it cannot be read.
inline constexpr char IMFPackage[] = "This belongs to an IMF package; cinema servers do not play it.";

/// Why a document could not be read, in the form of ReasonText: "line 28: expected end of tag 'Id'" where its parser said
/// so.
/// @param messages  what was logged meanwhile
[[nodiscard]] std::string DocumentFault(const std::string& path, const Ferro::Result_t& result,
                                        const std::vector<Ferro::LogEntry>& messages);

}  // namespace Tool
