// SPDX-License-Identifier: BSD-3-Clause
#include "SetTables.h"

#include <QUIRE/Dictionary.h>
#include <QUIRE/MXF/Metadata.h>

#include <algorithm>

namespace QUIRE::MXF {
namespace {

// Every set that has a class; others are kept as bytes.
constexpr const SetDefinition* s_AllSets[] = {
    &PrefaceSet,
    &IdentificationSet,
    &ContentStorageSet,
    &EssenceContainerDataSet,
    &MaterialPackageSet,
    &SourcePackageSet,
    &TrackSet,
    &StaticTrackSet,
    &EventTrackSet,
    &SequenceSet,
    &SourceClipSet,
    &TimecodeComponentSet,
    &FillerSet,
    &DMSegmentSet,
    &CryptographicFrameworkSet,
    &CryptographicContextSet,
    &MultipleDescriptorSet,
    &GenericPictureEssenceDescriptorSet,
    &RGBAEssenceDescriptorSet,
    &CDCIEssenceDescriptorSet,
    &MPEG2VideoDescriptorSet,
    &GenericSoundEssenceDescriptorSet,
    &WaveAudioDescriptorSet,
    &GenericDataEssenceDescriptorSet,
    &TimedTextDescriptorSet,
    &DCDataDescriptorSet,
    &IADataEssenceDescriptorSet,
    &JPEG2000PictureSubDescriptorSet,
    &StereoscopicPictureSubDescriptorSet,
    &AudioChannelLabelSubDescriptorSet,
    &SoundfieldGroupLabelSubDescriptorSet,
    &GroupOfSoundfieldGroupsLabelSubDescriptorSet,
    &TimedTextResourceSubDescriptorSet,
    &IADataEssenceSubDescriptorSet,
};

}  // namespace

std::span<const SetDefinition* const> AllSetDefinitions() {
  return s_AllSets;
}

const SetDefinition* FindSetDefinition(const UL& key) {
  const auto found = std::find_if(std::begin(s_AllSets), std::end(s_AllSets),
                                  [&key](const SetDefinition* set) { return DefaultSMPTEDict().Is(key, set->Entry); });
  return found == std::end(s_AllSets) ? nullptr : *found;
}

const SetDefinition& Preface::Definition() const {
  return PrefaceSet;
}
const SetDefinition& Identification::Definition() const {
  return IdentificationSet;
}
const SetDefinition& ContentStorage::Definition() const {
  return ContentStorageSet;
}
const SetDefinition& EssenceContainerData::Definition() const {
  return EssenceContainerDataSet;
}
const SetDefinition& MaterialPackage::Definition() const {
  return MaterialPackageSet;
}
const SetDefinition& SourcePackage::Definition() const {
  return SourcePackageSet;
}
const SetDefinition& Track::Definition() const {
  return TrackSet;
}
const SetDefinition& StaticTrack::Definition() const {
  return StaticTrackSet;
}
const SetDefinition& EventTrack::Definition() const {
  return EventTrackSet;
}
const SetDefinition& Sequence::Definition() const {
  return SequenceSet;
}
const SetDefinition& SourceClip::Definition() const {
  return SourceClipSet;
}
const SetDefinition& TimecodeComponent::Definition() const {
  return TimecodeComponentSet;
}
const SetDefinition& Filler::Definition() const {
  return FillerSet;
}
const SetDefinition& DMSegment::Definition() const {
  return DMSegmentSet;
}
const SetDefinition& CryptographicFramework::Definition() const {
  return CryptographicFrameworkSet;
}
const SetDefinition& CryptographicContext::Definition() const {
  return CryptographicContextSet;
}
const SetDefinition& MultipleDescriptor::Definition() const {
  return MultipleDescriptorSet;
}
const SetDefinition& GenericPictureEssenceDescriptor::Definition() const {
  return GenericPictureEssenceDescriptorSet;
}
const SetDefinition& RGBAEssenceDescriptor::Definition() const {
  return RGBAEssenceDescriptorSet;
}
const SetDefinition& CDCIEssenceDescriptor::Definition() const {
  return CDCIEssenceDescriptorSet;
}
const SetDefinition& MPEG2VideoDescriptor::Definition() const {
  return MPEG2VideoDescriptorSet;
}
const SetDefinition& GenericSoundEssenceDescriptor::Definition() const {
  return GenericSoundEssenceDescriptorSet;
}
const SetDefinition& WaveAudioDescriptor::Definition() const {
  return WaveAudioDescriptorSet;
}
const SetDefinition& GenericDataEssenceDescriptor::Definition() const {
  return GenericDataEssenceDescriptorSet;
}
const SetDefinition& TimedTextDescriptor::Definition() const {
  return TimedTextDescriptorSet;
}
const SetDefinition& DCDataDescriptor::Definition() const {
  return DCDataDescriptorSet;
}
const SetDefinition& IADataEssenceDescriptor::Definition() const {
  return IADataEssenceDescriptorSet;
}
const SetDefinition& JPEG2000PictureSubDescriptor::Definition() const {
  return JPEG2000PictureSubDescriptorSet;
}
const SetDefinition& StereoscopicPictureSubDescriptor::Definition() const {
  return StereoscopicPictureSubDescriptorSet;
}
const SetDefinition& AudioChannelLabelSubDescriptor::Definition() const {
  return AudioChannelLabelSubDescriptorSet;
}
const SetDefinition& SoundfieldGroupLabelSubDescriptor::Definition() const {
  return SoundfieldGroupLabelSubDescriptorSet;
}
const SetDefinition& GroupOfSoundfieldGroupsLabelSubDescriptor::Definition() const {
  return GroupOfSoundfieldGroupsLabelSubDescriptorSet;
}
const SetDefinition& TimedTextResourceSubDescriptor::Definition() const {
  return TimedTextResourceSubDescriptorSet;
}
const SetDefinition& IADataEssenceSubDescriptor::Definition() const {
  return IADataEssenceSubDescriptorSet;
}

}  // namespace QUIRE::MXF
