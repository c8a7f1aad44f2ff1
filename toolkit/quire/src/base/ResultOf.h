// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Result.h>

#include <new>

namespace QUIRE {

/// The result of `work`, RESULT_ALLOC where it runs out of memory. For functions that promise a result.
template <class Work>
[[nodiscard]] Result_t ResultOf(const Work& work) {
  try {
    return work();
  } catch (const std::bad_alloc&) {
    return Ferro::RESULT_ALLOC;
  }
}

}  // namespace QUIRE
