// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/MXF/InterchangeObject.h>
#include <QUIRE/Rational.h>

#include <string>

namespace QUIRE::MXF {

// Essence descriptors (ST 377-1, Annex F, and the mapping standards).

class QUIRE_API GenericDescriptor : public InterchangeObject {
 public:
  std::vector<UUID> SubDescriptors;
  std::vector<UUID> Locators;
};

class QUIRE_API FileDescriptor : public GenericDescriptor {
 public:
  std::optional<ui32_t> LinkedTrackID;
  Rational SampleRate;
  std::optional<i64_t> ContainerDuration;
  UL EssenceContainer;
  std::optional<UL> Codec;
};

class QUIRE_API MultipleDescriptor : public FileDescriptor {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
  std::vector<UUID> FileDescriptors;
};

class QUIRE_API GenericPictureEssenceDescriptor : public FileDescriptor {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
  ui8_t FrameLayout = 0;
  ui32_t StoredWidth = 0;
  ui32_t StoredHeight = 0;
  Rational AspectRatio;
  std::optional<UL> PictureEssenceCoding;
  std::vector<i32_t> VideoLineMap;
  std::optional<ui32_t> SampledWidth;
  std::optional<ui32_t> SampledHeight;
  std::optional<i32_t> SampledXOffset;
  std::optional<i32_t> SampledYOffset;
  std::optional<ui32_t> DisplayWidth;
  std::optional<ui32_t> DisplayHeight;
  std::optional<i32_t> DisplayXOffset;
  std::optional<i32_t> DisplayYOffset;
  std::optional<i32_t> DisplayF2Offset;
  std::optional<i32_t> StoredF2Offset;
  std::optional<ui8_t> SignalStandard;
  std::optional<ui8_t> ActiveFormatDescriptor;
  std::optional<ui8_t> AlphaTransparency;
  std::optional<ui8_t> FieldDominance;
  std::optional<ui32_t> ImageAlignmentOffset;
  std::optional<ui32_t> ImageStartOffset;
  std::optional<ui32_t> ImageEndOffset;
  std::optional<UL> CaptureGamma;  ///< transfer characteristic
  std::optional<UL> CodingEquations;
  std::optional<UL> ColorPrimaries;
  std::optional<ui32_t> ActiveWidth;
  std::optional<ui32_t> ActiveHeight;
  std::optional<ui32_t> ActiveXOffset;
  std::optional<ui32_t> ActiveYOffset;
  std::vector<UL> AlternativeCenterCuts;
};

/// JPEG 2000 pictures.
class QUIRE_API RGBAEssenceDescriptor : public GenericPictureEssenceDescriptor {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
  std::optional<RGBALayout> PixelLayout;
  std::optional<ui32_t> ComponentMaxRef;
  std::optional<ui32_t> ComponentMinRef;
  std::optional<ui32_t> AlphaMaxRef;
  std::optional<ui32_t> AlphaMinRef;
  std::optional<ui8_t> ScanningDirection;
};

class QUIRE_API CDCIEssenceDescriptor : public GenericPictureEssenceDescriptor {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
  ui32_t ComponentDepth = 0;
  ui32_t HorizontalSubsampling = 0;
  std::optional<ui32_t> VerticalSubsampling;
  std::optional<ui8_t> ColorSiting;
  std::optional<ui32_t> BlackRefLevel;
  std::optional<ui32_t> WhiteReflevel;
  std::optional<ui32_t> ColorRange;
  std::optional<i16_t> PaddingBits;
  std::optional<ui32_t> AlphaSampleDepth;
  std::optional<bool> ReversedByteOrder;
};

/// MPEG-2 pictures (ST 381-1).
class QUIRE_API MPEG2VideoDescriptor : public CDCIEssenceDescriptor {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
  std::optional<bool> SingleSequence;
  std::optional<bool> ConstantBFrames;
  std::optional<ui8_t> CodedContentType;  ///< 0 unknown, 1 progressive, 2 interlaced, 3 mixed
  std::optional<bool> LowDelay;
  std::optional<bool> ClosedGOP;
  std::optional<bool> IdenticalGOP;
  std::optional<ui16_t> MaxGOP;
  std::optional<ui16_t> BPictureCount;
  std::optional<ui32_t> BitRate;  ///< bits per second
  std::optional<ui8_t> ProfileAndLevel;
};

class QUIRE_API GenericSoundEssenceDescriptor : public FileDescriptor {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
  Rational AudioSamplingRate;
  std::optional<bool> Locked;
  std::optional<i8_t> AudioRefLevel;
  std::optional<ui8_t> ElectroSpatialFormulation;
  ui32_t ChannelCount = 0;
  ui32_t QuantizationBits = 0;
  std::optional<i8_t> DialNorm;
  std::optional<UL> SoundEssenceCompression;
  std::optional<i8_t> ReferenceAudioAlignmentLevel;
  std::optional<Rational> ReferenceImageEditRate;
};

/// PCM sound (ST 382).
class QUIRE_API WaveAudioDescriptor : public GenericSoundEssenceDescriptor {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
  ui16_t BlockAlign = 0;  ///< bytes of one sample of all channels
  std::optional<ui8_t> SequenceOffset;
  ui32_t AvgBps = 0;                    ///< bytes per second
  std::optional<UL> ChannelAssignment;  ///< how channels are used (ST 429-2, Annex A)
};

class QUIRE_API GenericDataEssenceDescriptor : public FileDescriptor {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
  std::optional<UL> DataEssenceCoding;
};

/// Timed text (ST 429-5, A.3).
class QUIRE_API TimedTextDescriptor : public GenericDataEssenceDescriptor {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
  UUID ResourceID;
  std::string UCSEncoding;
  std::string NamespaceURI;
  std::optional<std::string> RFC5646LanguageTagList;
  std::optional<std::string> DisplayType;
  std::optional<std::string> IntrinsicPictureResolution;
  std::optional<ui8_t> ZpositionInUse;
};

/// Auxiliary data (ST 429-14, 9).
class QUIRE_API DCDataDescriptor : public GenericDataEssenceDescriptor {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
};

/// Immersive audio (ST 429-18, 9).
class QUIRE_API IADataEssenceDescriptor : public GenericDataEssenceDescriptor {
 public:
  [[nodiscard]] const SetDefinition& Definition() const override;
};

}  // namespace QUIRE::MXF
