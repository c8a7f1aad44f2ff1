// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Export.h>
#include <Ferro/Types.h>

#include <span>
#include <string>

namespace Ferro {

/// A writing cursor over a caller's buffer. Every put checks that the whole field fits between the position and the
/// capacity; one that does not fit writes nothing, leaves the position and returns false. Integers go big-endian.
/// Does not own the buffer, which must outlive the cursor. One thread at a time.
class FERRO_API MemIOWriter {
 public:
  /// `capacity` in bytes; `buffer` may be null only when it is 0.
  MemIOWriter(ui8_t* buffer, ui32_t capacity) noexcept;
  /// A buffer of less than 4 GiB (assertion).
  explicit MemIOWriter(std::span<ui8_t> buffer) noexcept;

  [[nodiscard]] bool WriteRaw(const ui8_t* bytes, ui32_t length) noexcept;
  [[nodiscard]] bool WriteUi8(ui8_t value) noexcept;
  [[nodiscard]] bool WriteUi16BE(ui16_t value) noexcept;
  [[nodiscard]] bool WriteUi32BE(ui32_t value) noexcept;
  [[nodiscard]] bool WriteUi64BE(ui64_t value) noexcept;
  /// A 32-bit big-endian byte count (the low 32 bits of the length), then that many bytes. When the count fits and the
  /// bytes do not, the count stays written.
  [[nodiscard]] bool WriteString(const std::string& text) noexcept;

  /// Bytes written so far, which is also the position of the next field.
  [[nodiscard]] ui32_t Length() const noexcept { return m_Position; }
  [[nodiscard]] ui32_t Remainder() const noexcept { return m_Capacity - m_Position; }
  [[nodiscard]] const ui8_t* Data() const noexcept { return m_Buffer; }

 private:
  ui8_t* m_Buffer;
  ui32_t m_Capacity;
  ui32_t m_Position = 0;
};

/// A reading cursor over a caller's bytes. Every get checks that the whole field lies between the position and the end;
/// one that does not changes neither its output nor the position and returns false. Integers are big-endian.
/// Does not own the bytes, which must outlive the cursor. One thread at a time.
class FERRO_API MemIOReader {
 public:
  MemIOReader(const ui8_t* bytes, ui32_t length) noexcept;
  /// Less than 4 GiB of bytes (assertion).
  explicit MemIOReader(std::span<const ui8_t> bytes) noexcept;

  [[nodiscard]] bool ReadRaw(ui8_t* out, ui32_t length) noexcept;
  [[nodiscard]] bool ReadUi8(ui8_t* out) noexcept;
  [[nodiscard]] bool ReadUi16BE(ui16_t* out) noexcept;
  [[nodiscard]] bool ReadUi32BE(ui32_t* out) noexcept;
  [[nodiscard]] bool ReadUi64BE(ui64_t* out) noexcept;
  /// The form of MemIOWriter::WriteString. A count of 0 leaves `out` unchanged; a count beyond the remaining bytes fails
  /// after the count was consumed.
  [[nodiscard]] bool ReadString(std::string* out);
  [[nodiscard]] bool Skip(ui32_t length) noexcept;

  [[nodiscard]] ui32_t Offset() const noexcept { return m_Position; }
  [[nodiscard]] ui32_t Remainder() const noexcept { return m_Length - m_Position; }
  /// The next unread byte; valid for Remainder() bytes.
  [[nodiscard]] const ui8_t* CurrentData() const noexcept { return m_Bytes + m_Position; }

 private:
  const ui8_t* m_Bytes;
  ui32_t m_Length;
  ui32_t m_Position = 0;
};

}  // namespace Ferro
