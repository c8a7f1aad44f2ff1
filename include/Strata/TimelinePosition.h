// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/Export.h>
#include <Strata/Types.h>

#include <Ferro/IArchive.h>

namespace Strata {

/// A place within the whole timeline, within one composition, or within one reel.
///
/// Archive form, in order: Duration u32, Position u32, AssetID 16 bytes; 24 bytes. The cursors must not be null.
class STRATA_API TimelinePosition : public Ferro::IArchive {
 public:
  ui32_t Duration = 0;  ///< of the whole thing, in edit units
  ui32_t Position = 0;  ///< edit units from its start; below Duration unless that is 0
  UUID AssetID;         ///< of the composition or the timeline's reel; no value for the whole timeline

  /// True when the duration is not 0.
  [[nodiscard]] bool HasValue() const override;
  [[nodiscard]] ui32_t ArchiveLength() const override;
  [[nodiscard]] bool Archive(Ferro::MemIOWriter* Writer) const override;
  [[nodiscard]] bool Unarchive(Ferro::MemIOReader* Reader) override;
};

}  // namespace Strata
