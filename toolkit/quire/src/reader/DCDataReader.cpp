// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/DCDataReader.h>

#include "FillDCData.h"

namespace QUIRE {

Result_t FillDCData(h__Reader& reader, DCData::DCDataDescriptor& descriptor) {
  const auto* data = dynamic_cast<const MXF::GenericDataEssenceDescriptor*>(reader.Facts().Descriptor);
  if (data == nullptr) return RESULT_FORMAT;
  descriptor = {};
  descriptor.EditRate = reader.Facts().EditRate;
  descriptor.ContainerDuration = reader.ContainerDuration();
  descriptor.AssetID = reader.Facts().AssetID;
  if (data->DataEssenceCoding) descriptor.DataEssenceCoding = *data->DataEssenceCoding;
  return Ferro::RESULT_OK;
}

namespace DCData {

MXFReader::MXFReader() : TrackFileReader(ESS_DCDATA) {}

Result_t MXFReader::FillDCDataDescriptor(DCDataDescriptor& descriptor) const {
  return m_Reader ? FillDCData(*m_Reader, descriptor) : Ferro::RESULT_INIT;
}

Result_t MXFReader::ReadFrame(ui32_t frame_number, FrameBuffer& frame, AESDecContext* decryption,
                              HMACContext* integrity) {
  if (!m_Reader) return Ferro::RESULT_INIT;
  return m_Reader->ReadFrame(frame_number, {decryption, integrity}, frame);
}

}  // namespace DCData

}  // namespace QUIRE
