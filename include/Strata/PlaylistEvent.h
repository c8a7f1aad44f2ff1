// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/Export.h>
#include <Strata/Types.h>

#include <Ferro/ArchivableList.h>
#include <Ferro/IArchive.h>

#include <string>

namespace Strata {

/// A label that stands at one edit unit of the timeline and is reported when playback arrives there.
///
/// Archive form, in order: Label string, LabelScope string, ShowPosition u32; 12 bytes and the texts'. The cursors must
/// not be null.
class STRATA_API PlaylistEvent : public Ferro::IArchive {
 public:
  std::string Label;        ///< what happens, for example "FFOC" (ST 429-7, marker labels)
  std::string LabelScope;   ///< URI of the vocabulary that the label is from
  ui32_t ShowPosition = 0;  ///< edit units from the start of the timeline

  /// True when the label is not empty.
  [[nodiscard]] bool HasValue() const override;
  [[nodiscard]] ui32_t ArchiveLength() const override;
  [[nodiscard]] bool Archive(Ferro::MemIOWriter* Writer) const override;
  [[nodiscard]] bool Unarchive(Ferro::MemIOReader* Reader) override;
};

using PlaylistEventList = Ferro::ArchivableList<PlaylistEvent>;

}  // namespace Strata
