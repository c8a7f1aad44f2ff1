// SPDX-License-Identifier: BSD-3-Clause
#include "SamplePicture.h"

#include "CodestreamEncoder.h"
#include "SampleFont.h"

#include <algorithm>
#include <stdexcept>

namespace Tool {

namespace {

constexpr Ferro::ui32_t GlyphWidth = 6;  // with the gap behind
constexpr Ferro::ui32_t GlyphHeight = 7;
constexpr Ferro::ui64_t LargestPicture = 2048 * 1080;  // pixels of the profile
constexpr Ferro::i32_t HalfScale = 2048;
constexpr double Filling = 0.9;  // of the largest rate: the encoder counts no main header

/// Where the fields of the quantization default (QCD, ISO/IEC 15444-1, A.6.4) begin: behind the marker and its length.
size_t FindQuantization(const std::vector<Ferro::ui8_t>& codestream) {
  size_t at = 2;  // behind SOC
  while (at + 4 < codestream.size() && codestream[at + 1] != 0x5c)
    at += 2 + (size_t{codestream[at + 2]} << 8 | codestream[at + 3]);
  if (at + 4 >= codestream.size()) throw std::runtime_error("a picture cannot be encoded: no quantization");
  return at + 4;
}

/// The encoder always takes two guard bits, cinema encoders one. With one guard bit less and all exponents one higher the
/// bit planes are as many as before, and so is all that is coded; steps are half as wide, for which pictures are given to
/// the encoder with twice their contrast.
void TakeOneGuardBit(std::vector<Ferro::ui8_t>& codestream) {
  const size_t style = FindQuantization(codestream);
  const size_t length = size_t{codestream[style - 2]} << 8 | codestream[style - 1];
  if (codestream[style] >> 5 != 2 || (codestream[style] & 0x1f) != 2)
    throw std::runtime_error("a picture cannot be encoded: the encoder quantizes otherwise than expected");
  codestream[style] = 1 << 5 | 2;
  constexpr Ferro::ui8_t OneMore = 1 << 3;  // the exponent stands above three bits of the mantissa
  for (size_t at = style + 1; at < style - 2 + length; at += 2)
    codestream[at] = static_cast<Ferro::ui8_t>(codestream[at] + OneMore);
}

std::vector<Ferro::ui8_t> EncodeInProfile(opj_image_t& image, Ferro::ui32_t images_per_second) {
  opj_cparameters_t parameters;
  opj_set_default_encoder_parameters(&parameters);
  parameters.rsiz = OPJ_PROFILE_CINEMA_2K;
  parameters.tcp_mct = 1;  // the component transform, which is on in cinema
  const double share = Filling * double(image.x1) * image.y1 / LargestPicture * 24 / images_per_second;
  parameters.max_cs_size = static_cast<int>(OPJ_CINEMA_24_CS * share);
  parameters.max_comp_size = static_cast<int>(OPJ_CINEMA_24_COMP * share);
  std::vector<Ferro::ui8_t> codestream = EncodeImage(image, parameters);
  TakeOneGuardBit(codestream);
  return codestream;
}

}  // namespace

SamplePicture::SamplePicture(Ferro::ui32_t width, Ferro::ui32_t height, const Colour& background)
    : m_Width(width), m_Height(height), m_Pixels(size_t{width} * height, background) {}

void SamplePicture::Fill(Ferro::ui32_t left, Ferro::ui32_t top, Ferro::ui32_t width, Ferro::ui32_t height,
                         const Colour& colour) {
  const Ferro::ui32_t right = std::min(m_Width, left + width);
  const Ferro::ui32_t bottom = std::min(m_Height, top + height);
  for (Ferro::ui32_t y = top; y < bottom; ++y)
    for (Ferro::ui32_t x = left; x < right; ++x) m_Pixels[size_t{y} * m_Width + x] = colour;
}

void SamplePicture::Write(const std::string& text, Ferro::ui32_t top, Ferro::ui32_t height, const Colour& colour) {
  const auto columns = static_cast<Ferro::ui32_t>(text.size()) * GlyphWidth;
  const Ferro::ui32_t dot = std::min(height / GlyphHeight, m_Width / std::max(columns, 1U));
  Ferro::ui32_t left = (m_Width - columns * dot) / 2;
  for (const char character : text) {
    const SampleGlyph& glyph = SampleGlyphOf(character);
    for (Ferro::ui32_t row = 0; row < GlyphHeight; ++row)
      for (Ferro::ui32_t column = 0; column < GlyphWidth - 1; ++column)
        if ((glyph[row] >> (GlyphWidth - 2 - column) & 1) != 0)
          Fill(left + column * dot, top + row * dot, dot, dot, colour);
    left += GlyphWidth * dot;
  }
}

std::vector<Ferro::ui8_t> SamplePicture::Encode(Ferro::ui32_t images_per_second) const {
  const ImagePtr image = NewImage(m_Width, m_Height);
  for (size_t c = 0; c < 3; ++c)
    for (size_t i = 0; i < m_Pixels.size(); ++i) image->comps[c].data[i] = 2 * m_Pixels[i][c] - HalfScale;
  return EncodeInProfile(*image, images_per_second);
}

}  // namespace Tool
