// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/Export.h>
#include <Strata/Types.h>

#include <Ferro/IArchive.h>

#include <string>

namespace Strata {

/// Something went wrong in the transport: where the show stood, and what happened.
///
/// Archive form, in order: Duration u32, Position u32, CompositionID 16 bytes, Message string; 28 bytes and the
/// message's.
class STRATA_API TransportException : public Ferro::IArchive {
 public:
  ui32_t Duration = 0;  ///< of the timeline, in edit units
  ui32_t Position = 0;  ///< edit units from the start of the timeline
  UUID CompositionID;   ///< the composition at that position; no value on an empty timeline
  std::string Message;

  /// True when the message is not empty.
  [[nodiscard]] bool HasValue() const override;
  [[nodiscard]] ui32_t ArchiveLength() const override;
  [[nodiscard]] bool Archive(Ferro::MemIOWriter* Writer) const override;
  [[nodiscard]] bool Unarchive(Ferro::MemIOReader* Reader) override;
};

}  // namespace Strata
