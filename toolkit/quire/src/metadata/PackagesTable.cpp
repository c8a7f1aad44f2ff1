// SPDX-License-Identifier: BSD-3-Clause
#include "SetTables.h"

#include <QUIRE/MXF/Packages.h>

// The properties of packages, tracks and their components (ST 377-1, annexes), those of the base set first: the order in which they are written.
namespace QUIRE::MXF {
namespace {

constexpr auto GenericPackageProperties =
    Join(InterchangeObjectProperties,
         std::to_array<Property>({
             Field<&GenericPackage::PackageUID>(MDD_GenericPackage_PackageUID),
             Field<&GenericPackage::PackageName>(MDD_GenericPackage_Name),
             Field<&GenericPackage::PackageCreationDate>(MDD_GenericPackage_PackageCreationDate),
             Field<&GenericPackage::PackageModifiedDate>(MDD_GenericPackage_PackageModifiedDate),
             Field<&GenericPackage::Tracks>(MDD_GenericPackage_Tracks),
         }));

constexpr auto SourcePackageProperties =
    Join(GenericPackageProperties, std::to_array<Property>({
                                       Field<&SourcePackage::Descriptor>(MDD_SourcePackage_Descriptor),
                                   }));

constexpr auto GenericTrackProperties =
    Join(InterchangeObjectProperties, std::to_array<Property>({
                                          Field<&GenericTrack::TrackID>(MDD_GenericTrack_TrackID),
                                          Field<&GenericTrack::TrackNumber>(MDD_GenericTrack_TrackNumber),
                                          Field<&GenericTrack::TrackName>(MDD_GenericTrack_TrackName),
                                          Field<&GenericTrack::Sequence>(MDD_GenericTrack_Sequence),
                                      }));

constexpr auto TrackProperties =
    Join(GenericTrackProperties, std::to_array<Property>({
                                     Field<&Track::EditRate>(MDD_Track_EditRate),
                                     Field<&Track::Origin>(MDD_Track_Origin),
                                     Field<&Track::MarkIn>(MDD_Track_MarkIn),
                                     Field<&Track::MarkOut>(MDD_Track_MarkOut),
                                     Field<&Track::UserPosition>(MDD_Track_UserPosition),
                                     Field<&Track::PackageMarkInPosition>(MDD_Track_PackageMarkInPosition),
                                     Field<&Track::PackageMarkOutPosition>(MDD_Track_PackageMarkOutPosition),
                                 }));

constexpr auto EventTrackProperties =
    Join(GenericTrackProperties, std::to_array<Property>({
                                     Field<&EventTrack::EventEditRate>(MDD_EventTrack_EventEditRate),
                                     Field<&EventTrack::EventOrigin>(MDD_EventTrack_EventOrigin),
                                 }));

constexpr auto StructuralComponentProperties =
    Join(InterchangeObjectProperties,
         std::to_array<Property>({
             Field<&StructuralComponent::DataDefinition>(MDD_StructuralComponent_DataDefinition),
             Field<&StructuralComponent::Duration>(MDD_StructuralComponent_Duration),
         }));

constexpr auto SequenceProperties =
    Join(StructuralComponentProperties, std::to_array<Property>({
                                            Field<&Sequence::StructuralComponents>(MDD_Sequence_StructuralComponents),
                                        }));

constexpr auto SourceClipProperties =
    Join(StructuralComponentProperties, std::to_array<Property>({
                                            Field<&SourceClip::StartPosition>(MDD_SourceClip_StartPosition),
                                            Field<&SourceClip::SourcePackageID>(MDD_SourceClip_SourcePackageID),
                                            Field<&SourceClip::SourceTrackID>(MDD_SourceClip_SourceTrackID),
                                        }));

constexpr auto TimecodeComponentProperties =
    Join(StructuralComponentProperties,
         std::to_array<Property>({
             Field<&TimecodeComponent::RoundedTimecodeBase>(MDD_TimecodeComponent_RoundedTimecodeBase),
             Field<&TimecodeComponent::StartTimecode>(MDD_TimecodeComponent_StartTimecode),
             Field<&TimecodeComponent::DropFrame>(MDD_TimecodeComponent_DropFrame),
         }));

constexpr auto DMSegmentProperties =
    Join(InterchangeObjectProperties,
         std::to_array<Property>({
             Field<&StructuralComponent::DataDefinition>(MDD_StructuralComponent_DataDefinition),
             Field<&DMSegment::EventStartPosition>(MDD_DMSegment_EventStartPosition),
             Field<&StructuralComponent::Duration>(MDD_StructuralComponent_Duration),
             Field<&DMSegment::EventComment>(MDD_DMSegment_EventComment),
             OptionalList<&DMSegment::TrackIDs>(MDD_DMSegment_TrackIDs),
             Field<&DMSegment::DMFramework>(MDD_DMSegment_DMFramework),
         }));

constexpr auto CryptographicFrameworkProperties =
    Join(InterchangeObjectProperties,
         std::to_array<Property>({
             Field<&CryptographicFramework::ContextSR>(MDD_CryptographicFramework_CryptographicContextObject),
         }));

constexpr auto CryptographicContextProperties =
    Join(InterchangeObjectProperties,
         std::to_array<Property>({
             Field<&CryptographicContext::ContextID>(MDD_CryptographicContext_CryptographicContextID),
             Field<&CryptographicContext::SourceEssenceContainer>(MDD_CryptographicContext_SourceEssenceContainer),
             Field<&CryptographicContext::CipherAlgorithm>(MDD_CryptographicContext_CipherAlgorithm),
             Field<&CryptographicContext::MICAlgorithm>(MDD_CryptographicContext_MICAlgorithm),
             Field<&CryptographicContext::CryptographicKeyID>(MDD_CryptographicContext_CryptographicKeyID),
         }));

}  // namespace

constinit const SetDefinition MaterialPackageSet =
    DefineSet<MaterialPackage>(MDD_MaterialPackage, GenericPackageProperties);
constinit const SetDefinition SourcePackageSet = DefineSet<SourcePackage>(MDD_SourcePackage, SourcePackageProperties);
constinit const SetDefinition TrackSet = DefineSet<Track>(MDD_Track, TrackProperties);
constinit const SetDefinition StaticTrackSet = DefineSet<StaticTrack>(MDD_StaticTrack, GenericTrackProperties);
constinit const SetDefinition EventTrackSet = DefineSet<EventTrack>(MDD_EventTrack, EventTrackProperties);
constinit const SetDefinition SequenceSet = DefineSet<Sequence>(MDD_Sequence, SequenceProperties);
constinit const SetDefinition SourceClipSet = DefineSet<SourceClip>(MDD_SourceClip, SourceClipProperties);
constinit const SetDefinition TimecodeComponentSet =
    DefineSet<TimecodeComponent>(MDD_TimecodeComponent, TimecodeComponentProperties);
constinit const SetDefinition FillerSet = DefineSet<Filler>(MDD_Filler, StructuralComponentProperties);
constinit const SetDefinition DMSegmentSet = DefineSet<DMSegment>(MDD_DMSegment, DMSegmentProperties);
constinit const SetDefinition CryptographicFrameworkSet =
    DefineSet<CryptographicFramework>(MDD_CryptographicFramework, CryptographicFrameworkProperties);
constinit const SetDefinition CryptographicContextSet =
    DefineSet<CryptographicContext>(MDD_CryptographicContext, CryptographicContextProperties);

}  // namespace QUIRE::MXF
