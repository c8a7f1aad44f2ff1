// SPDX-License-Identifier: BSD-3-Clause
#include "EssenceMaker.h"

#include "sample/CodestreamEncoder.h"

#include <algorithm>
#include <map>
#include <mutex>

namespace testsupport {

using namespace QUIRE;

namespace {

Bytes Encode(ui32_t width, ui32_t height) {
  const Tool::ImagePtr image = Tool::NewImage(width, height);
  for (ui32_t c = 0; c < 3; ++c)
    for (ui32_t i = 0; i < width * height; ++i)
      image->comps[c].data[i] = static_cast<OPJ_INT32>((i % width * (c + 1) + i / width * 3) * 16 % 4096);
  opj_cparameters_t parameters;
  opj_set_default_encoder_parameters(&parameters);
  parameters.irreversible = 1;
  parameters.tcp_numlayers = 1;
  parameters.tcp_rates[0] = 10;
  parameters.cp_disto_alloc = 1;
  while ((std::min(width, height) >> parameters.numresolution) == 0) --parameters.numresolution;
  Bytes codestream = Tool::EncodeImage(*image, parameters);
  codestream[7] = width <= 2048 && height <= 1080 ? 3 : 4;  // Rsiz: the D-Cinema profiles
  return codestream;
}

}  // namespace

Bytes MakeCodestream(ui32_t width, ui32_t height, ui32_t number) {
  static std::mutex lock;
  static std::map<std::pair<ui32_t, ui32_t>, Bytes> encoded;  // guarded by lock
  Bytes out;
  {
    const std::lock_guard guard(lock);
    Bytes& plain = encoded[{width, height}];
    if (plain.empty()) plain = Encode(width, height);
    out = plain;
  }
  // A comment of binary data after SIZ: FF64, length 8, kind 0, number; and a few bytes so that sizes differ.
  Bytes comment = {0xff, 0x64, 0, static_cast<ui8_t>(8 + number % 7), 0, 0};
  for (int shift = 24; shift >= 0; shift -= 8) comment.push_back(static_cast<ui8_t>(number >> shift));
  comment.resize(comment.size() + number % 7, 0x55);
  const size_t size_end = 4 + (size_t{out[4]} << 8 | out[5]);
  out.insert(out.begin() + static_cast<std::ptrdiff_t>(size_end), comment.begin(), comment.end());
  return out;
}

}  // namespace testsupport
