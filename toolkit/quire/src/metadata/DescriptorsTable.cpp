// SPDX-License-Identifier: BSD-3-Clause
#include "SetTables.h"

#include <QUIRE/MXF/Descriptors.h>

// The properties of essence descriptors (ST 377-1, annexes), those of the base set first: the order in which they are written.
namespace QUIRE::MXF {
namespace {

constexpr auto GenericDescriptorProperties =
    Join(InterchangeObjectProperties,
         std::to_array<Property>({
             OptionalList<&GenericDescriptor::SubDescriptors>(MDD_GenericDescriptor_SubDescriptors),
             OptionalList<&GenericDescriptor::Locators>(MDD_GenericDescriptor_Locators),
         }));

constexpr auto FileDescriptorProperties = Join(
    GenericDescriptorProperties, std::to_array<Property>({
                                     Field<&FileDescriptor::LinkedTrackID>(MDD_FileDescriptor_LinkedTrackID),
                                     Field<&FileDescriptor::SampleRate>(MDD_FileDescriptor_SampleRate),
                                     Field<&FileDescriptor::ContainerDuration>(MDD_FileDescriptor_ContainerDuration),
                                     Field<&FileDescriptor::EssenceContainer>(MDD_FileDescriptor_EssenceContainer),
                                     Field<&FileDescriptor::Codec>(MDD_FileDescriptor_Codec),
                                 }));

constexpr auto MultipleDescriptorProperties = Join(
    FileDescriptorProperties, std::to_array<Property>({
                                  Field<&MultipleDescriptor::FileDescriptors>(MDD_MultipleDescriptor_FileDescriptors),
                              }));

constexpr auto GenericPictureEssenceDescriptorProperties = Join(
    FileDescriptorProperties,
    std::to_array<Property>({
        Field<&GenericPictureEssenceDescriptor::FrameLayout>(MDD_GenericPictureEssenceDescriptor_FrameLayout),
        Field<&GenericPictureEssenceDescriptor::StoredWidth>(MDD_GenericPictureEssenceDescriptor_StoredWidth),
        Field<&GenericPictureEssenceDescriptor::StoredHeight>(MDD_GenericPictureEssenceDescriptor_StoredHeight),
        Field<&GenericPictureEssenceDescriptor::AspectRatio>(MDD_GenericPictureEssenceDescriptor_AspectRatio),
        Field<&GenericPictureEssenceDescriptor::PictureEssenceCoding>(
            MDD_GenericPictureEssenceDescriptor_PictureEssenceCoding),
        Field<&GenericPictureEssenceDescriptor::VideoLineMap>(MDD_GenericPictureEssenceDescriptor_VideoLineMap),
        Field<&GenericPictureEssenceDescriptor::SampledWidth>(MDD_GenericPictureEssenceDescriptor_SampledWidth),
        Field<&GenericPictureEssenceDescriptor::SampledHeight>(MDD_GenericPictureEssenceDescriptor_SampledHeight),
        Field<&GenericPictureEssenceDescriptor::SampledXOffset>(MDD_GenericPictureEssenceDescriptor_SampledXOffset),
        Field<&GenericPictureEssenceDescriptor::SampledYOffset>(MDD_GenericPictureEssenceDescriptor_SampledYOffset),
        Field<&GenericPictureEssenceDescriptor::DisplayWidth>(MDD_GenericPictureEssenceDescriptor_DisplayWidth),
        Field<&GenericPictureEssenceDescriptor::DisplayHeight>(MDD_GenericPictureEssenceDescriptor_DisplayHeight),
        Field<&GenericPictureEssenceDescriptor::DisplayXOffset>(MDD_GenericPictureEssenceDescriptor_DisplayXOffset),
        Field<&GenericPictureEssenceDescriptor::DisplayYOffset>(MDD_GenericPictureEssenceDescriptor_DisplayYOffset),
        Field<&GenericPictureEssenceDescriptor::DisplayF2Offset>(MDD_GenericPictureEssenceDescriptor_DisplayF2Offset),
        Field<&GenericPictureEssenceDescriptor::StoredF2Offset>(MDD_GenericPictureEssenceDescriptor_StoredF2Offset),
        Field<&GenericPictureEssenceDescriptor::SignalStandard>(MDD_GenericPictureEssenceDescriptor_SignalStandard),
        Field<&GenericPictureEssenceDescriptor::ActiveFormatDescriptor>(
            MDD_GenericPictureEssenceDescriptor_ActiveFormatDescriptor),
        Field<&GenericPictureEssenceDescriptor::AlphaTransparency>(
            MDD_GenericPictureEssenceDescriptor_AlphaTransparency),
        Field<&GenericPictureEssenceDescriptor::FieldDominance>(MDD_GenericPictureEssenceDescriptor_FieldDominance),
        Field<&GenericPictureEssenceDescriptor::ImageAlignmentOffset>(
            MDD_GenericPictureEssenceDescriptor_ImageAlignmentOffset),
        Field<&GenericPictureEssenceDescriptor::ImageStartOffset>(MDD_GenericPictureEssenceDescriptor_ImageStartOffset),
        Field<&GenericPictureEssenceDescriptor::ImageEndOffset>(MDD_GenericPictureEssenceDescriptor_ImageEndOffset),
        Field<&GenericPictureEssenceDescriptor::CaptureGamma>(MDD_GenericPictureEssenceDescriptor_CaptureGamma),
        Field<&GenericPictureEssenceDescriptor::CodingEquations>(MDD_GenericPictureEssenceDescriptor_CodingEquations),
        Field<&GenericPictureEssenceDescriptor::ColorPrimaries>(MDD_GenericPictureEssenceDescriptor_ColorPrimaries),
        Field<&GenericPictureEssenceDescriptor::ActiveWidth>(MDD_GenericPictureEssenceDescriptor_ActiveWidth),
        Field<&GenericPictureEssenceDescriptor::ActiveHeight>(MDD_GenericPictureEssenceDescriptor_ActiveHeight),
        Field<&GenericPictureEssenceDescriptor::ActiveXOffset>(MDD_GenericPictureEssenceDescriptor_ActiveXOffset),
        Field<&GenericPictureEssenceDescriptor::ActiveYOffset>(MDD_GenericPictureEssenceDescriptor_ActiveYOffset),
        OptionalList<&GenericPictureEssenceDescriptor::AlternativeCenterCuts>(
            MDD_GenericPictureEssenceDescriptor_AlternativeCenterCuts),
    }));

constexpr auto RGBAEssenceDescriptorProperties =
    Join(GenericPictureEssenceDescriptorProperties,
         std::to_array<Property>({
             Field<&RGBAEssenceDescriptor::PixelLayout>(MDD_RGBAEssenceDescriptor_PixelLayout),
             Field<&RGBAEssenceDescriptor::ComponentMaxRef>(MDD_RGBAEssenceDescriptor_ComponentMaxRef),
             Field<&RGBAEssenceDescriptor::ComponentMinRef>(MDD_RGBAEssenceDescriptor_ComponentMinRef),
             Field<&RGBAEssenceDescriptor::AlphaMaxRef>(MDD_RGBAEssenceDescriptor_AlphaMaxRef),
             Field<&RGBAEssenceDescriptor::AlphaMinRef>(MDD_RGBAEssenceDescriptor_AlphaMinRef),
             Field<&RGBAEssenceDescriptor::ScanningDirection>(MDD_RGBAEssenceDescriptor_ScanningDirection),
         }));

constexpr auto CDCIEssenceDescriptorProperties =
    Join(GenericPictureEssenceDescriptorProperties,
         std::to_array<Property>({
             Field<&CDCIEssenceDescriptor::ComponentDepth>(MDD_CDCIEssenceDescriptor_ComponentDepth),
             Field<&CDCIEssenceDescriptor::HorizontalSubsampling>(MDD_CDCIEssenceDescriptor_HorizontalSubsampling),
             Field<&CDCIEssenceDescriptor::VerticalSubsampling>(MDD_CDCIEssenceDescriptor_VerticalSubsampling),
             Field<&CDCIEssenceDescriptor::ColorSiting>(MDD_CDCIEssenceDescriptor_ColorSiting),
             Field<&CDCIEssenceDescriptor::BlackRefLevel>(MDD_CDCIEssenceDescriptor_BlackRefLevel),
             Field<&CDCIEssenceDescriptor::WhiteReflevel>(MDD_CDCIEssenceDescriptor_WhiteReflevel),
             Field<&CDCIEssenceDescriptor::ColorRange>(MDD_CDCIEssenceDescriptor_ColorRange),
             Field<&CDCIEssenceDescriptor::PaddingBits>(MDD_CDCIEssenceDescriptor_PaddingBits),
             Field<&CDCIEssenceDescriptor::AlphaSampleDepth>(MDD_CDCIEssenceDescriptor_AlphaSampleDepth),
             Field<&CDCIEssenceDescriptor::ReversedByteOrder>(MDD_CDCIEssenceDescriptor_ReversedByteOrder),
         }));

constexpr auto MPEG2VideoDescriptorProperties =
    Join(CDCIEssenceDescriptorProperties,
         std::to_array<Property>({
             Field<&MPEG2VideoDescriptor::SingleSequence>(MDD_MPEG2VideoDescriptor_SingleSequence),
             Field<&MPEG2VideoDescriptor::ConstantBFrames>(MDD_MPEG2VideoDescriptor_ConstantBFrames),
             Field<&MPEG2VideoDescriptor::CodedContentType>(MDD_MPEG2VideoDescriptor_CodedContentType),
             Field<&MPEG2VideoDescriptor::LowDelay>(MDD_MPEG2VideoDescriptor_LowDelay),
             Field<&MPEG2VideoDescriptor::ClosedGOP>(MDD_MPEG2VideoDescriptor_ClosedGOP),
             Field<&MPEG2VideoDescriptor::IdenticalGOP>(MDD_MPEG2VideoDescriptor_IdenticalGOP),
             Field<&MPEG2VideoDescriptor::MaxGOP>(MDD_MPEG2VideoDescriptor_MaxGOP),
             Field<&MPEG2VideoDescriptor::BPictureCount>(MDD_MPEG2VideoDescriptor_MaxBPictureCount),
             Field<&MPEG2VideoDescriptor::BitRate>(MDD_MPEG2VideoDescriptor_BitRate),
             Field<&MPEG2VideoDescriptor::ProfileAndLevel>(MDD_MPEG2VideoDescriptor_ProfileAndLevel),
         }));

constexpr auto GenericSoundEssenceDescriptorProperties = Join(
    FileDescriptorProperties,
    std::to_array<Property>({
        Field<&GenericSoundEssenceDescriptor::AudioSamplingRate>(MDD_GenericSoundEssenceDescriptor_AudioSamplingRate),
        Field<&GenericSoundEssenceDescriptor::Locked>(MDD_GenericSoundEssenceDescriptor_Locked),
        Field<&GenericSoundEssenceDescriptor::AudioRefLevel>(MDD_GenericSoundEssenceDescriptor_AudioRefLevel),
        Field<&GenericSoundEssenceDescriptor::ElectroSpatialFormulation>(
            MDD_GenericSoundEssenceDescriptor_ElectroSpatialFormulation),
        Field<&GenericSoundEssenceDescriptor::ChannelCount>(MDD_GenericSoundEssenceDescriptor_ChannelCount),
        Field<&GenericSoundEssenceDescriptor::QuantizationBits>(MDD_GenericSoundEssenceDescriptor_QuantizationBits),
        Field<&GenericSoundEssenceDescriptor::DialNorm>(MDD_GenericSoundEssenceDescriptor_DialNorm),
        Field<&GenericSoundEssenceDescriptor::SoundEssenceCompression>(
            MDD_GenericSoundEssenceDescriptor_SoundEssenceCompression),
        Field<&GenericSoundEssenceDescriptor::ReferenceAudioAlignmentLevel>(
            MDD_GenericSoundEssenceDescriptor_ReferenceAudioAlignmentLevel),
        Field<&GenericSoundEssenceDescriptor::ReferenceImageEditRate>(
            MDD_GenericSoundEssenceDescriptor_ReferenceImageEditRate),
    }));

constexpr auto WaveAudioDescriptorProperties =
    Join(GenericSoundEssenceDescriptorProperties,
         std::to_array<Property>({
             Field<&WaveAudioDescriptor::BlockAlign>(MDD_WaveAudioDescriptor_BlockAlign),
             Field<&WaveAudioDescriptor::SequenceOffset>(MDD_WaveAudioDescriptor_SequenceOffset),
             Field<&WaveAudioDescriptor::AvgBps>(MDD_WaveAudioDescriptor_AvgBps),
             Field<&WaveAudioDescriptor::ChannelAssignment>(MDD_WaveAudioDescriptor_ChannelAssignment),
         }));

constexpr auto GenericDataEssenceDescriptorProperties = Join(
    FileDescriptorProperties,
    std::to_array<Property>({
        Field<&GenericDataEssenceDescriptor::DataEssenceCoding>(MDD_GenericDataEssenceDescriptor_DataEssenceCoding),
    }));

constexpr auto TimedTextDescriptorProperties = Join(
    GenericDataEssenceDescriptorProperties,
    std::to_array<Property>({
        Field<&TimedTextDescriptor::ResourceID>(MDD_TimedTextDescriptor_ResourceID),
        Field<&TimedTextDescriptor::UCSEncoding>(MDD_TimedTextDescriptor_UCSEncoding),
        Field<&TimedTextDescriptor::NamespaceURI>(MDD_TimedTextDescriptor_NamespaceURI),
        Field<&TimedTextDescriptor::RFC5646LanguageTagList>(MDD_TimedTextDescriptor_RFC5646LanguageTagList),
        Field<&TimedTextDescriptor::DisplayType>(MDD_TimedTextDescriptor_DisplayType),
        Field<&TimedTextDescriptor::IntrinsicPictureResolution>(MDD_TimedTextDescriptor_IntrinsicPictureResolution),
        Field<&TimedTextDescriptor::ZpositionInUse>(MDD_TimedTextDescriptor_ZpositionInUse),
    }));

}  // namespace

constinit const SetDefinition MultipleDescriptorSet =
    DefineSet<MultipleDescriptor>(MDD_MultipleDescriptor, MultipleDescriptorProperties);
constinit const SetDefinition GenericPictureEssenceDescriptorSet = DefineSet<GenericPictureEssenceDescriptor>(
    MDD_GenericPictureEssenceDescriptor, GenericPictureEssenceDescriptorProperties);
constinit const SetDefinition RGBAEssenceDescriptorSet =
    DefineSet<RGBAEssenceDescriptor>(MDD_RGBAEssenceDescriptor, RGBAEssenceDescriptorProperties);
constinit const SetDefinition CDCIEssenceDescriptorSet =
    DefineSet<CDCIEssenceDescriptor>(MDD_CDCIEssenceDescriptor, CDCIEssenceDescriptorProperties);
constinit const SetDefinition MPEG2VideoDescriptorSet =
    DefineSet<MPEG2VideoDescriptor>(MDD_MPEG2VideoDescriptor, MPEG2VideoDescriptorProperties);
constinit const SetDefinition GenericSoundEssenceDescriptorSet = DefineSet<GenericSoundEssenceDescriptor>(
    MDD_GenericSoundEssenceDescriptor, GenericSoundEssenceDescriptorProperties);
constinit const SetDefinition WaveAudioDescriptorSet =
    DefineSet<WaveAudioDescriptor>(MDD_WaveAudioDescriptor, WaveAudioDescriptorProperties);
constinit const SetDefinition GenericDataEssenceDescriptorSet =
    DefineSet<GenericDataEssenceDescriptor>(MDD_GenericDataEssenceDescriptor, GenericDataEssenceDescriptorProperties);
constinit const SetDefinition TimedTextDescriptorSet =
    DefineSet<TimedTextDescriptor>(MDD_TimedTextDescriptor, TimedTextDescriptorProperties);
constinit const SetDefinition DCDataDescriptorSet =
    DefineSet<DCDataDescriptor>(MDD_DCDataDescriptor, GenericDataEssenceDescriptorProperties);
constinit const SetDefinition IADataEssenceDescriptorSet =
    DefineSet<IADataEssenceDescriptor>(MDD_IADataEssenceDescriptor, GenericDataEssenceDescriptorProperties);

}  // namespace QUIRE::MXF
