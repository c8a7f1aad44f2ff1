// SPDX-License-Identifier: BSD-3-Clause
#include "frames/KeptResults.h"

#include <Ferro/Assert.h>
#include <Ferro/SHA1Digest.h>

// The input without the digest at its end, which no mutation would hit.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size) {
  std::vector<Assay::ui8_t> bytes(data, data + size);
  Ferro::SHA1Digest digest;
  digest.Update(bytes);
  const Ferro::SHA1 found = digest.Finish();
  bytes.insert(bytes.end(), found.Bytes().begin(), found.Bytes().end());
  Assay::KeptResults kept;
  if (kept.Decode(bytes) != Assay::KeptState::Used) {
    FERRO_ASSERT(kept.Size() == 0);
    return 0;
  }
  Assay::KeptResults again;
  FERRO_ASSERT(again.Decode(kept.Encode()) == Assay::KeptState::Used);
  FERRO_ASSERT(again.Size() == kept.Size());
  return 0;
}
