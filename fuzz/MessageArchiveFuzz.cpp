// SPDX-License-Identifier: BSD-3-Clause
// ZIP archives of key messages.
#include <Sigil/KeyMessageStore.h>

#include <Ferro/Assert.h>
#include <Ferro/Path.h>

#include "store/Archive.h"

#include <string_view>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size) {
  std::vector<Sigil::ArchivedDocument> documents;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  if (!Sigil::UnpackDocuments(bytes, documents).empty()) return 0;
  size_t total = 0;
  for (const Sigil::ArchivedDocument& document : documents) {
    FERRO_ASSERT(Ferro::PathStaysInside(document.Name));
    total += document.Text.size();
  }
  FERRO_ASSERT(total <= Sigil::KeyMessageStore::MaxArchiveSize);
  return 0;
}
