// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/ArchivableString.h>
#include <Ferro/IArchive.h>

namespace Ferro {

bool ArchivableString::HasValue() const {
  return !empty();
}

ui32_t ArchivableString::ArchiveLength() const {
  return static_cast<ui32_t>(sizeof(ui32_t) + size());
}

bool ArchivableString::Archive(MemIOWriter* Writer) const {
  return Writer != nullptr && Writer->WriteString(*this);
}

bool ArchivableString::Unarchive(MemIOReader* Reader) {
  return Reader != nullptr && Reader->ReadString(this);
}

IArchive::~IArchive() = default;

}  // namespace Ferro
