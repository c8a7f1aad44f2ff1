// SPDX-License-Identifier: BSD-3-Clause
#include "InfoTrackFile.h"

#include "InfoStructure.h"
#include "terminal/TextForms.h"

#include <QUIRE/AtmosReader.h>
#include <QUIRE/DCDataReader.h>
#include <QUIRE/Dictionary.h>
#include <QUIRE/JP2KReader.h>
#include <QUIRE/MPEG2Reader.h>
#include <QUIRE/MXF/OP1aHeader.h>
#include <QUIRE/PCMReader.h>
#include <QUIRE/TimedTextReader.h>
#include <Strata/SoundConfiguration.h>

#include <stdexcept>

namespace Tool {

namespace {

void AddLabel(Json& item, const char* key, const QUIRE::UL& label) {
  if (label.HasValue()) item[key] = label.EncodeString();
}

void AddRate(Json& item, const char* key, const QUIRE::Rational& rate) {
  if (rate.Denominator != 0) item[key] = rate.EncodeString();
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

void AddWriter(const QUIRE::TrackFileReader& reader, Json& item) {
  QUIRE::WriterInfo info;
  if (reader.FillWriterInfo(info).Failure()) return;
  AddFact(item, "asset_id", info.AssetUUID);
  item["label_set"] = LabelSetName(info.LabelSetType);
  Json& maker = item["made_by"] = Json::object();
  AddFact(maker, "company", info.CompanyName);
  AddFact(maker, "product", info.ProductName);
  AddFact(maker, "version", info.ProductVersion);
  AddFact(maker, "product_id", info.ProductUUID);
  item["encrypted"] = info.EncryptedEssence;
  if (!info.EncryptedEssence) return;
  Json& encryption = item["encryption"] = Json::object();
  AddFact(encryption, "key_id", info.CryptographicKeyID);
  AddFact(encryption, "context_id", info.ContextID);
  encryption["cipher"] = "AES-128 CBC";
  encryption["integrity_codes"] = info.UsesHMAC;
}

template <class DescriptorT>
void AddLength(const DescriptorT& descriptor, Json& item) {
  AddRate(item, "edit_rate", descriptor.EditRate);
  AddDuration(item, descriptor.ContainerDuration, descriptor.EditRate);
}

template <class DescriptorT>
Json PictureSize(const DescriptorT& descriptor) {
  Json picture{{"width", descriptor.StoredWidth}, {"height", descriptor.StoredHeight}};
  AddRate(picture, "aspect_ratio", descriptor.AspectRatio);
  AddLabel(picture, "coding", descriptor.PictureEssenceCoding);
  return picture;
}

void Describe(QUIRE::JP2K::MXFSReader& reader, Json& item) {
  QUIRE::JP2K::PictureDescriptor descriptor;
  if (reader.FillPictureDescriptor(descriptor).Failure()) return;
  AddLength(descriptor, item);
  Json& picture = item["picture"] = PictureSize(descriptor);
  picture["stereoscopic"] = descriptor.Stereoscopic;
  AddRate(picture, "sample_rate", descriptor.SampleRate);
  picture["components"] = descriptor.Csiz;
  if (!descriptor.PictureComponentSizing.empty())
    picture["bits"] = (descriptor.PictureComponentSizing.front().Ssiz & 0x7F) + 1;
}

void Describe(QUIRE::MPEG2::MXFReader& reader, Json& item) {
  QUIRE::MPEG2::VideoDescriptor descriptor;
  if (reader.FillVideoDescriptor(descriptor).Failure()) return;
  AddLength(descriptor, item);
  Json& picture = item["picture"] = PictureSize(descriptor);
  AddRate(picture, "sample_rate", descriptor.SampleRate);
  picture["bits_per_second"] = descriptor.BitRate;
}

// As the engine names it; a label that it cannot read leaves the text empty.
std::string SoundConfiguration(QUIRE::PCM::MXFReader& reader) {
  try {
    return Strata::sound_config_from_mxf(reader.OP1aHeader(), QUIRE::DefaultSMPTEDict(), true);
  } catch (const std::out_of_range&) {
    return "";
  }
}

void Describe(QUIRE::PCM::MXFReader& reader, Json& item) {
  QUIRE::PCM::AudioDescriptor descriptor;
  if (reader.FillAudioDescriptor(descriptor).Failure()) return;
  AddLength(descriptor, item);
  Json& sound = item["sound"] = Json{{"channels", descriptor.ChannelCount}, {"bits", descriptor.QuantizationBits}};
  AddRate(sound, "sampling_rate", descriptor.AudioSamplingRate);
  AddFact(sound, "configuration", SoundConfiguration(reader));
}

void Describe(QUIRE::TimedText::MXFReader& reader, Json& item) {
  QUIRE::TimedText::TimedTextDescriptor descriptor;
  if (reader.FillTimedTextDescriptor(descriptor).Failure()) return;
  AddLength(descriptor, item);
  Json& text = item["text"] = Json::object();
  AddFact(text, "document_id", descriptor.AssetID);
  AddFact(text, "namespace", descriptor.NamespaceName);
  AddFact(text, "encoding", descriptor.EncodingName);
  AddFact(text, "languages", descriptor.RFC5646LanguageTagList);
  AddFact(text, "display_type", descriptor.DisplayType);
  text["resources"] = Json::array();
  for (const auto& resource : descriptor.ResourceList) {
    const char* kind = resource.Type == QUIRE::TimedText::MT_PNG        ? "image"
                       : resource.Type == QUIRE::TimedText::MT_OPENTYPE ? "font"
                                                                        : "other";
    text["resources"].push_back(Json{{"id", resource.ResourceID.EncodeString()}, {"kind", kind}});
  }
}

Json DataFacts(const QUIRE::DCData::DCDataDescriptor& descriptor) {
  Json data = Json::object();
  AddLabel(data, "coding", descriptor.DataEssenceCoding);
  return data;
}

void Describe(QUIRE::DCData::MXFReader& reader, Json& item) {
  QUIRE::DCData::DCDataDescriptor descriptor;
  if (reader.FillDCDataDescriptor(descriptor).Failure()) return;
  AddLength(descriptor, item);
  item["data"] = DataFacts(descriptor);
}

void Describe(QUIRE::ATMOS::MXFReader& reader, Json& item) {
  QUIRE::ATMOS::AtmosDescriptor descriptor;
  if (reader.FillAtmosDescriptor(descriptor).Failure()) return;
  AddLength(descriptor, item);
  Json& data = item["data"] = DataFacts(descriptor);
  AddFact(data, "immersive_audio_id", descriptor.AtmosID);
  data["version"] = descriptor.AtmosVersion;
  data["first_frame"] = descriptor.FirstFrame;
  data["most_channels"] = descriptor.MaxChannelCount;
  data["most_objects"] = descriptor.MaxObjectCount;
}

template <class ReaderT>
void DescribeFile(const std::string& path, Json& item) {
  ReaderT reader;
  if (const auto result = reader.OpenRead(path); result.Failure())
    return AddProblem(item, std::string("The track file cannot be opened: ") + result.Label() + '.');
  Describe(reader, item);
  AddWriter(reader, item);
}

}  // namespace

void DescribeTrackFile(const std::string& path, QUIRE::EssenceType_t essence, Json& item) {
  switch (essence) {
    case QUIRE::ESS_JPEG_2000:
    case QUIRE::ESS_JPEG_2000_S:
      DescribeFile<QUIRE::JP2K::MXFSReader>(path, item);
      break;
    case QUIRE::ESS_MPEG2_VES:
      DescribeFile<QUIRE::MPEG2::MXFReader>(path, item);
      break;
    case QUIRE::ESS_PCM:
      DescribeFile<QUIRE::PCM::MXFReader>(path, item);
      break;
    case QUIRE::ESS_TIMED_TEXT:
      DescribeFile<QUIRE::TimedText::MXFReader>(path, item);
      break;
    case QUIRE::ESS_DCDATA:
      DescribeFile<QUIRE::DCData::MXFReader>(path, item);
      break;
    case QUIRE::ESS_ATMOS:
      DescribeFile<QUIRE::ATMOS::MXFReader>(path, item);
      break;
    case QUIRE::ESS_MXF_OTHER:
    case QUIRE::ESS_UNKNOWN:
      break;
  }
  DescribeStructure(path, essence, item);
  if (essence == QUIRE::ESS_MXF_OTHER && item.contains("structure"))
    AddProblem(item, "This is MXF, but no track file of a digital cinema package.");
}

}  // namespace Tool
