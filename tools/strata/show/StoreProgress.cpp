// SPDX-License-Identifier: BSD-3-Clause
#include "StoreProgress.h"

#include "Paths.h"
#include "terminal/Interrupt.h"
#include "terminal/ProgressBar.h"

#include <Ferro/Path.h>

namespace Tool {

namespace {

auto ShowIn(ProgressBar& bar) {
  return [&bar](const Cairn::ScanProgress& now) {
    bar.Update(now.FilesDone, now.FilesTotal);
    return !Interrupt::Requested();
  };
}

}  // namespace

Cairn::Result_t ScanFolder(Cairn::AssetStore& store, const std::string& folder) {
  ProgressBar bar("Scanning " + Ferro::PathBasename(CanonicalPath(folder)), ProgressUnit::Files);
  return store.AddFolder(folder, ShowIn(bar));
}

Cairn::Result_t RescanFolders(Cairn::AssetStore& store) {
  ProgressBar bar("Looking for changes", ProgressUnit::Files);
  return store.Refresh(ShowIn(bar));
}

Cairn::Result_t VerifyDigests(Cairn::AssetStore& store, const Cairn::UUIDList& ids, Ferro::ui32_t threads) {
  if (ids.empty()) return Ferro::RESULT_OK;
  ProgressBar bar("Verifying");
  return store.VerifyDigests(ids, threads, [&](const Cairn::VerifyProgress& now) {
    bar.Update(now.BytesDone, now.BytesTotal);
    return !Interrupt::Requested();
  });
}

}  // namespace Tool
