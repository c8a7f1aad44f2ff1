// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Export.h>
#include <QUIRE/Result.h>
#include <QUIRE/Types.h>

#include <string>

namespace QUIRE {

/// What a file holds. The numbers are those that asset stores use for the same kinds, and never change.
enum EssenceType_t : ui32_t {
  ESS_UNKNOWN = 0,       ///< not an MXF file
  ESS_MXF_OTHER = 2,     ///< an MXF file of another kind, or one whose header cannot be understood
  ESS_MPEG2_VES = 3,     ///< MPEG-2 video
  ESS_JPEG_2000 = 4,     ///< JPEG 2000 picture
  ESS_PCM = 5,           ///< PCM sound
  ESS_JPEG_2000_S = 18,  ///< stereoscopic JPEG 2000 picture
  ESS_TIMED_TEXT = 19,   ///< timed text
  ESS_DCDATA = 22,       ///< auxiliary data
  ESS_ATMOS = 23,        ///< immersive audio
};

/// Finds out what a file holds by reading its header, encrypted files included. That a file is none of these is an
/// answer, and not logged; a line says what is wrong with an MXF file whose header cannot be understood.
/// @param type receives the answer; ESS_UNKNOWN on failure.
/// @return RESULT_OK whenever the file could be read; else what Ferro::FileReader::OpenRead or ReadAt returned.
/// Any thread may call it.
[[nodiscard]] QUIRE_API Result_t EssenceType(const std::string& filename, EssenceType_t& type);

}  // namespace QUIRE
