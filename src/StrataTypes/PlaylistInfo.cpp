// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/PlaylistInfo.h>

#include "StrataTypes/ReadEnum.h"

namespace Strata {

bool PlaylistInfo::HasValue() const {
  return ID.HasValue();
}

ui32_t PlaylistInfo::ArchiveLength() const {
  return 32 + static_cast<ui32_t>(Title.size() + Annotation.size());
}

bool PlaylistInfo::Archive(Ferro::MemIOWriter* Writer) const {
  return ID.Archive(Writer) && Writer->WriteString(Title) && Writer->WriteString(Annotation) &&
         Writer->WriteUi32BE(ContentKind) && Writer->WriteUi32BE(IsShowList ? 1 : 0);
}

bool PlaylistInfo::Unarchive(Ferro::MemIOReader* Reader) {
  ui32_t is_show_list = 0;
  if (!ID.Unarchive(Reader) || !Reader->ReadString(&Title) || !Reader->ReadString(&Annotation) ||
      !ReadEnum(*Reader, ContentKind) || !Reader->ReadUi32BE(&is_show_list))
    return false;
  IsShowList = is_show_list != 0;
  return true;
}

}  // namespace Strata
