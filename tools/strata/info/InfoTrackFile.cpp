// SPDX-License-Identifier: BSD-3-Clause
#include "InfoTrackFile.h"

#include "InfoPicture.h"
#include "InfoStructure.h"
#include "show/Description.h"
#include "terminal/ReasonText.h"
#include "terminal/TextForms.h"

#include <QUIRE/AtmosReader.h>
#include <QUIRE/DCDataReader.h>
#include <QUIRE/Dictionary.h>
#include <QUIRE/JP2KReader.h>
#include <QUIRE/LabelMeaning.h>
#include <QUIRE/MPEG2Reader.h>
#include <QUIRE/MXF/Descriptors.h>
#include <QUIRE/MXF/OP1aHeader.h>
#include <QUIRE/PCMReader.h>
#include <QUIRE/TimedTextReader.h>
#include <Strata/SoundConfiguration.h>

#include <cstdio>
#include <stdexcept>

namespace Tool {

namespace {

/// Adds a label with its meaning, where it has a value.
void AddLabel(InfoFacts& facts, const char* key, const QUIRE::UL& label) {
  if (!label.HasValue()) return;
  const std::string meaning = QUIRE::LabelMeaning(label);
  facts.Set(key, {label.EncodeString(), meaning})
      .ShownAs(meaning.empty() ? "unknown, label " + label.EncodeString() : meaning);
}

const char* LabelSetName(QUIRE::LabelSet_t labels) {
  switch (labels) {
    case QUIRE::LS_MXF_INTEROP:
      return "Interop";
    case QUIRE::LS_MXF_SMPTE:
      return "SMPTE";
    default:
      return "unknown";
  }
}

/// "AES-128 CBC"; the label itself where its meaning is not known.
std::string AlgorithmName(const QUIRE::UL& label) {
  const std::string meaning = QUIRE::LabelMeaning(label);
  return meaning.empty() && label.HasValue() ? label.EncodeString() : meaning;
}

void AddWriter(const QUIRE::TrackFileReader& reader, InfoItem& item) {
  QUIRE::WriterInfo info;
  if (reader.FillWriterInfo(info).Failure()) return;
  item.Facts.Add("asset_id", info.AssetUUID);
  item.Facts.Set("label_set", LabelSetName(info.LabelSetType));
  InfoFacts& maker = item.Facts.Group("made_by");
  maker.Add("company", info.CompanyName);
  maker.Add("product", info.ProductName);
  maker.Add("version", info.ProductVersion);
  maker.Add("product_id", info.ProductUUID);
  item.Facts.Set("encrypted", info.EncryptedEssence);
  if (!info.EncryptedEssence) return;
  InfoFacts& encryption = item.Facts.Group("encryption");
  encryption.Add("key_id", info.CryptographicKeyID);
  encryption.Add("context_id", info.ContextID);
  encryption.Set("integrity_codes", info.UsesHMAC);
  QUIRE::EncryptionInfo algorithms;
  if (reader.FillEncryptionInfo(algorithms).Failure()) return;
  encryption.Add("cipher", AlgorithmName(algorithms.CipherAlgorithm));
  encryption.Add("integrity_algorithm", AlgorithmName(algorithms.MICAlgorithm));
  if (!algorithms.KnowsCipher || !algorithms.KnowsMIC)
    item.AddProblem(
        "It is encrypted or authenticated by an algorithm that D-Cinema does not use: it cannot be decrypted.");
}

template <class DescriptorT>
void AddLength(const DescriptorT& descriptor, InfoItem& item) {
  item.AddEditRate(descriptor.EditRate);
  item.AddDuration(descriptor.ContainerDuration, descriptor.EditRate);
}

/// What the header says is to be displayed.
DisplaySize DisplaySizeOf(const QUIRE::MXF::OP1aHeader& header) {
  const auto* picture = dynamic_cast<const QUIRE::MXF::GenericPictureEssenceDescriptor*>(header.EssenceDescriptor());
  if (picture == nullptr || !picture->DisplayWidth || !picture->DisplayHeight) return {};
  return {*picture->DisplayWidth, *picture->DisplayHeight};
}

std::string RatioText(const QUIRE::Rational& ratio) {
  char text[32];
  std::snprintf(text, sizeof text, "%.2f:1", ratio.Denominator == 0 ? 0 : ratio.Quotient());
  return text;
}

template <class DescriptorT>
InfoFacts& AddPicture(const DescriptorT& descriptor, const QUIRE::MXF::OP1aHeader& header, InfoItem& item) {
  InfoFacts& picture = item.Facts.Group("picture");
  SetPictureSize(picture, descriptor.StoredWidth, descriptor.StoredHeight, DisplaySizeOf(header));
  picture.Add("aspect_ratio", descriptor.AspectRatio, RatioText(descriptor.AspectRatio));
  AddLabel(picture, "coding", descriptor.PictureEssenceCoding);
  return picture;
}

void Describe(QUIRE::JP2K::MXFSReader& reader, InfoItem& item) {
  QUIRE::JP2K::PictureDescriptor descriptor;
  if (reader.FillPictureDescriptor(descriptor).Failure()) return;
  AddLength(descriptor, item);
  InfoFacts& picture = AddPicture(descriptor, reader.OP1aHeader(), item);
  picture.Set("stereoscopic", descriptor.Stereoscopic);
  picture.Add("sample_rate", descriptor.SampleRate, RateText(descriptor.SampleRate) + " pictures per second");
  picture.Set("components", descriptor.Csiz);
  if (!descriptor.PictureComponentSizing.empty())
    picture.Set("bits", (descriptor.PictureComponentSizing.front().Ssiz & 0x7F) + 1);
}

void Describe(QUIRE::MPEG2::MXFReader& reader, InfoItem& item) {
  QUIRE::MPEG2::VideoDescriptor descriptor;
  if (reader.FillVideoDescriptor(descriptor).Failure()) return;
  AddLength(descriptor, item);
  InfoFacts& picture = AddPicture(descriptor, reader.OP1aHeader(), item);
  picture.Add("sample_rate", descriptor.SampleRate, RateText(descriptor.SampleRate) + " pictures per second");
  picture.Set("bits_per_second", descriptor.BitRate).ShownAs(BitRateText(descriptor.BitRate));
}

// As the engine names it; a label that it cannot read leaves the text empty.
std::string SoundConfiguration(QUIRE::PCM::MXFReader& reader) {
  try {
    return Strata::sound_config_from_mxf(reader.OP1aHeader(), QUIRE::DefaultSMPTEDict(), true);
  } catch (const std::out_of_range&) {
    return "";
  }
}

void Describe(QUIRE::PCM::MXFReader& reader, InfoItem& item) {
  QUIRE::PCM::AudioDescriptor descriptor;
  if (reader.FillAudioDescriptor(descriptor).Failure()) return;
  AddLength(descriptor, item);
  InfoFacts& sound = item.Facts.Group("sound");
  const std::string configuration = SoundConfiguration(reader);
  const std::string names = ChannelNamesText(configuration);
  sound.Set("channels", descriptor.ChannelCount)
      .ShownAs(std::to_string(descriptor.ChannelCount) + (names.empty() ? "" : ": " + names));
  sound.Set("bits", descriptor.QuantizationBits);
  sound.Add("sampling_rate", descriptor.AudioSamplingRate, SamplingRateText(descriptor.AudioSamplingRate));
  // As the engine writes it, an unclosed bracket included: for programs that know it so.
  if (!configuration.empty()) sound.Set("configuration", configuration).ShownAs("");
}

void Describe(QUIRE::TimedText::MXFReader& reader, InfoItem& item) {
  QUIRE::TimedText::TimedTextDescriptor descriptor;
  if (reader.FillTimedTextDescriptor(descriptor).Failure()) return;
  AddLength(descriptor, item);
  InfoFacts& text = item.Facts.Group("text");
  text.Add("document_id", descriptor.AssetID);
  text.Add("namespace", descriptor.NamespaceName);
  text.Add("encoding", descriptor.EncodingName);
  text.Add("languages", descriptor.RFC5646LanguageTagList);
  text.Add("display_type", descriptor.DisplayType);
  InfoList& resources = text.List("resources");
  for (const auto& resource : descriptor.ResourceList) {
    const char* kind = resource.Type == QUIRE::TimedText::MT_PNG        ? "image"
                       : resource.Type == QUIRE::TimedText::MT_OPENTYPE ? "font"
                                                                        : "other";
    InfoFacts facts;
    facts.Set("id", resource.ResourceID.EncodeString());
    facts.Set("kind", kind);
    resources.emplace_back(std::move(facts));
  }
}

InfoFacts& AddData(const QUIRE::DCData::DCDataDescriptor& descriptor, InfoItem& item) {
  InfoFacts& data = item.Facts.Group("data");
  AddLabel(data, "coding", descriptor.DataEssenceCoding);
  return data;
}

void Describe(QUIRE::DCData::MXFReader& reader, InfoItem& item) {
  QUIRE::DCData::DCDataDescriptor descriptor;
  if (reader.FillDCDataDescriptor(descriptor).Failure()) return;
  AddLength(descriptor, item);
  AddData(descriptor, item);
}

void Describe(QUIRE::ATMOS::MXFReader& reader, InfoItem& item) {
  QUIRE::ATMOS::AtmosDescriptor descriptor;
  if (reader.FillAtmosDescriptor(descriptor).Failure()) return;
  AddLength(descriptor, item);
  InfoFacts& data = AddData(descriptor, item);
  data.Add("immersive_audio_id", descriptor.AtmosID);
  data.Set("version", descriptor.AtmosVersion);
  data.Set("first_frame", descriptor.FirstFrame);
  data.Set("most_channels", descriptor.MaxChannelCount);
  data.Set("most_objects", descriptor.MaxObjectCount);
}

template <class ReaderT>
void DescribeFile(const std::string& path, InfoItem& item) {
  ReaderT reader;
  if (const auto result = reader.OpenRead(path); result.Failure())
    return item.AddProblem(std::string("The track file cannot be opened: ") + ReasonText(result) + '.');
  Describe(reader, item);
  AddWriter(reader, item);
}

void DescribeKind(const std::string& path, QUIRE::EssenceType_t essence, InfoItem& item) {
  switch (essence) {
    case QUIRE::ESS_JPEG_2000:
    case QUIRE::ESS_JPEG_2000_S:
      DescribeFile<QUIRE::JP2K::MXFSReader>(path, item);
      return;
    case QUIRE::ESS_MPEG2_VES:
      DescribeFile<QUIRE::MPEG2::MXFReader>(path, item);
      return;
    case QUIRE::ESS_PCM:
      DescribeFile<QUIRE::PCM::MXFReader>(path, item);
      return;
    case QUIRE::ESS_TIMED_TEXT:
      DescribeFile<QUIRE::TimedText::MXFReader>(path, item);
      return;
    case QUIRE::ESS_DCDATA:
      DescribeFile<QUIRE::DCData::MXFReader>(path, item);
      return;
    case QUIRE::ESS_ATMOS:
      DescribeFile<QUIRE::ATMOS::MXFReader>(path, item);
      return;
    case QUIRE::ESS_MXF_OTHER:
    case QUIRE::ESS_UNKNOWN:
      return;
  }
}

bool IsCinemaCoding(const QUIRE::UL& label) {
  const QUIRE::Dictionary& dictionary = QUIRE::DefaultSMPTEDict();
  return label == dictionary.ul(QUIRE::MDD_JP2KEssenceCompression_2K) ||
         label == dictionary.ul(QUIRE::MDD_JP2KEssenceCompression_4K) ||
         label == dictionary.ul(QUIRE::MDD_JP2KEssenceCompression_Undefined);
}

}  // namespace

void DescribeTrackFile(const std::string& path, InfoItem& item) {
  QUIRE::TrackFileIdentity identity;
  const bool is_readable =
      QUIRE::IdentifyTrackFile(path, identity).Success() && identity.Fault == QUIRE::TrackFileFault::None;
  const QUIRE::EssenceType_t essence = is_readable ? identity.Type : QUIRE::ESS_MXF_OTHER;
  DescribeKind(path, essence, item);
  if (!DescribeStructure(path, essence, item)) return;
  if (!identity.IsTrackFile()) {
    item.AddProblem("This is " + identity.EncodeString() + '.');
  } else if (identity.Type == QUIRE::ESS_JPEG_2000 && identity.EssenceCoding.HasValue() &&
             !IsCinemaCoding(identity.EssenceCoding)) {
    const std::string meaning = QUIRE::LabelMeaning(identity.EssenceCoding);
    item.AddProblem("Its pictures are coded as " +
                    (meaning.empty() ? "label " + identity.EssenceCoding.EncodeString() : meaning) +
                    ", which D-Cinema does not use.");
  }
}

}  // namespace Tool
