// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Types.h>

#include <array>
#include <vector>

namespace Tool {

/// What the samples of a picture mean.
enum class PictureColour {
  Unknown,  ///< nothing says it: X'Y'Z' where samples have 12 bits, else RGB
  XYZ,      ///< X'Y'Z' of ST 428-1
  RGB,      ///< shown as they are
};

/// Which white of the cinema is to be white on the screen.
enum class WhitePoint {
  DCI,  ///< the projector's, x 0.314 y 0.351 (ST 431-2): chromatically adapted to D65 after Bradford
  D65,  ///< D65, as pictures graded on that white have it: nothing is adapted
};

/// Turns the samples of cinema pictures into those of a computer screen, sRGB of IEC 61966-2-1.
///
/// X'Y'Z' samples become light as ST 428-1 defines it, L = 52.37 cd/m² (code / 4095)^2.6, and 48 cd/m², which is white in
/// a cinema, becomes the screen's full white. What lies outside the screen's colours is clamped. RGB samples are only
/// scaled to 8 bits.
class ColourTransform {
 public:
  /// `bits` per sample, 1 to 16.
  ColourTransform(PictureColour colour, WhitePoint white, unsigned bits);

  [[nodiscard]] std::array<Ferro::ui8_t, 3> operator()(const std::array<Ferro::ui16_t, 3>& samples) const;

 private:
  using Matrix = std::array<std::array<double, 3>, 3>;

  bool m_IsXYZ;
  double m_LargestCode;
  Matrix m_Matrix;              // from X'Y'Z' light to sRGB light
  std::vector<double> m_Light;  // by code; 1.0 is 48 cd/m²
};

}  // namespace Tool
