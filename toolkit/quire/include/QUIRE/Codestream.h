// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Export.h>
#include <QUIRE/PictureDescriptor.h>
#include <QUIRE/Result.h>
#include <QUIRE/VideoDescriptor.h>

#include <span>

namespace QUIRE {

// What raw picture essence says of itself. Every function takes any bytes: a length or count that leads outside them is
// RESULT_RAW_FORMAT. Any thread may call them.

namespace JP2K {

/// Fills the descriptor from the main header of one codestream (ISO/IEC 15444-1, annex A): the SIZ, COD and QCD marker
/// segments verbatim, stored width and height, an aspect ratio of width to height, and the coding label that belongs to
/// the profile (Rsiz 3: 2K, 4: 4K, any other: undefined). Edit rate, sample rate, duration and the stereoscopic flag are
/// not the codestream's to say and stay as they are.
/// QUIRE/JP2KHeaders.h tells more of a codestream.
/// @return RESULT_OK; RESULT_RAW_FORMAT, with `descriptor` unchanged, where a marker segment of the main header is missing,
/// malformed or out of place.
[[nodiscard]] QUIRE_API Result_t ParseCodestream(std::span<const ui8_t> codestream, PictureDescriptor& descriptor);

}  // namespace JP2K

namespace MPEG2 {

/// Fills the descriptor from the first sequence header and sequence extension (ISO/IEC 13818-2, 6.2.2): frame rate (also
/// as sample rate), size, aspect ratio, bit rate, profile and level, scanning, chroma format, and the coding label for
/// Main or 4:2:2 profile at High level with predicted pictures; other profiles and levels have no label here. The
/// duration stays as it is.
/// @return RESULT_OK; RESULT_RAW_FORMAT, with `descriptor` unchanged, where either header is missing, cut short or holds
/// a forbidden value.
[[nodiscard]] QUIRE_API Result_t ParseSequence(std::span<const ui8_t> stream, VideoDescriptor& descriptor);

enum PictureType_t : ui8_t {
  PT_I = 1,  ///< intra coded
  PT_P = 2,  ///< predicted from the past
  PT_B = 3,  ///< predicted from past and future
};

/// What an access unit says of its picture.
struct PictureHeader {
  PictureType_t Type = PT_I;
  ui16_t TemporalReference = 0;    ///< display position within its group of pictures
  bool HasSequenceHeader = false;  ///< a sequence header stands before the picture
  bool StartsGroup = false;        ///< a group-of-pictures header stands before the picture
  bool ClosedGroup = false;        ///< that group refers to no picture before it

  friend bool operator==(const PictureHeader&, const PictureHeader&) = default;
};

/// Reads the header of the first picture and what stands before it (ISO/IEC 13818-2, 6.2.2.6 and 6.2.3).
/// @return RESULT_OK; RESULT_RAW_FORMAT, with `header` unchanged, where there is no picture or its type is unknown.
[[nodiscard]] QUIRE_API Result_t ParsePicture(std::span<const ui8_t> access_unit, PictureHeader& header);

/// Bytes of the first access unit of an elementary stream: a picture, or the two fields of one, with the headers before
/// it and an end-of-sequence code after it. Reaches to the end of `stream` where no other one begins.
/// @param length receives the bytes; more than 0.
/// @return RESULT_OK; RESULT_RAW_FORMAT where `stream` does not begin with a start code or holds no picture.
[[nodiscard]] QUIRE_API Result_t FindAccessUnit(std::span<const ui8_t> stream, size_t& length);

}  // namespace MPEG2

}  // namespace QUIRE
