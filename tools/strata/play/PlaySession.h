// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ChannelReader.h"
#include "FrameVerifier.h"
#include "PlayReport.h"
#include "PositionFile.h"
#include "Transport.h"
#include "show/ShowOutline.h"
#include "terminal/OwnThreadLog.h"
#include "terminal/Terminal.h"

#include <Strata/ITransportNotify.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Tool {

struct PlayOptions {
  InputOptions Inputs;
  std::optional<double> Speed = 1;  ///< times real time; no value: as fast as frames can be read
  std::string ResumeFile;           ///< where the position is kept; empty: nowhere
  bool Verify = false;
  KeyOptions Keys;      ///< what verifies encrypted frames
  bool Paused = false;  ///< wait for a command at the start
  bool AsJson = false;
};

/// What keys and commands do, a line each.
[[nodiscard]] std::string PlayHelp(bool has_keys);
/// "late 5 (picture 3, sound 2)": the frames that came too late; "late 0".
[[nodiscard]] std::string LateText(const std::vector<ChannelStatistics>& channels);

/// One playing of a show, from load to summary.
class PlaySession : private Strata::ITransportNotify {
 public:
  PlaySession(const PlayOptions& options, Inputs& inputs);
  ~PlaySession() override;

  /// Loads the show. False when it cannot be played; why is in the log.
  [[nodiscard]] bool Load();
  /// Plays until the end, the user's wish or a signal. False after a signal.
  [[nodiscard]] bool Play();
  /// What came of it.
  [[nodiscard]] PlayReport Report(bool interrupted) const;

 private:
  using Clock = std::chrono::steady_clock;

  void TransportStatusNotify(const Strata::TimelinePosition& show, const Strata::TimelinePosition& cpl,
                             const Strata::TimelinePosition& reel, const Strata::DeviceStatus& status,
                             const Strata::CommandType_t& command) override;
  void TransportExceptionNotify(const Strata::TransportException& exception) override;
  void PlaylistStatusNotify(const Strata::CompositionInfo& composition) override;
  void PlaylistEventNotify(const Ferro::ArchivableList<Strata::PlaylistEvent>& events) override;

  void PlayEditUnit();
  void Verify(const DeliveredFrame& frame);
  bool HandleInput(Terminal& terminal, const std::string& input);
  bool HandleKey(const std::string& key);
  void HandleLine(const std::string& line);
  [[nodiscard]] std::chrono::duration<double> EditUnitLength() const;
  [[nodiscard]] Clock::time_point EndOfEditUnit();
  /// The number of the composition at a position, from 0.
  [[nodiscard]] size_t CompositionAt(Ferro::ui32_t position) const;
  /// "96×64, 24 fps, 5.1, en, SMPTE, OV, 1 reel".
  [[nodiscard]] const std::string& DescriptionOf(const OutlineComposition& composition);
  [[nodiscard]] std::string StatusLine() const;
  /// "next SampleFeature in 0:02  LIGHTS_DOWN in 0:01".
  [[nodiscard]] std::string WhatComes(Ferro::ui32_t position) const;
  [[nodiscard]] std::string TimeTo(Ferro::ui32_t position) const;
  void ShowStatus();
  void Say(const std::string& line);
  void SayHelp(bool has_keys);
  void Warn(const std::string& line) const;
  void Resume();
  void KeepPosition();

  const PlayOptions& m_Options;
  Inputs& m_Inputs;
  const ShowOutline m_Outline;
  const bool m_AtMaximum;
  const bool m_ShowsStatus;
  std::optional<OwnThreadLog> m_Log;  // outlives the playlist's threads
  Ferro::mem_ptr<Strata::IPlaylist> m_Playlist;
  std::optional<Transport> m_Transport;
  std::unique_ptr<ChannelReader> m_Reader;
  const Sigil::KeyRing m_Keys;
  std::unique_ptr<FrameVerifier> m_Verifier;
  std::optional<Ferro::ui32_t> m_Played;  // the edit unit whose frames were taken last
  Ferro::ui64_t m_EditUnits = 0;
  std::string m_Typed;                  // a command being typed at the terminal
  std::optional<size_t> m_Composition;  // that was told of last
  std::map<Cairn::UUID, std::string> m_Descriptions;
  Clock::time_point m_Started;
  Clock::time_point m_Due;  // when the edit unit that plays began, by the clock of the show
  Clock::duration m_HeldUp{};
  Clock::time_point m_StatusShown;
  PositionFile m_PositionFile;
  bool m_KeepsPosition;
  Clock::time_point m_PositionKept;
  Clock::duration m_Elapsed{};
  std::vector<PlayedEvent> m_Events;
};

}  // namespace Tool
