// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Types.h>

#include <array>
#include <string>
#include <vector>

namespace Tool {

/// A picture in X'Y'Z' with 12 bits per sample (ST 428-1), to be drawn on in figures of a bitmap font.
class SamplePicture {
 public:
  using Colour = std::array<Ferro::ui16_t, 3>;  // X', Y', Z', 0 to 4095

  static constexpr Colour White = {3794, 3960, 3890};  // the reference white, 48 cd/m²

  SamplePicture(Ferro::ui32_t width, Ferro::ui32_t height, const Colour& background);

  /// Fills a rectangle; what lies outside the picture is left out.
  void Fill(Ferro::ui32_t left, Ferro::ui32_t top, Ferro::ui32_t width, Ferro::ui32_t height, const Colour& colour);
  /// Writes a line of capital letters, digits and ":" in the middle of the width, `height` pixels high or as high as
  /// fits; other characters are blanks.
  void Write(const std::string& text, Ferro::ui32_t top, Ferro::ui32_t height, const Colour& colour);

  [[nodiscard]] Colour At(Ferro::ui32_t x, Ferro::ui32_t y) const { return m_Pixels[size_t{y} * m_Width + x]; }

  /// The codestream in the profile for 2K pictures (ISO/IEC 15444-1, Amendment 1), within its share of the largest rate, which
  /// is 250 Mbit/s for 2048 x 1080 pixels. Any thread may call it. Throws std::runtime_error when the encoder refuses.
  [[nodiscard]] std::vector<Ferro::ui8_t> Encode(Ferro::ui32_t images_per_second) const;

 private:
  Ferro::ui32_t m_Width;
  Ferro::ui32_t m_Height;
  std::vector<Colour> m_Pixels;  // by rows
};

}  // namespace Tool
