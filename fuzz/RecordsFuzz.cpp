// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/Strata.h>

#include <Ferro/Assert.h>

#include <cstdint>
#include <span>
#include <vector>

// Reads each record of the protocol from the same bytes. What was read is written and read again, and must then be
// written the same.

namespace {

using Ferro::ui8_t;

std::vector<ui8_t> Archived(const Ferro::IArchive& record, size_t capacity) {
  std::vector<ui8_t> buffer(capacity);
  Ferro::MemIOWriter writer(buffer);
  FERRO_ASSERT(record.Archive(&writer));
  buffer.resize(writer.Length());
  return buffer;
}

template <class Record>
void Check(std::span<const ui8_t> bytes) {
  Record record;
  Ferro::MemIOReader reader(bytes);
  if (!record.Unarchive(&reader)) return;
  // No form grows when it is written again but for times, whose text is brought into one shape.
  const size_t capacity = 8 * bytes.size() + 64;
  const std::vector<ui8_t> form = Archived(record, capacity);
  Record again;
  Ferro::MemIOReader second(form);
  FERRO_ASSERT(again.Unarchive(&second));
  FERRO_ASSERT(second.Remainder() == 0);
  FERRO_ASSERT(Archived(again, capacity) == form);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::span<const ui8_t> bytes(data, size);
  Check<Strata::Command>(bytes);
  Check<Strata::PlaylistInfo>(bytes);
  Check<Strata::AssetInfo>(bytes);
  Check<Strata::CompositionInfo>(bytes);
  Check<Strata::RPCInitInfo>(bytes);
  Check<Strata::TaskStatus>(bytes);
  Check<Strata::DiskFreeInfo>(bytes);
  Check<Strata::PlaylistEvent>(bytes);
  Check<Strata::TimelinePosition>(bytes);
  Check<Strata::DeviceStatus>(bytes);
  Check<Strata::TransportException>(bytes);
  Check<Strata::PlaylistEventList>(bytes);
  Check<Ferro::UUIDList>(bytes);
  Check<Cairn::AssetInfoList>(bytes);
  Check<Ferro::ArchivableList<Ferro::ArchivableString>>(bytes);
  Strata::Command command;
  static_cast<void>(command.ParseCommand(std::string(bytes.begin(), bytes.end())));
  return 0;
}
