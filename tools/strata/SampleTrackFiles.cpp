// SPDX-License-Identifier: BSD-3-Clause
#include "SampleTrackFiles.h"

#include "Interrupt.h"
#include "SampleRequire.h"
#include "SampleSound.h"

#include <QUIRE/AtmosWriter.h>
#include <QUIRE/Codestream.h>
#include <QUIRE/JP2KWriter.h>
#include <QUIRE/PCMWriter.h>
#include <QUIRE/TimedTextWriter.h>
#include <Strata/Version.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <future>
#include <optional>
#include <thread>

namespace {

using Ferro::ui32_t;
using Ferro::ui8_t;

constexpr ui32_t ImmersiveFrameSize = 2000;  // bytes
constexpr char TextNamespace[] = "http://www.smpte-ra.org/schemas/428-7/2010/DCST";

void fill(QUIRE::FrameBuffer& buffer, const std::vector<ui8_t>& bytes) {
  const auto size = static_cast<ui32_t>(bytes.size());
  if (buffer.Capacity() < size) SampleRequire(buffer.Capacity(size), "memory for a frame");
  std::copy(bytes.begin(), bytes.end(), buffer.Data());
  buffer.Size(size);
}

std::string text_of(const char* format, ui32_t a, ui32_t b, ui32_t c, ui32_t d) {
  char text[64];
  std::snprintf(text, sizeof text, format, a, b, c, d);
  return text;
}

std::string time_of(ui32_t number, ui32_t rate) {
  const ui32_t seconds = number / rate;
  return text_of("%02u:%02u:%02u:%02u", seconds / 3600, seconds / 60 % 60, seconds % 60, number % rate);
}

/// The contexts that an encrypted file is written with, and none for others.
class Encryption {
 public:
  Encryption(const SampleSeed& seed, const SampleTrackFiles::Reel& reel, const std::string& kind) {
    if (!reel.Encrypted) return;
    const QUIRE::CipherBlock key = seed.Key(reel.NameOf(kind));
    SampleRequire(m_Cipher.emplace().InitKey(key), "a key");
    SampleRequire(m_Integrity.emplace().InitKey(key, QUIRE::LS_MXF_SMPTE), "a key");
  }
  QUIRE::AESEncContext* Cipher() { return m_Cipher ? &*m_Cipher : nullptr; }
  QUIRE::HMACContext* Integrity() { return m_Integrity ? &*m_Integrity : nullptr; }

 private:
  std::optional<QUIRE::AESEncContext> m_Cipher;
  std::optional<QUIRE::HMACContext> m_Integrity;
};

}  // namespace

std::string SampleTrackFiles::Reel::NameOf(const std::string& kind) const {
  return Title + '/' + std::to_string(Number) + '/' + kind;
}

SamplePicture SampleTrackFiles::Draw(const Reel& reel, ui32_t number, char eye) const {
  const ui32_t width = m_Options.Width;
  const ui32_t height = m_Options.Height;
  const SamplePicture::Colour& white = SamplePicture::White;
  SamplePicture picture(width, height, reel.Background);
  picture.Write(reel.Title, height / 16, height / 10, white);
  picture.Write(text_of("REEL %u", reel.Number, 0, 0, 0), height * 4 / 16, height / 8, white);
  picture.Write(text_of("%05u", number, 0, 0, 0), height * 7 / 16, height / 4, white);
  picture.Write(time_of(number, m_Options.Rate), height * 12 / 16, height / 8, white);
  if (eye != ' ') {
    const ui32_t side = eye == 'L' ? 0 : width - width / 16;
    picture.Fill(side, 0, width / 16, height, white);
  }
  // How much of the reel has played.
  picture.Fill(0, height * 15 / 16, width * (number + 1) / Duration(), height - height * 15 / 16, white);
  return picture;
}

