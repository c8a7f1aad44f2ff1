// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/TransportException.h>

#include <Ferro/Assert.h>

namespace Strata {

bool TransportException::HasValue() const {
  return !Message.empty();
}

ui32_t TransportException::ArchiveLength() const {
  return 28 + static_cast<ui32_t>(Message.size());
}

bool TransportException::Archive(Ferro::MemIOWriter* Writer) const {
  FERRO_ASSERT_IN(Writer != nullptr, "Writer",
                  "virtual bool Strata::TransportException::Archive(Ferro::MemIOWriter*) const");
  return Writer->WriteUi32BE(Duration) && Writer->WriteUi32BE(Position) && CompositionID.Archive(Writer) &&
         Writer->WriteString(Message);
}

bool TransportException::Unarchive(Ferro::MemIOReader* Reader) {
  FERRO_ASSERT_IN(Reader != nullptr, "Reader",
                  "virtual bool Strata::TransportException::Unarchive(Ferro::MemIOReader*)");
  return Reader->ReadUi32BE(&Duration) && Reader->ReadUi32BE(&Position) && CompositionID.Unarchive(Reader) &&
         Reader->ReadString(&Message);
}

}  // namespace Strata
