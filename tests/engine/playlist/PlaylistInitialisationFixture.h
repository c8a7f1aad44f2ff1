// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "../../support/FakeTimeline.h"
#include "../../support/LogCapture.h"
#include "../../support/PackageMaker.h"

#include <Cairn/PListDict.h>

#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <string>

namespace StrataTest {

using Cairn::AssetInfo;
using Strata::ShowPlaylist;

/// Fills a playlist from documents and lists of a made package.
class PlaylistInitialisation : public testing::Test {
 protected:
  /// A composition of that many reels of five edit units.
  AssetInfo Composition(int reels = 1) {
    if (!m_Picture.HasValue()) m_Picture = Package.Track(testsupport::TrackKind::Picture);
    auto cpl = testsupport::EmptyComposition("Composition");
    for (int i = 0; i < reels; ++i) cpl.ReelList.push_back(testsupport::ReelOf(m_Picture));
    return Package.Composition(cpl);
  }
  static ShowPlaylist Show() {
    ShowPlaylist spl;
    spl.ID = Ferro::UUID::Random();
    spl.ShowTitle = "Show";
    return spl;
  }
  static ShowPlaylist::CompositionItem& AddComposition(ShowPlaylist& spl, const Ferro::UUID& id) {
    auto item = std::make_unique<ShowPlaylist::CompositionItem>();
    item->ID = id;
    item->EditRate = QUIRE::EditRate_24;
    item->Duration = 5;
    auto& added = *item;
    spl.ShowSequence.push_back(std::move(item));
    return added;
  }
  static void AddURI(ShowPlaylist& spl, const std::string& uri) {
    auto item = std::make_unique<ShowPlaylist::ShowPlaylistItem>();
    item->URI = uri;
    spl.ShowSequence.push_back(std::move(item));
  }
  static void AddShow(ShowPlaylist& spl, const Ferro::UUID& id) { AddURI(spl, "urn:uuid:" + id.EncodeString()); }
  static ShowPlaylist::MarkerItem Marker(const std::string& label, Ferro::i32_t offset = 0) {
    ShowPlaylist::MarkerItem marker;
    marker.Label = label;
    marker.Scope = "http://scope.example/";
    marker.Offset = offset;
    return marker;
  }
  static void AddMarker(ShowPlaylist& spl, const std::string& label) {
    spl.ShowSequence.push_back(std::make_unique<ShowPlaylist::MarkerItem>(Marker(label)));
  }

  Strata::Result_t InitText(const std::string& text) {
    const testsupport::LogCapture log;
    const auto result = Playlist.InitWithPlaylist(text, Package.Lookup, Cairn::PListDict());
    Log = log.TextWithLevels();
    return result;
  }
  Strata::Result_t InitShow(const ShowPlaylist& spl) { return InitText(Package.Encode(spl)); }
  Strata::Result_t InitList(std::initializer_list<Ferro::UUID> ids) {
    Ferro::UUIDList list;
    for (const auto& id : ids) list.push_back(id);
    const testsupport::LogCapture log;
    const auto result = Playlist.InitWithUUIDList(list, Package.Lookup, Cairn::PListDict());
    Log = log.TextWithLevels();
    return result;
  }
  [[nodiscard]] static std::string Loading(const ShowPlaylist& spl) {
    return "D Loading Show Playlist " + spl.ID.EncodeString() + "\n";
  }
  /// The events as "label@position", in order.
  [[nodiscard]] std::string Events() const {
    std::string text;
    for (const auto& event : State.Events)
      text += (text.empty() ? "" : " ") + event.Label + "@" + std::to_string(event.ShowPosition);
    return text;
  }

  testsupport::PackageMaker Package;
  Strata::h__Playlist Playlist;
  Strata::PlaylistInspector State{Playlist};
  std::string Log;

 private:
  AssetInfo m_Picture;
};

}  // namespace StrataTest
