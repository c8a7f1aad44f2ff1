// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/FindingRule.h>

namespace Assay::After {

// What follows from findings: each array is that of the rule of its name. A finding that is worth more than its cause
// does not follow from it, so classes need no thought here. There are no circles; a test looks for them.

inline constexpr Consequence AmMissing[] = {
    {FindingID::ViMissing, Scope::Package},
    {FindingID::PklMissing, Scope::Package},
};
inline constexpr Consequence AmSchema[] = {
    {FindingID::AmNoPackingList, Scope::Package},    {FindingID::PklMissing, Scope::Package},
    {FindingID::PklAssetUnmapped, Scope::Package},   {FindingID::CplAssetExternal, Scope::Package},
    {FindingID::PackageForeignFile, Scope::Package},
};
inline constexpr Consequence AmPath[] = {
    {FindingID::PklMissing, Scope::Package},
    {FindingID::PklAssetMissing, Scope::Asset},
    {FindingID::CplAssetExternal, Scope::Asset},
    {FindingID::PackageForeignFile, Scope::Package},
};
inline constexpr Consequence AmChunkLength[] = {
    {FindingID::PklAssetHash, Scope::Asset},
    {FindingID::FileDamaged, Scope::Asset},
    {FindingID::FileIncomplete, Scope::Asset},
};
inline constexpr Consequence AmDuplicateID[] = {
    {FindingID::PklID, Scope::Asset},        {FindingID::PklAssetSize, Scope::Asset},
    {FindingID::PklAssetHash, Scope::Asset}, {FindingID::PklAssetType, Scope::Asset},
    {FindingID::CplID, Scope::Asset},        {FindingID::CplHash, Scope::Asset},
    {FindingID::FileID, Scope::Asset},       {FindingID::CplDuplicateID, Scope::Asset},
};
inline constexpr Consequence AmDuplicatePath[] = {
    {FindingID::PklAssetType, Scope::Asset},
    {FindingID::PklUnlisted, Scope::Asset},
    {FindingID::FileID, Scope::Asset},
};
inline constexpr Consequence AmNoPackingList[] = {
    {FindingID::PklMissing, Scope::Package},
    {FindingID::PackageForeignFile, Scope::Package},
};
inline constexpr Consequence PackageMixed[] = {
    {FindingID::AmName, Scope::Package},
    {FindingID::PklAssetType, Scope::Package},
    {FindingID::TextFlavour, Scope::Package},
};
inline constexpr Consequence XmlMalformed[] = {
    {FindingID::AmNoPackingList, Scope::Package},
    {FindingID::PklMissing, Scope::Package},
    {FindingID::TextSchema, Scope::Document},
};
inline constexpr Consequence FileUnreadable[] = {
    {FindingID::AmMissing, Scope::Package},    {FindingID::ViMissing, Scope::Package},
    {FindingID::PklMissing, Scope::Package},   {FindingID::PklAssetHash, Scope::Document},
    {FindingID::FileDamaged, Scope::Document},
};

// What is in a file whose bytes are not those that were packed.
inline constexpr Consequence PklAssetHash[] = {
    {FindingID::XmlMalformed, Scope::Asset}, {FindingID::TextSchema, Scope::Asset},
    {FindingID::FileDamaged, Scope::Asset},  {FindingID::FileIncomplete, Scope::Asset},
    {FindingID::J2KMarker, Scope::Asset},    {FindingID::J2KUndecodable, Scope::Asset},
    {FindingID::MicInvalid, Scope::Asset},
};
inline constexpr Consequence PklAssetSize[] = {
    {FindingID::AmChunkLength, Scope::Asset}, {FindingID::PklAssetHash, Scope::Asset},
    {FindingID::XmlMalformed, Scope::Asset},  {FindingID::TextSchema, Scope::Asset},
    {FindingID::FileDamaged, Scope::Asset},   {FindingID::FileIncomplete, Scope::Asset},
    {FindingID::J2KMarker, Scope::Asset},     {FindingID::J2KUndecodable, Scope::Asset},
    {FindingID::MicInvalid, Scope::Asset},
};
inline constexpr Consequence CplHash[] = {
    {FindingID::AmChunkLength, Scope::Asset},
    {FindingID::CplSchema, Scope::Asset},
    {FindingID::SignInvalid, Scope::Asset},
    {FindingID::ReelHash, Scope::Asset},
};
inline constexpr Consequence FileDamaged[] = {
    {FindingID::FileIncomplete, Scope::Asset}, {FindingID::ReelIntrinsic, Scope::Asset},
    {FindingID::ReelRateFile, Scope::Asset},   {FindingID::J2KMarker, Scope::Asset},
    {FindingID::J2KUndecodable, Scope::Asset}, {FindingID::MicInvalid, Scope::Asset},
};

// What the decoder does not take: components of different sizes, two or four of them, large pictures.
inline constexpr Consequence J2KProfile[] = {
    {FindingID::J2KUndecodable, Scope::Asset},
};

inline constexpr Consequence ReelEditRate[] = {
    {FindingID::ReelShort, Scope::Reel},
    {FindingID::ReelDurations, Scope::Reel},
    {FindingID::ReelFrameRate, Scope::Reel},
};
inline constexpr Consequence ReelAssetKind[] = {
    {FindingID::PklAssetType, Scope::Asset},
    {FindingID::Title3D, Scope::Composition},
};
inline constexpr Consequence ReelIntrinsic[] = {
    {FindingID::ReelEntryBeyond, Scope::Asset},
};
inline constexpr Consequence ReelRateFile[] = {
    {FindingID::AuxAtmosRate, Scope::Asset},
    {FindingID::AuxAtmosRate, Scope::Reel},  // the picture's
    {FindingID::TitleRate, Scope::Composition},
};
// What the composition says of keys decides whether a reel looks encrypted.
inline constexpr Consequence WrongKey[] = {
    {FindingID::ReelEncryptionSome, Scope::Composition},
};
inline constexpr Consequence MetaStoredArea[] = {
    {FindingID::MetaActiveArea, Scope::Composition},
};
inline constexpr Consequence AuxDataType[] = {
    {FindingID::TitleImmersive, Scope::Composition},
};
inline constexpr Consequence CplDuplicateID[] = {
    {FindingID::ReelHash, Scope::Asset},
    {FindingID::MetaMissing, Scope::Composition},
};
inline constexpr Consequence CplContentKind[] = {
    {FindingID::TitleKind, Scope::Composition},
};
inline constexpr Consequence CplAssetExternal[] = {
    {FindingID::TitlePackage, Scope::Composition},
};
inline constexpr Consequence ReelEntryBeyond[] = {
    {FindingID::ReelShort, Scope::Asset},
    {FindingID::ReelDurations, Scope::Reel},
    {FindingID::ReelTextEntry, Scope::Asset},
    {FindingID::MarkerLFOC, Scope::Composition},
};

inline constexpr Consequence PklMissing[] = {
    {FindingID::PackageForeignFile, Scope::Package},
};
inline constexpr Consequence PklSchema[] = {
    {FindingID::PklAnnotation, Scope::Document}, {FindingID::PklAssetSize, Scope::Document},
    {FindingID::PklAssetType, Scope::Document},  {FindingID::PklUnlisted, Scope::Package},
    {FindingID::ReelHash, Scope::Asset},
};
inline constexpr Consequence PklAssetUnmapped[] = {
    {FindingID::CplAssetExternal, Scope::Asset},
    {FindingID::PackageForeignFile, Scope::Package},
};
inline constexpr Consequence PklAssetMissing[] = {
    {FindingID::CplAssetExternal, Scope::Asset},
    {FindingID::PackageForeignFile, Scope::Package},
};
inline constexpr Consequence CplSchema[] = {
    {FindingID::PklAnnotation, Scope::Package},        {FindingID::CplNoReel, Scope::Composition},
    {FindingID::CplAnnotation, Scope::Composition},    {FindingID::CplContentVersion, Scope::Composition},
    {FindingID::CplSoundMissing, Scope::Composition},  {FindingID::ReelPictureMissing, Scope::Composition},
    {FindingID::ReelSoundSome, Scope::Composition},    {FindingID::ReelSubtitleSome, Scope::Composition},
    {FindingID::ReelCaptionCount, Scope::Composition}, {FindingID::MarkerFFOC, Scope::Composition},
    {FindingID::MarkerLFOC, Scope::Composition},       {FindingID::MarkerCredits, Scope::Composition},
    {FindingID::MetaMissing, Scope::Composition},      {FindingID::MetaVersion, Scope::Composition},
    {FindingID::MetaTitle, Scope::Composition},        {FindingID::MetaSoundConfiguration, Scope::Composition},
    {FindingID::MetaSoundRate, Scope::Composition},    {FindingID::MetaStoredArea, Scope::Composition},
    {FindingID::MetaActiveArea, Scope::Composition},   {FindingID::MetaExtension, Scope::Composition},
    {FindingID::TitleAspect, Scope::Composition},      {FindingID::TitleSubtitle, Scope::Composition},
    {FindingID::TitleCaption, Scope::Composition},     {FindingID::ReelHash, Scope::Asset},
    {FindingID::ReelHashMissing, Scope::Asset},        {FindingID::ReelTextEntry, Scope::Asset},
    {FindingID::ReelTextLanguage, Scope::Composition}, {FindingID::ReelFrameRate, Scope::Asset},
    {FindingID::CplDuplicateID, Scope::Asset},
};
inline constexpr Consequence CplTitleEmpty[] = {
    {FindingID::PklAnnotation, Scope::Package},
    {FindingID::CplAnnotation, Scope::Composition},
    {FindingID::TitleForm, Scope::Composition},
};
inline constexpr Consequence CplAnnotation[] = {
    {FindingID::PklAnnotation, Scope::Package},
};
inline constexpr Consequence ReelShort[] = {
    {FindingID::ReelDurations, Scope::Reel},
};
inline constexpr Consequence ReelTextLanguage[] = {
    {FindingID::CplLanguage, Scope::Asset},
    {FindingID::TitleSubtitle, Scope::Composition},
};
inline constexpr Consequence ReelAspect[] = {
    {FindingID::TitleAspect, Scope::Composition},
    {FindingID::TitleResolution, Scope::Composition},
};
inline constexpr Consequence CplSoundMissing[] = {
    {FindingID::TitleAudio, Scope::Composition},
};
inline constexpr Consequence MarkerUnknown[] = {
    {FindingID::MarkerFFOC, Scope::Composition},
    {FindingID::MarkerLFOC, Scope::Composition},
    {FindingID::MarkerCredits, Scope::Composition},
};

// What metadata and title say of sound that is not as it should be. They name no file.
inline constexpr Consequence SoundRate[] = {
    {FindingID::SoundChanges, Scope::Asset},
    {FindingID::MetaSoundRate, Scope::Package},
};
inline constexpr Consequence SoundChannels[] = {
    {FindingID::SoundConfiguration, Scope::Asset},
    {FindingID::SoundChanges, Scope::Asset},
    {FindingID::MetaSoundConfiguration, Scope::Package},
    {FindingID::TitleAudio, Scope::Package},
};
inline constexpr Consequence SoundConfiguration[] = {
    {FindingID::SoundChanges, Scope::Asset},
};
inline constexpr Consequence SoundLabels[] = {
    {FindingID::SoundChanges, Scope::Asset},
};
inline constexpr Consequence SoundMCA[] = {
    {FindingID::SoundChanges, Scope::Asset},
};

// A message names who signed; where that is not known, it is not for what stands there.
inline constexpr Consequence NoSigner[] = {
    {FindingID::KdmAuthenticator, Scope::Composition},
};
inline constexpr Consequence CertVersion[] = {
    {FindingID::CertExtensions, Scope::Document},
    {FindingID::KdmAuthenticator, Scope::Composition},
};
inline constexpr Consequence KdmComposition[] = {
    {FindingID::KdmNone, Scope::Composition},
};

inline constexpr Consequence TextFlavour[] = {
    {FindingID::TextSchema, Scope::Asset},
    {FindingID::TextID, Scope::Asset},
    {FindingID::TextFontMissing, Scope::Asset},
    {FindingID::TextImageMissing, Scope::Asset},
};
inline constexpr Consequence TextSchema[] = {
    {FindingID::TextEmpty, Scope::Document},
    {FindingID::TextFontLoad, Scope::Document},
};
inline constexpr Consequence TextStartTime[] = {
    {FindingID::TextFirst, Scope::Asset},
};
inline constexpr Consequence TextRate[] = {
    {FindingID::TextFirst, Scope::Asset},
    {FindingID::TextOverrun, Scope::Asset},
};
inline constexpr Consequence TextElements[] = {
    {FindingID::TextLines, Scope::Asset},
};

}  // namespace Assay::After
