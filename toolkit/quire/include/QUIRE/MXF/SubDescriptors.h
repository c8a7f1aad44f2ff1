// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/MXF/InterchangeObject.h>
#include <QUIRE/PictureDescriptor.h>
#include <QUIRE/Rational.h>

#include <string>

namespace QUIRE::MXF {

// Sub-descriptors, which an essence descriptor owns through its list SubDescriptors.

/// A JPEG 2000 codestream's main header (ST 422, 8.2).
class QUIRE_API JPEG2000PictureSubDescriptor : public InterchangeObject, public JP2K::ImageAndTileSize {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
  std::optional<std::vector<ui8_t>> CodingStyleDefault;   ///< the COD marker segment after its length field
  std::optional<std::vector<ui8_t>> QuantizationDefault;  ///< the QCD marker segment after its length field
  std::optional<RGBALayout> J2CLayout;
  std::vector<ui16_t> J2KProfile;
  std::vector<ui16_t> J2KCorrespondingProfile;
};

/// Marks a stereoscopic picture file (ST 429-10, Annex A).
class QUIRE_API StereoscopicPictureSubDescriptor : public InterchangeObject {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
};

/// What the multichannel audio labels share (ST 377-4, 6).
class QUIRE_API MCALabelSubDescriptor : public InterchangeObject {
 public:
  UL MCALabelDictionaryID;
  UUID MCALinkID;
  std::string MCATagSymbol;
  std::optional<std::string> MCATagName;
  std::optional<ui32_t> MCAChannelID;  ///< 1-based position in the interleaved samples
  std::optional<std::string> RFC5646SpokenLanguage;
  std::optional<std::string> MCATitle;
  std::optional<std::string> MCATitleVersion;
  std::optional<std::string> MCATitleSubVersion;
  std::optional<std::string> MCAEpisode;
  std::optional<std::string> MCAPartitionKind;
  std::optional<std::string> MCAPartitionNumber;
  std::optional<std::string> MCAAudioContentKind;
  std::optional<std::string> MCAAudioElementKind;
  std::optional<std::string> MCAContent;
  std::optional<std::string> MCAUseClass;
  std::optional<std::string> MCAContentSubtype;
  std::optional<std::string> MCAContentDifferentiator;
  std::optional<std::string> MCASpokenLanguageAttribute;
  std::optional<std::string> RFC5646AdditionalSpokenLanguages;
  std::optional<std::string> MCAAdditionalLanguageAttributes;
};

class QUIRE_API AudioChannelLabelSubDescriptor : public MCALabelSubDescriptor {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
  std::optional<UUID> SoundfieldGroupLinkID;
};

class QUIRE_API SoundfieldGroupLabelSubDescriptor : public MCALabelSubDescriptor {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
  std::vector<UUID> GroupOfSoundfieldGroupsLinkID;
};

class QUIRE_API GroupOfSoundfieldGroupsLabelSubDescriptor : public MCALabelSubDescriptor {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
};

/// A font or image of a timed-text file (ST 429-5, A.4).
class QUIRE_API TimedTextResourceSubDescriptor : public InterchangeObject {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
  UUID AncillaryResourceID;
  std::string MIMEMediaType;
  ui32_t EssenceStreamID = 0;  ///< BodySID of the generic stream partition that holds it
};

/// Immersive audio (ST 429-18, 12).
class QUIRE_API IADataEssenceSubDescriptor : public InterchangeObject {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
  std::optional<UUID> ImmersiveAudioID;
  std::optional<ui32_t> FirstFrame;  ///< edit unit that goes with the first frame of picture action
  std::optional<ui16_t> MaxChannelCount;
  std::optional<ui16_t> MaxObjectCount;
  std::optional<ui8_t> ImmersiveAudioVersion;
  std::optional<Rational> IABSampleRate;
};

}  // namespace QUIRE::MXF
