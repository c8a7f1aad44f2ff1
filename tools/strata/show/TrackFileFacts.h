// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/FileType.h>
#include <Ferro/Types.h>
#include <Ferro/UUID.h>
#include <QUIRE/Rational.h>

#include <optional>
#include <string>

namespace Tool {

/// What keeps a track file or subtitle document from being used.
enum class TrackFileProblem {
  None,
  NotATrackFile,
  CannotBeOpened,
  FrameUnreadable,     ///< of EditUnit
  ResourceUnreadable,  ///< the font or image Resource
  TextUnreadable,
  TextIsNotXML,
  SubtitleUnreadable,
};

/// What a track file or subtitle document says of itself, and what cannot be read of it. Numbers that its kind does not
/// have are 0.
struct TrackFileFacts {
  TrackFileProblem Problem = TrackFileProblem::None;
  std::string Reason;          ///< of the problem, as ReasonText
  Ferro::ui32_t EditUnit = 0;  ///< that cannot be read
  std::string Resource;        ///< that cannot be read
  bool IsIncomplete = false;   ///< frames at its end, which are not played, cannot be read
  Cairn::FileType_t Type = Cairn::FT_UNKNOWN;
  bool HasLength = false;        ///< rate and duration are known; a subtitle document has none
  QUIRE::Rational EditRate;      ///< edit units per second
  Ferro::ui32_t Duration = 0;    ///< edit units
  Ferro::ui32_t Width = 0;       ///< pixels
  Ferro::ui32_t Height = 0;      ///< pixels
  Ferro::ui32_t Channels = 0;    ///< of sound
  QUIRE::Rational SamplingRate;  ///< sound samples per second
  Ferro::ui32_t SampleBits = 0;  ///< of one sound sample
  std::string Configuration;     ///< of sound: "51/L,R,C,LFE,Ls,Rs"; may be empty
  bool Encrypted = false;
  Ferro::UUID KeyID;         ///< of the content key
  std::string MissingFont;   ///< one that the text refers to and that is not there
  std::string MissingImage;  ///< the same
};

/// Opens a file. `type` is what the file was found to hold.
/// @param last  the last edit unit that is played: it is tried, as are the first one of the file and its last; of text the
///              document with its fonts and images. No value: only the header is read.
[[nodiscard]] TrackFileFacts ReadTrackFileFacts(const std::string& filename, Cairn::FileType_t type,
                                                std::optional<Ferro::ui32_t> last = std::nullopt);

}  // namespace Tool
