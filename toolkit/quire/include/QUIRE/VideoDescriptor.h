// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Rational.h>
#include <QUIRE/Types.h>
#include <QUIRE/UL.h>

namespace QUIRE::MPEG2 {

/// What a track file says of its MPEG-2 pictures (ST 381-1; ST 377-1, annex F). Numbers that the file does not give are
/// 0, labels without value.
struct VideoDescriptor {
  Rational EditRate;             ///< edit units per second; an edit unit is one coded picture
  Rational SampleRate;           ///< pictures per second
  ui32_t ContainerDuration = 0;  ///< edit units
  ui32_t StoredWidth = 0;        ///< pixels
  ui32_t StoredHeight = 0;       ///< pixels of a frame
  Rational AspectRatio;          ///< width over height of the active picture
  UL PictureEssenceCoding;
  ui8_t FrameLayout = 0;      ///< 0 full frame, 1 separate fields, 2 single field, 3 mixed fields, 4 segmented frame
  ui32_t ComponentDepth = 0;  ///< bits
  ui32_t HorizontalSubsampling = 0;
  ui32_t VerticalSubsampling = 0;
  ui8_t ColorSiting = 0;
  ui8_t CodedContentType = 0;  ///< 0 unknown, 1 progressive, 2 interlaced, 3 mixed
  bool LowDelay = false;
  ui32_t BitRate = 0;         ///< bits per second
  ui8_t ProfileAndLevel = 0;  ///< profile_and_level_indication of the sequence extension

  friend bool operator==(const VideoDescriptor&, const VideoDescriptor&) = default;
};

}  // namespace QUIRE::MPEG2
