// SPDX-License-Identifier: BSD-3-Clause
#include "FolderScan.h"

#include "terminal/Interrupt.h"
#include "terminal/ProgressBar.h"

#include <filesystem>

namespace Tool {

Cairn::Result_t LookThroughFolder(Cairn::AssetStore& store, const std::string& folder) {
  std::error_code error;
  ProgressBar bar("Looking through " + std::filesystem::canonical(folder, error).filename().string(),
                  ProgressUnit::Files);
  return store.AddFolder(folder, [&](const Cairn::ScanProgress& now) {
    bar.Update(now.FilesDone, now.FilesTotal);
    return !Interrupt::Requested();
  });
}

}  // namespace Tool
