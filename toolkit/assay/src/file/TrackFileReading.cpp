// SPDX-License-Identifier: BSD-3-Clause
#include "TrackFileReading.h"

#include <QUIRE/TrackFileProbe.h>

#include <algorithm>

namespace Assay {
namespace {

using QUIRE::Result_t;
using QUIRE::TrackFileProbe;

template <class DescriptorT>
Result_t Take(const TrackFileProbe& probe, TrackFile& file) {
  DescriptorT descriptor;
  const Result_t result = probe.FillDescriptor(descriptor);
  if (result.Failure()) return result;
  file.EditRate = descriptor.EditRate;
  file.Duration = descriptor.ContainerDuration;
  file.Essence = std::move(descriptor);
  return result;
}

Result_t TakeSound(const TrackFileProbe& probe, TrackFile& file) {
  SoundHeader sound;
  Result_t result = probe.FillDescriptor(sound.Descriptor);
  if (result.Success()) result = probe.FillMCALabels(sound.Labels);
  if (result.Failure()) return result;
  file.EditRate = sound.Descriptor.EditRate;
  file.Duration = sound.Descriptor.ContainerDuration;
  file.Essence = std::move(sound);
  return result;
}

Result_t TakeDescriptor(const TrackFileProbe& probe, TrackFile& file) {
  switch (probe.Type()) {
    case QUIRE::ESS_JPEG_2000:
    case QUIRE::ESS_JPEG_2000_S:
      return Take<QUIRE::JP2K::PictureDescriptor>(probe, file);
    case QUIRE::ESS_MPEG2_VES:
      return Take<QUIRE::MPEG2::VideoDescriptor>(probe, file);
    case QUIRE::ESS_PCM:
      return TakeSound(probe, file);
    case QUIRE::ESS_TIMED_TEXT:
      return Take<QUIRE::TimedText::TimedTextDescriptor>(probe, file);
    case QUIRE::ESS_DCDATA:
      return Take<QUIRE::DCData::DCDataDescriptor>(probe, file);
    case QUIRE::ESS_ATMOS:
      return Take<QUIRE::ATMOS::AtmosDescriptor>(probe, file);
    case QUIRE::ESS_UNKNOWN:
    case QUIRE::ESS_MXF_OTHER:
      break;
  }
  return QUIRE::RESULT_FORMAT;
}

/// Tries the first edit unit and the last one that is played, the resources of text, then the file's last edit unit and its
/// end.
void TryEditUnits(TrackFileProbe& probe, std::optional<ui64_t> last_played, TrackFile& file) {
  const ui32_t end = std::max<ui32_t>(file.Duration, 1) - 1;
  const auto last = static_cast<ui32_t>(std::min<ui64_t>(last_played.value_or(0), end));
  for (const ui32_t unit : {ui32_t{0}, last})
    if (const Result_t result = probe.FindEditUnit(unit); result.Failure()) {
      file.BadUnit = unit;
      file.BadReason = result;
      return;
    }
  UUID missing;
  if (const Result_t result = probe.FindResources(missing); result.Failure()) {
    file.BadResource = missing;
    file.BadReason = result;
    return;
  }
  if (last != end) file.IsIncomplete = probe.FindEditUnit(end).Failure();
  file.HasNoFooter = !file.IsIncomplete && probe.FindFooter() == QUIRE::RESULT_CUT;
}

}  // namespace

void ReadTrackFile(TrackFile& file, std::optional<ui64_t> last_played) {
  TrackFileProbe probe;
  file.Opened = probe.OpenRead(file.FullPath());
  if (file.Opened.Success()) file.Opened = probe.FillIdentity(file.Identity);
  if (file.Opened.Success()) file.Opened = probe.FillWriterInfo(file.Info);
  if (file.Opened.Success()) file.Opened = TakeDescriptor(probe, file);
  if (file.Opened.Success())
    TryEditUnits(probe, last_played, file);
  else if (file.Opened == QUIRE::RESULT_FORMAT)
    static_cast<void>(IdentifyTrackFile(file.FullPath(), file.Identity));  // without an answer, unknown as before
}

}  // namespace Assay
