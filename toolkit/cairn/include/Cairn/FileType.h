// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/Export.h>
#include <Cairn/Types.h>

namespace Cairn {

/// What a file holds, found by looking inside. The values travel in protocol records and never change.
enum FileType_t : ui32_t {
  FT_UNKNOWN = 0,            ///< none of the below
  FT_XML = 1,                ///< well-formed XML of another kind
  FT_MXF = 2,                ///< MXF of another kind
  FT_QUIRE_MPEG2_VES = 3,    ///< MPEG-2 video track file
  FT_QUIRE_JP2K_J2C = 4,     ///< JPEG 2000 picture track file
  FT_QUIRE_PCM = 5,          ///< PCM sound track file
  FT_TI_SUBTITLE = 6,        ///< Interop subtitle document (CineCanvas XML)
  FT_TI_PNG = 7,             ///< PNG image
  FT_TI_TRUETYPE = 8,        ///< TrueType font
  FT_OPENTYPE = 9,           ///< OpenType font
  FT_KDM = 10,               ///< key delivery message
  FT_ASSETMAP = 11,          ///< asset map
  FT_CPL = 12,               ///< composition playlist
  FT_PKL = 13,               ///< packing list
  FT_VOLINDEX = 14,          ///< volume index
  FT_RPL = 15,               ///< resource presentation list
  FT_J2C = 16,               ///< bare JPEG 2000 codestream
  FT_WAV = 17,               ///< WAVE sound file
  FT_QUIRE_JP2K_J2C_S = 18,  ///< stereoscopic JPEG 2000 picture track file
  FT_QUIRE_TIMED_TEXT = 19,  ///< timed-text track file (ST 429-5)
  FT_SHOW = 20,              ///< show playlist
  FT_DCST = 21,              ///< timed-text document (ST 428-7)
  FT_QUIRE_DCDATA = 22,      ///< D-Cinema data track file (ST 429-14)
  FT_QUIRE_ATMOS = 23,       ///< immersive-audio track file (ST 429-18)
  FT_MPEG2_VES = 24,         ///< bare MPEG-2 video elementary stream
  FT_MAX = 25
};

}  // namespace Cairn
