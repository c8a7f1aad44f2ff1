// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/Codestream.h>
#include <QUIRE/Dictionary.h>
#include <QUIRE/JP2KHeaders.h>

#include <utility>

namespace QUIRE::JP2K {

namespace {

UL CodingLabel(ui16_t rsiz) {
  switch (rsiz) {
    case 3:
      return DefaultSMPTEDict().ul(MDD_JP2KEssenceCompression_2K);
    case 4:
      return DefaultSMPTEDict().ul(MDD_JP2KEssenceCompression_4K);
    default:
      return DefaultSMPTEDict().ul(MDD_JP2KEssenceCompression_Undefined);
  }
}

}  // namespace

Result_t ParseCodestream(std::span<const ui8_t> codestream, PictureDescriptor& descriptor) {
  CodestreamHeaders headers;
  if (const Result_t result = ParseHeaders(codestream, headers); result.Failure()) return result;
  const ui32_t width = headers.Size.Xsiz - headers.Size.XOsiz;
  const ui32_t height = headers.Size.Ysiz - headers.Size.YOsiz;
  if (!std::in_range<i32_t>(width) || !std::in_range<i32_t>(height)) return RESULT_RAW_FORMAT;

  static_cast<ImageAndTileSize&>(descriptor) = std::move(headers.Size);
  descriptor.CodingStyleDefault = std::move(headers.CodingStyleDefault);
  descriptor.QuantizationDefault = std::move(headers.QuantizationDefault);
  descriptor.StoredWidth = width;
  descriptor.StoredHeight = height;
  descriptor.AspectRatio = Rational(static_cast<i32_t>(width), static_cast<i32_t>(height));
  descriptor.PictureEssenceCoding = CodingLabel(descriptor.Rsiz);
  return Ferro::RESULT_OK;
}

}  // namespace QUIRE::JP2K
