// SPDX-License-Identifier: BSD-3-Clause
// Cairn alone: the compositions of a folder of packages, reel by reel, and what is wrong with their files.
//
//   package <folder>     exit code 1 where a file cannot be used
#include <Cairn/AssetStore.h>
#include <Cairn/CompositionPlaylist.h>
#include <Cairn/InitObjectWithFile.h>

#include <cstdio>
#include <string>

namespace {

/// Prints one asset of a reel with the file that the store knows for it. False where there is none to use.
bool PrintAsset(const Cairn::AssetStore& store, const char* kind, const Cairn::GenericAsset& asset) {
  if (!asset.AssetID.HasValue()) return true;  // the reel has no such asset
  Cairn::AssetInfo info;
  const bool found = store.GetInfoForAssetID(asset.AssetID, info, true).Success();
  std::printf("    %-9s %6u edit units  %s\n", kind, asset.Duration,
              found ? info.RealFilename.c_str() : (asset.AssetID.EncodeString() + " cannot be used").c_str());
  return found;
}

bool PrintComposition(const Cairn::AssetStore& store, const std::string& filename) {
  Cairn::CompositionPlaylist composition;
  if (Cairn::InitObjectWithFile(composition, filename).Failure()) return false;  // it has said why
  std::printf("%s\n", composition.ContentTitle.c_str());
  bool complete = true;
  unsigned number = 0;
  for (const Cairn::Reel& reel : composition.ReelList) {
    std::printf("  reel %u of %zu\n", ++number, composition.ReelList.size());
    complete &= PrintAsset(store, "picture", reel.MainPicture);
    complete &= PrintAsset(store, "sound", reel.MainSound);
    complete &= PrintAsset(store, "subtitle", reel.MainSubtitle);
    for (const Cairn::TimedTextAsset& text : reel.OffScreenText) complete &= PrintAsset(store, "text", text);
    for (const Cairn::AuxDataAsset& data : reel.AuxData) complete &= PrintAsset(store, "data", data);
  }
  return complete;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s <folder>\n", argv[0]);
    return 2;
  }
  Cairn::AssetStore store;
  Cairn::Result_t result = store.Open();
  if (result.Success()) result = store.AddFolder(argv[1]);
  if (result.Failure()) {
    std::fprintf(stderr, "%s: %s\n", argv[1], result.Label());
    return 1;
  }
  bool complete = true;
  for (const Cairn::AssetRecord& asset : store.Assets()) {
    for (const std::string& reason : asset.Reasons())
      std::printf("%s: %s\n", asset.Info.RealFilename.c_str(), reason.c_str());
    complete &= (asset.Problems & Cairn::FatalAssetProblems) == 0;
    if (asset.Info.FileType == Cairn::FT_CPL) complete &= PrintComposition(store, asset.Info.RealFilename);
  }
  return complete ? 0 : 1;
}
