// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/PCMReader.h>

#include "h__Reader.h"

#include <QUIRE/Dictionary.h>

#include <utility>

namespace QUIRE::PCM {

namespace {

ChannelFormat_t ChannelFormatOf(const UL& label) {
  static constexpr std::pair<MDD_t, ChannelFormat_t> formats[] = {
      {MDD_DCAudioChannelCfg_1_5p1, CF_CFG_1},    {MDD_DCAudioChannelCfg_2_6p1, CF_CFG_2},
      {MDD_DCAudioChannelCfg_3_7p1, CF_CFG_3},    {MDD_DCAudioChannelCfg_4_WTF, CF_CFG_4},
      {MDD_DCAudioChannelCfg_5_7p1_DS, CF_CFG_5}, {MDD_DCAudioChannelCfg_MCA, CF_CFG_6},
  };
  for (const auto& [entry, format] : formats)
    if (DefaultSMPTEDict().Is(label, entry)) return format;
  return CF_NONE;
}

}  // namespace

MXFReader::MXFReader() : TrackFileReader(ESS_PCM) {}

Result_t MXFReader::FillAudioDescriptor(AudioDescriptor& descriptor) const {
  if (!m_Reader) return Ferro::RESULT_INIT;
  const auto* sound = dynamic_cast<const MXF::WaveAudioDescriptor*>(m_Reader->Facts().Descriptor);
  if (sound == nullptr) return RESULT_FORMAT;
  descriptor = {};
  descriptor.EditRate = m_Reader->Facts().EditRate;
  descriptor.AudioSamplingRate = sound->AudioSamplingRate;
  descriptor.Locked = sound->Locked.value_or(false);
  descriptor.ChannelCount = sound->ChannelCount;
  descriptor.QuantizationBits = sound->QuantizationBits;
  descriptor.BlockAlign = sound->BlockAlign;
  descriptor.AvgBps = sound->AvgBps;
  descriptor.LinkedTrackID = sound->LinkedTrackID.value_or(0);
  descriptor.ContainerDuration = m_Reader->ContainerDuration();
  if (sound->ChannelAssignment) descriptor.ChannelFormat = ChannelFormatOf(*sound->ChannelAssignment);
  return Ferro::RESULT_OK;
}

Result_t MXFReader::ReadFrame(ui32_t frame_number, FrameBuffer& frame, AESDecContext* decryption,
                              HMACContext* integrity) {
  if (!m_Reader) return Ferro::RESULT_INIT;
  return m_Reader->ReadFrame(frame_number, {decryption, integrity}, frame);
}

}  // namespace QUIRE::PCM
