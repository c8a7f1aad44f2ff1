// SPDX-License-Identifier: BSD-3-Clause
#include "CommonForms.h"

#include <Cairn/Namespace.h>

namespace Assay {
namespace {

// Asset map and volume index (ST 429-9:2014; Interop).

constexpr TypeForm BooleanType{ValueForm::Boolean};

constexpr ElementForm SMPTEPath[] = {{"Path", &URIType}};
constexpr ElementForm InteropPath[] = {{"Path", &TextType}};
constexpr ElementForm VolumeIndexNumber[] = {{"VolumeIndex", &CountType}};
constexpr ElementForm Offset[] = {{"Offset", &OffsetType}};
constexpr ElementForm Length[] = {{"Length", &CountType}};
constexpr Step SMPTEChunkSteps[] = {{SMPTEPath}, {VolumeIndexNumber, 0, 1}, {Offset, 0, 1}, {Length, 0, 1}};
constexpr Step InteropChunkSteps[] = {{InteropPath}, {VolumeIndexNumber, 0, 1}, {Offset, 0, 1}, {Length, 0, 1}};
constexpr TypeForm SMPTEChunkType{ValueForm::Anything, "", {}, SMPTEChunkSteps};
constexpr TypeForm InteropChunkType{ValueForm::Anything, "", {}, InteropChunkSteps};

constexpr ElementForm SMPTEChunk[] = {{"Chunk", &SMPTEChunkType}};
constexpr ElementForm InteropChunk[] = {{"Chunk", &InteropChunkType}};
constexpr Step SMPTEChunkListSteps[] = {{SMPTEChunk, 1, Unbounded}};
constexpr Step InteropChunkListSteps[] = {{InteropChunk, 1, Unbounded}};
constexpr TypeForm SMPTEChunkListType{ValueForm::Anything, "", {}, SMPTEChunkListSteps};
constexpr TypeForm InteropChunkListType{ValueForm::Anything, "", {}, InteropChunkListSteps};

constexpr ElementForm SMPTEMark[] = {{"PackingList", &BooleanType}};
constexpr ElementForm InteropMark[] = {{"PackingList", &AnyType}};
constexpr ElementForm SMPTEChunkList[] = {{"ChunkList", &SMPTEChunkListType}};
constexpr ElementForm InteropChunkList[] = {{"ChunkList", &InteropChunkListType}};
constexpr Step SMPTEMapAssetSteps[] = {{IDElement}, {SMPTEAnnotation, 0, 1}, {SMPTEMark, 0, 1}, {SMPTEChunkList}};
constexpr Step InteropMapAssetSteps[] = {
    {IDElement}, {InteropAnnotation, 0, 1}, {InteropMark, 0, 1}, {InteropChunkList}};
constexpr TypeForm SMPTEMapAssetType{ValueForm::Anything, "", {}, SMPTEMapAssetSteps};
constexpr TypeForm InteropMapAssetType{ValueForm::Anything, "", {}, InteropMapAssetSteps};

constexpr ElementForm SMPTEMapAsset[] = {{"Asset", &SMPTEMapAssetType}};
constexpr ElementForm InteropMapAsset[] = {{"Asset", &InteropMapAssetType}};
constexpr Step SMPTEMapAssetsSteps[] = {{SMPTEMapAsset, 1, Unbounded}};
constexpr Step InteropMapAssetsSteps[] = {{InteropMapAsset, 1, Unbounded}};
constexpr TypeForm SMPTEMapAssetsType{ValueForm::Anything, "", {}, SMPTEMapAssetsSteps};
constexpr TypeForm InteropMapAssetsType{ValueForm::Anything, "", {}, InteropMapAssetsSteps};

constexpr ElementForm VolumeCount[] = {{"VolumeCount", &CountType}};
constexpr ElementForm SMPTEMapAssets[] = {{"AssetList", &SMPTEMapAssetsType}};
constexpr ElementForm InteropMapAssets[] = {{"AssetList", &InteropMapAssetsType}};
constexpr Step SMPTEMapSteps[] = {{IDElement},        {SMPTEAnnotation, 0, 1}, {SMPTECreator},  {VolumeCount},
                                  {IssueDateElement}, {SMPTEIssuer},           {SMPTEMapAssets}};
constexpr Step InteropMapSteps[] = {{IDElement},     {InteropAnnotation, 0, 1}, {VolumeCount},     {IssueDateElement},
                                    {InteropIssuer}, {InteropCreator},          {InteropMapAssets}};
constexpr TypeForm SMPTEMapType{ValueForm::Anything, "", {}, SMPTEMapSteps};
constexpr TypeForm InteropMapType{ValueForm::Anything, "", {}, InteropMapSteps};

constexpr ElementForm Index[] = {{"Index", &CountType}};
constexpr Step VolumeSteps[] = {{Index}};
constexpr TypeForm VolumeType{ValueForm::Anything, "", {}, VolumeSteps};

// Packing list (ST 429-8:2007; Interop).

constexpr ElementForm Hash[] = {{"Hash", &Base64Type}};
constexpr ElementForm Size[] = {{"Size", &CountType}};
constexpr ElementForm Type[] = {{"Type", &TextType}};
constexpr ElementForm SMPTEFileName[] = {{"OriginalFileName", &SMPTEUserText}};
constexpr ElementForm InteropFileName[] = {{"OriginalFileName", &TextType}};
constexpr Step SMPTEAssetSteps[] = {{IDElement}, {SMPTEAnnotation, 0, 1}, {Hash}, {Size},
                                    {Type},      {SMPTEFileName, 0, 1}};
constexpr Step InteropAssetSteps[] = {{IDElement}, {InteropAnnotation, 0, 1}, {Hash, 0, 1}, {Size},
                                      {Type},      {InteropFileName, 0, 1}};
constexpr TypeForm SMPTEAssetType{ValueForm::Anything, "", {}, SMPTEAssetSteps};
constexpr TypeForm InteropAssetType{ValueForm::Anything, "", {}, InteropAssetSteps};
constexpr ElementForm SMPTEAsset[] = {{"Asset", &SMPTEAssetType}};
constexpr ElementForm InteropAsset[] = {{"Asset", &InteropAssetType}};
constexpr Step SMPTEAssetsSteps[] = {{SMPTEAsset, 1, Unbounded}};
constexpr Step InteropAssetsSteps[] = {{InteropAsset, 1, Unbounded}};
constexpr TypeForm SMPTEAssetsType{ValueForm::Anything, "", {}, SMPTEAssetsSteps};
constexpr TypeForm InteropAssetsType{ValueForm::Anything, "", {}, InteropAssetsSteps};

constexpr ElementForm GroupID[] = {{"GroupId", &UUIDType}};
constexpr ElementForm SMPTEAssets[] = {{"AssetList", &SMPTEAssetsType}};
constexpr ElementForm InteropAssets[] = {{"AssetList", &InteropAssetsType}};
constexpr Step SMPTEListSteps[] = {
    {IDElement},    {SMPTEAnnotation, 0, 1}, {IconIDElement, 0, 1}, {IssueDateElement},    {SMPTEIssuer},
    {SMPTECreator}, {GroupID, 0, 1},         {SMPTEAssets},         {SignerElement, 0, 1}, {SignatureElement, 0, 1}};
constexpr Step InteropListSteps[] = {{IDElement},        {InteropAnnotation, 0, 1}, {IconIDElement, 0, 1},
                                     {IssueDateElement}, {InteropIssuer},           {InteropCreator},
                                     {InteropAssets},    {SignerElement, 0, 1},     {SignatureElement, 0, 1}};
constexpr TypeForm SMPTEListType{ValueForm::Anything, "", {}, SMPTEListSteps};
constexpr TypeForm InteropListType{ValueForm::Anything, "", {}, InteropListSteps};

// Elements that have a form wherever they stand, which may be in the mark of a packing list.
constexpr GlobalElement InteropMapElements[] = {{Cairn::NS_Interop_AM, "Asset", &InteropMapAssetType},
                                                {Cairn::NS_Interop_AM, "Chunk", &InteropChunkType}};

using enum DocumentKind;

constexpr Grammar Documents[] = {
    {AssetMap, Cairn::DFT_DCI_SMPTE, {Cairn::NS_SMPTE_AM, "AssetMap", &SMPTEMapType}, {}},
    {AssetMap, Cairn::DFT_DCI_SMPTE, {Cairn::NS_SMPTE_AM_2006, "AssetMap", &SMPTEMapType}, {}},
    {AssetMap, Cairn::DFT_Interop, {Cairn::NS_Interop_AM, "AssetMap", &InteropMapType}, InteropMapElements},
    {VolumeIndex, Cairn::DFT_DCI_SMPTE, {Cairn::NS_SMPTE_AM, "VolumeIndex", &VolumeType}, {}},
    {VolumeIndex, Cairn::DFT_DCI_SMPTE, {Cairn::NS_SMPTE_AM_2006, "VolumeIndex", &VolumeType}, {}},
    {VolumeIndex, Cairn::DFT_Interop, {Cairn::NS_Interop_VL, "VolumeIndex", &VolumeType}, {}},
    {VolumeIndex, Cairn::DFT_Interop, {Cairn::NS_Interop_AM, "VolumeIndex", &VolumeType}, {}},
    {PackingList, Cairn::DFT_DCI_SMPTE, {Cairn::NS_SMPTE_PKL, "PackingList", &SMPTEListType}, {}},
    {PackingList, Cairn::DFT_DCI_SMPTE, {Cairn::NS_SMPTE_PKL_2006, "PackingList", &SMPTEListType}, {}},
    {PackingList, Cairn::DFT_Interop, {Cairn::NS_Interop_PKL, "PackingList", &InteropListType}, {}},
};

}  // namespace

std::span<const Grammar> PackageGrammars() {
  return Documents;
}

}  // namespace Assay
