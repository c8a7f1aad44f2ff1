// SPDX-License-Identifier: BSD-3-Clause
// The smallest host: plays a folder of packages as fast as it can be read, and tells what comes.
//
//   minimal-host <folder>             plays the folder's compositions
//   minimal-host <folder> <playlist>  plays a show playlist or composition playlist, with assets of the folder
#include <Strata/Strata.h>

#include <Cairn/AssetStore.h>
#include <Ferro/FileText.h>
#include <QUIRE/FrameBuffer.h>

#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <map>
#include <string>

namespace {

/// What the engine reports goes to standard output.
class Printer : public Strata::ITransportNotify {
 public:
  void TransportStatusNotify(const Strata::TimelinePosition& show, const Strata::TimelinePosition&,
                             const Strata::TimelinePosition&, const Strata::DeviceStatus&,
                             const Strata::CommandType_t&) override {
    m_Position = show.Position;
  }
  void TransportExceptionNotify(const Strata::TransportException&) override {}
  void PlaylistStatusNotify(const Strata::CompositionInfo& composition) override {
    std::printf("%6u  %s, reel %u of %u\n", m_Position, composition.Title.c_str(), composition.CurrentReel,
                composition.TotalReels);
  }
  void PlaylistEventNotify(const Strata::PlaylistEventList& events) override {
    for (const Strata::PlaylistEvent& event : events)
      std::printf("%6u  event %s\n", event.ShowPosition, event.Label.c_str());
  }

 private:
  Ferro::ui32_t m_Position = 0;
};

struct Counts {
  uint64_t Frames = 0;
  uint64_t Bytes = 0;
  uint64_t Unreadable = 0;
  uint64_t Missing = 0;
};

/// The tracks of the present edit unit, each with what asks it for frames. A track of a reel that is over goes away.
using Requesters = std::map<Strata::ITimelineTrack*, Strata::FrameRequester>;

/// Takes the frame of one track at a position of its reel.
void TakeFrame(Strata::ITimelineTrack& track, Strata::FrameRequester& requester, Ferro::ui32_t reel_position,
               Counts& counts) {
  const auto position = Strata::PlayedFilePosition(track, reel_position);
  if (!position) return;  // the track is over, and its reel goes on: silence, or no data
  // The next frame is read while this one is shown. Past the last one nothing is asked for.
  const auto frame = requester.Take(*position, Strata::PlayedFilePosition(track, reel_position + 1));
  if (!frame.IsThere()) {
    ++counts.Unreadable;
    return;
  }
  ++counts.Frames;  // show track.FrameBuffer() here: it stays in place as long as `frame` exists
  counts.Bytes += track.FrameBufferSize();
  if (track.HasStereoImage()) counts.Bytes += track.REyeFrameBufferSize();
}

/// The tracks that play at `position`, with a requester for each that is new. Those of the reel before are released
/// first: the playlist may put them to rest.
void FindTracks(Strata::IPlaylist& playlist, Ferro::ui32_t position, Requesters& requesters, Counts& counts) {
  if (playlist.TranslateReelPosition(position) == 0) requesters.clear();
  for (const auto type : {Strata::TRKT_IMAGE, Strata::TRKT_SOUND, Strata::TRKT_AUX_DATA})
    for (Ferro::ui32_t channel = 0; channel < playlist.GetChannelCountForType(type, position); ++channel) {
      Strata::ITimelineTrack* track = playlist.GetReaderForChannel(type, channel, position);
      if (track == nullptr) continue;
      if (IsReady(*track))
        requesters.try_emplace(track, *track);
      else
        ++counts.Missing;  // its file has vanished since the show was loaded: the rest plays
    }
}

/// Plays from the first edit unit to the last.
Counts Play(Strata::IPlaylist& playlist) {
  Printer printer;
  Counts counts;
  Requesters requesters;
  bool at_end = false;
  while (!at_end) {
    const Ferro::ui32_t position = playlist.GetPosition();
    FindTracks(playlist, position, requesters, counts);
    for (auto& [track, requester] : requesters)
      TakeFrame(*track, requester, playlist.TranslateReelPosition(position), counts);

    playlist.TransportStatusNotify(&printer, Strata::CMD_PLAY, Strata::DeviceStatus(), false);
    playlist.PlaylistStatusNotify(&printer, false);
    playlist.PlaylistEventNotify(&printer);
    at_end = playlist.MoveForward(1);
  }
  return counts;
}

/// Fills the playlist from the document, or from every composition of the store without one.
Ferro::Result_t Load(Strata::IPlaylist& playlist, const Cairn::AssetStore& store, const char* document) {
  if (document != nullptr) {
    std::string text;
    const Ferro::Result_t result = Ferro::ReadFileIntoString(document, text);
    return result.Failure() ? result : playlist.InitWithPlaylist(text, store, {});
  }
  Ferro::ArchivableList<Ferro::UUID> ids;
  for (const Cairn::AssetRecord& asset : store.Assets())
    if (asset.Info.FileType == Cairn::FT_CPL) ids.push_back(asset.Info.ID);
  return playlist.InitWithUUIDList(ids, store, {});
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2 || argc > 3) {
    std::fprintf(stderr, "usage: %s <folder> [<playlist>]\n", argv[0]);
    return 2;
  }
  Cairn::AssetStore store;
  Ferro::Result_t result = store.Open();
  if (result.Success()) result = store.AddFolder(argv[1]);
  Ferro::mem_ptr<Strata::IPlaylist> playlist;
  if (result.Success()) result = Strata::NewPlaylist(playlist);
  if (result.Success()) result = Load(*playlist, store, argc == 3 ? argv[2] : nullptr);
  if (result.Failure()) {
    std::fprintf(stderr, "%s: %s\n", argv[1], result.Label());
    return 1;
  }
  const Counts counts = Play(*playlist);
  std::printf("%u edit units played: %" PRIu64 " frames, %" PRIu64 " bytes\n", playlist->GetDuration(), counts.Frames,
              counts.Bytes);
  if (counts.Unreadable > 0) std::printf("%" PRIu64 " frames could not be read\n", counts.Unreadable);
  if (counts.Missing > 0) std::printf("%" PRIu64 " frames are of files that have vanished\n", counts.Missing);
  return counts.Unreadable + counts.Missing == 0 ? 0 : 1;
}
