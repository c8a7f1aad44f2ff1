// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/Types.h>

namespace Cairn {

/// What is known of a document's signature. The readers never go beyond SM_UNTESTED: presence is no proof.
enum SignatureMode_t : ui32_t {
  SM_NONE = 0,      ///< no signature
  SM_UNTESTED = 1,  ///< a signature is present and was not verified
  SM_VALID = 2,
  SM_INVALID = 3,
  SM_MAX = 4
};

}  // namespace Cairn
