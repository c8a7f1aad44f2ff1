// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/DeviceStatus.h>

#include <Ferro/Assert.h>

#include <algorithm>

namespace Strata {

// Counts print as signed numbers; that is what readers of this line expect.
void DeviceStatus::Dump(FILE* stream) const {
  // Left, right, centre, low frequency, the surrounds, the accessibility channels, then the unnamed ones.
  constexpr char letters[] = "LRCelrDHz0123456";
  static_assert(sizeof letters == AudioChannelCount + 1);

  if (stream == nullptr) stream = stderr;
  const auto number = [](ui32_t value) { return static_cast<i32_t>(value); };
  std::fprintf(stream, "BPS: %7d  Skp: %d  Und: %d  Audio:", number(ImageBPS), number(FrameSkipCount),
               number(FrameUnderrunCount));
  for (ui32_t i = 0; i < AudioChannelCount; ++i) {
    const ui32_t flags = m_AudioChannelStatus[i];
    std::fprintf(stream, " %s%c%s", (flags & 4) != 0 ? "!" : "_", (flags & 1) != 0 ? '_' : letters[i],
                 (flags & 2) != 0 ? "*" : "_");
  }
}

bool DeviceStatus::HasValue() const {
  return true;
}

ui32_t DeviceStatus::ArchiveLength() const {
  return static_cast<ui32_t>(sizeof(ui32_t)) * (AudioChannelCount + 3);
}

bool DeviceStatus::Archive(Ferro::MemIOWriter* Writer) const {
  FERRO_ASSERT_IN(Writer != nullptr, "Writer", "virtual bool Strata::DeviceStatus::Archive(Ferro::MemIOWriter*) const");
  return std::ranges::all_of(m_AudioChannelStatus, [&](ui32_t flags) { return Writer->WriteUi32BE(flags); }) &&
         Writer->WriteUi32BE(ImageBPS) && Writer->WriteUi32BE(FrameSkipCount) &&
         Writer->WriteUi32BE(FrameUnderrunCount);
}

bool DeviceStatus::Unarchive(Ferro::MemIOReader* Reader) {
  FERRO_ASSERT_IN(Reader != nullptr, "Reader", "virtual bool Strata::DeviceStatus::Unarchive(Ferro::MemIOReader*)");
  return std::ranges::all_of(m_AudioChannelStatus, [&](ui32_t& flags) { return Reader->ReadUi32BE(&flags); }) &&
         Reader->ReadUi32BE(&ImageBPS) && Reader->ReadUi32BE(&FrameSkipCount) &&
         Reader->ReadUi32BE(&FrameUnderrunCount);
}

}  // namespace Strata
