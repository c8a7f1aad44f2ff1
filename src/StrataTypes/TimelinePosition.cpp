// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/TimelinePosition.h>

namespace Strata {

bool TimelinePosition::HasValue() const {
  return Duration != 0;
}

ui32_t TimelinePosition::ArchiveLength() const {
  return 24;
}

bool TimelinePosition::Archive(Ferro::MemIOWriter* Writer) const {
  return Writer->WriteUi32BE(Duration) && Writer->WriteUi32BE(Position) && AssetID.Archive(Writer);
}

bool TimelinePosition::Unarchive(Ferro::MemIOReader* Reader) {
  return Reader->ReadUi32BE(&Duration) && Reader->ReadUi32BE(&Position) && AssetID.Unarchive(Reader);
}

}  // namespace Strata
