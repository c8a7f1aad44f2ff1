// SPDX-License-Identifier: BSD-3-Clause
#include "ColourTransform.h"

#include <algorithm>
#include <cmath>

namespace Tool {

namespace {

using Vector = std::array<double, 3>;
using Matrix = std::array<Vector, 3>;

constexpr double Gamma = 2.6;
constexpr double PeakLuminance = 52.37;      // cd/m², of code 4095
constexpr double ReferenceLuminance = 48.0;  // cd/m², of the reference white

// Linear light of IEC 61966-2-1 from CIE XYZ with white D65.
constexpr Matrix ScreenFromXYZ = {
    {{3.2404542, -1.5371385, -0.4985314}, {-0.9692660, 1.8760108, 0.0415560}, {0.0556434, -0.2040259, 1.0572252}}};

// The Bradford transform's cone responses, and its inverse.
constexpr Matrix Cone = {
    {{0.8951000, 0.2664000, -0.1614000}, {-0.7502000, 1.7135000, 0.0367000}, {0.0389000, -0.0685000, 1.0296000}}};
constexpr Matrix ConeInverse = {
    {{0.9869929, -0.1470543, 0.1599627}, {0.4323053, 0.5183603, 0.0492912}, {-0.0085287, 0.0400428, 0.9684867}}};

constexpr Vector WhiteDCI = {0.314 / 0.351, 1.0, 0.335 / 0.351};  // XYZ of x 0.314, y 0.351
constexpr Vector WhiteD65 = {0.95047, 1.0, 1.08883};

Vector Times(const Matrix& matrix, const Vector& vector) {
  Vector result{};
  for (size_t row = 0; row < 3; ++row)
    for (size_t column = 0; column < 3; ++column) result[row] += matrix[row][column] * vector[column];
  return result;
}

Matrix Times(const Matrix& left, const Matrix& right) {
  Matrix result{};
  for (size_t column = 0; column < 3; ++column) {
    const Vector product = Times(left, Vector{right[0][column], right[1][column], right[2][column]});
    for (size_t row = 0; row < 3; ++row) result[row][column] = product[row];
  }
  return result;
}

Matrix Adaptation(const Vector& from, const Vector& to) {
  const Vector before = Times(Cone, from);
  const Vector after = Times(Cone, to);
  Matrix scaled = Cone;
  for (size_t row = 0; row < 3; ++row)
    for (double& value : scaled[row]) value *= after[row] / before[row];
  return Times(ConeInverse, scaled);
}

Ferro::ui8_t ToByte(double value) {
  return static_cast<Ferro::ui8_t>(std::lround(255 * std::clamp(value, 0.0, 1.0)));
}

double Encode(double light) {
  return light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
}

}  // namespace

ColourTransform::ColourTransform(PictureColour colour, WhitePoint white, unsigned bits)
    : m_IsXYZ(colour == PictureColour::XYZ || (colour == PictureColour::Unknown && bits == 12)),
      m_LargestCode(double((1U << bits) - 1)),
      m_Matrix(white == WhitePoint::DCI ? Times(ScreenFromXYZ, Adaptation(WhiteDCI, WhiteD65)) : ScreenFromXYZ) {
  if (!m_IsXYZ) return;
  m_Light.resize(size_t{1} << bits);
  for (size_t code = 0; code < m_Light.size(); ++code)
    m_Light[code] = PeakLuminance / ReferenceLuminance * std::pow(double(code) / m_LargestCode, Gamma);
}

std::array<Ferro::ui8_t, 3> ColourTransform::operator()(const std::array<Ferro::ui16_t, 3>& samples) const {
  std::array<Ferro::ui8_t, 3> result{};
  if (!m_IsXYZ) {
    for (size_t i = 0; i < 3; ++i) result[i] = ToByte(samples[i] / m_LargestCode);
    return result;
  }
  const Vector light = Times(m_Matrix, Vector{m_Light[samples[0]], m_Light[samples[1]], m_Light[samples[2]]});
  for (size_t i = 0; i < 3; ++i) result[i] = ToByte(Encode(std::max(light[i], 0.0)));
  return result;
}

}  // namespace Tool
