// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "SamplePackage.h"

#include "file/CompositionFiles.h"

#include <QUIRE/MCALabel.h>

#include <cstdlib>
#include <deque>
#include <string>

namespace testsupport {

/// A sound header without fault: 24 bits at 48 kHz. With a text such as "51(L,R,C,LFE,Ls,Rs),HI" it has labels by name.
inline Assay::SoundHeader SoundHeaderOf(Assay::ui32_t channels, QUIRE::PCM::ChannelFormat_t format,
                                        const std::string& labels = {}, const std::string& language = {}) {
  Assay::SoundHeader header;
  header.Descriptor.EditRate = QUIRE::EditRate_24;
  header.Descriptor.AudioSamplingRate = QUIRE::SampleRate_48k;
  header.Descriptor.ChannelCount = channels;
  header.Descriptor.QuantizationBits = 24;
  header.Descriptor.BlockAlign = channels * 3;
  header.Descriptor.ChannelFormat = format;
  if (!labels.empty() && QUIRE::PCM::MakeMCALabels(labels, language, header.Labels).Failure()) std::abort();
  return header;
}

/// Labels by name for eight channels, that leave nothing to say.
inline Assay::SoundHeader LabelledSound(const std::string& language = "en") {
  return SoundHeaderOf(8, QUIRE::PCM::CF_CFG_6, "51(L,R,C,LFE,Ls,Rs),HI,VIN", language);
}

template <class EssenceT>
Assay::TrackFile TrackFileOf(EssenceT essence, QUIRE::LabelSet_t flavour = QUIRE::LS_MXF_SMPTE) {
  Assay::TrackFile file;
  file.Package = "folder";
  file.Path = "track.mxf";
  file.ID = *Ferro::UUID::FromHex("0f0f0f0f-1111-4222-8333-000000000013");
  file.Opened = Ferro::RESULT_OK;
  file.Info.LabelSetType = flavour;
  file.EditRate = QUIRE::EditRate_24;
  file.Duration = 240;
  file.Essence = std::move(essence);
  return file;
}

}  // namespace testsupport
