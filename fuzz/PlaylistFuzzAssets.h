// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/UUID.h>

#include <array>

/// The assets that the store of PlaylistFuzz holds. The last byte of an identifier chooses one.
enum class FuzzAsset : Ferro::ui8_t {
  Picture,
  StereoscopicPicture,
  MPEG2,
  Sound,
  Data,
  Atmos,
  Text,
  InteropText,
  Composition,  ///< of one reel with picture and sound
  Show,         ///< names Composition
  LoopingShow,  ///< names Composition, then itself
  Count
};

/// Identifiers fixed across runs, so that inputs kept from earlier ones go on finding their assets.
inline Ferro::UUID FuzzAssetID(FuzzAsset asset) {
  std::array<Ferro::ui8_t, Ferro::UUID::Size> bytes{};
  bytes[6] = 0x40;
  bytes[8] = 0x80;
  bytes[15] = static_cast<Ferro::ui8_t>(asset);
  return Ferro::UUID(bytes);
}
