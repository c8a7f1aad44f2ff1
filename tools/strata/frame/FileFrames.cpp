// SPDX-License-Identifier: BSD-3-Clause
#include "FileFrames.h"

#include "terminal/CommandError.h"
#include "terminal/ReasonText.h"

#include <Ferro/FileReader.h>
#include <QUIRE/AtmosReader.h>
#include <QUIRE/DCDataReader.h>
#include <QUIRE/Dictionary.h>
#include <QUIRE/JP2KReader.h>
#include <QUIRE/MPEG2Reader.h>
#include <QUIRE/PCMReader.h>
#include <QUIRE/TimedTextReader.h>
#include <QUIRE/WriterInfo.h>
#include <Strata/SoundConfiguration.h>

#include <algorithm>

namespace Tool {

namespace {

using Ferro::ui32_t;
using Ferro::ui8_t;

constexpr Ferro::fsize_t LargestFrame = 64 * 1024 * 1024;  // bytes; the largest profile allows 1.3 MB per eye

std::vector<ui8_t> BytesOf(const QUIRE::FrameBuffer& frame) {
  return {frame.RoData(), frame.RoData() + frame.Size()};
}

/// What the track files of all kinds have in common.
template <class Reader>
class FileFrames : public FrameSource {
 public:
  FileFrames(std::string filename, Strata::TrackType_t type, TrackKey* key)
      : m_Filename(std::move(filename)), m_Type(type), m_Key(key) {
    Check(m_Reader.OpenRead(m_Filename));
    Check(m_Reader.FillWriterInfo(m_Info));
  }

  [[nodiscard]] QUIRE::Rational EditRate() const override { return m_EditRate; }
  [[nodiscard]] ui32_t Duration() const override { return m_Duration; }
  [[nodiscard]] std::optional<FrameChannel> OnlyChannel() const override { return FrameChannel{m_Type}; }

  [[nodiscard]] EditUnit Read(const FrameChannel& channel, ui32_t position) override {
    const bool fits = channel.Type == m_Type || (IsText() && channel.Type == Strata::TRKT_OFF_SCREEN_TEXT);
    if (!fits || channel.Number > 0)
      throw CommandError(ExitCode::Usage, m_Filename + ": there is no " + channel.Name() + " in this file; it holds " +
                                              (IsText() ? std::string("text") : FrameChannel{m_Type}.Name()) + ".");
    EditUnit unit;
    unit.Encrypted = m_Info.EncryptedEssence && m_Key == nullptr;
    unit.AssetID = m_Info.AssetUUID.EncodeString();
    unit.File = m_Filename;
    unit.FilePosition = position;
    m_Position = position;
    Fill(unit, position);
    return unit;
  }

 protected:
  virtual void Fill(EditUnit& unit, ui32_t position) = 0;

  /// Throws CommandError where the edit unit that is asked for cannot be read.
  void CheckRead(Ferro::Result_t result) const {
    if (result.Failure())
      throw CommandError(ExitCode::NotPlayable, m_Filename + ": edit unit " + std::to_string(m_Position) +
                                                    " cannot be read: " + ReasonText(result));
  }
  /// What decrypts the file; null where it is not encrypted, or there is no key.
  [[nodiscard]] QUIRE::AESDecContext* Decryption() const {
    return m_Key == nullptr ? nullptr : &m_Key->Contexts.Decryption;
  }
  /// What verifies its integrity codes; null where it has none, too.
  [[nodiscard]] QUIRE::HMACContext* Integrity() const {
    return m_Key == nullptr || !m_Key->Track.UsesHMAC ? nullptr : &m_Key->Contexts.Integrity;
  }
  /// A frame is never larger than its file.
  void MakeRoom(QUIRE::FrameBuffer& buffer) {
    Ferro::FileReader file;
    Check(file.OpenRead(m_Filename));
    Check(buffer.Capacity(static_cast<ui32_t>(std::min(file.Size(), LargestFrame))));
  }
  void Check(Ferro::Result_t result) const {
    if (result.Failure()) throw CommandError(ExitCode::NotPlayable, m_Filename + ": " + ReasonText(result));
  }
  template <class Descriptor>
  void Describe(const Descriptor& descriptor) {
    m_EditRate = descriptor.EditRate;
    m_Duration = descriptor.ContainerDuration;
  }

