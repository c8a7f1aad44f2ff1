// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/Export.h>
#include <Strata/Types.h>

#include <Ferro/IArchive.h>

#include <array>
#include <cstdio>

namespace Strata {

/// How the output device is doing: filled by the device layer, passed through to those who listen.
///
/// Archive form, in order: the 16 channel words, ImageBPS, FrameSkipCount, FrameUnderrunCount, u32 each; 76 bytes.
class STRATA_API DeviceStatus : public Ferro::IArchive {
 public:
  static constexpr ui32_t AudioChannelCount = 16;

  /// One word per sound channel. Bits 0, 1 and 2 are flags whose meaning the device layer sets.
  std::array<ui32_t, AudioChannelCount> m_AudioChannelStatus{};
  ui32_t ImageBPS = 0;            ///< picture bits per second
  ui32_t FrameSkipCount = 0;      ///< picture frames left out
  ui32_t FrameUnderrunCount = 0;  ///< picture frames that were not there in time

  /// Prints one line without a line end: the counters, then for each channel " %s%c%s", which are "!" for bit 2,
  /// the channel's letter or "_" for bit 0, "*" for bit 1. A null stream is standard error.
  void Dump(FILE* stream = nullptr) const;

  /// Always true.
  [[nodiscard]] bool HasValue() const override;
  [[nodiscard]] ui32_t ArchiveLength() const override;
  [[nodiscard]] bool Archive(Ferro::MemIOWriter* Writer) const override;
  [[nodiscard]] bool Unarchive(Ferro::MemIOReader* Reader) override;
};

}  // namespace Strata
