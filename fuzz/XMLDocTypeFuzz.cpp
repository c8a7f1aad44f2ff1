// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/Types.h>
#include <Ferro/XMLDocType.h>

#include <cstdlib>

// A document type that was found is not longer than the document could make it, and an element always has a name.
extern "C" int LLVMFuzzerTestOneInput(const Ferro::ui8_t* data, size_t size) {
  const std::string_view document(reinterpret_cast<const char*>(data), size);
  Ferro::XMLDocType type;
  // One character of UTF-16 may take one and a half times its bytes in UTF-8; a reserved prefix stands for more.
  const size_t longest = 2 * size + 64;
  if (Ferro::GetXMLDocType(document, type) &&
      (type.ElementName.empty() || type.ElementName.size() + type.NamespaceName.size() > longest))
    abort();
  return 0;
}
