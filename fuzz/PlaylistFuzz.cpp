// SPDX-License-Identifier: BSD-3-Clause
#include "PlaylistFuzzAssets.h"
#include "QuietLog.h"

#include "../tests/support/PackageMaker.h"

#include <Strata/EssenceParams.h>
#include <Strata/IPlaylist.h>
#include <Strata/ITransportNotify.h>
#include <Strata/ShowPlaylist.h>

#include <Cairn/PListDict.h>
#include <Ferro/Assert.h>

#include <cstdint>
#include <map>
#include <string>

// Lays a show playlist or composition playlist out over real track files, moves about in what became of it, and exports
// it. The export of a show must load again, as long as it was; of a composition the store may know another.

namespace {

using testsupport::TrackKind;

/// Knows an asset for each last byte of an identifier, up to FuzzAsset::Count.
class FuzzStore : public Cairn::IAssetLookup {
 public:
  FuzzStore() {
    const std::map<FuzzAsset, TrackKind> tracks = {
        {FuzzAsset::Picture, TrackKind::Picture}, {FuzzAsset::StereoscopicPicture, TrackKind::StereoscopicPicture},
        {FuzzAsset::MPEG2, TrackKind::MPEG2},     {FuzzAsset::Sound, TrackKind::Sound},
        {FuzzAsset::Data, TrackKind::Data},       {FuzzAsset::Atmos, TrackKind::Atmos},
        {FuzzAsset::Text, TrackKind::Text}};
    for (const auto& [asset, kind] : tracks) m_Assets[asset] = m_Package.Track(kind);
    m_Assets[FuzzAsset::InteropText] = m_Package.InteropText();

    Cairn::CompositionPlaylist cpl = testsupport::EmptyComposition("Composition");
    cpl.ID = FuzzAssetID(FuzzAsset::Composition);
    cpl.ReelList.push_back(testsupport::ReelOf(Known(FuzzAsset::Picture)));
    cpl.ReelList.back().MainSound = testsupport::AssetOf<Cairn::SoundAsset>(Known(FuzzAsset::Sound));
    m_Assets[FuzzAsset::Composition] = m_Package.Composition(cpl);
    m_Assets[FuzzAsset::Show] = Show(FuzzAsset::Show);
    m_Assets[FuzzAsset::LoopingShow] = Show(FuzzAsset::LoopingShow);
  }

  Cairn::Result_t GetAssetIDList(Cairn::UUIDList&) const override { return Ferro::RESULT_NOTIMPL; }
  Cairn::Result_t RegisterAsset(const std::string&, const Cairn::SHA1&, Cairn::AssetInfo&) override {
    return Ferro::RESULT_NOTIMPL;
  }
  Cairn::Result_t GetInfoForAssetID(const Cairn::UUID& id, Cairn::AssetInfo& out, bool) const override {
    const auto known = m_Assets.find(static_cast<FuzzAsset>(id.Value()[id.Size - 1]));
    if (known == m_Assets.end()) return Ferro::RESULT_FALSE;
    out = known->second;
    out.ID = id;
    return Ferro::RESULT_OK;
  }
  Cairn::Result_t GetInfoForAssetIDList(const Cairn::UUIDList& ids, Cairn::AssetInfoList& out, bool) const override {
    Cairn::Result_t result = Ferro::RESULT_OK;
    for (const Cairn::UUID& id : ids) {
      Cairn::AssetInfo info;
      if (GetInfoForAssetID(id, info, true) == Ferro::RESULT_OK)
        out.push_back(info);
      else
        result = Ferro::RESULT_FALSE;
    }
    return result;
  }

 private:
  /// The record of an asset under its fixed identifier.
  [[nodiscard]] Cairn::AssetInfo Known(FuzzAsset asset) const {
    Cairn::AssetInfo info = m_Assets.at(asset);
    info.ID = FuzzAssetID(asset);
    return info;
  }

  Cairn::AssetInfo Show(FuzzAsset asset) {
    Strata::ShowPlaylist show;
    show.ID = FuzzAssetID(asset);
    auto composition = std::make_unique<Strata::ShowPlaylist::CompositionItem>();
    composition->ID = FuzzAssetID(FuzzAsset::Composition);
    composition->EditRate = QUIRE::EditRate_24;
    show.ShowSequence.push_back(std::move(composition));
    if (asset == FuzzAsset::LoopingShow) {
      auto itself = std::make_unique<Strata::ShowPlaylist::ShowPlaylistItem>();
      itself->URI = "urn:uuid:" + show.ID.EncodeString();
      show.ShowSequence.push_back(std::move(itself));
    }
    return m_Package.Show(show);
  }

