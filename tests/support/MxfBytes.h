// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Types.h>

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

// Raw MXF bytes for tests, written without the library that is under test.
namespace testsupport {

using QUIRE::i32_t;
using QUIRE::ui16_t;
using QUIRE::ui32_t;
using QUIRE::ui64_t;
using QUIRE::ui8_t;

using Bytes = std::vector<ui8_t>;

inline Bytes BE(ui64_t value, size_t size) {
  Bytes bytes(size);
  for (size_t i = 0; i < size; ++i) bytes[size - 1 - i] = static_cast<ui8_t>(value >> (8 * i));
  return bytes;
}
inline Bytes BE8(ui64_t value) {
  return BE(value, 1);
}
inline Bytes BE16(ui64_t value) {
  return BE(value, 2);
}
inline Bytes BE32(ui64_t value) {
  return BE(value, 4);
}
inline Bytes BE64(ui64_t value) {
  return BE(value, 8);
}

inline ui64_t GetBE(const Bytes& bytes, size_t at, size_t size) {
  ui64_t value = 0;
  for (size_t i = 0; i < size; ++i) value = value << 8 | bytes.at(at + i);
  return value;
}
inline void Put(Bytes& bytes, size_t at, const Bytes& value) {
  for (size_t i = 0; i < value.size(); ++i) bytes.at(at + i) = value[i];
}

inline Bytes& operator+=(Bytes& lhs, const Bytes& rhs) {
  lhs.insert(lhs.end(), rhs.begin(), rhs.end());
  return lhs;
}
inline Bytes operator+(Bytes lhs, const Bytes& rhs) {
  return lhs += rhs;
}

/// Bytes from hexadecimal digits; points and blanks between them are passed over.
inline Bytes Hex(std::string_view text) {
  Bytes bytes;
  int digits = 0;
  ui8_t value = 0;
  for (char c : text) {
    if (c == '.' || c == ' ') continue;
    value = static_cast<ui8_t>(value << 4 | (c <= '9' ? c - '0' : c - 'a' + 10));
    if (++digits % 2 == 0) bytes.push_back(value);
  }
  return bytes;
}

/// UTF-16BE without terminator; ASCII only.
inline Bytes UTF16(std::string_view text) {
  Bytes bytes;
  for (char c : text) bytes += BE16(static_cast<ui8_t>(c));
  return bytes;
}

inline Bytes ReferenceArray(const std::vector<Bytes>& items, ui32_t item_size = 16) {
  Bytes bytes = BE32(items.size()) + BE32(items.empty() ? 0 : item_size);
  for (const Bytes& item : items) bytes += item;
  return bytes;
}

/// The four-byte form of a length (ST 377-1, 6.3).
inline Bytes Length4(ui64_t length) {
  return BE8(0x83) + BE(length, 3);
}
/// The form with `size` bytes in all; 1 is the short form.
inline Bytes LengthOf(ui64_t length, size_t size) {
  return size == 1 ? BE8(length) : BE8(0x80 + size - 1) + BE(length, size - 1);
}
inline Bytes KLV(const Bytes& key, const Bytes& value) {
  return key + Length4(value.size()) + value;
}

}  // namespace testsupport
