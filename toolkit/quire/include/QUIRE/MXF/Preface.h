// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/MXF/InterchangeObject.h>

#include <string>

namespace QUIRE::MXF {

// The sets at the root of the header metadata (ST 377-1, Annex A).

/// The root; the first set, one to a file.
class QUIRE_API Preface : public InterchangeObject {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
  std::optional<i16_t> ByteOrder;
  Timestamp LastModifiedDate;
  UUID ContentStorage;
  std::optional<UUID> Dictionary;
  ui16_t Version = 0x0102;  ///< major in the high byte
  std::vector<UUID> Identifications;
  std::optional<ui32_t> ObjectModelVersion;
  std::optional<UUID> PrimaryPackage;  ///< InstanceUID of the file package
  UL OperationalPattern;
  std::vector<UL> EssenceContainers;
  std::vector<UL> DMSchemes;
  std::optional<bool> IsRIPPresent;
  std::vector<UL> SpecificationIdentifiers;
  std::vector<UL> ConformsToSpecifications;
};

/// One for each application that wrote to the file, the latest last.
class QUIRE_API Identification : public InterchangeObject {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
  std::string CompanyName;
  std::string ProductName;
  std::optional<MXF::ProductVersion> ProductVersion;
  std::string VersionString;
  UUID ProductUID;
  Timestamp ModificationDate;
  std::optional<MXF::ProductVersion> ToolkitVersion;
  std::optional<std::string> Platform;
  UUID ThisGenerationUID;
};

class QUIRE_API ContentStorage : public InterchangeObject {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
  std::vector<UUID> Packages;
  std::vector<UUID> EssenceContainerData;
};

/// Ties an essence stream and its index to the file package.
class QUIRE_API EssenceContainerData : public InterchangeObject {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
  UMID LinkedPackageUID;
  std::optional<ui32_t> IndexSID;
  ui32_t BodySID = 0;
  std::optional<bool> PrecedingIndexTable;
  std::optional<bool> SingularPartitionUsage;
  std::optional<bool> FollowingIndexTable;
  std::optional<bool> IsSparse;
};

}  // namespace QUIRE::MXF