  testsupport::PackageMaker m_Package;
  std::map<FuzzAsset, Cairn::AssetInfo> m_Assets;
};

class Listener : public Strata::ITransportNotify {
 public:
  void TransportStatusNotify(const Strata::TimelinePosition& show, const Strata::TimelinePosition& cpl,
                             const Strata::TimelinePosition& reel, const Strata::DeviceStatus&,
                             const Strata::CommandType_t&) override {
    FERRO_ASSERT(reel.Position <= cpl.Position && cpl.Position <= show.Position);
  }
  void TransportExceptionNotify(const Strata::TransportException&) override {}
  void PlaylistStatusNotify(const Strata::CompositionInfo& composition) override {
    FERRO_ASSERT(composition.CurrentReel >= 1 && composition.CurrentReel <= composition.TotalReels);
  }
  void PlaylistEventNotify(const Ferro::ArchivableList<Strata::PlaylistEvent>& events) override {
    FERRO_ASSERT(!events.empty());
  }
};

void VisitPosition(Strata::IPlaylist& playlist, Strata::ui32_t position) {
  static Listener listener;
  static_cast<void>(playlist.MoveToEditUnit(position));
  playlist.TransportStatusNotify(&listener, Strata::CommandType_t(), Strata::DeviceStatus(), true);
  playlist.PlaylistStatusNotify(&listener, true);
  playlist.PlaylistEventNotify(&listener);
  Strata::EssenceParams params;
  playlist.GetCurrentReelEssenceInfo(params);
  static_cast<void>(playlist.GetCompositionInfoForCurrentPosition());
  FERRO_ASSERT(playlist.TranslateReelPosition(playlist.GetPosition()) <= playlist.GetPosition());
  static_cast<void>(playlist.EssenceCodingChanged());
}

/// Makes all tracks of the reel that holds `position`, and of its neighbours, ready.
void VisitTracks(Strata::IPlaylist& playlist, Strata::ui32_t position) {
  for (const auto type : {Strata::TRKT_IMAGE, Strata::TRKT_SOUND, Strata::TRKT_ON_SCREEN_TEXT,
                          Strata::TRKT_OFF_SCREEN_TEXT, Strata::TRKT_AUX_DATA})
    for (Strata::ui32_t channel = 0; channel < playlist.GetChannelCountForType(type, position); ++channel)
      static_cast<void>(playlist.GetReaderForChannel(type, channel, position));
}

void CheckExport(const Strata::IPlaylist& playlist, const FuzzStore& store) {
  std::string document;
  Strata::ui32_t playout = 0;
  static_cast<void>(playlist.GetPresentationListForTimeline("/", document, playout));
  if (playlist.GetShowPlaylistForTimeline(document).Failure()) return;  // XML 1.1 may hold what 1.0 cannot
  Ferro::mem_ptr<Strata::IPlaylist> again;
  FERRO_ASSERT(Strata::NewPlaylist(again).Success());
  FERRO_ASSERT(again->InitWithPlaylist(document, store, {}).Success());
  FERRO_ASSERT(again->GetDuration() == playlist.GetDuration());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static QuietLog log;
  static const FuzzStore store;
  const std::string document(data, data + size);
  Ferro::mem_ptr<Strata::IPlaylist> playlist;
  FERRO_ASSERT(Strata::NewPlaylist(playlist).Success());
  if (playlist->InitWithPlaylist(document, store, {}).Failure()) return 0;

  const Strata::ui32_t duration = playlist->GetDuration();
  for (const Strata::ui32_t position : {duration, duration / 2, Strata::ui32_t{1}, Strata::ui32_t{0}}) {
    VisitPosition(*playlist, position);
    static_cast<void>(playlist->MoveForward(1));
    static_cast<void>(playlist->MoveBackward(2));
    VisitTracks(*playlist, playlist->GetPosition());
  }
  if (Strata::ShowPlaylist().DecodeXML(document).Success()) CheckExport(*playlist, store);
  return 0;
}
