// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/FileType.h>
#include <Ferro/Types.h>
#include <Ferro/UUID.h>
#include <QUIRE/Rational.h>

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
  std::string Reason;            ///< of the problem: the result's label
  Ferro::ui32_t EditUnit = 0;    ///< that cannot be read
  std::string Resource;          ///< that cannot be read
  bool IsIncomplete = false;     ///< frames at its end, which are not played, cannot be read
  bool HasLength = false;        ///< rate and duration are known; a subtitle document has none
  QUIRE::Rational EditRate;      ///< edit units per second
  Ferro::ui32_t Duration = 0;    ///< edit units
  Ferro::ui32_t Width = 0;       ///< pixels
  Ferro::ui32_t Height = 0;      ///< pixels
  Ferro::ui32_t Channels = 0;    ///< of sound
  QUIRE::Rational SamplingRate;  ///< sound samples per second
  Ferro::ui32_t SampleBits = 0;  ///< of one sound sample
  bool Encrypted = false;
  Ferro::UUID KeyID;         ///< of the content key
  std::string MissingFont;   ///< one that the text refers to and that is not there
  std::string MissingImage;  ///< the same
};

/// Opens a file and reads its first edit unit, edit unit `last`, where it has it, and its last one; of text the document
/// with its fonts and images. `type` is what the file was found to hold.
[[nodiscard]] TrackFileFacts ReadTrackFileFacts(const std::string& filename, Cairn::FileType_t type,
                                                Ferro::ui32_t last);

}  // namespace Tool
