// SPDX-License-Identifier: BSD-3-Clause
#include "DocumentRoundTrip.h"

#include <Cairn/PackingList.h>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size) {
  CairnFuzz::CheckRoundTrip<Cairn::PackingList>(data, size);
  return 0;
}