void SampleTrackFiles::ForEachCodestream(const Reel& reel, const std::function<void(const Bytes&, char)>& take) const {
  const std::string eyes = reel.Stereoscopic ? "LR" : " ";
  const ui32_t total = Duration() * static_cast<ui32_t>(eyes.size());
  const ui32_t at_once = std::max(1U, std::thread::hardware_concurrency());
  const auto eye_of = [&](ui32_t i) { return eyes[i % eyes.size()]; };
  for (ui32_t first = 0; first < total; first += at_once) {
    if (Interrupt::Requested()) throw SampleStopped();
    std::vector<std::future<Bytes>> batch;
    for (ui32_t i = first; i < std::min(total, first + at_once); ++i)
      batch.push_back(std::async(
          std::launch::async, [&, i] { return Draw(reel, i / static_cast<ui32_t>(eyes.size()), eye_of(i)).Encode(); }));
    for (size_t i = 0; i < batch.size(); ++i) take(batch[i].get(), eye_of(first + static_cast<ui32_t>(i)));
  }
}

void SampleTrackFiles::WritePicture(const std::string& filename, const Reel& reel) const {
  QUIRE::JP2K::MXFWriter mono;
  QUIRE::JP2K::MXFSWriter stereo;
  QUIRE::JP2K::FrameBuffer buffer;
  Encryption encryption(m_Seed, reel, "picture");
  const auto open = [&](const Bytes& codestream) {
    QUIRE::JP2K::PictureDescriptor descriptor;
    SampleRequire(QUIRE::JP2K::ParseCodestream(codestream, descriptor), filename);
    descriptor.EditRate = EditRate();
    descriptor.SampleRate = {EditRate().Numerator * (reel.Stereoscopic ? 2 : 1), 1};
    descriptor.Stereoscopic = reel.Stereoscopic;
    const QUIRE::WriterInfo info = Info(reel, "picture");
    const QUIRE::WriterOptions options = Options(reel, "picture");
    SampleRequire(reel.Stereoscopic ? stereo.OpenWrite(filename, info, descriptor, options)
                                    : mono.OpenWrite(filename, info, descriptor, options),
                  filename);
  };
  ForEachCodestream(reel, [&](const Bytes& codestream, char eye) {
    if (!mono.IsOpen() && !stereo.IsOpen()) open(codestream);
    fill(buffer, codestream);
    const auto phase = eye == 'R' ? QUIRE::JP2K::SP_RIGHT : QUIRE::JP2K::SP_LEFT;
    SampleRequire(reel.Stereoscopic ? stereo.WriteFrame(buffer, phase, encryption.Cipher(), encryption.Integrity())
                                    : mono.WriteFrame(buffer, encryption.Cipher(), encryption.Integrity()),
                  filename);
  });
  SampleRequire(reel.Stereoscopic ? stereo.Finalize() : mono.Finalize(), filename);
}

void SampleTrackFiles::WriteSound(const std::string& filename, const Reel& reel) const {
  QUIRE::PCM::AudioDescriptor descriptor;
  descriptor.EditRate = EditRate();
  descriptor.AudioSamplingRate = QUIRE::SampleRate_48k;
  descriptor.ChannelCount = m_Options.Channels;
  descriptor.QuantizationBits = SampleSound::BytesPerSample * 8;
  descriptor.BlockAlign = m_Options.Channels * SampleSound::BytesPerSample;
  descriptor.ChannelFormat = m_Options.Channels == 6 ? QUIRE::PCM::CF_CFG_1 : QUIRE::PCM::CF_CFG_4;
  QUIRE::PCM::MXFWriter writer;
  SampleRequire(writer.OpenWrite(filename, Info(reel, "sound"), descriptor, {}, Options(reel, "sound")), filename);
  const SampleSound sound(m_Options.Channels);
  const ui32_t samples = SampleSound::Rate / m_Options.Rate;
  QUIRE::PCM::FrameBuffer buffer;
  Encryption encryption(m_Seed, reel, "sound");
  for (ui32_t i = 0; i < Duration(); ++i) {
    fill(buffer, sound.Samples(Ferro::ui64_t{i} * samples, samples));
    SampleRequire(writer.WriteFrame(buffer, encryption.Cipher(), encryption.Integrity()), filename);
  }
  SampleRequire(writer.Finalize(), filename);
}

void SampleTrackFiles::WriteText(const std::string& filename, const Reel& reel, const std::string& kind) const {
  QUIRE::TimedText::TimedTextDescriptor descriptor;
  descriptor.EditRate = EditRate();
  descriptor.ContainerDuration = Duration();
  descriptor.AssetID = m_Seed.ID(reel.NameOf(kind + "-document"));
  descriptor.NamespaceName = TextNamespace;
  descriptor.RFC5646LanguageTagList = "en";
  QUIRE::TimedText::MXFWriter writer;
  Encryption encryption(m_Seed, reel, kind);
  SampleRequire(writer.OpenWrite(filename, Info(reel, kind), descriptor, Options(reel, kind)), filename);
  SampleRequire(writer.WriteTimedTextResource(TextDocument(reel, kind), encryption.Cipher(), encryption.Integrity()),
                filename);
  SampleRequire(writer.Finalize(), filename);
}

