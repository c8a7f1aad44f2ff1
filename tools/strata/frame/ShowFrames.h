// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "FrameSource.h"

#include <Strata/IPlaylist.h>
#include <Strata/ITimelineTrack.h>

namespace Tool {

/// A show, of which the engine delivers the edit units: nested shows, compositions and entry points are its affair.
class ShowFrames : public FrameSource {
 public:
  /// Loads the show. Throws CommandError where it cannot be played.
  ShowFrames(const InputOptions& options, TrackKeys& keys);
  ~ShowFrames() override;

  [[nodiscard]] QUIRE::Rational EditRate() const override;
  [[nodiscard]] Ferro::ui32_t Duration() const override { return m_Playlist->GetDuration(); }
  [[nodiscard]] EditUnit Read(const FrameChannel& channel, Ferro::ui32_t position) override;

 private:
  [[nodiscard]] bool Load();
  [[nodiscard]] Strata::ITimelineTrack& TrackFor(const FrameChannel& channel, Ferro::ui32_t position);
  void ReadFrame(Strata::ITimelineTrack& track, Strata::TrackType_t type, EditUnit& unit) const;
  void ReadText(const Strata::ITimelineTrack& track, EditUnit& unit) const;
  /// What decrypts a track; null where it is not encrypted, or there is no key.
  [[nodiscard]] TrackKey* KeyFor(const Strata::ITimelineTrack& track) const;

  TrackKeys& m_Keys;
  Inputs m_Inputs;  // outlives the playlist, which looks assets up in its store
  Ferro::mem_ptr<Strata::IPlaylist> m_Playlist;
};

}  // namespace Tool
