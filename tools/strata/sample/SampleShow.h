// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "SampleOptions.h"

#include <functional>
#include <string>

namespace Tool {

/// Makes a sample show in options.Folder: packages with a trailer, a feature of three reels with subtitles and captions,
/// and stereoscopic, immersive and encrypted shorts; a show playlist that plays them, and one nested in it. Compositions and
/// packing lists are signed. A key message for the encrypted short lies in the folder worthless-test-keys, with all that it
/// takes to open it. Equal options make equal files, but for that message. Written beside the folder and put in its place
/// when complete; otherwise nothing is left.
/// @param tell      called before each part with what comes.
/// @param progress  called with how many pictures are written and how many there will be.
/// @return false when the user stopped it.
/// Throws std::runtime_error, which includes the file system's errors, with what is wrong.
[[nodiscard]] bool MakeSampleShow(const SampleOptions& options, const std::function<void(const std::string&)>& tell,
                                  const std::function<void(Ferro::ui64_t done, Ferro::ui64_t total)>& progress);

}  // namespace Tool
