// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Dictionary.h>

namespace QUIRE {

/// Every entry, in the order of MDD_t, with SMPTE labels.
extern const MDDEntry DictionaryTable[MDD_Max];

constexpr MDDEntry Entry(MDD_t id, const std::array<ui32_t, 4>& label, ui16_t tag, const char* name) {
  MDDEntry entry{id, {}, tag, name};
  for (size_t i = 0; i < 16; ++i) entry.Label[i] = static_cast<ui8_t>(label[i / 4] >> (24 - 8 * (i % 4)));
  return entry;
}

constexpr bool TableFollowsEnumeration(const MDDEntry (&table)[MDD_Max]) {
  for (size_t i = 0; i < MDD_Max; ++i)
    if (table[i].Id != i) return false;
  return true;
}

}  // namespace QUIRE
