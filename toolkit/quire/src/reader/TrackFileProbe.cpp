// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/TrackFileProbe.h>

#include "DescriptorFilling.h"
#include "base/ResultOf.h"
#include "h__Reader.h"

namespace QUIRE {

namespace {

template <class DescriptorT>
Result_t Fill(h__Reader* reader, DescriptorT& descriptor) {
  return reader == nullptr ? Ferro::RESULT_INIT : ResultOf([&] { return FillFrom(*reader, descriptor); });
}

}  // namespace

TrackFileProbe::TrackFileProbe() : TrackFileReader(ESS_UNKNOWN) {}

EssenceType_t TrackFileProbe::Type() const {
  return m_Reader ? m_Reader->Facts().Type : ESS_UNKNOWN;
}

Result_t TrackFileProbe::FillIdentity(TrackFileIdentity& identity) const {
  if (!m_Reader) return Ferro::RESULT_INIT;
  identity = IdentityOf(m_Reader->Header(), m_Reader->Facts());
  return Ferro::RESULT_OK;
}

Result_t TrackFileProbe::FillDescriptor(JP2K::PictureDescriptor& descriptor) const {
  return Fill(m_Reader.get(), descriptor);
}

Result_t TrackFileProbe::FillDescriptor(MPEG2::VideoDescriptor& descriptor) const {
  return Fill(m_Reader.get(), descriptor);
}

Result_t TrackFileProbe::FillDescriptor(PCM::AudioDescriptor& descriptor) const {
  return Fill(m_Reader.get(), descriptor);
}

Result_t TrackFileProbe::FillDescriptor(TimedText::TimedTextDescriptor& descriptor) const {
  return Fill(m_Reader.get(), descriptor);
}

Result_t TrackFileProbe::FillDescriptor(DCData::DCDataDescriptor& descriptor) const {
  return Fill(m_Reader.get(), descriptor);
}

Result_t TrackFileProbe::FillDescriptor(ATMOS::AtmosDescriptor& descriptor) const {
  return Fill(m_Reader.get(), descriptor);
}

Result_t TrackFileProbe::FillMCALabels(PCM::MCALabelList& labels) const {
  return Fill(m_Reader.get(), labels);
}

Result_t TrackFileProbe::FindEditUnit(ui32_t number) {
  return m_Reader ? m_Reader->LocateEditUnit(number) : Ferro::RESULT_INIT;
}

Result_t TrackFileProbe::FindResources(Ferro::UUID& missing) {
  return m_Reader ? ResultOf([&] { return QUIRE::FindResources(*m_Reader, missing); }) : Ferro::RESULT_INIT;
}

Result_t TrackFileProbe::FindFooter() {
  return m_Reader ? m_Reader->LocateFooter() : Ferro::RESULT_INIT;
}

}  // namespace QUIRE
