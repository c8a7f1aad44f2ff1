// SPDX-License-Identifier: BSD-3-Clause
#include "form/FormCheck.h"

#include <Ferro/Assert.h>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size) {
  const Assay::ParsedDocument document = Assay::ParseDocument(std::string(data, data + size));
  if (!document.Root) return 0;
  const Assay::Node& root = *document.Root;
  for (const Assay::Grammar& grammar : Assay::Grammars()) {
    if (grammar.Root.Name != root.Name) continue;
    const auto faults = CheckForm(root, grammar);
    FERRO_ASSERT(faults.size() <= Assay::MaxFormFaults);
    for (const Assay::FormFault& fault : faults) FERRO_ASSERT(!DescribeFault(fault).empty() && fault.Line > 0);
  }
  return 0;
}
