// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/IArchive.h>
#include <Ferro/TextEncoding.h>

#include <array>
#include <compare>
#include <cstring>
#include <span>
#include <string>
#include <string_view>

namespace Ferro {

/// A fixed-size binary identifier of N bytes with a has-value flag.
///
/// The archive form is the N raw bytes; the flag is not written. Reading sets the flag when the bytes were there and
/// clears it when they were not. Comparison looks at the N bytes alone, as unsigned numbers from the first on; an
/// identifier without value has zero bytes. A plain value: no thread rule beyond the usual one for values.
template <ui32_t N>
class Identifier : public IArchive {
 public:
  static constexpr ui32_t Size = N;

  Identifier() = default;
  explicit Identifier(std::span<const ui8_t, N> bytes) { Set(bytes); }

  /// Takes the bytes; the identifier then has a value.
  void Set(std::span<const ui8_t, N> bytes) {
    std::memcpy(m_Value.data(), bytes.data(), N);
    m_HasValue = true;
  }
  /// Takes N bytes from `bytes`.
  void Set(const ui8_t* bytes) { Set(std::span<const ui8_t, N>(bytes, N)); }
  /// Zero bytes, no value.
  void Reset() {
    m_Value.fill(0);
    m_HasValue = false;
  }

  [[nodiscard]] const ui8_t* Value() const { return m_Value.data(); }
  [[nodiscard]] std::span<const ui8_t, N> Bytes() const { return m_Value; }

  /// Takes 2·N hexadecimal digits of either case, hyphens between them allowed. On failure nothing changes.
  [[nodiscard]] bool DecodeHex(std::string_view text) {
    std::array<ui8_t, N> bytes{};
    if (!hex2bin(text, bytes)) return false;
    Set(bytes);
    return true;
  }
  /// 2·N lower-case hexadecimal digits.
  [[nodiscard]] std::string EncodeHex() const { return bin2hex(m_Value); }
  /// Takes the Base64 form of exactly N bytes. On failure nothing changes.
  [[nodiscard]] bool DecodeBase64(std::string_view text) {
    std::array<ui8_t, N> bytes{};
    if (!base64decode(text, bytes)) return false;
    Set(bytes);
    return true;
  }
  [[nodiscard]] std::string EncodeBase64() const { return base64encode(m_Value); }

  [[nodiscard]] bool HasValue() const override { return m_HasValue; }
  [[nodiscard]] ui32_t ArchiveLength() const override { return N; }
  [[nodiscard]] bool Archive(MemIOWriter* Writer) const override { return Writer->WriteRaw(m_Value.data(), N); }
  [[nodiscard]] bool Unarchive(MemIOReader* Reader) override {
    m_HasValue = Reader->ReadRaw(m_Value.data(), N);
    return m_HasValue;
  }

  friend bool operator==(const Identifier& lhs, const Identifier& rhs) { return lhs.m_Value == rhs.m_Value; }
  friend std::strong_ordering operator<=>(const Identifier& lhs, const Identifier& rhs) {
    return lhs.m_Value <=> rhs.m_Value;
  }

 protected:
  std::array<ui8_t, N> m_Value{};
  bool m_HasValue = false;
};

// The sizes of UUID, SHA1 and UMID are instantiated once, in libferro.
extern template class FERRO_API Identifier<16>;
extern template class FERRO_API Identifier<20>;
extern template class FERRO_API Identifier<32>;

}  // namespace Ferro
