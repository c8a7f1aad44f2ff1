// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "CompositionFiles.h"

namespace Assay {

/// What a track file of sound or immersive audio tells by its header to be wrong: sound-rate, sound-bits, sound-channels,
/// sound-configuration, sound-labels, sound-mca, aux-atmos-channels. Other files are passed over.
void FindInSoundFile(const TrackFile& file, FindingList& findings);

/// What of a composition its sound tells to be wrong: sound-channels, sound-changes, sound-language, meta-sound-*,
/// title-audio, aux-sync, aux-atmos-rate.
void FindInSounds(const CompositionFiles& composition, FindingList& findings);

}  // namespace Assay
