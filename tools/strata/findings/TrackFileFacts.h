// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/FileType.h>
#include <Ferro/Types.h>
#include <Ferro/UUID.h>
#include <QUIRE/Rational.h>

#include <string>

namespace Tool {

/// What a track file or subtitle document says of itself, and what cannot be read of it. Numbers that its kind does not
/// have are 0.
struct TrackFileFacts {
  std::string Problem;           ///< why it cannot be used, one sentence; empty when all is well
  std::string Remark;            ///< what is out of order in it all the same; empty when nothing is
  bool HasLength = false;        ///< rate and duration are known; a subtitle document has none
  QUIRE::Rational EditRate;      ///< edit units per second
  Ferro::ui32_t Duration = 0;    ///< edit units
  Ferro::ui32_t Width = 0;       ///< pixels
  Ferro::ui32_t Height = 0;      ///< pixels
  Ferro::ui32_t Channels = 0;    ///< of sound
  QUIRE::Rational SamplingRate;  ///< sound samples per second
  Ferro::ui32_t SampleBits = 0;  ///< of one sound sample
  bool Encrypted = false;
  Ferro::UUID KeyID;            ///< of the content key
  std::string MissingResource;  ///< a font or image that the text refers to and that is not there
};

/// Opens a file and reads its first edit unit and edit unit `last`, where it has it; of text the document with its fonts
/// and images. `type` is what the file was found to hold: anything but a kind of track file or subtitle is a problem.
[[nodiscard]] TrackFileFacts ReadTrackFileFacts(const std::string& filename, Cairn::FileType_t type,
                                                Ferro::ui32_t last);

}  // namespace Tool
