// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/AtmosReader.h>
#include <QUIRE/DCDataReader.h>

#include "DescriptorFilling.h"

#include <QUIRE/MXF/SubDescriptors.h>

namespace QUIRE {

Result_t FillFrom(h__Reader& reader, DCData::DCDataDescriptor& descriptor) {
  const auto* data = dynamic_cast<const MXF::GenericDataEssenceDescriptor*>(reader.Facts().Descriptor);
  if (data == nullptr) return RESULT_FORMAT;
  descriptor = {};
  descriptor.EditRate = reader.Facts().EditRate;
  descriptor.ContainerDuration = reader.ContainerDuration();
  descriptor.AssetID = reader.Facts().AssetID;
  if (data->DataEssenceCoding) descriptor.DataEssenceCoding = *data->DataEssenceCoding;
  return Ferro::RESULT_OK;
}

Result_t FillFrom(h__Reader& reader, ATMOS::AtmosDescriptor& descriptor) {
  ATMOS::AtmosDescriptor filled;
  const Result_t result = FillFrom(reader, static_cast<DCData::DCDataDescriptor&>(filled));
  if (result.Failure()) return result;
  for (const Ferro::UUID& id : reader.Facts().Descriptor->SubDescriptors) {
    const auto* sub = reader.Header().Resolve<MXF::IADataEssenceSubDescriptor>(id);
    if (sub == nullptr) continue;
    filled.FirstFrame = sub->FirstFrame.value_or(0);
    filled.MaxChannelCount = sub->MaxChannelCount.value_or(0);
    filled.MaxObjectCount = sub->MaxObjectCount.value_or(0);
    filled.AtmosID = sub->ImmersiveAudioID.value_or(Ferro::UUID());
    filled.AtmosVersion = sub->ImmersiveAudioVersion.value_or(0);
    break;
  }
  descriptor = filled;
  return Ferro::RESULT_OK;
}

namespace DCData {

MXFReader::MXFReader() : TrackFileReader(ESS_DCDATA) {}

Result_t MXFReader::FillDCDataDescriptor(DCDataDescriptor& descriptor) const {
  return m_Reader ? FillFrom(*m_Reader, descriptor) : Ferro::RESULT_INIT;
}

Result_t MXFReader::ReadFrame(ui32_t frame_number, FrameBuffer& frame, AESDecContext* decryption,
                              HMACContext* integrity) {
  if (!m_Reader) return Ferro::RESULT_INIT;
  return m_Reader->ReadFrame(frame_number, {decryption, integrity}, frame);
}

}  // namespace DCData

}  // namespace QUIRE

namespace QUIRE::ATMOS {

MXFReader::MXFReader() : TrackFileReader(ESS_ATMOS) {}

Result_t MXFReader::FillAtmosDescriptor(AtmosDescriptor& descriptor) const {
  return m_Reader ? FillFrom(*m_Reader, descriptor) : Ferro::RESULT_INIT;
}

Result_t MXFReader::ReadFrame(ui32_t frame_number, DCData::FrameBuffer& frame, AESDecContext* decryption,
                              HMACContext* integrity) {
  if (!m_Reader) return Ferro::RESULT_INIT;
  return m_Reader->ReadFrame(frame_number, {decryption, integrity}, frame);
}

}  // namespace QUIRE::ATMOS
