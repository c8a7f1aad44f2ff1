// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/Types.h>

#include <QUIRE/Rational.h>
#include <QUIRE/UL.h>

#include <array>
#include <string>

namespace Strata {

/// The largest number of off-screen text channels of a reel.
inline constexpr ui32_t OffScreenTextChannelMax = 6;

/// What the essence of one reel is like, for setting up the output device.
struct EssenceParams {
  ui32_t AudioChannelCount = 0;    ///< 0 without sound
  QUIRE::UL ChannelAssignment;     ///< the sound file's channel-assignment label; may have no value
  std::string MCALabelString;      ///< sound configuration, for example "51(L,R,C,LFE,Ls,Rs),HI,VIN"; may be empty
  QUIRE::Rational ImageSize;       ///< numerator is the stored width, denominator the stored height, in pixels
  bool StereoscopicImage = false;  ///< two pictures per edit unit
  bool OpenTextStatus = false;     ///< some reel of the timeline has on-screen text
  std::array<bool, OffScreenTextChannelMax> ClosedTextStatus{};  ///< per off-screen text channel; kept by the server
};

}  // namespace Strata
