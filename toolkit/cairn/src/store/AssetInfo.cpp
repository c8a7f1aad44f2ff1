// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/AssetInfo.h>
#include <Cairn/IAssetLookup.h>

namespace Cairn {

bool AssetInfo::HasValue() const {
  return ID.HasValue();
}

ui32_t AssetInfo::ArchiveLength() const {
  return 52 + static_cast<ui32_t>(RealFilename.size());
}

bool AssetInfo::Archive(Ferro::MemIOWriter* Writer) const {
  return ID.Archive(Writer) && Digest.Archive(Writer) && Writer->WriteString(RealFilename) &&
         Writer->WriteUi64BE(FileSize) && Writer->WriteUi32BE(FileType);
}

bool AssetInfo::Unarchive(Ferro::MemIOReader* Reader) {
  if (!ID.Unarchive(Reader) || !Digest.Unarchive(Reader) || !Reader->ReadString(&RealFilename)) return false;
  ui32_t type = 0;
  if (!Reader->ReadUi64BE(&FileSize) || !Reader->ReadUi32BE(&type)) return false;
  FileType = static_cast<FileType_t>(type);
  return true;
}

IAssetLookup::~IAssetLookup() = default;

}  // namespace Cairn