std::string SampleTrackFiles::TextDocument(const Reel& reel, const std::string& kind) const {
  const std::string rate = std::to_string(m_Options.Rate);
  std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<SubtitleReel xmlns=\"";
  text += std::string(TextNamespace) + "\">\n  <Id>" + m_Seed.ID(reel.NameOf(kind + "-document")).EncodeURN() +
          "</Id>\n  <ContentTitleText>" + reel.Title + "</ContentTitleText>\n  <IssueDate>" +
          m_Seed.Date().EncodeString() + "</IssueDate>\n  <ReelNumber>" + std::to_string(reel.Number) +
          "</ReelNumber>\n  <Language>en</Language>\n  <EditRate>" + rate + " 1</EditRate>\n  <TimeCodeRate>" + rate +
          "</TimeCodeRate>\n  <StartTime>00:00:00:00</StartTime>\n  <SubtitleList>\n";
  for (ui32_t second = 0; second < m_Options.Seconds; ++second) {
    const ui32_t start = second * m_Options.Rate;
    text += "    <Subtitle SpotNumber=\"" + std::to_string(second + 1) + "\" TimeIn=\"" +
            time_of(start, m_Options.Rate) + "\" TimeOut=\"" + time_of(start + m_Options.Rate, m_Options.Rate) +
            "\">\n      <Text Valign=\"bottom\" Vposition=\"8\">Reel " + std::to_string(reel.Number) + ", " + kind +
            " of second " + std::to_string(second) + "</Text>\n    </Subtitle>\n";
  }
  return text + "  </SubtitleList>\n</SubtitleReel>\n";
}

void SampleTrackFiles::WriteImmersive(const std::string& filename, const Reel& reel) const {
  QUIRE::ATMOS::AtmosDescriptor descriptor;
  descriptor.EditRate = EditRate();
  descriptor.AtmosID = m_Seed.ID(reel.NameOf("immersive-essence"));
  descriptor.MaxChannelCount = 10;
  descriptor.MaxObjectCount = 118;
  descriptor.AtmosVersion = 1;
  QUIRE::ATMOS::MXFWriter writer;
  SampleRequire(writer.OpenWrite(filename, Info(reel, "immersive"), descriptor, Options(reel, "immersive")), filename);
  Encryption encryption(m_Seed, reel, "immersive");
  QUIRE::DCData::FrameBuffer buffer;
  for (ui32_t i = 0; i < Duration(); ++i) {
    Bytes bytes(ImmersiveFrameSize);
    for (size_t k = 0; k < bytes.size(); ++k) bytes[k] = static_cast<ui8_t>(i + k);
    fill(buffer, bytes);
    SampleRequire(writer.WriteFrame(buffer, encryption.Cipher(), encryption.Integrity()), filename);
  }
  SampleRequire(writer.Finalize(), filename);
}

QUIRE::WriterInfo SampleTrackFiles::Info(const Reel& reel, const std::string& kind) const {
  QUIRE::WriterInfo info;
  info.ProductUUID = SampleSeed(0).ID("product");
  info.AssetUUID = m_Seed.ID(reel.NameOf(kind));
  info.ProductVersion = Strata::Version();
  info.CompanyName = "Strata";
  info.ProductName = "strata make-sample";
  info.LabelSetType = QUIRE::LS_MXF_SMPTE;
  if (reel.Encrypted) {
    info.EncryptedEssence = info.UsesHMAC = true;
    info.ContextID = m_Seed.ID(reel.NameOf(kind + "-context"));
    info.CryptographicKeyID = m_Seed.ID(reel.NameOf(kind + "-key"));
  }
  return info;
}

QUIRE::WriterOptions SampleTrackFiles::Options(const Reel& reel, const std::string& kind) const {
  QUIRE::WriterOptions options;
  options.Seed = m_Seed.ID(reel.NameOf(kind + "-file"));
  options.Date = m_Seed.Date();
  return options;
}
