// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/Export.h>
#include <Strata/Types.h>

#include <Ferro/IArchive.h>

namespace Strata {

/// How often a client wants to hear of the transport's position. The values travel in protocol records and never change.
enum UpdateFrequency_t : ui32_t { UF_PER_EDIT_UNIT = 0, UF_PER_SECOND = 1, UF_PER_MINUTE = 2 };

/// What a client says of itself when it connects.
///
/// Archive form, in order: WantNotify one byte (written 0 or 1; only 1 reads as true), UpdateFrequency u32; 5 bytes.
class STRATA_API RPCInitInfo : public Ferro::IArchive {
 public:
  bool WantNotify = false;  ///< the client wants transport notifications
  UpdateFrequency_t UpdateFrequency = UF_PER_EDIT_UNIT;

  /// Always true.
  [[nodiscard]] bool HasValue() const override;
  [[nodiscard]] ui32_t ArchiveLength() const override;
  [[nodiscard]] bool Archive(Ferro::MemIOWriter* Writer) const override;
  [[nodiscard]] bool Unarchive(Ferro::MemIOReader* Reader) override;
};

}  // namespace Strata
