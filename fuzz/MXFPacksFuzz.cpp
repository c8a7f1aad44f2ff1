// SPDX-License-Identifier: BSD-3-Clause
#include "QuietLog.h"

#include <QUIRE/MXF/IndexTable.h>
#include <QUIRE/MXF/KLV.h>
#include <QUIRE/MXF/Partition.h>
#include <QUIRE/MXF/Primer.h>
#include <QUIRE/MXF/RIP.h>

#include <cstdlib>

using namespace QUIRE;
using namespace QUIRE::MXF;

namespace {

// What one pack gives must survive being written and read again.
void TryPartition(std::span<const ui8_t> bytes) {
  Partition partition;
  if (partition.Read(bytes, 0).Failure()) return;
  std::vector<ui8_t> written;
  partition.Write(written);
  Partition again;
  if (again.Read(written, 0).Failure()) abort();
  again.PackLength = partition.PackLength;  // the length field may have had another size
  if (!(again == partition)) abort();
}

void TryRandomIndex(std::span<const ui8_t> bytes) {
  RIP index;
  if (index.Read(bytes, 0).Failure()) return;
  std::vector<ui8_t> written;
  index.Write(written);
  RIP again;
  if (again.Read(written, 0).Failure() || again.PairArray != index.PairArray) abort();
}

void TryPrimer(std::span<const ui8_t> value) {
  Primer primer;
  if (primer.Read(value, 0).Failure()) return;
  for (ui16_t entry = 0; entry < MDD_Max; ++entry) (void)primer.TagFor(MDD_t(entry));
  std::vector<ui8_t> written;
  primer.Write(written);
  if (written.size() != primer.ArchiveLength()) abort();
}

// Takes the bytes as segments one after another, each preceded by its length in two bytes.
void TryIndex(std::span<const ui8_t> bytes) {
  std::vector<IndexTableSegment> segments;
  while (bytes.size() >= 2) {
    const size_t length = std::min<size_t>(bytes[0] * 256u + bytes[1], bytes.size() - 2);
    IndexTableSegment segment;
    if (segment.Read(bytes.subspan(2, length), 0).Success()) segments.push_back(std::move(segment));
    bytes = bytes.subspan(2 + length);
  }
  size_t entries = 0;
  for (const IndexTableSegment& segment : segments) entries += segment.IndexEntryArray.size();
  IndexTable table;
  if (table.Build(segments).Failure()) return;
  if (table.EditUnitByteCount() == 0 && table.Duration() > entries) abort();
  IndexEntry entry;
  for (const ui64_t edit_unit : {ui64_t{0}, table.Duration() - 1, table.Duration(), ~ui64_t{0}})
    (void)table.Lookup(edit_unit, entry);
}

}  // namespace

// The first byte says what the rest is taken for.
extern "C" int LLVMFuzzerTestOneInput(const ui8_t* data, size_t size) {
  static QuietLog quiet;
  if (size == 0) return 0;
  const std::span<const ui8_t> bytes(data + 1, size - 1);
  switch (data[0] % 4) {
    case 0:
      TryPartition(bytes);
      break;
    case 1:
      TryRandomIndex(bytes);
      break;
    case 2:
      TryPrimer(bytes);
      break;
    default:
      TryIndex(bytes);
      break;
  }
  return 0;
}
