// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/Types.h>

namespace Strata {

/// The kinds of track a reel carries.
enum TrackType_t : ui32_t {
  TRKT_IMAGE = 0,            ///< main picture, one per reel
  TRKT_SOUND = 1,            ///< main sound, at most one per reel
  TRKT_ON_SCREEN_TEXT = 2,   ///< subtitle or caption in the picture, at most one per reel
  TRKT_OFF_SCREEN_TEXT = 3,  ///< closed subtitle or caption for outboard displays, at most six per reel
  TRKT_AUX_DATA = 4,         ///< D-Cinema data or immersive audio, any number per reel
  TRKT_MAX = 5               ///< number of kinds
};

}  // namespace Strata
