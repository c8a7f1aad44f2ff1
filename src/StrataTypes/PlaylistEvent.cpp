// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/PlaylistEvent.h>

namespace Strata {

bool PlaylistEvent::HasValue() const {
  return !Label.empty();
}

ui32_t PlaylistEvent::ArchiveLength() const {
  return 12 + static_cast<ui32_t>(Label.size() + LabelScope.size());
}

bool PlaylistEvent::Archive(Ferro::MemIOWriter* Writer) const {
  return Writer->WriteString(Label) && Writer->WriteString(LabelScope) && Writer->WriteUi32BE(ShowPosition);
}

bool PlaylistEvent::Unarchive(Ferro::MemIOReader* Reader) {
  return Reader->ReadString(&Label) && Reader->ReadString(&LabelScope) && Reader->ReadUi32BE(&ShowPosition);
}

}  // namespace Strata
