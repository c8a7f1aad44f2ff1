// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "WrapSources.h"

namespace Tool {

// One kind of essence each: the sources go into the track file that the job names, which is there when the call returns.
// Every call throws CommandError, naming the file and the reason, and CommandStopped.

/// JPEG 2000 codestreams, one a file; all alike in size and profile.
[[nodiscard]] Wrapped WrapPicture(WrapJob& job, const WrapSources& sources);
/// An MPEG-2 elementary stream; the rate is the stream's own.
[[nodiscard]] Wrapped WrapVideo(WrapJob& job, const WrapSources& sources);
/// WAVE files of 24 bits at 48 or 96 kHz: one with all channels, or several with one each, in order.
[[nodiscard]] Wrapped WrapSound(WrapJob& job, const WrapSources& sources);
/// A timed-text document (ST 428-7); its fonts and images lie beside it, named by their identifiers.
[[nodiscard]] Wrapped WrapText(WrapJob& job, const WrapSources& sources);
/// Auxiliary data or immersive audio, one edit unit a file.
[[nodiscard]] Wrapped WrapData(WrapJob& job, const WrapSources& sources);

}  // namespace Tool
