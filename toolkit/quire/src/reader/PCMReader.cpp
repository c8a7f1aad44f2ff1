// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/PCMReader.h>

#include "DescriptorFilling.h"
#include "base/ResultOf.h"
#include "essence/SoundLabels.h"

#include <QUIRE/MXF/SubDescriptors.h>

#include <map>
#include <set>
#include <utility>

namespace QUIRE::PCM {

namespace {

/// The label that a sub-descriptor is; false where it is none. Its links are to be resolved later.
bool ReadLabel(const MXF::InterchangeObject* object, MCALabel& label, std::vector<Ferro::UUID>& links) {
  const auto* sub = dynamic_cast<const MXF::MCALabelSubDescriptor*>(object);
  if (sub == nullptr) return false;
  if (const auto* channel = dynamic_cast<const MXF::AudioChannelLabelSubDescriptor*>(sub)) {
    label.Kind = MCA_CHANNEL;
    if (channel->SoundfieldGroupLinkID) links.push_back(*channel->SoundfieldGroupLinkID);
  } else if (const auto* group = dynamic_cast<const MXF::SoundfieldGroupLabelSubDescriptor*>(sub)) {
    label.Kind = MCA_SOUNDFIELD_GROUP;
    links = group->GroupOfSoundfieldGroupsLinkID;
  } else {
    label.Kind = MCA_GROUP_OF_SOUNDFIELD_GROUPS;
  }
  label.DictionaryID = sub->MCALabelDictionaryID;
  label.TagSymbol = sub->MCATagSymbol;
  label.TagName = sub->MCATagName.value_or("");
  label.SpokenLanguage = sub->RFC5646SpokenLanguage.value_or("");
  label.ChannelID = sub->MCAChannelID.value_or(0);
  return true;
}

}  // namespace

}  // namespace QUIRE::PCM

namespace QUIRE {

Result_t FillFrom(h__Reader& reader, PCM::AudioDescriptor& descriptor) {
  const auto* sound = dynamic_cast<const MXF::WaveAudioDescriptor*>(reader.Facts().Descriptor);
  if (sound == nullptr) return RESULT_FORMAT;
  descriptor = {};
  descriptor.EditRate = reader.Facts().EditRate;
  descriptor.AudioSamplingRate = sound->AudioSamplingRate;
  descriptor.Locked = sound->Locked.value_or(false);
  descriptor.ChannelCount = sound->ChannelCount;
  descriptor.QuantizationBits = sound->QuantizationBits;
  descriptor.BlockAlign = sound->BlockAlign;
  descriptor.AvgBps = sound->AvgBps;
  descriptor.LinkedTrackID = sound->LinkedTrackID.value_or(0);
  descriptor.ContainerDuration = reader.ContainerDuration();
  if (sound->ChannelAssignment) descriptor.ChannelFormat = PCM::ChannelFormatOf(*sound->ChannelAssignment);
  return Ferro::RESULT_OK;
}

Result_t FillFrom(h__Reader& reader, PCM::MCALabelList& labels) {
  using namespace PCM;
  MCALabelList filled;
  std::set<Ferro::UUID> seen;
  std::vector<std::vector<Ferro::UUID>> links;
  std::multimap<std::pair<Ferro::UUID, MCALabelKind_t>, size_t> places;
  for (const Ferro::UUID& id : reader.Facts().Descriptor->SubDescriptors) {
    // Each once: a hostile list may name a long one over and over.
    if (!seen.insert(id).second) continue;
    const auto* sub = reader.Header().Resolve<MXF::MCALabelSubDescriptor>(id);
    MCALabel label;
    std::vector<Ferro::UUID> of_label;
    if (!ReadLabel(sub, label, of_label)) continue;
    places.emplace(std::pair(sub->MCALinkID, label.Kind), filled.size());
    filled.push_back(std::move(label));
    links.push_back(std::move(of_label));
  }
  for (size_t i = 0; i < filled.size(); ++i)
    for (const Ferro::UUID& link : links[i]) {
      const auto group = places.find({link, static_cast<MCALabelKind_t>(filled[i].Kind + 1)});
      if (group != places.end()) filled[i].Groups.push_back(group->second);
    }
  labels = std::move(filled);
  return Ferro::RESULT_OK;
}

}  // namespace QUIRE

namespace QUIRE::PCM {

MXFReader::MXFReader() : TrackFileReader(ESS_PCM) {}

Result_t MXFReader::FillAudioDescriptor(AudioDescriptor& descriptor) const {
  return m_Reader ? FillFrom(*m_Reader, descriptor) : Ferro::RESULT_INIT;
}

Result_t MXFReader::FillMCALabels(MCALabelList& labels) const {
  if (!m_Reader) return Ferro::RESULT_INIT;
  return ResultOf([&] { return FillFrom(*m_Reader, labels); });
}

Result_t MXFReader::ReadFrame(ui32_t frame_number, FrameBuffer& frame, AESDecContext* decryption,
                              HMACContext* integrity) {
  if (!m_Reader) return Ferro::RESULT_INIT;
  return m_Reader->ReadFrame(frame_number, {decryption, integrity}, frame);
}

}  // namespace QUIRE::PCM
