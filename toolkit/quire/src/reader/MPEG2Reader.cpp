// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/MPEG2Reader.h>

#include "DescriptorFilling.h"

namespace QUIRE {

Result_t FillFrom(h__Reader& reader, MPEG2::VideoDescriptor& descriptor) {
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
  descriptor.FrameLayout = picture->FrameLayout;
  if (picture->PictureEssenceCoding) descriptor.PictureEssenceCoding = *picture->PictureEssenceCoding;
  if (const auto* cdci = dynamic_cast<const MXF::CDCIEssenceDescriptor*>(picture)) {
    descriptor.ComponentDepth = cdci->ComponentDepth;
    descriptor.HorizontalSubsampling = cdci->HorizontalSubsampling;
    descriptor.VerticalSubsampling = cdci->VerticalSubsampling.value_or(0);
    descriptor.ColorSiting = cdci->ColorSiting.value_or(0);
  }
  if (const auto* mpeg = dynamic_cast<const MXF::MPEG2VideoDescriptor*>(picture)) {
    descriptor.CodedContentType = mpeg->CodedContentType.value_or(0);
    descriptor.LowDelay = mpeg->LowDelay.value_or(false);
    descriptor.BitRate = mpeg->BitRate.value_or(0);
    descriptor.ProfileAndLevel = mpeg->ProfileAndLevel.value_or(0);
  }
  return Ferro::RESULT_OK;
}

}  // namespace QUIRE

namespace QUIRE::MPEG2 {

MXFReader::MXFReader() : TrackFileReader(ESS_MPEG2_VES) {}

Result_t MXFReader::FillVideoDescriptor(VideoDescriptor& descriptor) const {
  return m_Reader ? FillFrom(*m_Reader, descriptor) : Ferro::RESULT_INIT;
}

Result_t MXFReader::ReadFrame(ui32_t frame_number, FrameBuffer& frame, AESDecContext* decryption,
                              HMACContext* integrity) {
  if (!m_Reader) return Ferro::RESULT_INIT;
  const Result_t result = m_Reader->ReadFrame(frame_number, {decryption, integrity}, frame);
  if (result.Failure()) return result;
  const MXF::IndexEntry entry = m_Reader->Entry(frame_number);
  frame.IndexFlags(entry.Flags);
  frame.TemporalOffset(entry.TemporalOffset);
  return result;
}

}  // namespace QUIRE::MPEG2
