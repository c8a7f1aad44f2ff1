// SPDX-License-Identifier: BSD-3-Clause
#include "QuietLog.h"

#include <QUIRE/MXF/Dump.h>
#include <QUIRE/MXF/OP1aHeader.h>

#include <cstdlib>

using namespace QUIRE;
using namespace QUIRE::MXF;

// Header metadata that can be read can be written, and what was written is read and written the same again.
extern "C" int LLVMFuzzerTestOneInput(const ui8_t* data, size_t size) {
  static QuietLog quiet;
  OP1aHeader header;
  if (header.InitFromBuffer({data, size}, 0).Failure()) return 0;
  for (const auto& object : header.Objects()) (void)DumpSet(*object, DumpForm::JSON);
  (void)header.FilePackage();
  (void)header.EssenceDescriptor();
  std::vector<ui8_t> written;
  if (header.WriteMetadata(IndexTags::None, 0, written).Failure()) abort();
  OP1aHeader again;
  std::vector<ui8_t> rewritten;
  if (again.InitFromBuffer(written, 0).Failure() || again.Objects().size() != header.Objects().size()) abort();
  if (again.WriteMetadata(IndexTags::None, 0, rewritten).Failure() || rewritten != written) abort();
  return 0;
}
