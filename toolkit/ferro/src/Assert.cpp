// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/Assert.h>

#include <cstdio>
#include <cstdlib>

namespace Ferro {

void AssertFailed(const char* file, unsigned line, const char* function, const char* expression) noexcept {
  std::fprintf(stderr, "%s:%u: %s: Assertion '%s' failed.\n", file, line, function, expression);
  std::abort();
}

}  // namespace Ferro
