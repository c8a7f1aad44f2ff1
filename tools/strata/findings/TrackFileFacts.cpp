// SPDX-License-Identifier: BSD-3-Clause
#include "TrackFileFacts.h"

#include "show/TextReferences.h"
#include "terminal/LogView.h"

#include <Cairn/DCSubtitle.h>
#include <Cairn/InitObjectWithFile.h>
#include <Ferro/FileReader.h>
#include <Ferro/Path.h>
#include <QUIRE/AtmosReader.h>
#include <QUIRE/DCDataReader.h>
#include <QUIRE/JP2KReader.h>
#include <QUIRE/MPEG2Reader.h>
#include <QUIRE/PCMReader.h>
#include <QUIRE/TimedTextReader.h>

#include <algorithm>

namespace Tool {

namespace {

using QUIRE::Result_t;

constexpr Ferro::ui32_t Capacity = 16 * 1024 * 1024;  // bytes; more than any frame of D-Cinema

/// What is common to the readers of all kinds: false, with the problem told, when the file cannot be opened.
template <class ReaderT>
bool Open(ReaderT& reader, const std::string& filename, TrackFileFacts& facts) {
  if (const Result_t result = reader.OpenRead(filename); result.Failure()) {
    facts.Problem = std::string("The track file is damaged and cannot be opened: ") + result.Label();
    return false;
  }
  QUIRE::WriterInfo info;
  static_cast<void>(reader.FillWriterInfo(info));
  facts.Encrypted = info.EncryptedEssence;
  if (info.EncryptedEssence) facts.KeyID = info.CryptographicKeyID;
  return true;
}

template <class DescriptorT>
void TakeLength(const DescriptorT& descriptor, TrackFileFacts& facts) {
  facts.HasLength = true;
  facts.EditRate = descriptor.EditRate;
  facts.Duration = descriptor.ContainerDuration;
}

/// Tries the first edit unit and the last one that is played.
template <class BufferT, class ReaderT>
void TryFrames(ReaderT& reader, Ferro::ui32_t last, TrackFileFacts& facts) {
  BufferT buffer;
  if (facts.Duration == 0 || buffer.Capacity(Capacity).Failure()) return;
  for (const Ferro::ui32_t number : {Ferro::ui32_t{0}, std::min(last, facts.Duration - 1)})
    if (const Result_t result = reader.ReadFrame(number, buffer); result.Failure()) {
      facts.Problem = "The track file is damaged or was cut short: edit unit " + std::to_string(number) +
                      " cannot be read. " + result.Label();
      return;
    }
}

template <class DescriptorT>
void TakePicture(const DescriptorT& descriptor, TrackFileFacts& facts) {
  TakeLength(descriptor, facts);
  facts.Width = descriptor.StoredWidth;
  facts.Height = descriptor.StoredHeight;
}

void ReadJPEG2000(const std::string& filename, Ferro::ui32_t last, TrackFileFacts& facts) {
  QUIRE::JP2K::MXFReader reader;
  QUIRE::JP2K::PictureDescriptor descriptor;
  if (!Open(reader, filename, facts) || reader.FillPictureDescriptor(descriptor).Failure()) return;
  TakePicture(descriptor, facts);
  TryFrames<QUIRE::JP2K::FrameBuffer>(reader, last, facts);
}

void ReadMPEG2(const std::string& filename, Ferro::ui32_t last, TrackFileFacts& facts) {
  QUIRE::MPEG2::MXFReader reader;
  QUIRE::MPEG2::VideoDescriptor descriptor;
  if (!Open(reader, filename, facts) || reader.FillVideoDescriptor(descriptor).Failure()) return;
  TakePicture(descriptor, facts);
  TryFrames<QUIRE::MPEG2::FrameBuffer>(reader, last, facts);
}

void ReadSound(const std::string& filename, Ferro::ui32_t last, TrackFileFacts& facts) {
  QUIRE::PCM::MXFReader reader;
  QUIRE::PCM::AudioDescriptor descriptor;
  if (!Open(reader, filename, facts) || reader.FillAudioDescriptor(descriptor).Failure()) return;
  TakeLength(descriptor, facts);
  facts.Channels = descriptor.ChannelCount;
  facts.SamplingRate = descriptor.AudioSamplingRate;
  facts.SampleBits = descriptor.QuantizationBits;
  TryFrames<QUIRE::PCM::FrameBuffer>(reader, last, facts);
}

void ReadData(const std::string& filename, Ferro::ui32_t last, TrackFileFacts& facts) {
  QUIRE::DCData::MXFReader reader;
  QUIRE::DCData::DCDataDescriptor descriptor;
  if (!Open(reader, filename, facts) || reader.FillDCDataDescriptor(descriptor).Failure()) return;
  TakeLength(descriptor, facts);
  TryFrames<QUIRE::DCData::FrameBuffer>(reader, last, facts);
}

void ReadImmersive(const std::string& filename, Ferro::ui32_t last, TrackFileFacts& facts) {
  QUIRE::ATMOS::MXFReader reader;
  QUIRE::ATMOS::AtmosDescriptor descriptor;
  if (!Open(reader, filename, facts) || reader.FillAtmosDescriptor(descriptor).Failure()) return;
  TakeLength(descriptor, facts);
  TryFrames<QUIRE::DCData::FrameBuffer>(reader, last, facts);
}

void ReadTimedText(const std::string& filename, TrackFileFacts& facts) {
  QUIRE::TimedText::MXFReader reader;
  QUIRE::TimedText::TimedTextDescriptor descriptor;
  if (!Open(reader, filename, facts) || reader.FillTimedTextDescriptor(descriptor).Failure()) return;
  TakeLength(descriptor, facts);
  std::vector<Ferro::UUID> resources;
  for (const auto& resource : descriptor.ResourceList) {
    QUIRE::TimedText::FrameBuffer buffer;
    if (const Result_t result = reader.ReadAncillaryResource(resource.ResourceID, buffer); result.Failure()) {
      facts.Problem =
          "A font or image of the text cannot be read: " + resource.ResourceID.EncodeString() + ". " + result.Label();
      return;
    }
    resources.push_back(resource.ResourceID);
  }
  if (facts.Encrypted) return;
  std::string text;
  if (const Result_t result = reader.ReadTimedTextResource(text); result.Failure()) {
    facts.Problem = std::string("The text in the track file cannot be read: ") + result.Label();
    return;
  }
  std::vector<Ferro::UUID> references;
  if (ReadTextReferences(text, references).Failure()) {
    facts.Problem = "The text in the track file is no well-formed XML document.";
    return;
  }
  for (const Ferro::UUID& id : references)
    if (std::find(resources.begin(), resources.end(), id) == resources.end()) facts.MissingResource = id.EncodeString();
}

void ReadSubtitle(const std::string& filename, TrackFileFacts& facts) {
  Cairn::DCSubtitle subtitle;
  if (const Result_t result = Cairn::InitObjectWithFile(subtitle, filename); result.Failure()) {
    facts.Problem = std::string("The subtitle document cannot be read: ") + result.Label();
    return;
  }
  for (const std::string& name : subtitle.AncillaryNames()) {
    Ferro::FileReader file;
    const std::string path = Ferro::PathJoin(Ferro::PathDirname(filename), name);
    if (!Ferro::PathStaysInside(name) || file.OpenRead(path).Failure()) facts.MissingResource = name;
  }
}

}  // namespace

TrackFileFacts ReadTrackFileFacts(const std::string& filename, Cairn::FileType_t type, Ferro::ui32_t last) {
  TrackFileFacts facts;
  QuietLog log;
  switch (type) {
    case Cairn::FT_QUIRE_JP2K_J2C:
    case Cairn::FT_QUIRE_JP2K_J2C_S:
      ReadJPEG2000(filename, last, facts);
      break;
    case Cairn::FT_QUIRE_MPEG2_VES:
      ReadMPEG2(filename, last, facts);
      break;
    case Cairn::FT_QUIRE_PCM:
      ReadSound(filename, last, facts);
      break;
    case Cairn::FT_QUIRE_DCDATA:
      ReadData(filename, last, facts);
      break;
    case Cairn::FT_QUIRE_ATMOS:
      ReadImmersive(filename, last, facts);
      break;
    case Cairn::FT_QUIRE_TIMED_TEXT:
      ReadTimedText(filename, facts);
      break;
    case Cairn::FT_TI_SUBTITLE:
      ReadSubtitle(filename, facts);
      break;
    default:
      facts.Problem = "The file is no track file: it is damaged, or something else has its name.";
  }
  const std::vector<Ferro::LogEntry> remarks = log.Take();
  if (!remarks.empty()) facts.Remark = remarks.front().Message;
  return facts;
}

}  // namespace Tool
