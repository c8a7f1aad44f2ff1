// SPDX-License-Identifier: BSD-3-Clause
#include "TrackFileMaker.h"

#include <QUIRE/AtmosWriter.h>
#include <QUIRE/DCDataWriter.h>
#include <QUIRE/JP2KWriter.h>
#include <QUIRE/MPEG2Writer.h>
#include <QUIRE/MXF/RIP.h>
#include <QUIRE/PCMWriter.h>
#include <QUIRE/TimedTextWriter.h>

#include <Ferro/Assert.h>
#include <Ferro/FileReader.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace testsupport {

using namespace QUIRE;
using Ferro::UUID;

namespace {

UUID NumberedID(const char* prefix, size_t number) {
  std::string digits = std::to_string(number);
  digits.insert(0, 12 - digits.size(), '0');
  return *UUID::FromHex(std::string(prefix) + "-0000-4000-8000-" + digits);
}

UUID FontID(size_t number) {
  return NumberedID("f0f0f0f0", number);
}

UUID ImageID(size_t number) {
  return NumberedID("e0e0e0e0", number);
}

// Writes all edit units of a file that was opened.
template <class WriterT, class BufferT>
Result_t WriteFrames(WriterT& writer, TrackKind kind, const TrackFileSpec& spec) {
  WriteContexts contexts(spec);
  for (ui32_t i = 0; i < spec.Duration; ++i) {
    BufferT buffer;
    FillBuffer(MakeFrame(kind, spec, i), buffer);
    if (spec.Key) buffer.PlaintextOffset(spec.Key->PlaintextOffset);
    const Result_t result = writer.WriteFrame(buffer, contexts.Encryption(), contexts.Integrity());
    if (result.Failure()) return result;
  }
  return writer.Finalize();
}

template <class WriterT, class BufferT, class DescriptorT>
Result_t MakeFramedFile(TrackKind kind, const std::string& filename, const TrackFileSpec& spec,
                        const DescriptorT& descriptor) {
  WriterT writer;
  const Result_t result = writer.OpenWrite(filename, MakeWriterInfo(spec), descriptor, MakeWriterOptions());
  return result.Success() ? WriteFrames<WriterT, BufferT>(writer, kind, spec) : result;
}

Result_t MakeStereoscopicFile(const std::string& filename, const TrackFileSpec& spec) {
  JP2K::MXFSWriter writer;
  WriteContexts contexts(spec);
  Result_t result =
      writer.OpenWrite(filename, MakeWriterInfo(spec), MakePictureDescriptor(spec, true), MakeWriterOptions());
  for (ui32_t i = 0; i < spec.Duration && result.Success(); ++i) {
    JP2K::SFrameBuffer buffer;
    FillBuffer(MakeFrame(TrackKind::StereoscopicPicture, spec, i), buffer.Left);
    FillBuffer(MakeFrame(TrackKind::StereoscopicPicture, spec, i, true), buffer.Right);
    if (spec.Key) {
      buffer.Left.PlaintextOffset(spec.Key->PlaintextOffset);
      buffer.Right.PlaintextOffset(spec.Key->PlaintextOffset);
    }
    result = writer.WriteFrame(buffer, contexts.Encryption(), contexts.Integrity());
  }
  return result.Success() ? writer.Finalize() : result;
}

Result_t MakeSoundFile(const std::string& filename, const TrackFileSpec& spec) {
  PCM::MXFWriter writer;
  const Result_t result = writer.OpenWrite(filename, MakeWriterInfo(spec), MakeAudioDescriptor(spec), MakeLabels(spec),
                                           MakeWriterOptions());
  return result.Success() ? WriteFrames<PCM::MXFWriter, PCM::FrameBuffer>(writer, TrackKind::Sound, spec) : result;
}

Result_t MakeTextFile(const std::string& filename, const TrackFileSpec& spec) {
  TimedText::MXFWriter writer;
  WriteContexts contexts(spec);
  const TimedText::TimedTextDescriptor descriptor = MakeTextDescriptor(spec);
  Result_t result = writer.OpenWrite(filename, MakeWriterInfo(spec), descriptor, MakeWriterOptions());
  if (result.Success()) {
    result = writer.WriteTimedTextResource(MakeText(spec), contexts.Encryption(), contexts.Integrity());
  }
  const std::vector<Bytes> resources = MakeResources(spec);
  for (size_t i = 0; i < resources.size() && result.Success(); ++i) {
    TimedText::FrameBuffer buffer;
    FillBuffer(resources[i], buffer);
    buffer.AssetID(descriptor.ResourceList[i].ResourceID);
    result = writer.WriteAncillaryResource(buffer, contexts.Encryption(), contexts.Integrity());
  }
  return result.Success() ? writer.Finalize() : result;
}

// Stored I P B B P P, displayed I B B P P P.
Bytes MakePictureOfGroup(const TrackFileSpec& spec, ui32_t number) {
  constexpr std::pair<MPEG2::PictureType_t, ui16_t> group[] = {{MPEG2::PT_I, 0}, {MPEG2::PT_P, 3}, {MPEG2::PT_B, 1},
                                                               {MPEG2::PT_B, 2}, {MPEG2::PT_P, 4}, {MPEG2::PT_P, 5}};
  const auto& [type, temporal_reference] = group[number % std::size(group)];
  return MakeAccessUnit(type, temporal_reference, spec.Width, spec.Height, spec.EditRate, number);
}

Bytes MakeSoundFrame(const TrackFileSpec& spec, ui32_t number) {
  const auto cadence = PCM::SampleCadence::Make(spec.SamplingRate, spec.EditRate);
  FERRO_ASSERT(cadence);
  return MakeSamples(MakeAudioDescriptor(spec), cadence->FirstSample(number), cadence->SampleCount(number));
}

}  // namespace

