// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <concepts>
#include <optional>
#include <utility>

namespace Ferro {

// Arithmetic for lengths, counts and offsets that come from outside: no value where the true result does not fit.

template <std::unsigned_integral T>
[[nodiscard]] constexpr std::optional<T> CheckedAdd(T a, std::type_identity_t<T> b) noexcept {
  T sum{};
  if (__builtin_add_overflow(a, b, &sum)) return std::nullopt;
  return sum;
}

template <std::unsigned_integral T>
[[nodiscard]] constexpr std::optional<T> CheckedMul(T a, std::type_identity_t<T> b) noexcept {
  T product{};
  if (__builtin_mul_overflow(a, b, &product)) return std::nullopt;
  return product;
}

/// `value` as a To, or no value where To cannot hold it.
template <std::integral To, std::integral From>
[[nodiscard]] constexpr std::optional<To> CheckedCast(From value) noexcept {
  if (!std::in_range<To>(value)) return std::nullopt;
  return static_cast<To>(value);
}

/// True when [offset, offset + length) lies within [0, size).
template <std::unsigned_integral T>
[[nodiscard]] constexpr bool RangeFits(T offset, std::type_identity_t<T> length,
                                       std::type_identity_t<T> size) noexcept {
  return offset <= size && length <= size - offset;
}

}  // namespace Ferro
