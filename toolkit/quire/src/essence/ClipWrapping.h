// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TrackFacts.h"

#include <QUIRE/MXF/FileStructure.h>

#include <vector>

namespace QUIRE {

/// True when the essence is clip-wrapped whatever its label says: one element, which several edit units share. Told by an
/// index that leads into it, or by a second codestream in it. `structure` has all partitions, `runs` are the essence's.
[[nodiscard]] bool IsOneClip(const Ferro::FileReader& file, const MXF::FileStructure& structure,
                             const std::vector<MXF::EssenceRun>& runs, const TrackFacts& facts);

}  // namespace QUIRE
