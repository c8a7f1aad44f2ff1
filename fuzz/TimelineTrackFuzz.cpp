// SPDX-License-Identifier: BSD-3-Clause
#include "QuietLog.h"

#include "TimelineElements/TextTrack.h"
#include "TimelineElements/TrackFileElements.h"

#include <Ferro/Assert.h>
#include <QUIRE/EssenceType.h>

#include <cstdint>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

// Plays a track file with the timeline track of its kind: each frame once, and one beyond the end.

namespace {

using Strata::ui32_t;

constexpr ui32_t MostFrames = 20;

template <class Track>
void Play(const std::string& name) {
  Track track;
  if (track.InitWithFilename(name, 0, 1).Failure()) return;
  track.MakeReady();
  for (ui32_t i = 0; i <= std::min(track.IntrinsicDuration(), MostFrames); ++i) {
    track.ReadyFrameAtLocation(i);
    track.BufferLock();
    FERRO_ASSERT(track.FrameBufferSize() <= track.FrameBuffer().Capacity());
    FERRO_ASSERT(track.REyeFrameBufferSize() <= track.REyeFrameBuffer().Capacity());
    track.BufferUnlock();
  }
  FERRO_ASSERT(track.MakeDormant());
}

void LoadText(const std::string& name) {
  Strata::TextTimelineElement track(5, Strata::ShortIndexPack::Refuse);
  if (track.InitWithFilename(name, 0, 1).Failure()) return;
  QUIRE::TimedText::FrameBuffer buffer;
  FERRO_ASSERT(track.GetTimedTextData(buffer));
  Strata::UUIDList resources;
  FERRO_ASSERT(track.AncillaryResourceIDList(resources));
  for (const Strata::UUID& id : resources) FERRO_ASSERT(track.GetTimedTextResourceByID(id, buffer));
}

void PlayAsWhatItIs(const std::string& name) {
  QUIRE::EssenceType_t type = QUIRE::ESS_UNKNOWN;
  if (QUIRE::EssenceType(name, type).Failure()) return;
  switch (type) {
    case QUIRE::ESS_JPEG_2000:
    case QUIRE::ESS_JPEG_2000_S:
      Play<Strata::JP2KTimelineElement>(name);
      return Play<Strata::JP2KSTimelineElement>(name);
    case QUIRE::ESS_MPEG2_VES:
      return Play<Strata::MPEG2TimelineElement>(name);
    case QUIRE::ESS_PCM:
      return Play<Strata::PCMTimelineElement>(name);
    case QUIRE::ESS_DCDATA:
      return Play<Strata::DCDataTimelineElement>(name);
    case QUIRE::ESS_ATMOS:
      return Play<Strata::AtmosTimelineElement>(name);
    default:
      return LoadText(name);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static QuietLog log;
  static const int descriptor = memfd_create("track-file", 0);
  FERRO_ASSERT(descriptor >= 0 && ftruncate(descriptor, 0) == 0);
  FERRO_ASSERT(pwrite(descriptor, data, size, 0) == static_cast<ssize_t>(size));
  PlayAsWhatItIs("/proc/self/fd/" + std::to_string(descriptor));
  return 0;
}
