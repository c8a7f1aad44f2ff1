// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/Types.h>

#include <Ferro/MemIO.h>

#include <type_traits>

namespace Strata {

/// Reads a 32-bit big-endian enumeration value; any value is taken, known or not. False when it is not there.
template <class Enum>
[[nodiscard]] bool ReadEnum(Ferro::MemIOReader& reader, Enum& out) {
  static_assert(std::is_same_v<std::underlying_type_t<Enum>, ui32_t>);
  ui32_t value = 0;
  if (!reader.ReadUi32BE(&value)) return false;
  out = static_cast<Enum>(value);
  return true;
}

}  // namespace Strata
