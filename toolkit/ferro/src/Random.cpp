// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/Assert.h>
#include <Ferro/Random.h>

#include <cerrno>

#include <sys/random.h>

namespace Ferro {

void FillRandom(std::span<ui8_t> out) {
  while (!out.empty()) {
    const ssize_t count = getrandom(out.data(), out.size(), 0);
    FERRO_ASSERT(count > 0 || errno == EINTR);
    if (count > 0) out = out.subspan(static_cast<size_t>(count));
  }
}

}  // namespace Ferro
