// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "SetDefinition.h"

namespace QUIRE::MXF {

// The definitions of all sets; each stands in the table of the header that declares its class.
extern const SetDefinition PrefaceSet;
extern const SetDefinition IdentificationSet;
extern const SetDefinition ContentStorageSet;
extern const SetDefinition EssenceContainerDataSet;
extern const SetDefinition MaterialPackageSet;
extern const SetDefinition SourcePackageSet;
extern const SetDefinition TrackSet;
extern const SetDefinition StaticTrackSet;
extern const SetDefinition EventTrackSet;
extern const SetDefinition SequenceSet;
extern const SetDefinition SourceClipSet;
extern const SetDefinition TimecodeComponentSet;
extern const SetDefinition FillerSet;
extern const SetDefinition DMSegmentSet;
extern const SetDefinition CryptographicFrameworkSet;
extern const SetDefinition CryptographicContextSet;
extern const SetDefinition MultipleDescriptorSet;
extern const SetDefinition GenericPictureEssenceDescriptorSet;
extern const SetDefinition RGBAEssenceDescriptorSet;
extern const SetDefinition CDCIEssenceDescriptorSet;
extern const SetDefinition MPEG2VideoDescriptorSet;
extern const SetDefinition GenericSoundEssenceDescriptorSet;
extern const SetDefinition WaveAudioDescriptorSet;
extern const SetDefinition GenericDataEssenceDescriptorSet;
extern const SetDefinition TimedTextDescriptorSet;
extern const SetDefinition DCDataDescriptorSet;
extern const SetDefinition IADataEssenceDescriptorSet;
extern const SetDefinition JPEG2000PictureSubDescriptorSet;
extern const SetDefinition StereoscopicPictureSubDescriptorSet;
extern const SetDefinition AudioChannelLabelSubDescriptorSet;
extern const SetDefinition SoundfieldGroupLabelSubDescriptorSet;
extern const SetDefinition GroupOfSoundfieldGroupsLabelSubDescriptorSet;
extern const SetDefinition TimedTextResourceSubDescriptorSet;
extern const SetDefinition IADataEssenceSubDescriptorSet;

}  // namespace QUIRE::MXF
