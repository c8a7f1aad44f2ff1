// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "findings/SecurityFindings.h"
#include "show/ShowOutline.h"
#include "terminal/ExitCode.h"

#include <string>
#include <vector>

namespace Tool {

// A show as it is drawn: what plays when, in which lane, and what is wrong with it. Plain values.

/// A stretch of the show, from the show's start: in edit units, each in its composition's rate, and in seconds.
struct TimelineSpan {
  Ferro::ui32_t Start = 0;
  Ferro::ui32_t Duration = 0;
  double StartSeconds = 0;
  double Seconds = 0;

  [[nodiscard]] double EndSeconds() const { return StartSeconds + Seconds; }
};

/// How it stands with something that is to play, the worse the later.
enum class TimelineState {
  Ready,
  Silence,  ///< the reel has no sound while others of its composition have: silence is played
  NoSound,  ///< the composition has no sound
  Unusual,  ///< it plays; something about it is to be known
  Missing,  ///< no store has it
  Broken,   ///< it is there and cannot be used
};

/// "ready", "silence", "no sound", "unusual", "missing", "broken".
[[nodiscard]] const char* TimelineStateName(TimelineState state);

/// True for what keeps the show from playing.
[[nodiscard]] constexpr bool IsAlarming(TimelineState state) {
  return state >= TimelineState::Missing;
}

/// True where no sound is to play.
[[nodiscard]] constexpr bool IsSilent(TimelineState state) {
  return state == TimelineState::Silence || state == TimelineState::NoSound;
}

/// One asset in one reel, or the lack of sound there.
struct TimelineTrack : TimelineSpan {
  size_t Composition = 0;  ///< index
  size_t Reel = 0;         ///< within the composition, from 1
  TimelineState State = TimelineState::Ready;
  std::vector<std::string> Problems;  ///< a sentence each
  Cairn::GenericAsset Asset;          ///< without AssetID where sound lacks
  std::string File;                   ///< empty where there is none
  std::string Description;            ///< "Flat 2K 1998×1080, 24 fps, 0:10"; empty where it is not known
  std::string Language;
  std::string Coding;  ///< of auxiliary data: "immersive audio", or the label as written
  bool Stereoscopic = false;

  [[nodiscard]] bool Encrypted() const { return Asset.KeyID.HasValue(); }
  /// Edit units of the file that are not played: before the part that is, and after it.
  [[nodiscard]] Ferro::ui32_t HeadTrim() const { return Asset.EntryPoint; }
  [[nodiscard]] Ferro::ui32_t TailTrim() const;
};

/// All assets of one kind that can play at the same time as no other of the lane.
struct TimelineLane {
  AssetKind Kind = AssetKind::Picture;
  unsigned Number = 1;  ///< among the lanes of its kind
  std::string Name;     ///< "Picture", "Caption 2"
  std::vector<TimelineTrack> Tracks;
};

struct TimelineReel : TimelineSpan {
  Cairn::UUID ID;
};

struct TimelineComposition : TimelineSpan {
  Cairn::UUID ID;
  std::string Title;  ///< its identifier where it has none
  std::string Kind;
  std::string File;
  std::string Description;  ///< "Flat 2K 1998×1080, 24 fps, 5.1, en, SMPTE, OV, 3 reels"
  QUIRE::Rational EditRate;
  bool Stereoscopic = false;
  bool Encrypted = false;
  TimelineState State =
      TimelineState::Ready;  ///< of the document, which may have no reels where it is Missing or Broken
  std::vector<std::string> Problems;
  std::vector<TimelineReel> Reels;
  std::vector<KeyAnswer> Keys;  ///< whether key messages serve it; empty where it needs none
};

/// A show playlist, and what of the show it makes up.
struct TimelineShow : TimelineSpan {
  Cairn::UUID ID;
  std::string Title;
  std::string File;
  unsigned Depth = 0;  ///< 0: it is in no other one
};

struct TimelineMarker {
  std::string Label;
  std::string Scope;
  bool OfComposition = false;  ///< the composition's own, otherwise an event of the show
  Ferro::ui32_t Position = 0;  ///< edit units from the start of the show
  double Seconds = 0;          ///< the same
};

struct TimelineModel : TimelineSpan {
  std::string Title;
  std::vector<TimelineShow> Shows;
  std::vector<TimelineComposition> Compositions;
  std::vector<TimelineLane> Lanes;      ///< picture and sound always, then those that there are
  std::vector<TimelineMarker> Markers;  ///< by position
  FindingList Findings;
  ExitCode Code = ExitCode::Fine;  ///< what the findings come to
};

/// @param security  what is known of signatures and keys; null: they are not looked at.
[[nodiscard]] TimelineModel MakeTimelineModel(const ShowOutline& outline, const ShowSecurity* security = nullptr);
/// The same where it is known already what is wrong with the show.
[[nodiscard]] TimelineModel MakeTimelineModel(const ShowOutline& outline, const ShowSecurity* security,
                                              FindingList findings);

/// Errors, then what is missing, then warnings; otherwise in the order in which they are.
[[nodiscard]] FindingList WorstFirst(FindingList findings);
/// "2 missing: 1 picture, 1 sound; 1 error."; "All assets are there." when nothing is wrong.
[[nodiscard]] std::string TimelineVerdict(const TimelineModel& model);
/// The time code of a position of the show: of its seconds, and edit units beyond, in the rate of what plays there.
[[nodiscard]] std::string TimelineTimeCode(const TimelineModel& model, Ferro::ui32_t position);

}  // namespace Tool
