// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/Strata.h>

#include <cstdio>

int main() {
  std::printf("Strata %s\n", Strata::Version());
}
