// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Types.h>

#include <bit>
#include <concepts>
#include <cstring>
#include <span>
#include <type_traits>
#include <vector>

namespace QUIRE {

/// The big-endian integer at `bytes`, which must hold enough of them.
template <std::integral T>
[[nodiscard]] T LoadBE(const ui8_t* bytes) {
  using U = std::make_unsigned_t<T>;
  U value = 0;
  for (size_t i = 0; i < sizeof(T); ++i) value = static_cast<U>((ui64_t(value) << 8) | bytes[i]);
  return static_cast<T>(value);
}

template <std::integral T>
void AppendBE(std::vector<ui8_t>& out, T value) {
  using U = std::make_unsigned_t<T>;
  for (size_t i = sizeof(T); i-- > 0;) out.push_back(static_cast<ui8_t>(static_cast<U>(value) >> (8 * i)));
}

inline void AppendBytes(std::vector<ui8_t>& out, std::span<const ui8_t> bytes) {
  out.insert(out.end(), bytes.begin(), bytes.end());
}

}  // namespace QUIRE
