// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Sigil/Export.h>
#include <Sigil/Types.h>

#include <memory>
#include <span>

namespace Sigil {

/// Bytes that nobody else is to see: passphrases and keys. They lie in memory that is kept out of core dumps and, where the
/// system allows it, out of swap, and that is wiped when they go. Moved, never copied; nothing prints or logs them.
class SIGIL_API SecretBytes {
 public:
  SecretBytes() = default;
  SecretBytes(SecretBytes&& other) noexcept;
  SecretBytes& operator=(SecretBytes&& other) noexcept;
  SecretBytes(const SecretBytes&) = delete;
  SecretBytes& operator=(const SecretBytes&) = delete;
  ~SecretBytes();

  /// Makes `size` zero bytes in place of what was there. False when there is no such memory left, of which a process has
  /// one mebibyte; then nothing is held.
  [[nodiscard]] bool Resize(size_t size);
  /// Holds a copy of `bytes`; false as above. Who calls wipes the bytes it came from.
  [[nodiscard]] bool Assign(std::span<const ui8_t> bytes);
  /// Keeps the first `size` bytes only; at most as many as there are (assertion).
  void Truncate(size_t size);

  [[nodiscard]] std::span<ui8_t> Bytes() { return {m_Bytes, m_Size}; }
  [[nodiscard]] std::span<const ui8_t> Bytes() const { return {m_Bytes, m_Size}; }
  [[nodiscard]] size_t Size() const { return m_Size; }

 private:
  ui8_t* m_Bytes = nullptr;
  size_t m_Size = 0;
  size_t m_Capacity = 0;  // what is to be wiped
};

}  // namespace Sigil
