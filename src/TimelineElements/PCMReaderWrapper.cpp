// SPDX-License-Identifier: BSD-3-Clause
#include "TimelineElements/PCMReaderWrapper.h"

#include <Strata/SoundConfiguration.h>

#include <Ferro/ILogSink.h>
#include <QUIRE/Dictionary.h>
#include <QUIRE/MXF/Descriptors.h>
#include <QUIRE/MXF/OP1aHeader.h>

#include <stdexcept>

namespace Strata {

QUIRE::Result_t PCMReaderWrapper::OpenRead(const std::string& filename) {
  const QUIRE::Result_t result = MXFReader::OpenRead(filename);
  return result.Failure() ? result : InitChannels(OP1aHeader(), filename);
}

QUIRE::Result_t PCMReaderWrapper::InitChannels(QUIRE::MXF::OP1aHeader& header, const std::string& filename) {
  const QUIRE::Dictionary& dict = QUIRE::DefaultSMPTEDict();
  QUIRE::MXF::InterchangeObject* object = nullptr;
  const QUIRE::Result_t result = header.GetMDObjectByType(dict.ul(QUIRE::MDD_WaveAudioDescriptor), &object);
  if (result.Failure()) {
    Ferro::DefaultLogSink().Error("WaveAudioDescriptor not found.\n");
    return result;
  }
  const auto* descriptor = dynamic_cast<const QUIRE::MXF::WaveAudioDescriptor*>(object);
  if (descriptor == nullptr) {
    // Sound plays without its label: what the label would say is for display.
    Ferro::DefaultLogSink().Error("WaveAudioDescriptor type failure.\n");
    return Ferro::RESULT_OK;
  }
  m_ChannelAssignment = descriptor->ChannelAssignment.value_or(QUIRE::UL());
  try {
    m_MCALabelString = sound_config_from_mxf(header, dict, true);
  } catch (const std::out_of_range&) {
    Ferro::DefaultLogSink().Error("%s: multichannel label with a tag symbol of fewer than two characters.\n",
                                  filename.c_str());
  }
  return Ferro::RESULT_OK;
}

}  // namespace Strata
