// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/Export.h>
#include <Strata/Types.h>

#include <Ferro/IArchive.h>

#include <iosfwd>
#include <string>

namespace Strata {

/// The room on one of the server's volumes.
///
/// Archive form, in order: Path string, VolumeSize u64, FreeSize u64; 20 bytes and the path's.
class STRATA_API DiskFreeInfo : public Ferro::IArchive {
 public:
  std::string Path;        ///< where the volume is mounted
  fsize_t VolumeSize = 0;  ///< bytes
  fsize_t FreeSize = 0;    ///< bytes

  /// True when the path is not empty.
  [[nodiscard]] bool HasValue() const override;
  [[nodiscard]] ui32_t ArchiveLength() const override;
  [[nodiscard]] bool Archive(Ferro::MemIOWriter* Writer) const override;
  [[nodiscard]] bool Unarchive(Ferro::MemIOReader* Reader) override;
};

/// Inserts three labelled lines.
STRATA_API std::ostream& operator<<(std::ostream& stream, const DiskFreeInfo& info);

}  // namespace Strata
