// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/CompositionInfo.h>

#include <Ferro/Types.h>

namespace Strata {

/// Which picture-size changes count as a change of essence coding.
enum ImageEssenceChangeMode_t : Ferro::ui32_t {
  EECM_NONE = 0,   ///< none
  EECM_2K_4K = 1,  ///< only one across the border between 2K (at most 2048 wide) and 4K
  EECM_ANY = 2     ///< any change of width or height
};

/// True when playback can pass from one composition to the other without reconfiguring: equal edit rate, picture format
/// and sound format, and picture sizes that `mode` takes as the same.
[[nodiscard]] bool test_CompositionInfo_coding_same(const CompositionInfo& a, const CompositionInfo& b,
                                                    const ImageEssenceChangeMode_t& mode);

}  // namespace Strata
