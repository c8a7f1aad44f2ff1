// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/AtmosWriter.h>
#include <QUIRE/DCDataWriter.h>

#include "h__Writer.h"

namespace QUIRE::DCData {

namespace {

MXF::FileDescriptor& MakeDescriptor(SetFactory& sets, const DCDataDescriptor& data) {
  auto& set = sets.Add<MXF::DCDataDescriptor>();
  if (data.DataEssenceCoding.HasValue()) set.DataEssenceCoding = data.DataEssenceCoding;
  return set;
}

}  // namespace

Result_t MXFWriter::OpenWrite(const std::string& filename, const WriterInfo& info, const DCDataDescriptor& descriptor,
                              const WriterOptions& options) {
  return OpenWriter(m_Writer, m_FailureReason, filename, ESS_DCDATA, info, descriptor.EditRate, options, false,
                    MakeDescriptor, descriptor);
}

Result_t MXFWriter::WriteFrame(const FrameBuffer& frame, AESEncContext* encryption, HMACContext* integrity) {
  if (!m_Writer) return Ferro::RESULT_INIT;
  return m_Writer->WriteEditUnit(frame, {}, encryption, integrity);
}

}  // namespace QUIRE::DCData

namespace QUIRE::ATMOS {

namespace {

MXF::FileDescriptor& MakeDescriptor(SetFactory& sets, const AtmosDescriptor& atmos) {
  auto& set = sets.Add<MXF::IADataEssenceDescriptor>();
  set.DataEssenceCoding =
      atmos.DataEssenceCoding.HasValue() ? atmos.DataEssenceCoding : DefaultSMPTEDict().ul(MDD_ImmersiveAudioCoding);
  auto& details = sets.AddSubDescriptor<MXF::IADataEssenceSubDescriptor>(set);
  details.ImmersiveAudioID = atmos.AtmosID;
  details.FirstFrame = atmos.FirstFrame;
  details.MaxChannelCount = atmos.MaxChannelCount;
  details.MaxObjectCount = atmos.MaxObjectCount;
  details.ImmersiveAudioVersion = atmos.AtmosVersion;
  return set;
}

}  // namespace

Result_t MXFWriter::OpenWrite(const std::string& filename, const WriterInfo& info, const AtmosDescriptor& descriptor,
                              const WriterOptions& options) {
  return OpenWriter(m_Writer, m_FailureReason, filename, ESS_ATMOS, info, descriptor.EditRate, options, false,
                    MakeDescriptor, descriptor);
}

Result_t MXFWriter::WriteFrame(const DCData::FrameBuffer& frame, AESEncContext* encryption, HMACContext* integrity) {
  if (!m_Writer) return Ferro::RESULT_INIT;
  h__Writer::EntryFacts facts;
  facts.Flags = 0;  // what immersive audio files in the field have
  return m_Writer->WriteEditUnit(frame, facts, encryption, integrity);
}

}  // namespace QUIRE::ATMOS
