// SPDX-License-Identifier: BSD-3-Clause
#include "Playlist/CompositionCoding.h"

namespace Strata {

namespace {

constexpr ui32_t Widest2K = 2048;

}  // namespace

bool test_CompositionInfo_coding_same(const CompositionInfo& a, const CompositionInfo& b,
                                      const ImageEssenceChangeMode_t& mode) {
  if (!(a.EditRate == b.EditRate) || a.ImageFormat != b.ImageFormat || a.SoundFormat != b.SoundFormat) return false;
  switch (mode) {
    case EECM_ANY:
      return a.ImageWidth == b.ImageWidth && a.ImageHeight == b.ImageHeight;
    case EECM_2K_4K:
      return (a.ImageWidth > Widest2K) == (b.ImageWidth > Widest2K);
    default:
      return true;
  }
}

}  // namespace Strata
