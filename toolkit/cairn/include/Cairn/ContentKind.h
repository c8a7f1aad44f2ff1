// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/Types.h>

namespace Cairn {

/// The kind of content a composition holds (ST 429-7, 429-16). The values travel in protocol records and never change.
enum ContentKind_t : ui32_t {
  CK_UNKNOWN = 0,
  CK_FEATURE = 1,
  CK_TRAILER = 2,
  CK_TEASER = 3,
  CK_TEST = 4,
  CK_RATING = 5,
  CK_ADVERTISEMENT = 6,
  CK_SHORT = 7,
  CK_TRANSITIONAL = 8,
  CK_PSA = 9,
  CK_POLICY = 10,
  CK_CLIP = 11,
  CK_PROMO = 12,
  CK_STEREO_CARD = 13,
  CK_MAX = 14
};

}  // namespace Cairn
