// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/JP2KReader.h>

#include "DescriptorFilling.h"
#include "base/ResultOf.h"

#include <QUIRE/MXF/SubDescriptors.h>

namespace QUIRE {

namespace {

void FillCodestream(const MXF::JPEG2000PictureSubDescriptor& sub, JP2K::PictureDescriptor& descriptor) {
  static_cast<JP2K::ImageAndTileSize&>(descriptor) = sub;
  if (sub.CodingStyleDefault) descriptor.CodingStyleDefault = *sub.CodingStyleDefault;
  if (sub.QuantizationDefault) descriptor.QuantizationDefault = *sub.QuantizationDefault;
}

}  // namespace

Result_t FillFrom(h__Reader& reader, JP2K::PictureDescriptor& descriptor) {
  const TrackFacts& facts = reader.Facts();
  const auto* picture = dynamic_cast<const MXF::GenericPictureEssenceDescriptor*>(facts.Descriptor);
  if (picture == nullptr) return RESULT_FORMAT;
  descriptor = {};
  descriptor.EditRate = facts.EditRate;
  descriptor.SampleRate = picture->SampleRate;
  descriptor.ContainerDuration = reader.ContainerDuration();
  descriptor.StoredWidth = picture->StoredWidth;
  descriptor.StoredHeight = picture->StoredHeight;
  descriptor.AspectRatio = picture->AspectRatio;
  if (picture->PictureEssenceCoding)
    descriptor.PictureEssenceCoding = *picture->PictureEssenceCoding;
  else if (picture->Codec)  // where Interop writers put it
    descriptor.PictureEssenceCoding = *picture->Codec;
  descriptor.Stereoscopic = facts.IsStereoscopic();
  for (const Ferro::UUID& id : picture->SubDescriptors)
    if (const auto* sub = reader.Header().Resolve<MXF::JPEG2000PictureSubDescriptor>(id)) {
      FillCodestream(*sub, descriptor);
      break;
    }
  return Ferro::RESULT_OK;
}

}  // namespace QUIRE

namespace QUIRE::JP2K {

namespace {

Result_t Fill(h__Reader* reader, PictureDescriptor& descriptor) {
  return reader == nullptr ? Ferro::RESULT_INIT : ResultOf([&] { return FillFrom(*reader, descriptor); });
}

}  // namespace

MXFReader::MXFReader() : TrackFileReader(ESS_JPEG_2000) {}

Result_t MXFReader::FillPictureDescriptor(PictureDescriptor& descriptor) const {
  return Fill(m_Reader.get(), descriptor);
}

Result_t MXFReader::ReadFrame(ui32_t frame_number, FrameBuffer& frame, AESDecContext* decryption,
                              HMACContext* integrity) {
  if (!m_Reader) return Ferro::RESULT_INIT;
  return m_Reader->ReadFrame(frame_number, {decryption, integrity}, frame);
}

MXFSReader::MXFSReader() : TrackFileReader(ESS_JPEG_2000_S) {}

Result_t MXFSReader::FillPictureDescriptor(PictureDescriptor& descriptor) const {
  return Fill(m_Reader.get(), descriptor);
}

Result_t MXFSReader::ReadFrame(ui32_t frame_number, SFrameBuffer& frame, AESDecContext* decryption,
                               HMACContext* integrity) {
  if (!m_Reader) return Ferro::RESULT_INIT;
  return m_Reader->ReadPair(frame_number, {decryption, integrity}, frame);
}

}  // namespace QUIRE::JP2K