  Reader m_Reader;
  std::string m_Filename;

 private:
  [[nodiscard]] bool IsText() const { return m_Type == Strata::TRKT_ON_SCREEN_TEXT; }

  Strata::TrackType_t m_Type;
  TrackKey* m_Key;
  QUIRE::WriterInfo m_Info;
  QUIRE::Rational m_EditRate;
  ui32_t m_Duration = 0;
  ui32_t m_Position = 0;  // asked for last
};

class FlatPictures : public FileFrames<QUIRE::JP2K::MXFReader> {
 public:
  FlatPictures(const std::string& filename, TrackKey* key)
      : FileFrames(filename, Strata::TRKT_IMAGE, key), m_Colour(ColourOfTrackFile(filename)) {
    QUIRE::JP2K::PictureDescriptor descriptor;
    Check(m_Reader.FillPictureDescriptor(descriptor));
    Describe(descriptor);
    MakeRoom(m_Frame);
  }

 private:
  void Fill(EditUnit& unit, ui32_t position) override {
    CheckRead(m_Reader.ReadFrame(position, m_Frame, Decryption(), Integrity()));
    unit.Coding = FrameCoding::JPEG2000;
    unit.Colour = m_Colour;
    unit.Bytes = BytesOf(m_Frame);
  }

  PictureColour m_Colour;
  QUIRE::JP2K::FrameBuffer m_Frame;
};

class StereoscopicPictures : public FileFrames<QUIRE::JP2K::MXFSReader> {
 public:
  StereoscopicPictures(const std::string& filename, TrackKey* key)
      : FileFrames(filename, Strata::TRKT_IMAGE, key), m_Colour(ColourOfTrackFile(filename)) {
    QUIRE::JP2K::PictureDescriptor descriptor;
    Check(m_Reader.FillPictureDescriptor(descriptor));
    Describe(descriptor);
    MakeRoom(m_Frame.Left);
    MakeRoom(m_Frame.Right);
  }

 private:
  void Fill(EditUnit& unit, ui32_t position) override {
    CheckRead(m_Reader.ReadFrame(position, m_Frame, Decryption(), Integrity()));
    unit.Coding = FrameCoding::JPEG2000;
    unit.Colour = m_Colour;
    unit.Bytes = BytesOf(m_Frame.Left);
    unit.RightEye = BytesOf(m_Frame.Right);
  }

  PictureColour m_Colour;
  QUIRE::JP2K::SFrameBuffer m_Frame;
};

class Video : public FileFrames<QUIRE::MPEG2::MXFReader> {
 public:
  Video(const std::string& filename, TrackKey* key) : FileFrames(filename, Strata::TRKT_IMAGE, key) {
    QUIRE::MPEG2::VideoDescriptor descriptor;
    Check(m_Reader.FillVideoDescriptor(descriptor));
    Describe(descriptor);
    MakeRoom(m_Frame);
  }

 private:
  void Fill(EditUnit& unit, ui32_t position) override {
    CheckRead(m_Reader.ReadFrame(position, m_Frame, Decryption(), Integrity()));
    unit.Coding = FrameCoding::MPEG2;
    unit.Bytes = BytesOf(m_Frame);
  }

  QUIRE::MPEG2::FrameBuffer m_Frame;
};

class Sound : public FileFrames<QUIRE::PCM::MXFReader> {
 public:
  Sound(const std::string& filename, TrackKey* key) : FileFrames(filename, Strata::TRKT_SOUND, key) {
    QUIRE::PCM::AudioDescriptor descriptor;
    Check(m_Reader.FillAudioDescriptor(descriptor));
    Describe(descriptor);
    if (descriptor.AudioSamplingRate.Denominator > 0)
      m_Format.SampleRate = static_cast<ui32_t>(descriptor.AudioSamplingRate.Quotient() + 0.5);
    m_Format.Bits = descriptor.QuantizationBits;
    m_Format.Channels = descriptor.ChannelCount;
    m_Format.Configuration = Strata::sound_config_from_mxf(m_Reader.OP1aHeader(), QUIRE::DefaultSMPTEDict(), true);
    MakeRoom(m_Frame);
  }

