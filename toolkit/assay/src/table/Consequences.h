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
    {FindingID::AmNoPackingList, Scope::Package},
    {FindingID::PklMissing, Scope::Package},
};
inline constexpr Consequence AmPath[] = {
    {FindingID::PklMissing, Scope::Asset},
    {FindingID::PklAssetMissing, Scope::Asset},
    {FindingID::CplAssetExternal, Scope::Asset},
    {FindingID::PackageForeignFile, Scope::Package},
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

inline constexpr Consequence ReelEditRate[] = {
    {FindingID::ReelDurations, Scope::Reel},
    {FindingID::ReelFrameRate, Scope::Reel},
};
inline constexpr Consequence CplDuplicateID[] = {
    {FindingID::CplHash, Scope::Asset},
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

}  // namespace Assay::After
