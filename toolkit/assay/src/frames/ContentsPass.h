// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "PassFile.h"

#include <functional>
#include <span>
#include <string>

namespace Sigil {
class KeyRing;
}

namespace Assay {

/// How far the contents are.
struct PassProgress {
  std::string File;  ///< path of one that is being read
  size_t FilesDone = 0;
  size_t FileCount = 0;
  ui64_t BytesDone = 0;
  ui64_t BytesTotal = 0;
};

struct PassRequest {
  DepthSet Depths;                       ///< of Frames, Hash and Decode
  ui32_t Threads = 0;                    ///< 0: as many as there are processors
  const Sigil::KeyRing* Keys = nullptr;  ///< may be null
  std::string KeptResults;               ///< as CheckRequest has it
  std::function<bool(const PassProgress&)> OnProgress;
};

/// Looks at the contents of files, each in one pass, several at once, the largest first. A thread that has no file left
/// decodes pictures of the others.
/// @param files  without results; each path once.
/// @return what became of the kept results.
KeptState PassOver(const PassRequest& request, std::span<PassFile> files);

}  // namespace Assay
