// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/DCDataDescriptor.h>

namespace QUIRE::ATMOS {

/// What a track file says of its immersive audio (ST 429-18).
struct AtmosDescriptor : DCData::DCDataDescriptor {
  ui32_t FirstFrame = 0;  ///< edit unit aligned with the first frame of picture action
  ui16_t MaxChannelCount = 0;
  ui16_t MaxObjectCount = 0;
  Ferro::UUID AtmosID;  ///< the immersive audio's own identifier, not the asset's
  ui8_t AtmosVersion = 0;

  friend bool operator==(const AtmosDescriptor&, const AtmosDescriptor&) = default;
};

}  // namespace QUIRE::ATMOS