Result_t MakeTrackFile(TrackKind kind, const std::string& filename, const TrackFileSpec& spec) {
  switch (kind) {
    case TrackKind::Picture:
      return MakeFramedFile<JP2K::MXFWriter, JP2K::FrameBuffer>(kind, filename, spec, MakePictureDescriptor(spec));
    case TrackKind::StereoscopicPicture:
      return MakeStereoscopicFile(filename, spec);
    case TrackKind::MPEG2:
      return MakeFramedFile<MPEG2::MXFWriter, MPEG2::FrameBuffer>(kind, filename, spec, MakeVideoDescriptor(spec));
    case TrackKind::Sound:
      return MakeSoundFile(filename, spec);
    case TrackKind::Data:
      return MakeFramedFile<DCData::MXFWriter, DCData::FrameBuffer>(kind, filename, spec, MakeDataDescriptor(spec));
    case TrackKind::Atmos:
      return MakeFramedFile<ATMOS::MXFWriter, DCData::FrameBuffer>(kind, filename, spec, MakeAtmosDescriptor(spec));
    case TrackKind::Text:
      return MakeTextFile(filename, spec);
  }
  return Ferro::RESULT_PARAM;
}

Bytes MakeFrame(TrackKind kind, const TrackFileSpec& spec, ui32_t number, bool right_eye) {
  switch (kind) {
    case TrackKind::Picture:
      return MakeCodestream(spec.Width, spec.Height, number);
    case TrackKind::StereoscopicPicture:
      return MakeCodestream(spec.Width, spec.Height, 2 * number + (right_eye ? 1 : 0));
    case TrackKind::MPEG2:
      return MakePictureOfGroup(spec, number);
    case TrackKind::Sound:
      return MakeSoundFrame(spec, number);
    case TrackKind::Data:
      return MakeNoise(100 + number * 37 % 200, number);
    case TrackKind::Atmos:
      return MakeImmersiveFrame(number);
    case TrackKind::Text:
      break;
  }
  FERRO_ASSERT_TEXT(false, "a kind with frames");
  return {};
}

