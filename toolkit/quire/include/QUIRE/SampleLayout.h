// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/AudioDescriptor.h>
#include <QUIRE/Export.h>
#include <QUIRE/Types.h>

#include <optional>

namespace QUIRE::PCM {

/// How the samples of a sound lie in its frames (ST 382): interleaved, least significant byte first, each of a width of
/// whole bytes in which it stands at the top. A plain value.
struct SampleLayout {
  ui32_t Channels = 0;
  ui32_t Bits = 0;    ///< of a sample, 8 to 32
  ui32_t Width = 0;   ///< bytes of a sample
  ui64_t Stride = 0;  ///< bytes from one sample of a channel to its next

  /// As a header has it. Where its numbers contradict each other, channels and bits count before the alignment. No value
  /// where no samples can be made out: no channel or more than 1024, bits below 8 or above 32.
  [[nodiscard]] static QUIRE_API std::optional<SampleLayout> Of(const AudioDescriptor& sound);

  /// How many samples of each channel so many bytes hold; one that is cut does not count.
  [[nodiscard]] constexpr ui64_t RowsIn(ui64_t bytes) const {
    const ui64_t row = ui64_t{Channels} * Width;
    return bytes < row ? 0 : (bytes - row) / Stride + 1;
  }

  friend bool operator==(const SampleLayout&, const SampleLayout&) = default;
};

/// The sample that begins there, at the top of 32 bits: full scale is -2^31 to 2^31 less one unit of the sample.
/// @param width  1 to 4 bytes.
[[nodiscard]] constexpr i32_t LoadSample(const ui8_t* bytes, ui32_t width) {
  if (width == 3) return static_cast<i32_t>(ui32_t{bytes[0]} << 8 | ui32_t{bytes[1]} << 16 | ui32_t{bytes[2]} << 24);
  ui32_t value = 0;
  for (ui32_t i = 0; i < width; ++i) value = value >> 8 | ui32_t{bytes[i]} << 24;
  return static_cast<i32_t>(value);
}

}  // namespace QUIRE::PCM
