// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Types.h>

namespace QUIRE {

/// Which family of labels a track file was written with. It is not stored as such; readers deduce it from the
/// operational pattern's version, the key of the encrypted triplets and the place of the essence.
enum LabelSet_t : ui8_t {
  LS_MXF_UNKNOWN = 0,
  LS_MXF_INTEROP = 1,
  LS_MXF_SMPTE = 2,
};

}  // namespace QUIRE
