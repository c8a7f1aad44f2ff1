// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "CompositionFiles.h"

namespace Assay {

/// What a track file tells by itself to be wrong: file-*, picture-size, picture-rate.
void FindInFile(const TrackFile& file, FindingList& findings);

/// What of a composition its files tell to be wrong: reel-*, picture-changes, aux-data-type, meta-stored-area,
/// meta-active-area.
void FindInFiles(const CompositionFiles& files, FindingList& findings);

/// What a composition's files tell that other findings are judged by.
void TakeFormats(const CompositionFiles& files, CompositionContext& context);

/// What a picture file's header tells of its pictures; no value for another kind, or where it was not opened.
[[nodiscard]] std::optional<PictureFormat> PictureFormatOf(const TrackFile* file);

}  // namespace Assay
