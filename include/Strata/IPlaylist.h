// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/AssetInfo.h>
#include <Strata/CommandType.h>
#include <Strata/CompositionInfo.h>
#include <Strata/DeviceStatus.h>
#include <Strata/EssenceParams.h>
#include <Strata/Export.h>
#include <Strata/Result.h>
#include <Strata/TrackType.h>
#include <Strata/Types.h>

#include <Cairn/PListDict.h>
#include <Ferro/ArchivableList.h>
#include <Ferro/mem_ptr.h>
#include <QUIRE/Rational.h>

#include <string>

namespace Cairn {
class IAssetLookup;
}

namespace Strata {

class ITimelineTrack;
class ITransportNotify;

/// One show, laid out as a timeline of reels.
///
/// A playlist is made by NewPlaylist, initialised once, then moved about and read. One whose initialisation failed is to
/// be discarded: a second initialisation, or a look at what the first one left, may assert. Positions count edit units from the start of the timeline. Asking outside the timeline does not fail: it
/// answers null, 0 or an empty record. The playlist has no lock: one thread at a time. Its tracks belong to it and live
/// as long as it does. The order of the virtual operations is fixed.
class STRATA_API IPlaylist {
 public:
  virtual ~IPlaylist();

  /// Lays out the compositions and show playlists of the list, one after the other. One may occur any number of times,
  /// in the list and in show playlists, as long as no show playlist lies inside itself; each appearance has reels of its
  /// own. What cannot play is logged, its identifier or path with it.
  ///
  /// An identifier of neither a composition nor a show playlist is logged and skipped: the rest plays, and the result
  /// does not tell. One that the store does not know ends the initialisation. Images between the items of a show
  /// playlist are skipped too. A list, or a show, of which no reel is left is RESULT_PARAM.
  ///
  /// @param ids      identifiers of composition or show playlists known to the asset store
  /// @param lookup   resolves assets; used during the call only
  /// @param options  handed through to the loaders
  /// @return RESULT_OK; RESULT_SX_EMPTY_PL for an empty list; RESULT_PARAM for one without a reel; RESULT_NOT_FOUND for
  ///         an identifier that the lookup answers with success but without an asset, and for a nested show playlist
  ///         whose URI is no identifier; RESULT_SX_PLAYLIST_REC for a show playlist inside itself;
  ///         RESULT_SX_PLAYLIST_PTYPE, RESULT_SX_PLAYLIST_CTYPE for a reference to an asset of another kind than a show
  ///         playlist or a composition; RESULT_SX_DIGEST_FAIL; Cairn::RESULT_CN_NOT_IN_STORE for unresolved assets of a
  ///         composition; QUIRE::RESULT_FORMAT where documents and files do not agree; RESULT_ALLOC when memory is out;
  ///         else what failed below. No exception leaves it.
  [[nodiscard]] virtual Result_t InitWithUUIDList(const Ferro::ArchivableList<Ferro::UUID>& ids,
                                                  const Cairn::IAssetLookup& lookup,
                                                  const Cairn::PListDict& options) = 0;
  /// Lays out the show playlist or composition playlist whose XML text is `document`; an empty text is
  /// RESULT_SX_EMPTY_PL, one that is neither QUIRE::RESULT_FORMAT. A show playlist that nests itself by its own identifier
  /// is RESULT_SX_PLAYLIST_PTYPE: as text it is no file of the store. Otherwise as InitWithUUIDList.
  [[nodiscard]] virtual Result_t InitWithPlaylist(const std::string& document, const Cairn::IAssetLookup& lookup,
                                                  const Cairn::PListDict& options) = 0;
  /// Answers the composition that was loaded last, and the assets it was resolved to.
  virtual void GetLastCPLContext(UUID& id, Ferro::ArchivableList<Cairn::AssetInfo>& assets) const = 0;

  /// Writes the timeline as a show playlist document; nested show playlists come out flat, events as markers. `document`
  /// is empty where an event's label is no text for XML, and, logged, where the system has no random numbers.
  /// @return RESULT_OK.
  [[nodiscard]] virtual Result_t GetShowPlaylistForTimeline(std::string& document) const = 0;
  /// Writes the timeline's text tracks as a resource presentation list (ST 430-11).
  /// @param base_path   put in front of each resource's identifier to form its URL
  /// @param document    receives the XML text
  /// @param playout_id  receives the random number that names this playout
  /// @return RESULT_OK; RESULT_FALSE when no reel has text, the document then having no reel; RESULT_FAIL, logged, where
  ///         the system has no random numbers, the document then being empty and `playout_id` 0.
  [[nodiscard]] virtual Result_t GetPresentationListForTimeline(const std::string& base_path, std::string& document,
                                                                ui32_t& playout_id) const = 0;

