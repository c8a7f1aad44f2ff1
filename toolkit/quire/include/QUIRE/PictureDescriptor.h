// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Rational.h>
#include <QUIRE/Types.h>
#include <QUIRE/UL.h>

#include <vector>

namespace QUIRE::JP2K {

/// One component's line of the SIZ marker segment (ISO/IEC 15444-1, A.5.1).
struct ComponentSizing {
  ui8_t Ssiz = 0;   ///< bit depth less 1; the top bit says signed
  ui8_t XRsiz = 0;  ///< horizontal separation of samples on the reference grid
  ui8_t YRsiz = 0;  ///< vertical separation
  friend bool operator==(const ComponentSizing&, const ComponentSizing&) = default;
};

/// The SIZ marker segment's fields under the standard's own names (ISO/IEC 15444-1, A.5.1). Sizes and offsets are in samples
/// of the reference grid.
struct ImageAndTileSize {
  ui16_t Rsiz = 0;   ///< the profile: 3 for 2K, 4 for 4K D-Cinema
  ui32_t Xsiz = 0;   ///< right edge of the image area
  ui32_t Ysiz = 0;   ///< its lower edge
  ui32_t XOsiz = 0;  ///< its left edge
  ui32_t YOsiz = 0;  ///< its upper edge
  ui32_t XTsiz = 0;  ///< width of a tile
  ui32_t YTsiz = 0;
  ui32_t XTOsiz = 0;  ///< left edge of the first tile
  ui32_t YTOsiz = 0;
  ui16_t Csiz = 0;  ///< components
  std::vector<ComponentSizing> PictureComponentSizing;

  friend bool operator==(const ImageAndTileSize&, const ImageAndTileSize&) = default;
};

/// What a track file says of its JPEG 2000 pictures (ST 429-4, ST 422, ST 429-10). Numbers that the file does not give
/// are 0, lists are empty, labels without value.
struct PictureDescriptor : ImageAndTileSize {
  Rational EditRate;             ///< edit units per second; an edit unit is one picture, or one pair of eyes
  Rational SampleRate;           ///< pictures per second: twice the edit rate for stereoscopic pictures
  ui32_t ContainerDuration = 0;  ///< edit units
  ui32_t StoredWidth = 0;        ///< pixels
  ui32_t StoredHeight = 0;       ///< pixels
  Rational AspectRatio;          ///< width over height of the active picture
  UL PictureEssenceCoding;       ///< the codestream's profile
  bool Stereoscopic = false;     ///< each edit unit holds a left and a right codestream

  std::vector<ui8_t> CodingStyleDefault;   ///< the COD marker segment after its length field
  std::vector<ui8_t> QuantizationDefault;  ///< the QCD marker segment after its length field

  friend bool operator==(const PictureDescriptor&, const PictureDescriptor&) = default;
};

}  // namespace QUIRE::JP2K