std::string MakeText(const TrackFileSpec& spec) {
  if (!spec.Document.empty()) return spec.Document;
  std::vector<std::string> fonts;
  std::vector<std::string> images;
  for (size_t i = 0; i < spec.FontSizes.size(); ++i) fonts.push_back(FontID(i).EncodeString());
  for (size_t i = 0; i < spec.ImageSizes.size(); ++i) images.push_back(ImageID(i).EncodeString());
  return MakeTextDocument(MakeTextDescriptor(spec).AssetID.EncodeString(), fonts, images, spec.EditRate);
}

std::vector<Bytes> MakeResources(const TrackFileSpec& spec) {
  std::vector<Bytes> resources;
  for (const size_t size : spec.FontSizes) resources.push_back(MakeFont(size));
  for (const size_t size : spec.ImageSizes) resources.push_back(MakePNG(size));
  return resources;
}

WriterInfo MakeWriterInfo(const TrackFileSpec& spec) {
  WriterInfo info;
  info.ProductUUID = *UUID::FromHex("b0b0b0b0-0000-4000-8000-000000000001");
  info.AssetUUID = spec.AssetID;
  info.ProductVersion = "1.2.3";
  info.CompanyName = "Test Company";
  info.ProductName = "Test Product";
  info.LabelSetType = spec.LabelSet;
  if (spec.Key) {
    info.EncryptedEssence = true;
    info.UsesHMAC = spec.Key->UsesHMAC;
    info.ContextID = spec.Key->ContextID;
    info.CryptographicKeyID = spec.Key->KeyID;
  }
  return info;
}

WriterOptions MakeWriterOptions() {
  WriterOptions options;
  options.Seed = *UUID::FromHex("5eed5eed-0000-4000-8000-000000000001");
  options.Date = Ferro::Timestamp(1767323045000);
  return options;
}

JP2K::PictureDescriptor MakePictureDescriptor(const TrackFileSpec& spec, bool stereoscopic) {
  JP2K::PictureDescriptor descriptor;
  const bool parsed = JP2K::ParseCodestream(MakeCodestream(spec.Width, spec.Height, 0), descriptor).Success();
  FERRO_ASSERT(parsed);
  descriptor.EditRate = spec.EditRate;
  descriptor.SampleRate = Rational((stereoscopic ? 2 : 1) * spec.EditRate.Numerator, spec.EditRate.Denominator);
  descriptor.ContainerDuration = spec.Duration;
  descriptor.Stereoscopic = stereoscopic;
  return descriptor;
}

MPEG2::VideoDescriptor MakeVideoDescriptor(const TrackFileSpec& spec) {
  MPEG2::VideoDescriptor descriptor;
  const bool parsed = MPEG2::ParseSequence(MakePictureOfGroup(spec, 0), descriptor).Success();
  FERRO_ASSERT(parsed);
  descriptor.ContainerDuration = spec.Duration;
  return descriptor;
}

PCM::AudioDescriptor MakeAudioDescriptor(const TrackFileSpec& spec) {
  PCM::AudioDescriptor descriptor;
  descriptor.EditRate = spec.EditRate;
  descriptor.AudioSamplingRate = spec.SamplingRate;
  descriptor.ChannelCount = spec.ChannelCount;
  descriptor.QuantizationBits = spec.QuantizationBits;
  descriptor.BlockAlign = spec.ChannelCount * ((spec.QuantizationBits + 7) / 8);
  descriptor.AvgBps =
      descriptor.BlockAlign * static_cast<ui32_t>(spec.SamplingRate.Numerator / spec.SamplingRate.Denominator);
  descriptor.LinkedTrackID = 2;
  descriptor.ContainerDuration = spec.Duration;
  descriptor.ChannelFormat =
      spec.ChannelFormat.value_or(spec.LabelSet == LS_MXF_INTEROP ? PCM::CF_NONE : PCM::CF_CFG_1);
  if (!spec.MCAConfiguration.empty()) descriptor.ChannelFormat = PCM::CF_CFG_6;
  return descriptor;
}

PCM::MCALabelList MakeLabels(const TrackFileSpec& spec) {
  PCM::MCALabelList labels;
  if (!spec.MCAConfiguration.empty()) {
    const bool made = PCM::MakeMCALabels(spec.MCAConfiguration, "en", labels).Success();
    FERRO_ASSERT(made);
  }
  return labels;
}

