// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/RPCInitInfo.h>

#include "StrataTypes/ReadEnum.h"

#include <Ferro/Assert.h>

namespace Strata {

bool RPCInitInfo::HasValue() const {
  return true;
}

ui32_t RPCInitInfo::ArchiveLength() const {
  return 5;
}

bool RPCInitInfo::Archive(Ferro::MemIOWriter* Writer) const {
  FERRO_ASSERT_IN(Writer != nullptr, "Writer", "virtual bool Strata::RPCInitInfo::Archive(Ferro::MemIOWriter*) const");
  return Writer->WriteUi8(WantNotify ? 1 : 0) && Writer->WriteUi32BE(UpdateFrequency);
}

bool RPCInitInfo::Unarchive(Ferro::MemIOReader* Reader) {
  FERRO_ASSERT_IN(Reader != nullptr, "Reader", "virtual bool Strata::RPCInitInfo::Unarchive(Ferro::MemIOReader*)");
  ui8_t want_notify = 0;
  if (!Reader->ReadUi8(&want_notify)) return false;
  WantNotify = want_notify == 1;
  return ReadEnum(*Reader, UpdateFrequency);
}

}  // namespace Strata
