// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "../support/MxfBuilder.h"

#include <algorithm>
#include <vector>

namespace testsupport {

/// A length, count or offset in a file, or another number of a size such things have.
struct FileField {
  size_t At;
  size_t Size;  // bytes
};

/// Finds the numbers of a built file: the lengths of all KLVs, and within partition packs, primer, sets, index segments,
/// the random index pack and encrypted essence all that is not bytes of essence.
class FieldFinder {
 public:
  explicit FieldFinder(const Bytes& file) : m_File(file) {}

  std::vector<FileField> Find() {
    for (size_t at = 0; at < m_File.size();) {
      const size_t value = at + 16 + AddLength(at + 16);
      const size_t length = m_Length;
      AddValue(at, value, length);
      at = value + length;
    }
    return m_Fields;
  }

 private:
  void Add(size_t at, size_t size) { m_Fields.push_back({at, size}); }

  /// A BER length: its first byte and the rest. Returns the bytes it takes, and keeps what it says.
  size_t AddLength(size_t at) {
    const size_t size = m_File.at(at) < 0x80 ? 0 : m_File[at] & 0x7f;
    Add(at, 1);
    if (size > 0) Add(at + 1, size);
    m_Length = size > 0 ? GetBE(m_File, at + 1, size) : m_File[at];
    return 1 + size;
  }

  // The kinds of KLVs by bytes of their keys (ST 377-1, ST 429-6).
  void AddValue(size_t key, size_t value, size_t length) {
    const ui8_t category = m_File[key + 4], registry = m_File[key + 5];
    if (category == 2 && registry == 0x53) return AddLocalSet(value, value + length);
    if (category == 2 && registry == 4) return AddTriplet(value, value + length);
    if (category != 2 || registry != 5) return;
    const ui8_t pack = m_File[key + 13];
    if (pack == 5) return AddPrimer(value);
    if (pack == 0x11) return AddRandomIndex(value, value + length);
    AddPartition(value);
  }

  void AddPartition(size_t at) {
    constexpr size_t sizes[] = {2, 2, 4, 8, 8, 8, 8, 8, 4, 8, 4};
    for (const size_t size : sizes) {
      Add(at, size);
      at += size;
    }
    AddBatch(at + 16);
  }
  void AddBatch(size_t at) {
    Add(at, 4);
    Add(at + 4, 4);
  }
  void AddPrimer(size_t at) {
    AddBatch(at);
    for (size_t i = 0, count = GetBE(m_File, at, 4); i < count; ++i) Add(at + 8 + 18 * i, 2);
  }
  void AddRandomIndex(size_t at, size_t end) {
    for (; at + 4 < end; at += 12) {
      Add(at, 4);
      Add(at + 4, 8);
    }
    Add(end - 4, 4);
  }

  void AddLocalSet(size_t at, size_t end) {
    while (at + 4 <= end) {
      const size_t tag = GetBE(m_File, at, 2), size = GetBE(m_File, at + 2, 2);
      Add(at + 2, 2);
      at += 4;
      if (size == 1 || size == 2 || size == 4 || size == 8) Add(at, size);
      if (size > 8) AddBatch(at);  // also of what is none: half an identifier is as good a lie
      if (tag == 0x3f0a && size > 8) AddIndexEntries(at);
      at += size;
    }
  }
  void AddIndexEntries(size_t at) {
    const size_t count = GetBE(m_File, at, 4), size = GetBE(m_File, at + 4, 4);
    for (size_t i = 0; i < count; ++i) Add(at + 8 + i * size + 3, 8);
  }

  void AddTriplet(size_t at, size_t end) {
    while (at < end) {
      at += AddLength(at);
      if (m_Length == 8) Add(at, 8);
      at += m_Length;
    }
  }

  const Bytes& m_File;
  std::vector<FileField> m_Fields;
  size_t m_Length = 0;
};

inline std::vector<FileField> FindFields(const Bytes& file) {
  return FieldFinder(file).Find();
}

/// 0, 1, the largest signed number, the largest number.
inline std::vector<Bytes> LimitsOf(size_t size) {
  Bytes most(size, 0xff);
  most[0] = 0x7f;
  return {BE(0, size), BE(1, size), most, Bytes(size, 0xff)};
}

}  // namespace testsupport
