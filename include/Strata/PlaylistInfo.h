// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/Export.h>
#include <Strata/Types.h>

#include <Cairn/ContentKind.h>
#include <Ferro/IArchive.h>

#include <string>

namespace Strata {

/// One playlist of the asset store, as a list of what can be played shows it.
///
/// Archive form, in order: ID 16 bytes, Title string, Annotation string, ContentKind u32, IsShowList u32 (written 0 or
/// 1; any other than 0 reads as true); 32 bytes and the texts'. The cursors must not be null.
class STRATA_API PlaylistInfo : public Ferro::IArchive {
 public:
  UUID ID;
  std::string Title;
  std::string Annotation;
  Cairn::ContentKind_t ContentKind = Cairn::CK_UNKNOWN;
  bool IsShowList = false;  ///< true for a show playlist, false for a composition playlist

  /// True when the identifier has a value.
  [[nodiscard]] bool HasValue() const override;
  [[nodiscard]] ui32_t ArchiveLength() const override;
  [[nodiscard]] bool Archive(Ferro::MemIOWriter* Writer) const override;
  [[nodiscard]] bool Unarchive(Ferro::MemIOReader* Reader) override;
};

}  // namespace Strata
