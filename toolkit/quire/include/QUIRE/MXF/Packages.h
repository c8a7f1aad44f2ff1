// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/MXF/InterchangeObject.h>
#include <QUIRE/Rational.h>

#include <string>

namespace QUIRE::MXF {

// Packages, their tracks and what the tracks hold (ST 377-1, Annex B). Positions and durations are in edit units of the
// track; -1 is unknown.

class QUIRE_API GenericPackage : public InterchangeObject {
 public:
  UMID PackageUID;
  std::optional<std::string> PackageName;
  std::vector<UUID> Tracks;
  Timestamp PackageModifiedDate;
  Timestamp PackageCreationDate;
};

class QUIRE_API MaterialPackage : public GenericPackage {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
};

/// The file package: it describes the essence in the file, and its UMID carries the track file's asset identifier.
class QUIRE_API SourcePackage : public GenericPackage {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
  UUID Descriptor;
};

class QUIRE_API GenericTrack : public InterchangeObject {
 public:
  ui32_t TrackID = 0;
  std::optional<std::string> TrackName;
  UUID Sequence;
  ui32_t TrackNumber = 0;  ///< of an essence track of the file package, bytes 13 to 16 of the element key; else 0
};

/// A timeline track.
class QUIRE_API Track : public GenericTrack {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
  Rational EditRate;
  i64_t Origin = 0;
  std::optional<i64_t> MarkIn;
  std::optional<i64_t> MarkOut;
  std::optional<i64_t> UserPosition;
  std::optional<i64_t> PackageMarkInPosition;
  std::optional<i64_t> PackageMarkOutPosition;
};

class QUIRE_API StaticTrack : public GenericTrack {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
};

class QUIRE_API EventTrack : public GenericTrack {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
  Rational EventEditRate;
  std::optional<i64_t> EventOrigin;
};

class QUIRE_API StructuralComponent : public InterchangeObject {
 public:
  UL DataDefinition;
  std::optional<i64_t> Duration;
};

class QUIRE_API Sequence : public StructuralComponent {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
  std::vector<UUID> StructuralComponents;
};

class QUIRE_API SourceClip : public StructuralComponent {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
  i64_t StartPosition = 0;
  UMID SourcePackageID;  ///< all zero where the chain of sources ends
  ui32_t SourceTrackID = 0;
};

class QUIRE_API TimecodeComponent : public StructuralComponent {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
  ui16_t RoundedTimecodeBase = 0;
  i64_t StartTimecode = 0;
  bool DropFrame = false;
};

class QUIRE_API Filler : public StructuralComponent {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
};

/// A piece of descriptive metadata: the cryptographic framework, or in timed text what stands for the source clip.
class QUIRE_API DMSegment : public StructuralComponent {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
  std::optional<i64_t> EventStartPosition;
  std::optional<std::string> EventComment;
  std::vector<ui32_t> TrackIDs;
  std::optional<UUID> DMFramework;
};

/// Owns the cryptographic context (ST 429-6, 7).
class QUIRE_API CryptographicFramework : public InterchangeObject {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
  UUID ContextSR;  ///< the CryptographicContext
};

/// How the essence is encrypted (ST 429-6, 8).
class QUIRE_API CryptographicContext : public InterchangeObject {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
  UUID ContextID;
  UL SourceEssenceContainer;  ///< the container label of the plaintext
  UL CipherAlgorithm;         ///< all zero: not encrypted
  UL MICAlgorithm;            ///< all zero: no integrity check
  UUID CryptographicKeyID;
};

}  // namespace QUIRE::MXF