DCData::DCDataDescriptor MakeDataDescriptor(const TrackFileSpec& spec) {
  constexpr std::array<ui8_t, UL::Size> coding = {0x06, 0x0e, 0x2b, 0x34, 0x04, 0x01, 0x01, 0x0d,
                                                  0x0e, 0x16, 0x01, 0x01, 0x01, 0x02, 0x03, 0x04};
  DCData::DCDataDescriptor descriptor;
  descriptor.EditRate = spec.EditRate;
  descriptor.ContainerDuration = spec.Duration;
  descriptor.AssetID = spec.AssetID;
  descriptor.DataEssenceCoding = UL(coding);
  return descriptor;
}

ATMOS::AtmosDescriptor MakeAtmosDescriptor(const TrackFileSpec& spec) {
  constexpr std::array<ui8_t, UL::Size> coding = {0x06, 0x0e, 0x2b, 0x34, 0x04, 0x01, 0x01, 0x05,
                                                  0x0e, 0x09, 0x06, 0x04, 0x00, 0x00, 0x00, 0x00};
  ATMOS::AtmosDescriptor descriptor;
  descriptor.EditRate = spec.EditRate;
  descriptor.ContainerDuration = spec.Duration;
  descriptor.AssetID = spec.AssetID;
  descriptor.DataEssenceCoding = UL(coding);
  descriptor.FirstFrame = spec.FirstFrame;
  descriptor.MaxChannelCount = 10;
  descriptor.MaxObjectCount = 118;
  descriptor.AtmosID = *UUID::FromHex("abababab-0000-4000-8000-000000000001");
  descriptor.AtmosVersion = 1;
  return descriptor;
}

TimedText::TimedTextDescriptor MakeTextDescriptor(const TrackFileSpec& spec) {
  TimedText::TimedTextDescriptor descriptor;
  descriptor.EditRate = spec.EditRate;
  descriptor.ContainerDuration = spec.Duration;
  descriptor.AssetID = spec.DocumentID.HasValue() ? spec.DocumentID : spec.AssetID;
  descriptor.NamespaceName = "http://www.smpte-ra.org/schemas/428-7/2010/DCST";
  descriptor.EncodingName = "UTF-8";
  for (size_t i = 0; i < spec.FontSizes.size(); ++i) {
    descriptor.ResourceList.push_back({FontID(i), TimedText::MT_OPENTYPE});
  }
  for (size_t i = 0; i < spec.ImageSizes.size(); ++i) {
    descriptor.ResourceList.push_back({ImageID(i), TimedText::MT_PNG});
  }
  return descriptor;
}

void FillBuffer(const Bytes& bytes, FrameBuffer& buffer) {
  const bool allocated = buffer.Capacity(static_cast<ui32_t>(bytes.size())).Success();
  FERRO_ASSERT(allocated);
  if (!bytes.empty()) std::memcpy(buffer.Data(), bytes.data(), bytes.size());
  buffer.Size(static_cast<ui32_t>(bytes.size()));
}

void CutIndexPack(const std::string& filename, size_t count) {
  Ferro::FileReader file;
  MXF::RIP index;
  const bool read = file.OpenRead(filename).Success() && index.ReadFromFile(file).Success();
  FERRO_ASSERT(read);
  std::filesystem::resize_file(filename, file.Size() - index.ArchiveLength());
  index.PairArray.resize(count);
  Bytes bytes;
  index.Write(bytes);
  std::ofstream(filename, std::ios::binary | std::ios::app)
      .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

WriteContexts::WriteContexts(const TrackFileSpec& spec) : m_HasKey(spec.Key.has_value()) {
  if (!m_HasKey) return;
  m_UsesHMAC = spec.Key->UsesHMAC;
  const bool ready = m_Encryption.InitKey(spec.Key->Key).Success() &&
                     (!m_UsesHMAC || m_Integrity.InitKey(spec.Key->Key, spec.LabelSet).Success());
  FERRO_ASSERT(ready);
}

}  // namespace testsupport
