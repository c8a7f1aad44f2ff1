// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "show/ShowOutline.h"

#include <Assay/Finding.h>
#include <Cairn/FileType.h>

#include <string>

// Findings as the commands make and sort them; what a finding is, libassay says.

namespace Tool {

using Assay::Finding;
using Assay::FindingClass;
using Assay::FindingID;
using Assay::FindingList;

/// How much a finding matters for playing the show, the worse the later. What is up to a warning keeps nothing from
/// playing.
enum class Severity { Note, Profile, Warning, Missing, Error };

/// By its class; Missing where something is not there that is to play.
[[nodiscard]] Severity SeverityOf(const Finding& finding);
/// "note", "profile", "warning", "missing", "error".
[[nodiscard]] const char* SeverityName(Severity severity);

[[nodiscard]] Assay::ReelUse UseOf(AssetKind kind);
/// What a reel has files of that type for; None where it has none.
[[nodiscard]] Assay::ReelUse UseOf(Cairn::FileType_t type);

/// The path of the document or file concerned, or the package's folder; empty where there is neither.
[[nodiscard]] std::string PathOf(const Assay::FindingPlace& place);
/// The place of a file, in its package where it lies in one.
[[nodiscard]] Assay::FindingPlace PlaceOf(const std::string& path, const std::string& package = "");

/// What to call the composition concerned: its title, or its identifier where it has none; empty where there is none.
[[nodiscard]] std::string CompositionNameOf(const Assay::FindingPlace& place);

}  // namespace Tool
