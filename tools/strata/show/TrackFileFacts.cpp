// SPDX-License-Identifier: BSD-3-Clause
#include "TrackFileFacts.h"

#include "terminal/LogView.h"
#include "terminal/ReasonText.h"

#include <Cairn/DCSubtitle.h>
#include <Cairn/InitObjectWithFile.h>
#include <Cairn/TimedText.h>
#include <Ferro/FileReader.h>
#include <Ferro/Path.h>
#include <QUIRE/AtmosReader.h>
#include <QUIRE/DCDataReader.h>
#include <QUIRE/Dictionary.h>
#include <QUIRE/JP2KReader.h>
#include <QUIRE/MPEG2Reader.h>
#include <QUIRE/PCMReader.h>
#include <QUIRE/TimedTextReader.h>
#include <Strata/SoundConfiguration.h>

#include <algorithm>
#include <set>
#include <stdexcept>
#include <vector>

namespace Tool {

namespace {

using QUIRE::Result_t;

constexpr Ferro::ui32_t Capacity = 16 * 1024 * 1024;  // bytes; more than any frame of D-Cinema

void Fail(TrackFileFacts& facts, TrackFileProblem problem, const Result_t& result) {
  facts.Problem = problem;
  facts.Reason = ReasonText(result);
}

/// What is common to the readers of all kinds: false, with the problem told, when the file cannot be opened.
template <class ReaderT>
bool Open(ReaderT& reader, const std::string& filename, TrackFileFacts& facts) {
  if (const Result_t result = reader.OpenRead(filename); result.Failure()) {
    Fail(facts, TrackFileProblem::CannotBeOpened, result);
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

/// Tries the first edit unit and the last one that is played, then the file's last.
template <class BufferT, class ReaderT>
void TryFrames(ReaderT& reader, std::optional<Ferro::ui32_t> last, TrackFileFacts& facts) {
  BufferT buffer;
  if (!last || facts.Duration == 0 || buffer.Capacity(Capacity).Failure()) return;
  for (const Ferro::ui32_t number : {Ferro::ui32_t{0}, std::min(*last, facts.Duration - 1)})
    if (const Result_t result = reader.ReadFrame(number, buffer); result.Failure()) {
      Fail(facts, TrackFileProblem::FrameUnreadable, result);
      facts.EditUnit = number;
      return;
    }
  facts.IsIncomplete = *last < facts.Duration - 1 && reader.ReadFrame(facts.Duration - 1, buffer).Failure();
}

template <class DescriptorT>
void TakePicture(const DescriptorT& descriptor, TrackFileFacts& facts) {
  TakeLength(descriptor, facts);
  facts.Width = descriptor.StoredWidth;
  facts.Height = descriptor.StoredHeight;
}

void ReadJPEG2000(const std::string& filename, std::optional<Ferro::ui32_t> last, TrackFileFacts& facts) {
  QUIRE::JP2K::MXFReader reader;
  QUIRE::JP2K::PictureDescriptor descriptor;
  if (!Open(reader, filename, facts) || reader.FillPictureDescriptor(descriptor).Failure()) return;
  TakePicture(descriptor, facts);
  TryFrames<QUIRE::JP2K::FrameBuffer>(reader, last, facts);
}

void ReadMPEG2(const std::string& filename, std::optional<Ferro::ui32_t> last, TrackFileFacts& facts) {
  QUIRE::MPEG2::MXFReader reader;
  QUIRE::MPEG2::VideoDescriptor descriptor;
  if (!Open(reader, filename, facts) || reader.FillVideoDescriptor(descriptor).Failure()) return;
  TakePicture(descriptor, facts);
  TryFrames<QUIRE::MPEG2::FrameBuffer>(reader, last, facts);
}

std::string ConfigurationOf(QUIRE::PCM::MXFReader& reader) {
  try {
    return Strata::sound_config_from_mxf(reader.OP1aHeader(), QUIRE::DefaultSMPTEDict(), false);
  } catch (const std::out_of_range&) {  // a label too short to be one
    return "";
  }
}

void ReadSound(const std::string& filename, std::optional<Ferro::ui32_t> last, TrackFileFacts& facts) {
  QUIRE::PCM::MXFReader reader;
  QUIRE::PCM::AudioDescriptor descriptor;
  if (!Open(reader, filename, facts) || reader.FillAudioDescriptor(descriptor).Failure()) return;
  TakeLength(descriptor, facts);
  facts.Channels = descriptor.ChannelCount;
  facts.SamplingRate = descriptor.AudioSamplingRate;
  facts.SampleBits = descriptor.QuantizationBits;
  facts.Configuration = ConfigurationOf(reader);
  TryFrames<QUIRE::PCM::FrameBuffer>(reader, last, facts);
}

void ReadData(const std::string& filename, std::optional<Ferro::ui32_t> last, TrackFileFacts& facts) {
  QUIRE::DCData::MXFReader reader;
  QUIRE::DCData::DCDataDescriptor descriptor;
  if (!Open(reader, filename, facts) || reader.FillDCDataDescriptor(descriptor).Failure()) return;
  TakeLength(descriptor, facts);
  TryFrames<QUIRE::DCData::FrameBuffer>(reader, last, facts);
}

void ReadImmersive(const std::string& filename, std::optional<Ferro::ui32_t> last, TrackFileFacts& facts) {
  QUIRE::ATMOS::MXFReader reader;
  QUIRE::ATMOS::AtmosDescriptor descriptor;
  if (!Open(reader, filename, facts) || reader.FillAtmosDescriptor(descriptor).Failure()) return;
  TakeLength(descriptor, facts);
  TryFrames<QUIRE::DCData::FrameBuffer>(reader, last, facts);
}

void ReadTimedText(const std::string& filename, bool header_only, TrackFileFacts& facts) {
  QUIRE::TimedText::MXFReader reader;
  QUIRE::TimedText::TimedTextDescriptor descriptor;
  if (!Open(reader, filename, facts) || reader.FillTimedTextDescriptor(descriptor).Failure()) return;
  TakeLength(descriptor, facts);
  if (header_only) return;
  std::vector<Ferro::UUID> resources;
  for (const auto& resource : descriptor.ResourceList) {
    QUIRE::TimedText::FrameBuffer buffer;
    if (const Result_t result = reader.ReadAncillaryResource(resource.ResourceID, buffer); result.Failure()) {
      Fail(facts, TrackFileProblem::ResourceUnreadable, result);
      facts.Resource = resource.ResourceID.EncodeString();
      return;
    }
    resources.push_back(resource.ResourceID);
  }
  if (facts.Encrypted) return;
  std::string text;
  if (const Result_t result = reader.ReadTimedTextResource(text); result.Failure())
    return Fail(facts, TrackFileProblem::TextUnreadable, result);
  Cairn::TimedText document;
  if (const Result_t result = document.DecodeXML(text); result.Failure())
    return Fail(facts,
                result == Cairn::RESULT_XML_PARSE ? TrackFileProblem::TextIsNotXML : TrackFileProblem::TextUnreadable,
                result);
  const auto note_missing = [&](const Ferro::UUID& id, std::string& missing) {
    const bool is_there = !id.HasValue() || std::find(resources.begin(), resources.end(), id) != resources.end();
    if (!is_there && missing.empty()) missing = id.EncodeString();
  };
  for (const Cairn::LoadedFont& font : document.LoadFontList) note_missing(font.Resource.ID, facts.MissingFont);
  for (const Cairn::TextInstance& instance : document.InstanceList)
    for (const Cairn::TextImage& image : instance.ImageList) note_missing(image.Resource.ID, facts.MissingImage);
}

void ReadSubtitle(const std::string& filename, TrackFileFacts& facts) {
  Cairn::DCSubtitle subtitle;
  if (const Result_t result = Cairn::InitObjectWithFile(subtitle, filename); result.Failure())
    return Fail(facts, TrackFileProblem::SubtitleUnreadable, result);
  std::set<std::string> fonts;
  for (const Cairn::DCSubtitle::Font& font : subtitle.FontList) fonts.insert(font.URI);
  for (const std::string& name : subtitle.AncillaryNames()) {
    Ferro::FileReader file;
    const std::string path = Ferro::PathJoin(Ferro::PathDirname(filename), name);
    if (Ferro::PathStaysInside(name) && file.OpenRead(path).Success()) continue;
    (fonts.contains(name) ? facts.MissingFont : facts.MissingImage) = name;
  }
}

}  // namespace

TrackFileFacts ReadTrackFileFacts(const std::string& filename, Cairn::FileType_t type,
                                  std::optional<Ferro::ui32_t> last) {
  TrackFileFacts facts;
  facts.Type = type;
  const QuietLog log;  // what cannot be read is told in the facts
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
      ReadTimedText(filename, !last, facts);
      break;
    case Cairn::FT_TI_SUBTITLE:
      ReadSubtitle(filename, facts);
      break;
    default:
      facts.Problem = TrackFileProblem::NotATrackFile;
  }
  return facts;
}

}  // namespace Tool
