// SPDX-License-Identifier: BSD-3-Clause
#include "PlaylistFuzzAssets.h"

#include "../tests/support/PackageMaker.h"

#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>

// Writes compositions and shows that use each asset of PlaylistFuzz's store into the folder given.

namespace {

using Strata::ShowPlaylist;

template <class AssetT>
AssetT Use(FuzzAsset asset) {
  Cairn::AssetInfo info;
  info.ID = FuzzAssetID(asset);
  return testsupport::AssetOf<AssetT>(info);
}

Cairn::Reel FuzzReel(FuzzAsset picture) {
  Cairn::AssetInfo info;
  info.ID = FuzzAssetID(picture);
  Cairn::Reel reel = testsupport::ReelOf(info);
  reel.ID = FuzzAssetID(FuzzAsset::Count);
  return reel;
}

Cairn::CompositionPlaylist FuzzComposition() {
  Cairn::CompositionPlaylist cpl = testsupport::EmptyComposition("Fuzz");
  cpl.ID = FuzzAssetID(FuzzAsset::Composition);
  return cpl;
}

ShowPlaylist::MarkerItem FuzzMarker() {
  ShowPlaylist::MarkerItem marker;
  marker.Label = "cue";
  marker.Offset = 3;
  return marker;
}

void AddComposition(ShowPlaylist& show) {
  auto composition = std::make_unique<ShowPlaylist::CompositionItem>();
  composition->ID = FuzzAssetID(FuzzAsset::Composition);
  composition->EditRate = QUIRE::EditRate_24;
  composition->Duration = 5;
  composition->MarkerList.push_back(FuzzMarker());
  show.ShowSequence.push_back(std::move(composition));
}

void AddShow(ShowPlaylist& show, FuzzAsset asset) {
  auto item = std::make_unique<ShowPlaylist::ShowPlaylistItem>();
  item->URI = "urn:uuid:" + FuzzAssetID(asset).EncodeString();
  show.ShowSequence.push_back(std::move(item));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return EXIT_FAILURE;
  const std::string folder = std::string(argv[1]) + "/";

  Cairn::CompositionPlaylist full = FuzzComposition();
  full.ReelList.push_back(FuzzReel(FuzzAsset::Picture));
  full.ReelList.back().MainSound = Use<Cairn::SoundAsset>(FuzzAsset::Sound);
  full.ReelList.back().MainSubtitle = Use<Cairn::TimedTextAsset>(FuzzAsset::Text);
  full.ReelList.back().OffScreenText.push_back(Use<Cairn::TimedTextAsset>(FuzzAsset::Text));
  full.ReelList.back().AuxData.push_back(Use<Cairn::AuxDataAsset>(FuzzAsset::Atmos));
  full.ReelList.push_back(FuzzReel(FuzzAsset::Picture));
  std::ofstream(folder + "composition", std::ios::binary) << testsupport::PackageMaker::Encode(full);

  Cairn::CompositionPlaylist stereoscopic = FuzzComposition();
  stereoscopic.StereoscopicImage = true;
  stereoscopic.ReelList.push_back(FuzzReel(FuzzAsset::StereoscopicPicture));
  stereoscopic.ReelList.back().MainPicture.FrameRate = QUIRE::Rational(48, 1);
  std::ofstream(folder + "stereoscopic", std::ios::binary) << testsupport::PackageMaker::Encode(stereoscopic);

  Cairn::CompositionPlaylist interop = FuzzComposition();
  interop.DCPFormat = Cairn::DFT_Interop;
  interop.ReelList.push_back(FuzzReel(FuzzAsset::MPEG2));
  interop.ReelList.back().MainSubtitle = Use<Cairn::TimedTextAsset>(FuzzAsset::InteropText);
  std::ofstream(folder + "interop", std::ios::binary) << testsupport::PackageMaker::Encode(interop);

  ShowPlaylist show;
  show.ID = FuzzAssetID(FuzzAsset::Count);
  show.ShowSequence.push_back(std::make_unique<ShowPlaylist::MarkerItem>(FuzzMarker()));
  AddComposition(show);
  AddShow(show, FuzzAsset::Show);
  AddComposition(show);
  std::ofstream(folder + "show", std::ios::binary) << testsupport::PackageMaker::Encode(show);
  AddShow(show, FuzzAsset::LoopingShow);
  std::ofstream(folder + "looping", std::ios::binary) << testsupport::PackageMaker::Encode(show);
  return EXIT_SUCCESS;
}
