// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Rational.h>
#include <QUIRE/Types.h>
#include <QUIRE/UL.h>

#include <Ferro/UUID.h>

namespace QUIRE::DCData {

/// What a track file says of its auxiliary data (ST 429-14).
struct DCDataDescriptor {
  Rational EditRate;             ///< edit units per second
  ui32_t ContainerDuration = 0;  ///< edit units
  Ferro::UUID AssetID;           ///< the track file's asset UUID
  UL DataEssenceCoding;          ///< names the kind of payload

  friend bool operator==(const DCDataDescriptor&, const DCDataDescriptor&) = default;
};

}  // namespace QUIRE::DCData
