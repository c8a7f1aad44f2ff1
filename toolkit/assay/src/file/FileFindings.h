// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "CompositionFiles.h"

namespace Assay {

/// What a track file tells by itself to be wrong: file-*, picture-size, picture-rate.
void FindInFile(const TrackFile& file, FindingList& findings);

/// What of a composition its files tell to be wrong: reel-*, picture-changes, aux-data-type, meta-stored-area,
/// meta-active-area.
/// @param findings  what the composition's documents told already, followed by what is found here.
void FindInFiles(const CompositionFiles& composition, FindingList& findings);

}  // namespace Assay