  /// Places an event; a position beyond the end becomes the last edit unit. @return RESULT_OK.
  [[nodiscard]] virtual Result_t AddEventToTimeline(const std::string& label, const std::string& scope,
                                                    const ui32_t& show_position) = 0;
  /// Reports the positions when they were computed since the last report, or when `force` is set.
  virtual void TransportStatusNotify(ITransportNotify* handler, CommandType_t command, const DeviceStatus& status,
                                     bool force) = 0;
  /// Reports the composition when it or its reel changed since the last report, or when `force` is set.
  virtual void PlaylistStatusNotify(ITransportNotify* handler, bool force) = 0;
  /// Reports the events at exactly the current position, on each call.
  virtual void PlaylistEventNotify(ITransportNotify* handler) = 0;

  /// Moves on by `count` edit units, to the last one at most. @return true when the end stopped the move.
  virtual bool MoveForward(ui32_t count) = 0;
  /// Moves back by `count` edit units, to the first one at most. @return true when the start stopped the move.
  virtual bool MoveBackward(ui32_t count) = 0;
  /// Moves to `position`, or to the last edit unit when that is beyond it. @return true when the end stopped the move.
  virtual bool MoveToEditUnit(ui32_t position) = 0;

  /// True once after each change of essence coding, so that the output device is set up anew.
  [[nodiscard]] virtual bool EssenceCodingChanged() = 0;
  /// True when any reel's picture is stereoscopic.
  [[nodiscard]] virtual bool HasStereoImage() const = 0;
  /// Answers what the essence of the reel at the current position is like. Sets OpenTextStatus when some reel has
  /// on-screen text, and never clears it; leaves ClosedTextStatus.
  virtual void GetCurrentReelEssenceInfo(EssenceParams& out) const = 0;

  /// Answers the content keys that playback needs, each once.
  virtual void GetKeyIDList(Ferro::ArchivableList<Ferro::UUID>& out) const = 0;
  /// Answers the compositions of the timeline.
  virtual void GetCPLIDList(Ferro::ArchivableList<Ferro::UUID>& out) const = 0;
  /// Answers the compositions that hold encrypted tracks, each once.
  virtual void GetCiphertextCPLIDList(Ferro::ArchivableList<Ferro::UUID>& out) const = 0;

  /// Of the whole timeline, in edit units.
  [[nodiscard]] virtual ui32_t GetDuration() const = 0;
  /// Of the whole timeline, rounded to the nearest second.
  [[nodiscard]] virtual ui32_t GetDurationSeconds() const = 0;
  [[nodiscard]] virtual ui32_t GetPosition() const = 0;
  /// The composition at the current position; valid as long as the playlist is.
  [[nodiscard]] virtual const CompositionInfo& GetCompositionInfoForCurrentPosition() const = 0;
  /// The composition at `position`; valid as long as the playlist is.
  [[nodiscard]] virtual const CompositionInfo& GetCompositionInfoForPosition(const ui32_t& position) const = 0;
  /// The position within its reel of the timeline's `position`.
  [[nodiscard]] virtual ui32_t TranslateReelPosition(const ui32_t& position) const = 0;
  /// Where the timeline's `position` lies: edit units from its reel's start, the reel's number in its composition (from
  /// 0), its length in edit units, its composition and edit rate, and whether it starts a distinct coding.
  virtual void TranslateReelPosition(const ui32_t& position, ui32_t& reel_position, ui32_t& reel_number,
                                     ui32_t& reel_duration, UUID& composition_id, QUIRE::Rational& edit_rate,
                                     bool& distinct_coding) const = 0;

  /// The track of a type and channel at `position`, or null. Makes the tracks of this type ready in that reel and two
  /// reels on each side, and puts the others to rest. The track belongs to the playlist.
  [[nodiscard]] virtual ITimelineTrack* GetReaderForChannel(TrackType_t type, ui32_t channel,
                                                            ui32_t position) const = 0;
  /// The number of channels of a type at `position`.
  [[nodiscard]] virtual ui32_t GetChannelCountForType(TrackType_t type, ui32_t position) const = 0;

 protected:
  IPlaylist() = default;
  IPlaylist(const IPlaylist&) = default;
  IPlaylist& operator=(const IPlaylist&) = default;
};

/// Makes an empty playlist; what `out` held is deleted. @return RESULT_OK.
[[nodiscard]] STRATA_API Result_t NewPlaylist(Ferro::mem_ptr<IPlaylist>& out);

}  // namespace Strata
