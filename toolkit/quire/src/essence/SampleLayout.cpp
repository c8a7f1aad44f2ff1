// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/SampleLayout.h>

#include <algorithm>

namespace QUIRE::PCM {

std::optional<SampleLayout> SampleLayout::Of(const AudioDescriptor& sound) {
  constexpr ui32_t MaxChannels = 1024;
  SampleLayout layout;
  layout.Channels = sound.ChannelCount;
  layout.Bits = sound.QuantizationBits;
  if (layout.Channels == 0 || layout.Channels > MaxChannels || layout.Bits < 8 || layout.Bits > 32) return std::nullopt;
  layout.Width = (layout.Bits + 7) / 8;
  const ui32_t aligned = sound.BlockAlign / layout.Channels;
  if (sound.BlockAlign % layout.Channels == 0 && aligned >= layout.Width && aligned <= 4) layout.Width = aligned;
  layout.Stride = std::max<ui64_t>(sound.BlockAlign, ui64_t{layout.Channels} * layout.Width);
  return layout;
}

}  // namespace QUIRE::PCM
