// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "FrameSource.h"

#include <optional>
#include <string>
#include <vector>

namespace Tool {

/// What a file is to hold; its extension says it.
enum class FrameForm {
  Codestream,  ///< .j2c, .j2k: JPEG 2000 as it is
  Video,       ///< .m2v: MPEG-2 as it is
  Picture,     ///< .png: decoded for viewing
  Sound,       ///< .wav
  Document,    ///< .xml: timed text, with its fonts and images beside it
  Raw,         ///< .bin: any channel as it is stored
};

/// No value for an extension that is none of them.
[[nodiscard]] std::optional<FrameForm> FrameFormOf(const std::string& filename);

enum class Eye { Both, Left, Right };

struct FrameOutputOptions {
  std::string Filename;
  FrameForm Form = FrameForm::Raw;
  Eye Eyes = Eye::Both;
  PictureColour Colour = PictureColour::Unknown;  ///< Unknown: what the track file says
  WhitePoint White = WhitePoint::DCI;
};

/// Refuses an edit unit that cannot become such a file: another coding, an eye that is not there, ciphertext. Throws
/// CommandError.
void CheckFrameFits(const EditUnit& unit, const FrameOutputOptions& options);

/// Writes an edit unit of anything but sound. Both eyes go into two files, "-left" and "-right" before the extension.
/// @return the files written, the document before its resources. Throws CommandError.
std::vector<std::string> WriteFrame(const EditUnit& unit, const FrameOutputOptions& options);

}  // namespace Tool
