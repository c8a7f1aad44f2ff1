// SPDX-License-Identifier: BSD-3-Clause
#include "SetTables.h"

#include <QUIRE/MXF/Preface.h>

// Item orders are those of track files in the field.

namespace QUIRE::MXF {
namespace {

constexpr auto PrefaceProperties =
    Join(InterchangeObjectProperties,
         std::to_array<Property>({
             Field<&Preface::LastModifiedDate>(MDD_Preface_LastModifiedDate),
             Field<&Preface::ByteOrder>(MDD_Preface_ByteOrder),
             Field<&Preface::Version>(MDD_Preface_Version),
             Field<&Preface::ObjectModelVersion>(MDD_Preface_ObjectModelVersion),
             Field<&Preface::PrimaryPackage>(MDD_Preface_PrimaryPackage),
             Field<&Preface::Identifications>(MDD_Preface_Identifications),
             Field<&Preface::ContentStorage>(MDD_Preface_ContentStorage),
             Field<&Preface::Dictionary>(MDD_Preface_Dictionary),
             Field<&Preface::OperationalPattern>(MDD_Preface_OperationalPattern),
             Field<&Preface::EssenceContainers>(MDD_Preface_EssenceContainers),
             Field<&Preface::DMSchemes>(MDD_Preface_DMSchemes),
             Field<&Preface::IsRIPPresent>(MDD_Preface_IsRIPPresent),
             OptionalList<&Preface::SpecificationIdentifiers>(MDD_Preface_SpecificationIdentifiers),
             OptionalList<&Preface::ConformsToSpecifications>(MDD_Preface_ConformsToSpecifications),
         }));

constexpr auto IdentificationProperties = Join(
    InterchangeObjectProperties, std::to_array<Property>({
                                     Field<&Identification::ThisGenerationUID>(MDD_Identification_ThisGenerationUID),
                                     Field<&Identification::CompanyName>(MDD_Identification_CompanyName),
                                     Field<&Identification::ProductName>(MDD_Identification_ProductName),
                                     Field<&Identification::ProductVersion>(MDD_Identification_ProductVersion),
                                     Field<&Identification::VersionString>(MDD_Identification_VersionString),
                                     Field<&Identification::ProductUID>(MDD_Identification_ProductUID),
                                     Field<&Identification::ModificationDate>(MDD_Identification_ModificationDate),
                                     Field<&Identification::ToolkitVersion>(MDD_Identification_ToolkitVersion),
                                     Field<&Identification::Platform>(MDD_Identification_Platform),
                                 }));

constexpr auto ContentStorageProperties =
    Join(InterchangeObjectProperties,
         std::to_array<Property>({
             Field<&ContentStorage::Packages>(MDD_ContentStorage_Packages),
             OptionalList<&ContentStorage::EssenceContainerData>(MDD_ContentStorage_EssenceContainerData),
         }));

constexpr auto EssenceContainerDataProperties =
    Join(InterchangeObjectProperties,
         std::to_array<Property>({
             Field<&EssenceContainerData::LinkedPackageUID>(MDD_EssenceContainerData_LinkedPackageUID),
             Field<&EssenceContainerData::IndexSID>(MDD_EssenceContainerData_IndexSID),
             Field<&EssenceContainerData::BodySID>(MDD_EssenceContainerData_BodySID),
             Field<&EssenceContainerData::PrecedingIndexTable>(MDD_EssenceContainerData_PrecedingIndexTable),
             Field<&EssenceContainerData::SingularPartitionUsage>(MDD_EssenceContainerData_SingularPartitionUsage),
             Field<&EssenceContainerData::FollowingIndexTable>(MDD_EssenceContainerData_FollowingIndexTable),
             Field<&EssenceContainerData::IsSparse>(MDD_EssenceContainerData_IsSparse),
         }));

}  // namespace

constinit const SetDefinition PrefaceSet = DefineSet<Preface>(MDD_Preface, PrefaceProperties);
constinit const SetDefinition IdentificationSet =
    DefineSet<Identification>(MDD_Identification, IdentificationProperties);
constinit const SetDefinition ContentStorageSet =
    DefineSet<ContentStorage>(MDD_ContentStorage, ContentStorageProperties);
constinit const SetDefinition EssenceContainerDataSet =
    DefineSet<EssenceContainerData>(MDD_EssenceContainerData, EssenceContainerDataProperties);

}  // namespace QUIRE::MXF
