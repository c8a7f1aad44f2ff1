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

namespace {

void add_label(Json& item, const char* key, const QUIRE::UL& label) {
  if (label.HasValue()) item[key] = label.EncodeString();
}

void add_rate(Json& item, const char* key, const QUIRE::Rational& rate) {
  if (rate.Denominator != 0) item[key] = rate.EncodeString();
}

const char* label_set_name(QUIRE::LabelSet_t labels) {
  switch (labels) {
    case QUIRE::LS_MXF_INTEROP:
      return "Interop";
    case QUIRE::LS_MXF_SMPTE:
      return "SMPTE";
    default:
      return "unknown";
  }
}

void add_writer(const QUIRE::TrackFileReader& reader, Json& item) {
  QUIRE::WriterInfo info;
  if (reader.FillWriterInfo(info).Failure()) return;
  AddFact(item, "asset_id", info.AssetUUID);
  item["label_set"] = label_set_name(info.LabelSetType);
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
void add_length(const DescriptorT& descriptor, Json& item) {
  add_rate(item, "edit_rate", descriptor.EditRate);
  AddDuration(item, descriptor.ContainerDuration, descriptor.EditRate);
}

template <class DescriptorT>
Json picture_size(const DescriptorT& descriptor) {
  Json picture{{"width", descriptor.StoredWidth}, {"height", descriptor.StoredHeight}};
  add_rate(picture, "aspect_ratio", descriptor.AspectRatio);
  add_label(picture, "coding", descriptor.PictureEssenceCoding);
  return picture;
}

void describe(QUIRE::JP2K::MXFSReader& reader, Json& item) {
  QUIRE::JP2K::PictureDescriptor descriptor;
  if (reader.FillPictureDescriptor(descriptor).Failure()) return;
  add_length(descriptor, item);
  Json& picture = item["picture"] = picture_size(descriptor);
  picture["stereoscopic"] = descriptor.Stereoscopic;
  add_rate(picture, "sample_rate", descriptor.SampleRate);
  picture["components"] = descriptor.Csiz;
  if (!descriptor.PictureComponentSizing.empty())
    picture["bits"] = (descriptor.PictureComponentSizing.front().Ssiz & 0x7F) + 1;
}

void describe(QUIRE::MPEG2::MXFReader& reader, Json& item) {
  QUIRE::MPEG2::VideoDescriptor descriptor;
  if (reader.FillVideoDescriptor(descriptor).Failure()) return;
  add_length(descriptor, item);
  Json& picture = item["picture"] = picture_size(descriptor);
  add_rate(picture, "sample_rate", descriptor.SampleRate);
  picture["bits_per_second"] = descriptor.BitRate;
}

// As the engine names it; a label that it cannot read leaves the text empty.
std::string sound_configuration(QUIRE::PCM::MXFReader& reader) {
  try {
    return Strata::sound_config_from_mxf(reader.OP1aHeader(), QUIRE::DefaultSMPTEDict(), true);
  } catch (const std::out_of_range&) {
    return "";
  }
}

void describe(QUIRE::PCM::MXFReader& reader, Json& item) {
  QUIRE::PCM::AudioDescriptor descriptor;
  if (reader.FillAudioDescriptor(descriptor).Failure()) return;
  add_length(descriptor, item);
  Json& sound = item["sound"] = Json{{"channels", descriptor.ChannelCount}, {"bits", descriptor.QuantizationBits}};
  add_rate(sound, "sampling_rate", descriptor.AudioSamplingRate);
  AddFact(sound, "configuration", sound_configuration(reader));
}

void describe(QUIRE::TimedText::MXFReader& reader, Json& item) {
  QUIRE::TimedText::TimedTextDescriptor descriptor;
  if (reader.FillTimedTextDescriptor(descriptor).Failure()) return;
  add_length(descriptor, item);
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

Json data_facts(const QUIRE::DCData::DCDataDescriptor& descriptor) {
  Json data = Json::object();
  add_label(data, "coding", descriptor.DataEssenceCoding);
  return data;
}

void describe(QUIRE::DCData::MXFReader& reader, Json& item) {
  QUIRE::DCData::DCDataDescriptor descriptor;
  if (reader.FillDCDataDescriptor(descriptor).Failure()) return;
  add_length(descriptor, item);
  item["data"] = data_facts(descriptor);
}

void describe(QUIRE::ATMOS::MXFReader& reader, Json& item) {
  QUIRE::ATMOS::AtmosDescriptor descriptor;
  if (reader.FillAtmosDescriptor(descriptor).Failure()) return;
  add_length(descriptor, item);
  Json& data = item["data"] = data_facts(descriptor);
  AddFact(data, "immersive_audio_id", descriptor.AtmosID);
  data["version"] = descriptor.AtmosVersion;
  data["first_frame"] = descriptor.FirstFrame;
  data["most_channels"] = descriptor.MaxChannelCount;
  data["most_objects"] = descriptor.MaxObjectCount;
}

template <class ReaderT>
void describe_file(const std::string& path, Json& item) {
  ReaderT reader;
  if (const auto result = reader.OpenRead(path); result.Failure())
    return AddProblem(item, std::string("The track file cannot be opened: ") + result.Label() + '.');
  describe(reader, item);
  add_writer(reader, item);
}

}  // namespace

void DescribeTrackFile(const std::string& path, QUIRE::EssenceType_t essence, Json& item) {
  switch (essence) {
    case QUIRE::ESS_JPEG_2000:
    case QUIRE::ESS_JPEG_2000_S:
      describe_file<QUIRE::JP2K::MXFSReader>(path, item);
      break;
    case QUIRE::ESS_MPEG2_VES:
      describe_file<QUIRE::MPEG2::MXFReader>(path, item);
      break;
    case QUIRE::ESS_PCM:
      describe_file<QUIRE::PCM::MXFReader>(path, item);
      break;
    case QUIRE::ESS_TIMED_TEXT:
      describe_file<QUIRE::TimedText::MXFReader>(path, item);
      break;
    case QUIRE::ESS_DCDATA:
      describe_file<QUIRE::DCData::MXFReader>(path, item);
      break;
    case QUIRE::ESS_ATMOS:
      describe_file<QUIRE::ATMOS::MXFReader>(path, item);
      break;
    case QUIRE::ESS_MXF_OTHER:
    case QUIRE::ESS_UNKNOWN:
      break;
  }
  DescribeStructure(path, essence, item);
  if (essence == QUIRE::ESS_MXF_OTHER && item.contains("structure"))
    AddProblem(item, "This is MXF, but no track file of a digital cinema package.");
}