 private:
  void Fill(EditUnit& unit, ui32_t position) override {
    CheckRead(m_Reader.ReadFrame(position, m_Frame, Decryption(), Integrity()));
    unit.Coding = FrameCoding::PCM;
    unit.Sound = m_Format;
    unit.Bytes = BytesOf(m_Frame);
  }

  SoundFormat m_Format;
  QUIRE::PCM::FrameBuffer m_Frame;
};

class Text : public FileFrames<QUIRE::TimedText::MXFReader> {
 public:
  Text(const std::string& filename, TrackKey* key) : FileFrames(filename, Strata::TRKT_ON_SCREEN_TEXT, key) {
    Check(m_Reader.FillTimedTextDescriptor(m_Descriptor));
    Describe(m_Descriptor);
  }

 private:
  void Fill(EditUnit& unit, ui32_t) override {
    QUIRE::TimedText::FrameBuffer buffer;
    Check(m_Reader.ReadTimedTextResource(buffer, Decryption(), Integrity()));
    unit.Coding = FrameCoding::TimedText;
    unit.Bytes = BytesOf(buffer);
    if (unit.Encrypted) return;
    for (const auto& resource : m_Descriptor.ResourceList) {
      Check(m_Reader.ReadAncillaryResource(resource.ResourceID, buffer, Decryption(), Integrity()));
      std::vector<ui8_t> bytes = BytesOf(buffer);
      unit.Resources.push_back({ResourceName(resource.ResourceID, bytes), std::move(bytes)});
    }
  }

  QUIRE::TimedText::TimedTextDescriptor m_Descriptor;
};

template <class Reader, class Descriptor>
class Data : public FileFrames<Reader> {
 public:
  using FillDescriptor = Ferro::Result_t (Reader::*)(Descriptor&) const;

  Data(const std::string& filename, FillDescriptor fill, TrackKey* key)
      : FileFrames<Reader>(filename, Strata::TRKT_AUX_DATA, key) {
    Descriptor descriptor;
    this->Check((this->m_Reader.*fill)(descriptor));
    this->Describe(descriptor);
    this->MakeRoom(m_Frame);
  }

 private:
  void Fill(EditUnit& unit, ui32_t position) override {
    this->CheckRead(this->m_Reader.ReadFrame(position, m_Frame, this->Decryption(), this->Integrity()));
    unit.Bytes = BytesOf(m_Frame);
  }

  QUIRE::DCData::FrameBuffer m_Frame;
};

}  // namespace

std::unique_ptr<FrameSource> OpenTrackFile(const std::string& filename, Cairn::FileType_t type, TrackKey* key) {
  switch (type) {
    case Cairn::FT_QUIRE_JP2K_J2C:
      return std::make_unique<FlatPictures>(filename, key);
    case Cairn::FT_QUIRE_JP2K_J2C_S:
      return std::make_unique<StereoscopicPictures>(filename, key);
    case Cairn::FT_QUIRE_MPEG2_VES:
      return std::make_unique<Video>(filename, key);
    case Cairn::FT_QUIRE_PCM:
      return std::make_unique<Sound>(filename, key);
    case Cairn::FT_QUIRE_TIMED_TEXT:
      return std::make_unique<Text>(filename, key);
    case Cairn::FT_QUIRE_DCDATA:
      return std::make_unique<Data<QUIRE::DCData::MXFReader, QUIRE::DCData::DCDataDescriptor>>(
          filename, &QUIRE::DCData::MXFReader::FillDCDataDescriptor, key);
    case Cairn::FT_QUIRE_ATMOS:
      return std::make_unique<Data<QUIRE::ATMOS::MXFReader, QUIRE::ATMOS::AtmosDescriptor>>(
          filename, &QUIRE::ATMOS::MXFReader::FillAtmosDescriptor, key);
    default:
      return nullptr;
  }
}

}  // namespace Tool
