// SPDX-License-Identifier: BSD-3-Clause
#include "WholeShow.h"

#include "FakeTimeline.h"

#include <Ferro/FileText.h>

#include <gtest/gtest.h>

namespace testsupport {

using QUIRE::ui32_t;
using Strata::ShowPlaylist;

struct WholeShow::Format {
  const char* Title;
  TrackKind Picture;
  ui32_t Width;
  ui32_t Height;
  QUIRE::Rational Rate;
  size_t Reels;
  ui32_t ReelLength;  ///< the reels take turns at this and one more
  bool HasText = false;
  bool HasData = false;
  size_t SilentReel = SIZE_MAX;
};

namespace {

constexpr char Scope[] = "http://www.strata.example/test-cues";

ShowPlaylist::MarkerItem Marker(const std::string& label, ui32_t offset) {
  ShowPlaylist::MarkerItem marker;
  marker.Label = label;
  marker.Scope = Scope;
  marker.Offset = static_cast<Ferro::i32_t>(offset);
  return marker;
}

void Append(ShowPlaylist& show, const std::string& label) {
  show.ShowSequence.push_back(std::make_unique<ShowPlaylist::MarkerItem>(Marker(label, 0)));
}

void Append(ShowPlaylist& show, const Ferro::UUID& composition, const std::list<ShowPlaylist::MarkerItem>& markers) {
  auto item = std::make_unique<ShowPlaylist::CompositionItem>();
  item->ID = composition;
  item->EditRate = QUIRE::EditRate_24;
  item->MarkerList = markers;
  show.ShowSequence.push_back(std::move(item));
}

template <class DocumentT>
std::string Write(const DocumentT& document, const std::string& filename) {
  std::string text;
  EXPECT_EQ(document.EncodeXML(text, Cairn::DFT_DCI_SMPTE), Ferro::RESULT_OK);
  EXPECT_EQ(Ferro::WriteStringIntoFile(filename, text), Ferro::RESULT_OK);
  return text;
}

}  // namespace

WholeShow::WholeShow() {
  const QUIRE::Rational r24 = QUIRE::EditRate_24;
  const QUIRE::Rational r25 = QUIRE::EditRate_25;
  const std::vector<Format> formats = {
      {"Flat2K", TrackKind::Picture, 2048, 108, r24, 10, 4},
      {"Flat4K", TrackKind::Picture, 4096, 216, r24, 6, 3},
      {"Stereoscopic", TrackKind::StereoscopicPicture, 2048, 108, r24, 6, 3},
      {"MPEG2", TrackKind::MPEG2, 1920, 1080, r25, 5, 6},
      {"Text", TrackKind::Picture, 2048, 108, r24, 7, 4, true},
      {"Data", TrackKind::Picture, 2048, 108, r24, 6, 3, false, true, 3},
  };
  std::vector<Ferro::UUID> compositions;
  for (const Format& format : formats) compositions.push_back(MakeComposition(format));
  MakeShows(compositions);
  EXPECT_EQ(Store.Open(), Ferro::RESULT_OK);
  EXPECT_EQ(Store.AddFolder(m_Folder.Folder().string()), Ferro::RESULT_OK);
}

size_t WholeShow::ReelAt(ui32_t position) const {
  size_t reel = 0;
  while (position - Reels.at(reel).Offset >= Reels[reel].Duration) ++reel;
  return reel;
}

Ferro::UUID WholeShow::MakeComposition(const Format& format) {
  Cairn::CompositionPlaylist composition;
  composition.ID = NumberedID(++m_LastNumber);
  composition.IssueDate = "2026-01-02T03:04:05+00:00";
  composition.Issuer = composition.Creator = "Strata";
  composition.ContentTitle = format.Title;
  composition.ContentKind = Cairn::CK_FEATURE;
  composition.StereoscopicImage = format.Picture == TrackKind::StereoscopicPicture;
  const size_t index = Reels.empty() ? 0 : Reels.back().Composition + 1;
  for (size_t number = 0; number < format.Reels; ++number) {
    const ui32_t offset = Reels.empty() ? 0 : Duration();
    ShowReel& reel = Reels.emplace_back();
    reel.Composition = index;
    reel.Offset = offset;
    reel.Duration = format.ReelLength + number % 2;
    composition.ReelList.push_back(MakeReel(format, number));
  }
  Write(composition, m_Folder.Path(composition.ContentTitle + ".xml"));
  return composition.ID;
}

Cairn::Reel WholeShow::MakeReel(const Format& format, size_t number) {
  ShowReel& reel = Reels.back();
  Cairn::Reel result;
  result.ID = NumberedID(++m_LastNumber);
  reel.Picture = MakeAsset(result.MainPicture, format, format.Picture);
  result.MainPicture.FrameRate = format.Rate;
  if (format.Picture == TrackKind::StereoscopicPicture) result.MainPicture.FrameRate.Numerator *= 2;
  result.MainPicture.ScreenAspectRatio = {static_cast<Ferro::i32_t>(format.Width),
                                          static_cast<Ferro::i32_t>(format.Height)};
  if (number != format.SilentReel) reel.Sound = MakeAsset(result.MainSound, format, TrackKind::Sound);
  if (format.HasText) {
    reel.Subtitle = MakeAsset(result.MainSubtitle, format, TrackKind::Text);
    for (const Cairn::TimedTextPurpose_t purpose : {Cairn::TT_CAPTION, Cairn::TT_SUBTITLE}) {
      Cairn::TimedTextAsset& asset = result.OffScreenText.emplace_back();
      asset.Purpose = purpose;
      asset.Language = "en";
      reel.Captions.push_back(MakeAsset(asset, format, TrackKind::Text));
    }
  }
  if (format.HasData)
    for (const TrackKind kind : {TrackKind::Data, TrackKind::Atmos}) {
      Cairn::AuxDataAsset& asset = result.AuxData.emplace_back();
      asset.DataType = "urn:smpte:ul:060e2b34.04010105.0e090604.00000000";
      reel.Data.push_back(MakeAsset(asset, format, kind));
    }
  return result;
}

template <class AssetT>
ShowTrack WholeShow::MakeAsset(AssetT& asset, const Format& format, TrackKind kind) {
  TrackFileSpec spec;
  asset.AssetID = spec.AssetID = NumberedID(++m_LastNumber);
  asset.EditRate = spec.EditRate = format.Rate;
  asset.IntrinsicDuration = spec.Duration = Reels.back().Duration + 2 * EntryPoint;
  asset.EntryPoint = EntryPoint;
  asset.Duration = Reels.back().Duration;
  spec.Width = format.Width;
  spec.Height = format.Height;
  spec.ChannelCount = 2;
  spec.FirstFrame = m_LastNumber;
  EXPECT_EQ(MakeTrackFile(kind, m_Folder.Path(std::to_string(m_LastNumber) + ".mxf"), spec), Ferro::RESULT_OK);
  return {kind, spec};
}

void WholeShow::Expect(const std::string& label, ui32_t position) {
  Strata::PlaylistEvent& event = Events.emplace_back();
  event.Label = label;
  event.LabelScope = Scope;
  event.ShowPosition = position;
}

/// Markers between compositions, at both ends of the show, two in one place, and of a composition at its first, at some
/// and beyond its last edit unit.
void WholeShow::MakeShows(const std::vector<Ferro::UUID>& compositions) {
  std::vector<ui32_t> starts;
  for (const ShowReel& reel : Reels)
    if (reel.Composition == starts.size()) starts.push_back(reel.Offset);

  ShowPlaylist nested;
  nested.ID = NumberedID(9001);
  nested.ShowTitle = "Nested";
  Append(nested, "NESTED_START");
  Append(nested, compositions[1], {Marker("IN_NESTED", 5)});
  Append(nested, compositions[2], {});
  Append(nested, "NESTED_END");
  Write(nested, m_Folder.Path("nested.xml"));

  ShowPlaylist show;
  show.ID = NumberedID(9000);
  show.ShowTitle = "Whole";
  Append(show, "SHOW_START");
  Append(show, compositions[0], {Marker("FIRST", 0), Marker("MIDDLE", 17), Marker("BEYOND", 5000)});
  auto item = std::make_unique<ShowPlaylist::ShowPlaylistItem>();
  item->URI = nested.ID.EncodeURN();
  show.ShowSequence.push_back(std::move(item));
  Append(show, "INTERVAL");
  Append(show, compositions[3], {});
  Append(show, compositions[4], {Marker("TEXT", 1)});
  Append(show, compositions[5], {Marker("LAST", 2)});
  Append(show, "SHOW_END");
  Document = Write(show, m_Folder.Path("show.xml"));

  Expect("SHOW_START", 0);
  Expect("FIRST", 0);
  Expect("MIDDLE", 17);
  Expect("BEYOND", starts[1] - 1);
  Expect("NESTED_START", starts[1]);
  Expect("IN_NESTED", starts[1] + 5);
  Expect("NESTED_END", starts[3]);
  Expect("INTERVAL", starts[3]);
  Expect("TEXT", starts[4] + 1);
  Expect("LAST", starts[5] + 2);
  Expect("SHOW_END", Duration() - 1);
}

}  // namespace testsupport
