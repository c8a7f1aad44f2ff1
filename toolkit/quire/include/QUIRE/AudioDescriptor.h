// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Rational.h>
#include <QUIRE/Types.h>

namespace QUIRE::PCM {

/// How the channels of a sound track are used (ST 429-2, annex A; ST 429-12).
enum ChannelFormat_t : ui32_t {
  CF_NONE = 0,   ///< not said, or by a label that is not known here
  CF_CFG_1 = 1,  ///< 5.1 with optional HI and VI-N
  CF_CFG_2 = 2,  ///< 6.1 with optional HI and VI-N
  CF_CFG_3 = 3,  ///< 7.1 SDS with optional HI and VI-N
  CF_CFG_4 = 4,  ///< wild track format: channel n to output n
  CF_CFG_5 = 5,  ///< 7.1 DS with optional HI and VI-N
  CF_CFG_6 = 6,  ///< by multichannel labels (ST 377-4)
};

/// What a track file says of its sound (ST 382; ST 377-1, annex F). Numbers that the file does not give are 0.
struct AudioDescriptor {
  Rational EditRate;           ///< edit units per second
  Rational AudioSamplingRate;  ///< samples per second and channel
  bool Locked = false;         ///< sampling locked to video
  ui32_t ChannelCount = 0;
  ui32_t QuantizationBits = 0;  ///< per sample
  ui32_t BlockAlign = 0;        ///< bytes of one sample of all channels
  ui32_t AvgBps = 0;            ///< bytes per second
  ui32_t LinkedTrackID = 0;
  ui32_t ContainerDuration = 0;  ///< edit units
  ChannelFormat_t ChannelFormat = CF_NONE;

  friend bool operator==(const AudioDescriptor&, const AudioDescriptor&) = default;
};

}  // namespace QUIRE::PCM
