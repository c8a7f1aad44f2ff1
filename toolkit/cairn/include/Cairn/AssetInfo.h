// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Cairn/Export.h>
#include <Cairn/FileType.h>
#include <Cairn/Types.h>

#include <Ferro/ArchivableList.h>
#include <Ferro/IArchive.h>

#include <string>

namespace Cairn {

/// What an asset store knows of one asset.
///
/// Archive form, in order: ID 16 bytes, Digest 20 bytes (whether it has a value or not), RealFilename string, FileSize
/// u64, FileType u32; 52 bytes and the name's. The cursors must not be null.
class CAIRN_API AssetInfo : public Ferro::IArchive {
 public:
  UUID ID;
  SHA1 Digest;                       ///< of the file's bytes, as its packing list says; no value when not known
  std::string RealFilename;          ///< path of the file
  fsize_t FileSize = 0;              ///< bytes
  FileType_t FileType = FT_UNKNOWN;  ///< found by looking inside

  /// True when the identifier has a value.
  [[nodiscard]] bool HasValue() const override;
  [[nodiscard]] ui32_t ArchiveLength() const override;
  [[nodiscard]] bool Archive(Ferro::MemIOWriter* Writer) const override;
  [[nodiscard]] bool Unarchive(Ferro::MemIOReader* Reader) override;
};

using AssetInfoList = Ferro::ArchivableList<AssetInfo>;

}  // namespace Cairn
