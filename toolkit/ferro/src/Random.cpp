// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/Random.h>

#include <cerrno>

#include <sys/random.h>

namespace Ferro {

Result_t FillRandom(std::span<ui8_t> out) {
  while (!out.empty()) {
    const ssize_t count = getrandom(out.data(), out.size(), 0);
    if (count > 0)
      out = out.subspan(static_cast<size_t>(count));
    else if (count == 0 || errno != EINTR)
      return RESULT_FAIL;
  }
  return RESULT_OK;
}

}  // namespace Ferro
