// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/EssenceType.h>
#include <QUIRE/MDD.h>
#include <QUIRE/Types.h>
#include <QUIRE/UL.h>

#include <array>

namespace QUIRE {

/// In what the track files of the kinds differ, apart from their descriptors. Whoever would write a switch over kinds reads
/// this table.
struct EssenceKind {
  EssenceType_t Type = ESS_MXF_OTHER;
  const char* Name = "essence of an unknown kind";  ///< for people
  /// Readers of this kind read files of that kind, too.
  EssenceType_t AlsoReads = ESS_MXF_OTHER;

  MDD_t ElementKey = MDD_Max;
  std::array<ui8_t, 2> ElementTypes = {};  ///< byte 15 of the element keys met; all zero: not compared
  ui32_t ElementsPerEditUnit = 1;
  MDD_t ContainerLabel = MDD_Max;
  MDD_t DataDefinition = MDD_Max;

  // Only for writing.
  const char* TrackName = "";
  const char* WrappingName = "";      ///< the file package's name
  bool StartsAtOneHour = false;       ///< of the file package's time code
  bool HasClip = true;                ///< the essence tracks hold source clips; otherwise descriptive segments
  bool TrackNumberFollowsKey = true;  ///< bytes 13 to 16 of the element key; otherwise 0
  ui32_t HeaderSize = 16384;          ///< usual end of the header partition

  /// True when readers of this kind read files of that one.
  [[nodiscard]] bool Reads(EssenceType_t type) const;
  /// True when `key` is that of an essence element of this kind; registry version, element count and element number are not
  /// compared (ST 379-1).
  [[nodiscard]] bool IsElementKey(const ui8_t* key) const;
};

/// The row of a kind; a row without labels for ESS_MXF_OTHER and ESS_UNKNOWN.
[[nodiscard]] const EssenceKind& KindOf(EssenceType_t type);

}  // namespace QUIRE
