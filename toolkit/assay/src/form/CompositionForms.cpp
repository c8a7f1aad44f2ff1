// SPDX-License-Identifier: BSD-3-Clause
#include "CommonForms.h"

#include <Cairn/Namespace.h>

#include <array>

namespace Assay {
namespace {

// Composition playlist (ST 429-7:2006 with ST 429-10, 429-12, 429-14, 429-16, 429-18; Interop). The steps that all assets
// of a reel begin with stand once for each flavour.

template <size_t N, size_t M>
constexpr std::array<Step, N + M> Joined(const std::array<Step, N>& first, const std::array<Step, M>& second) {
  std::array<Step, N + M> steps;
  for (size_t i = 0; i < N; ++i) steps[i] = first[i];
  for (size_t i = 0; i < M; ++i) steps[N + i] = second[i];
  return steps;
}

constexpr ElementForm EditRate[] = {{"EditRate", &RationalType}};
constexpr ElementForm IntrinsicDuration[] = {{"IntrinsicDuration", &LongType}};
constexpr ElementForm EntryPoint[] = {{"EntryPoint", &LongType}};
constexpr ElementForm Duration[] = {{"Duration", &LongType}};
constexpr ElementForm KeyID[] = {{"KeyId", &UUIDType}};
constexpr ElementForm Hash[] = {{"Hash", &Base64Type}};
constexpr ElementForm FrameRate[] = {{"FrameRate", &RationalType}};
constexpr ElementForm Language[] = {{"Language", &LanguageType}};
constexpr ElementForm ExtensionLanguage[] = {{"Language", &LanguageType, Space::Extension}};

constexpr std::array<Step, 6> Generic(std::span<const ElementForm> annotation) {
  return {Step{IDElement},         Step{annotation, 0, 1}, Step{EditRate},
          Step{IntrinsicDuration}, Step{EntryPoint, 0, 1}, Step{Duration, 0, 1}};
}
constexpr auto SMPTEGeneric = Generic(SMPTEAnnotation);
constexpr auto InteropGeneric = Generic(InteropAnnotation);
constexpr std::array KeyAndHash = {Step{KeyID, 0, 1}, Step{Hash, 0, 1}};
constexpr auto SMPTETrackFile = Joined(SMPTEGeneric, KeyAndHash);
constexpr auto InteropTrackFile = Joined(InteropGeneric, KeyAndHash);

// Picture.
constexpr TypeForm AspectNumberType{ValueForm::Decimal, "", ScopeAttribute};
constexpr ElementForm SMPTEAspect[] = {{"ScreenAspectRatio", &RationalType}};
constexpr ElementForm InteropAspect[] = {{"ScreenAspectRatio", &AspectNumberType}};
constexpr auto SMPTEPictureSteps = Joined(SMPTETrackFile, std::array{Step{FrameRate}, Step{SMPTEAspect}});
constexpr auto InteropPictureSteps = Joined(InteropTrackFile, std::array{Step{FrameRate}, Step{InteropAspect}});
constexpr TypeForm SMPTEPictureType{ValueForm::Anything, "", {}, SMPTEPictureSteps};
constexpr TypeForm InteropPictureType{ValueForm::Anything, "", {}, InteropPictureSteps};

// Sound and text.
constexpr auto SMPTELanguageSteps = Joined(SMPTETrackFile, std::array{Step{Language, 0, 1}});
constexpr auto InteropLanguageSteps = Joined(InteropTrackFile, std::array{Step{Language, 0, 1}});
constexpr TypeForm SMPTELanguageType{ValueForm::Anything, "", {}, SMPTELanguageSteps};
constexpr TypeForm InteropLanguageType{ValueForm::Anything, "", {}, InteropLanguageSteps};
// Many documents write the language of captions in the composition's namespace.
constexpr auto CaptionSteps = Joined(SMPTELanguageSteps, std::array{Step{ExtensionLanguage, 0, 1}});
constexpr TypeForm CaptionType{ValueForm::Anything, "", {}, CaptionSteps};

// Markers.
constexpr TypeForm MarkerOffsetType{ValueForm::NonNegativeLong};
constexpr ElementForm MarkerLabel[] = {{"Label", &ScopedText}};
constexpr ElementForm MarkerOffset[] = {{"Offset", &MarkerOffsetType}};
constexpr Step SMPTEMarkerSteps[] = {{MarkerLabel}, {SMPTEAnnotation, 0, 1}, {MarkerOffset}};
constexpr Step InteropMarkerSteps[] = {{MarkerLabel}, {InteropAnnotation, 0, 1}, {MarkerOffset}};
constexpr TypeForm SMPTEMarkerType{ValueForm::Anything, "", {}, SMPTEMarkerSteps};
constexpr TypeForm InteropMarkerType{ValueForm::Anything, "", {}, InteropMarkerSteps};
constexpr ElementForm SMPTEMarker[] = {{"Marker", &SMPTEMarkerType}};
constexpr ElementForm InteropMarker[] = {{"Marker", &InteropMarkerType}};
constexpr Step SMPTEMarkerListSteps[] = {{SMPTEMarker, 0, Unbounded}};
constexpr Step InteropMarkerListSteps[] = {{InteropMarker, 0, Unbounded}};
constexpr TypeForm SMPTEMarkerListType{ValueForm::Anything, "", {}, SMPTEMarkerListSteps};
constexpr TypeForm InteropMarkerListType{ValueForm::Anything, "", {}, InteropMarkerListSteps};
constexpr ElementForm SMPTEMarkerList[] = {{"MarkerList", &SMPTEMarkerListType}};
constexpr ElementForm InteropMarkerList[] = {{"MarkerList", &InteropMarkerListType}};
constexpr auto SMPTEMarkersSteps = Joined(SMPTEGeneric, std::array{Step{SMPTEMarkerList}});
constexpr auto InteropMarkersSteps = Joined(InteropGeneric, std::array{Step{InteropMarkerList}});
constexpr TypeForm SMPTEMarkersType{ValueForm::Anything, "", {}, SMPTEMarkersSteps};
constexpr TypeForm InteropMarkersType{ValueForm::Anything, "", {}, InteropMarkersSteps};

// Auxiliary data.
constexpr ElementForm DataEssenceCoding[] = {{"DataEssenceCoding", &URIType, Space::Extension}};
constexpr ElementForm DataType[] = {{"DataType", &URIType, Space::Extension}};
constexpr auto AuxDataSteps =
    Joined(SMPTETrackFile, std::array{Step{DataEssenceCoding}, Step{{}, 0, Unbounded, Others::NotExtension}});
constexpr auto ImmersiveSteps = Joined(SMPTETrackFile, std::array{Step{DataType}});
constexpr TypeForm AuxDataType{ValueForm::Anything, "", {}, AuxDataSteps};
constexpr TypeForm ImmersiveType{ValueForm::Anything, "", {}, ImmersiveSteps};
constexpr ElementForm DataInfo[] = {{"DataInfo", &TextType}};
constexpr auto ProjectorDataSteps = Joined(InteropGeneric, std::array{Step{DataInfo, 0, 1}});
constexpr TypeForm ProjectorDataType{ValueForm::Anything, "", {}, ProjectorDataSteps};

// Versions.
constexpr ElementForm VersionID[] = {{"Id", &URIType}};
constexpr ElementForm SMPTELabelText[] = {{"LabelText", &SMPTEUserText}};
constexpr ElementForm InteropLabelText[] = {{"LabelText", &InteropUserText}};
constexpr Step SMPTEVersionSteps[] = {{VersionID}, {SMPTELabelText}};
constexpr Step InteropVersionSteps[] = {{VersionID, 0, 1}, {InteropLabelText}};
constexpr TypeForm SMPTEVersionType{ValueForm::Anything, "", {}, SMPTEVersionSteps};
constexpr TypeForm InteropVersionType{ValueForm::Anything, "", {}, InteropVersionSteps};
constexpr ElementForm SMPTEVersion[] = {{"ContentVersion", &SMPTEVersionType}};
constexpr ElementForm InteropVersion[] = {{"ContentVersion", &InteropVersionType}};

// Metadata.
constexpr AttributeForm StatusAttribute[] = {{"status", ValueForm::TokenOneOf, "final temp pre"}};
constexpr AttributeForm UnitsAttribute[] = {
    {"units", ValueForm::TokenOneOf, "foot-lambert candela-per-square-metre", true}};
constexpr AttributeForm RequiredScope[] = {{"scope", ValueForm::URI, "", true}};
constexpr TypeForm VersionNumberType{ValueForm::NonNegativeInteger, "", StatusAttribute, {}, false, true};
constexpr TypeForm LuminanceType{ValueForm::PositiveDecimal, "", UnitsAttribute};
constexpr TypeForm LanguageListType{ValueForm::LanguageList};
constexpr ElementForm MetadataVersion[] = {{"ContentVersion", &SMPTEVersionType, Space::Extension}};
constexpr Step MetadataVersionSteps[] = {{MetadataVersion, 1, Unbounded}};
constexpr TypeForm VersionListType{ValueForm::Anything, "", {}, MetadataVersionSteps};
constexpr ElementForm Width[] = {{"Width", &CountType, Space::Extension}};
constexpr ElementForm Height[] = {{"Height", &CountType, Space::Extension}};
constexpr Step AreaSteps[] = {{Width}, {Height}};
constexpr TypeForm AreaType{ValueForm::Anything, "", {}, AreaSteps};

constexpr ElementForm ExtensionName[] = {{"Name", &TextType, Space::Extension}};
constexpr ElementForm ExtensionValue[] = {{"Value", &TextType, Space::Extension}};
constexpr Step PropertySteps[] = {{ExtensionName}, {ExtensionValue}};
constexpr TypeForm PropertyType{ValueForm::Anything, "", {}, PropertySteps};
constexpr ElementForm Property[] = {{"Property", &PropertyType, Space::Extension}};
constexpr Step PropertyListSteps[] = {{Property, 1, Unbounded}};
constexpr TypeForm PropertyListType{ValueForm::Anything, "", {}, PropertyListSteps};
constexpr ElementForm PropertyList[] = {{"PropertyList", &PropertyListType, Space::Extension}};
constexpr Step ExtensionSteps[] = {{ExtensionName}, {PropertyList, 0, 1}, {{}, 0, Unbounded, Others::NotExtension}};
constexpr TypeForm ExtensionType{ValueForm::Anything, "", RequiredScope, ExtensionSteps};
constexpr ElementForm Extension[] = {{"ExtensionMetadata", &ExtensionType, Space::Extension}};
constexpr Step ExtensionListSteps[] = {{Extension, 0, Unbounded}};
constexpr TypeForm ExtensionListType{ValueForm::Anything, "", {}, ExtensionListSteps};

constexpr ElementForm FullTitle[] = {{"FullContentTitleText", &SMPTEUserText, Space::Extension}};
constexpr ElementForm Territory[] = {{"ReleaseTerritory", &ScopedText, Space::Extension}};
constexpr ElementForm VersionNumber[] = {{"VersionNumber", &VersionNumberType, Space::Extension}};
constexpr ElementForm Chain[] = {{"Chain", &TextType, Space::Extension}};
constexpr ElementForm Distributor[] = {{"Distributor", &TextType, Space::Extension}};
constexpr ElementForm Facility[] = {{"Facility", &TextType, Space::Extension}};
constexpr ElementForm VersionList[] = {{"AlternateContentVersionList", &VersionListType, Space::Extension}};
constexpr ElementForm Luminance[] = {{"Luminance", &LuminanceType, Space::Extension}};
constexpr ElementForm SoundConfiguration[] = {{"MainSoundConfiguration", &TextType, Space::Extension}};
constexpr ElementForm SoundRate[] = {{"MainSoundSampleRate", &RationalType, Space::Extension}};
constexpr ElementForm StoredArea[] = {{"MainPictureStoredArea", &AreaType, Space::Extension}};
constexpr ElementForm ActiveArea[] = {{"MainPictureActiveArea", &AreaType, Space::Extension}};
constexpr ElementForm SubtitleLanguages[] = {{"MainSubtitleLanguageList", &LanguageListType, Space::Extension}};
constexpr ElementForm ExtensionList[] = {{"ExtensionMetadataList", &ExtensionListType, Space::Extension}};
constexpr auto MetadataSteps =
    Joined(SMPTEGeneric, std::array{Step{FullTitle}, Step{Territory, 0, 1}, Step{VersionNumber, 0, 1},
                                    Step{Chain, 0, 1}, Step{Distributor, 0, 1}, Step{Facility, 0, 1},
                                    Step{VersionList, 0, 1}, Step{Luminance, 0, 1}, Step{SoundConfiguration},
                                    Step{SoundRate}, Step{StoredArea}, Step{ActiveArea}, Step{SubtitleLanguages, 0, 1},
                                    Step{ExtensionList, 0, 1}, Step{{}, 0, Unbounded, Others::NotExtension}});
constexpr TypeForm MetadataType{ValueForm::Anything, "", {}, MetadataSteps};

// Reels.
constexpr ElementForm SMPTEMainMarkers[] = {{"MainMarkers", &SMPTEMarkersType}};
constexpr ElementForm SMPTEMainPicture[] = {{"MainPicture", &SMPTEPictureType}};
constexpr ElementForm SMPTEMainSound[] = {{"MainSound", &SMPTELanguageType}};
constexpr ElementForm SMPTEMainSubtitle[] = {{"MainSubtitle", &SMPTELanguageType}};
constexpr ElementForm InteropMainMarkers[] = {{"MainMarkers", &InteropMarkersType}};
constexpr ElementForm InteropMainPicture[] = {{"MainPicture", &InteropPictureType}};
constexpr ElementForm InteropMainSound[] = {{"MainSound", &InteropLanguageType}};
constexpr ElementForm InteropMainSubtitle[] = {{"MainSubtitle", &InteropLanguageType}};
constexpr ElementForm ProjectorData[] = {{"ProjectorData", &ProjectorDataType}};
constexpr Step SMPTEReelAssetsSteps[] = {{SMPTEMainMarkers, 0, 1},
                                         {SMPTEMainPicture, 0, 1},
                                         {SMPTEMainSound, 0, 1},
                                         {SMPTEMainSubtitle, 0, 1},
                                         {{}, 0, Unbounded, Others::NotMain}};
constexpr Step InteropReelAssetsSteps[] = {{InteropMainMarkers, 0, 1},    {InteropMainPicture, 0, 1},
                                           {InteropMainSound, 0, 1},      {InteropMainSubtitle, 0, 1},
                                           {ProjectorData, 0, Unbounded}, {{}, 0, Unbounded, Others::NotMain}};
constexpr TypeForm SMPTEReelAssetsType{ValueForm::Anything, "", {}, SMPTEReelAssetsSteps};
constexpr TypeForm InteropReelAssetsType{ValueForm::Anything, "", {}, InteropReelAssetsSteps};
constexpr ElementForm SMPTEReelAssets[] = {{"AssetList", &SMPTEReelAssetsType}};
constexpr ElementForm InteropReelAssets[] = {{"AssetList", &InteropReelAssetsType}};
constexpr Step SMPTEReelSteps[] = {{IDElement}, {SMPTEAnnotation, 0, 1}, {SMPTEReelAssets}};
constexpr Step InteropReelSteps[] = {{IDElement}, {InteropAnnotation, 0, 1}, {InteropReelAssets}};
constexpr TypeForm SMPTEReelType{ValueForm::Anything, "", {}, SMPTEReelSteps};
constexpr TypeForm InteropReelType{ValueForm::Anything, "", {}, InteropReelSteps};
constexpr ElementForm SMPTEReel[] = {{"Reel", &SMPTEReelType}};
constexpr ElementForm InteropReel[] = {{"Reel", &InteropReelType}};
constexpr Step SMPTEReelListSteps[] = {{SMPTEReel, 1, Unbounded}};
constexpr Step InteropReelListSteps[] = {{InteropReel, 1, Unbounded}};
constexpr TypeForm SMPTEReelListType{ValueForm::Anything, "", {}, SMPTEReelListSteps};
constexpr TypeForm InteropReelListType{ValueForm::Anything, "", {}, InteropReelListSteps};

// The composition.
constexpr ElementForm Agency[] = {{"Agency", &URIType}};
constexpr ElementForm RatingLabel[] = {{"Label", &TextType}};
constexpr Step RatingSteps[] = {{Agency}, {RatingLabel}};
constexpr TypeForm RatingType{ValueForm::Anything, "", {}, RatingSteps};
constexpr ElementForm Rating[] = {{"Rating", &RatingType}};
constexpr Step RatingListSteps[] = {{Rating, 0, Unbounded}};
constexpr TypeForm RatingListType{ValueForm::Anything, "", {}, RatingListSteps};

constexpr ElementForm SMPTETitle[] = {{"ContentTitleText", &SMPTEUserText}};
constexpr ElementForm InteropTitle[] = {{"ContentTitleText", &InteropUserText}};
constexpr ElementForm Kind[] = {{"ContentKind", &ScopedText}};
constexpr ElementForm RatingList[] = {{"RatingList", &RatingListType}};
constexpr ElementForm SMPTEReelList[] = {{"ReelList", &SMPTEReelListType}};
constexpr ElementForm InteropReelList[] = {{"ReelList", &InteropReelListType}};
constexpr Step SMPTESteps[] = {{IDElement},
                               {SMPTEAnnotation, 0, 1},
                               {IconIDElement, 0, 1},
                               {IssueDateElement},
                               {SMPTEIssuer, 0, 1},
                               {SMPTECreator, 0, 1},
                               {SMPTETitle},
                               {Kind},
                               {SMPTEVersion},
                               {RatingList},
                               {SMPTEReelList},
                               {SignerElement, 0, 1},
                               {SignatureElement, 0, 1}};
constexpr Step InteropSteps[] = {{IDElement},
                                 {InteropAnnotation, 0, 1},
                                 {IconIDElement, 0, 1},
                                 {IssueDateElement},
                                 {InteropIssuer},
                                 {InteropCreator},
                                 {InteropTitle},
                                 {Kind},
                                 {InteropVersion, 0, 1},
                                 {RatingList},
                                 {InteropReelList},
                                 {SignerElement, 0, 1},
                                 {SignatureElement, 0, 1}};
constexpr TypeForm SMPTEType{ValueForm::Anything, "", {}, SMPTESteps};
constexpr TypeForm InteropType{ValueForm::Anything, "", {}, InteropSteps};

constexpr GlobalElement SMPTEExtensions[] = {
    {Cairn::NS_SMPTE_Stereo, "MainStereoscopicPicture", &SMPTEPictureType},
    {Cairn::NS_SMPTE_Stereo_2007, "MainStereoscopicPicture", &SMPTEPictureType},
    {Cairn::NS_SMPTE_TT, "MainCaption", &CaptionType},
    {Cairn::NS_SMPTE_TT, "ClosedCaption", &CaptionType},
    {Cairn::NS_SMPTE_TT, "ClosedSubtitle", &CaptionType},
    {Cairn::NS_SMPTE_AuxData, "AuxData", &AuxDataType},
    {Cairn::NS_ImmersiveAudio, "AuxData", &ImmersiveType},
    {Cairn::NS_SMPTE_Metadata, "CompositionMetadataAsset", &MetadataType},
    {Cairn::NS_XMLDSig, "Signature", &SignatureForms::Signature},
    {Cairn::NS_XMLDSig, "KeyInfo", &SignatureForms::KeyInfo},
};
constexpr GlobalElement InteropExtensions[] = {
    {Cairn::NS_Interop_Stereo, "MainStereoscopicPicture", &InteropPictureType},
    {Cairn::NS_Interop_CC, "MainClosedCaption", &InteropLanguageType},
    {Cairn::NS_XMLDSig, "Signature", &SignatureForms::Signature},
    {Cairn::NS_XMLDSig, "KeyInfo", &SignatureForms::KeyInfo},
};

constexpr Grammar Documents[] = {
    {DocumentKind::Composition,
     Cairn::DFT_DCI_SMPTE,
     {Cairn::NS_SMPTE_CPL, "CompositionPlaylist", &SMPTEType},
     SMPTEExtensions},
    {DocumentKind::Composition,
     Cairn::DFT_Interop,
     {Cairn::NS_Interop_CPL, "CompositionPlaylist", &InteropType},
     InteropExtensions},
};

}  // namespace

std::span<const Grammar> CompositionGrammars() {
  return Documents;
}

}  // namespace Assay
