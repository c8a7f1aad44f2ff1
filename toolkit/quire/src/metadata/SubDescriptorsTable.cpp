// SPDX-License-Identifier: BSD-3-Clause
#include "SetTables.h"

#include <QUIRE/MXF/SubDescriptors.h>

namespace QUIRE::MXF {
namespace {

// A field of the SIZ marker segment, which the sub-descriptor has as a whole.
template <auto Member>
consteval Property SizeField(MDD_t entry) {
  return Field<Member, FieldCodec<typename MemberTraits<decltype(Member)>::Type>, JPEG2000PictureSubDescriptor>(entry);
}

constexpr auto JPEG2000PictureSubDescriptorProperties = Join(
    InterchangeObjectProperties,
    std::to_array<Property>({
        SizeField<&JP2K::ImageAndTileSize::Rsiz>(MDD_JPEG2000PictureSubDescriptor_Rsiz),
        SizeField<&JP2K::ImageAndTileSize::Xsiz>(MDD_JPEG2000PictureSubDescriptor_Xsiz),
        SizeField<&JP2K::ImageAndTileSize::Ysiz>(MDD_JPEG2000PictureSubDescriptor_Ysiz),
        SizeField<&JP2K::ImageAndTileSize::XOsiz>(MDD_JPEG2000PictureSubDescriptor_XOsiz),
        SizeField<&JP2K::ImageAndTileSize::YOsiz>(MDD_JPEG2000PictureSubDescriptor_YOsiz),
        SizeField<&JP2K::ImageAndTileSize::XTsiz>(MDD_JPEG2000PictureSubDescriptor_XTsiz),
        SizeField<&JP2K::ImageAndTileSize::YTsiz>(MDD_JPEG2000PictureSubDescriptor_YTsiz),
        SizeField<&JP2K::ImageAndTileSize::XTOsiz>(MDD_JPEG2000PictureSubDescriptor_XTOsiz),
        SizeField<&JP2K::ImageAndTileSize::YTOsiz>(MDD_JPEG2000PictureSubDescriptor_YTOsiz),
        SizeField<&JP2K::ImageAndTileSize::Csiz>(MDD_JPEG2000PictureSubDescriptor_Csiz),
        SizeField<&JP2K::ImageAndTileSize::PictureComponentSizing>(
            MDD_JPEG2000PictureSubDescriptor_PictureComponentSizing),
        Field<&JPEG2000PictureSubDescriptor::CodingStyleDefault>(MDD_JPEG2000PictureSubDescriptor_CodingStyleDefault),
        Field<&JPEG2000PictureSubDescriptor::QuantizationDefault>(MDD_JPEG2000PictureSubDescriptor_QuantizationDefault),
        Field<&JPEG2000PictureSubDescriptor::J2CLayout>(MDD_JPEG2000PictureSubDescriptor_J2CLayout),
        OptionalList<&JPEG2000PictureSubDescriptor::J2KProfile>(MDD_JPEG2000PictureSubDescriptor_J2KProfile),
        OptionalList<&JPEG2000PictureSubDescriptor::J2KCorrespondingProfile>(
            MDD_JPEG2000PictureSubDescriptor_J2KCorrespondingProfile),
    }));

constexpr auto MCALabelSubDescriptorProperties = Join(
    InterchangeObjectProperties,
    std::to_array<Property>({
        Field<&MCALabelSubDescriptor::MCALabelDictionaryID>(MDD_MCALabelSubDescriptor_MCALabelDictionaryID),
        Field<&MCALabelSubDescriptor::MCALinkID>(MDD_MCALabelSubDescriptor_MCALinkID),
        Field<&MCALabelSubDescriptor::MCATagSymbol>(MDD_MCALabelSubDescriptor_MCATagSymbol),
        Field<&MCALabelSubDescriptor::MCATagName>(MDD_MCALabelSubDescriptor_MCATagName),
        Field<&MCALabelSubDescriptor::MCAChannelID>(MDD_MCALabelSubDescriptor_MCAChannelID),
        Field<&MCALabelSubDescriptor::RFC5646SpokenLanguage, ISO7Codec>(
            MDD_MCALabelSubDescriptor_RFC5646SpokenLanguage),
        Field<&MCALabelSubDescriptor::MCATitle>(MDD_MCALabelSubDescriptor_MCATitle),
        Field<&MCALabelSubDescriptor::MCATitleVersion>(MDD_MCALabelSubDescriptor_MCATitleVersion),
        Field<&MCALabelSubDescriptor::MCATitleSubVersion>(MDD_MCALabelSubDescriptor_MCATitleSubVersion),
        Field<&MCALabelSubDescriptor::MCAEpisode>(MDD_MCALabelSubDescriptor_MCAEpisode),
        Field<&MCALabelSubDescriptor::MCAPartitionKind>(MDD_MCALabelSubDescriptor_MCAPartitionKind),
        Field<&MCALabelSubDescriptor::MCAPartitionNumber>(MDD_MCALabelSubDescriptor_MCAPartitionNumber),
        Field<&MCALabelSubDescriptor::MCAAudioContentKind>(MDD_MCALabelSubDescriptor_MCAAudioContentKind),
        Field<&MCALabelSubDescriptor::MCAAudioElementKind>(MDD_MCALabelSubDescriptor_MCAAudioElementKind),
        Field<&MCALabelSubDescriptor::MCAContent>(MDD_MCALabelSubDescriptor_MCAContent),
        Field<&MCALabelSubDescriptor::MCAUseClass>(MDD_MCALabelSubDescriptor_MCAUseClass),
        Field<&MCALabelSubDescriptor::MCAContentSubtype>(MDD_MCALabelSubDescriptor_MCAContentSubtype),
        Field<&MCALabelSubDescriptor::MCAContentDifferentiator>(MDD_MCALabelSubDescriptor_MCAContentDifferentiator),
        Field<&MCALabelSubDescriptor::MCASpokenLanguageAttribute, ISO7Codec>(
            MDD_MCALabelSubDescriptor_MCASpokenLanguageAttribute),
        Field<&MCALabelSubDescriptor::RFC5646AdditionalSpokenLanguages, ISO7Codec>(
            MDD_MCALabelSubDescriptor_RFC5646AdditionalSpokenLanguages),
        Field<&MCALabelSubDescriptor::MCAAdditionalLanguageAttributes, ISO7Codec>(
            MDD_MCALabelSubDescriptor_MCAAdditionalLanguageAttributes),
    }));

constexpr auto AudioChannelLabelSubDescriptorProperties =
    Join(MCALabelSubDescriptorProperties, std::to_array<Property>({
                                              Field<&AudioChannelLabelSubDescriptor::SoundfieldGroupLinkID>(
                                                  MDD_AudioChannelLabelSubDescriptor_SoundfieldGroupLinkID),
                                          }));

constexpr auto SoundfieldGroupLabelSubDescriptorProperties =
    Join(MCALabelSubDescriptorProperties,
         std::to_array<Property>({
             OptionalList<&SoundfieldGroupLabelSubDescriptor::GroupOfSoundfieldGroupsLinkID>(
                 MDD_SoundfieldGroupLabelSubDescriptor_GroupOfSoundfieldGroupsLinkID),
         }));

constexpr auto TimedTextResourceSubDescriptorProperties =
    Join(InterchangeObjectProperties,
         std::to_array<Property>({
             Field<&TimedTextResourceSubDescriptor::AncillaryResourceID>(
                 MDD_TimedTextResourceSubDescriptor_AncillaryResourceID),
             Field<&TimedTextResourceSubDescriptor::MIMEMediaType>(MDD_TimedTextResourceSubDescriptor_MIMEType),
             Field<&TimedTextResourceSubDescriptor::EssenceStreamID>(MDD_TimedTextResourceSubDescriptor_BodySID),
         }));

constexpr auto IADataEssenceSubDescriptorProperties = Join(
    InterchangeObjectProperties,
    std::to_array<Property>({
        Field<&IADataEssenceSubDescriptor::ImmersiveAudioID>(MDD_IADataEssenceSubDescriptor_ImmersiveAudioID),
        Field<&IADataEssenceSubDescriptor::FirstFrame>(MDD_IADataEssenceSubDescriptor_FirstFrame),
        Field<&IADataEssenceSubDescriptor::MaxChannelCount>(MDD_IADataEssenceSubDescriptor_MaxChannelCount),
        Field<&IADataEssenceSubDescriptor::MaxObjectCount>(MDD_IADataEssenceSubDescriptor_MaxObjectCount),
        Field<&IADataEssenceSubDescriptor::ImmersiveAudioVersion>(MDD_IADataEssenceSubDescriptor_ImmersiveAudioVersion),
        Field<&IADataEssenceSubDescriptor::IABSampleRate>(MDD_IADataEssenceSubDescriptor_IABSampleRate),
    }));

}  // namespace

constinit const SetDefinition JPEG2000PictureSubDescriptorSet =
    DefineSet<JPEG2000PictureSubDescriptor>(MDD_JPEG2000PictureSubDescriptor, JPEG2000PictureSubDescriptorProperties);
constinit const SetDefinition StereoscopicPictureSubDescriptorSet =
    DefineSet<StereoscopicPictureSubDescriptor>(MDD_StereoscopicPictureSubDescriptor, InterchangeObjectProperties);
constinit const SetDefinition AudioChannelLabelSubDescriptorSet = DefineSet<AudioChannelLabelSubDescriptor>(
    MDD_AudioChannelLabelSubDescriptor, AudioChannelLabelSubDescriptorProperties);
constinit const SetDefinition SoundfieldGroupLabelSubDescriptorSet = DefineSet<SoundfieldGroupLabelSubDescriptor>(
    MDD_SoundfieldGroupLabelSubDescriptor, SoundfieldGroupLabelSubDescriptorProperties);
constinit const SetDefinition GroupOfSoundfieldGroupsLabelSubDescriptorSet =
    DefineSet<GroupOfSoundfieldGroupsLabelSubDescriptor>(MDD_GroupOfSoundfieldGroupsLabelSubDescriptor,
                                                         MCALabelSubDescriptorProperties);
constinit const SetDefinition TimedTextResourceSubDescriptorSet = DefineSet<TimedTextResourceSubDescriptor>(
    MDD_TimedTextResourceSubDescriptor, TimedTextResourceSubDescriptorProperties);
constinit const SetDefinition IADataEssenceSubDescriptorSet =
    DefineSet<IADataEssenceSubDescriptor>(MDD_IADataEssenceSubDescriptor, IADataEssenceSubDescriptorProperties);

}  // namespace QUIRE::MXF
