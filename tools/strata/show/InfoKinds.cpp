// SPDX-License-Identifier: BSD-3-Clause
#include "InfoKinds.h"

namespace Tool {

const char* FileKindName(Cairn::FileType_t type) {
  static constexpr const char* Names[] = {
      "unknown file",
      "XML document",
      "MXF file",
      "MPEG-2 picture track file",
      "JPEG 2000 picture track file",
      "sound track file",
      "Interop subtitle",
      "PNG image",
      "TrueType font",
      "OpenType font",
      "key delivery message",
      "asset map",
      "composition playlist",
      "packing list",
      "volume index",
      "resource presentation list",
      "JPEG 2000 codestream",
      "WAVE sound file",
      "stereoscopic JPEG 2000 picture track file",
      "timed-text track file",
      "show playlist",
      "timed-text document",
      "auxiliary-data track file",
      "immersive-audio track file",
      "MPEG-2 video elementary stream",
  };
  static_assert(sizeof Names / sizeof Names[0] == Cairn::FT_MAX);
  return type < Cairn::FT_MAX ? Names[type] : Names[Cairn::FT_UNKNOWN];
}

bool IsMXF(Cairn::FileType_t type) {
  switch (type) {
    case Cairn::FT_MXF:
    case Cairn::FT_QUIRE_MPEG2_VES:
    case Cairn::FT_QUIRE_JP2K_J2C:
    case Cairn::FT_QUIRE_JP2K_J2C_S:
    case Cairn::FT_QUIRE_PCM:
    case Cairn::FT_QUIRE_TIMED_TEXT:
    case Cairn::FT_QUIRE_DCDATA:
    case Cairn::FT_QUIRE_ATMOS:
      return true;
    default:
      return false;
  }
}

}  // namespace Tool
