// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/Assert.h>
#include <Ferro/MemIO.h>

#include <array>
#include <cstring>
#include <limits>

namespace Ferro {
namespace {

ui32_t SizeOf(std::span<const ui8_t> bytes) noexcept {
  FERRO_ASSERT(bytes.size() <= std::numeric_limits<ui32_t>::max());
  return static_cast<ui32_t>(bytes.size());
}

template <class T>
std::array<ui8_t, sizeof(T)> ToBigEndian(T value) noexcept {
  std::array<ui8_t, sizeof(T)> bytes;
  for (size_t i = 0; i < sizeof(T); ++i) bytes[i] = static_cast<ui8_t>(value >> (8 * (sizeof(T) - 1 - i)));
  return bytes;
}

template <class T>
bool ReadBigEndian(MemIOReader& reader, T* out) noexcept {
  std::array<ui8_t, sizeof(T)> bytes;
  if (!reader.ReadRaw(bytes.data(), sizeof(T))) return false;
  T value = 0;
  for (const ui8_t byte : bytes) value = static_cast<T>((value << 8) | byte);
  *out = value;
  return true;
}

}  // namespace

MemIOWriter::MemIOWriter(ui8_t* buffer, ui32_t capacity) noexcept : m_Buffer(buffer), m_Capacity(capacity) {
  FERRO_ASSERT(buffer != nullptr || capacity == 0);
}

MemIOWriter::MemIOWriter(std::span<ui8_t> buffer) noexcept : MemIOWriter(buffer.data(), SizeOf(buffer)) {}

bool MemIOWriter::WriteRaw(const ui8_t* bytes, ui32_t length) noexcept {
  if (length > Remainder()) return false;
  if (length > 0) std::memcpy(m_Buffer + m_Position, bytes, length);
  m_Position += length;
  return true;
}

bool MemIOWriter::WriteUi8(ui8_t value) noexcept {
  return WriteRaw(&value, sizeof(value));
}

bool MemIOWriter::WriteUi16BE(ui16_t value) noexcept {
  return WriteRaw(ToBigEndian(value).data(), sizeof(value));
}

bool MemIOWriter::WriteUi32BE(ui32_t value) noexcept {
  return WriteRaw(ToBigEndian(value).data(), sizeof(value));
}

bool MemIOWriter::WriteUi64BE(ui64_t value) noexcept {
  return WriteRaw(ToBigEndian(value).data(), sizeof(value));
}

bool MemIOWriter::WriteString(const std::string& text) noexcept {
  const auto length = static_cast<ui32_t>(text.size());
  return WriteUi32BE(length) && WriteRaw(reinterpret_cast<const ui8_t*>(text.data()), length);
}

MemIOReader::MemIOReader(const ui8_t* bytes, ui32_t length) noexcept : m_Bytes(bytes), m_Length(length) {
  FERRO_ASSERT(bytes != nullptr || length == 0);
}

MemIOReader::MemIOReader(std::span<const ui8_t> bytes) noexcept : MemIOReader(bytes.data(), SizeOf(bytes)) {}

bool MemIOReader::ReadRaw(ui8_t* out, ui32_t length) noexcept {
  if (length > Remainder()) return false;
  if (length > 0) std::memcpy(out, CurrentData(), length);
  m_Position += length;
  return true;
}

bool MemIOReader::ReadUi8(ui8_t* out) noexcept {
  return ReadRaw(out, sizeof(*out));
}

bool MemIOReader::ReadUi16BE(ui16_t* out) noexcept {
  return ReadBigEndian(*this, out);
}

bool MemIOReader::ReadUi32BE(ui32_t* out) noexcept {
  return ReadBigEndian(*this, out);
}

bool MemIOReader::ReadUi64BE(ui64_t* out) noexcept {
  return ReadBigEndian(*this, out);
}

bool MemIOReader::ReadString(std::string* out) {
  ui32_t length = 0;
  if (!ReadUi32BE(&length) || length > Remainder()) return false;
  if (length > 0) out->assign(reinterpret_cast<const char*>(CurrentData()), length);
  m_Position += length;
  return true;
}

bool MemIOReader::Skip(ui32_t length) noexcept {
  if (length > Remainder()) return false;
  m_Position += length;
  return true;
}

}  // namespace Ferro
