// SPDX-License-Identifier: BSD-3-Clause
#include "SampleTrackFiles.h"

#include "SampleFontFile.h"
#include "SampleImmersive.h"
#include "SampleRequire.h"
#include "SampleSound.h"
#include "terminal/Interrupt.h"

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

namespace Tool {

namespace {

using Ferro::ui32_t;
using Ferro::ui8_t;

void Fill(QUIRE::FrameBuffer& buffer, const std::vector<ui8_t>& bytes) {
  const auto size = static_cast<ui32_t>(bytes.size());
  if (buffer.Capacity() < size) SampleRequire(buffer.Capacity(size), "memory for a frame");
  std::copy(bytes.begin(), bytes.end(), buffer.Data());
  buffer.Size(size);
}

std::string TextOf(const char* format, ui32_t a, ui32_t b, ui32_t c, ui32_t d) {
  char text[64];
  std::snprintf(text, sizeof text, format, a, b, c, d);
  return text;
}

std::string TimeOf(ui32_t number, ui32_t rate) {
  const ui32_t seconds = number / rate;
  return TextOf("%02u:%02u:%02u:%02u", seconds / 3600, seconds / 60 % 60, seconds % 60, number % rate);
}

/// The use of the channels in a cinema, as MakeMCALabels takes it.
std::string UseOf(ui32_t channels) {
  std::string text = channels < 6 ? "M(C)" : channels < 8 ? "51(L,R,C,LFE,Ls,Rs)" : "51(L,R,C,LFE,Ls,Rs),HI,VIN";
  for (ui32_t channel = channels < 6 ? 1 : channels < 8 ? 6 : 8; channel < channels; ++channel) text += ",-";
  return text;
}

/// The contexts that an encrypted file is written with, and none for others.
class Encryption {
 public:
  Encryption(const SampleSeed& seed, const SampleTrackFiles::Reel& reel, const std::string& kind,
             QUIRE::LabelSet_t labels) {
    if (!reel.Encrypted) return;
    const QUIRE::CipherBlock key = seed.Key(reel.NameOf(kind));
    SampleRequire(m_Cipher.emplace().InitKey(key), "a key");
    SampleRequire(m_Integrity.emplace().InitKey(key, labels), "a key");
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
  picture.Write(TextOf("REEL %u", reel.Number, 0, 0, 0), height * 4 / 16, height / 8, white);
  picture.Write(TextOf("%05u", number, 0, 0, 0), height * 7 / 16, height / 4, white);
  picture.Write(TimeOf(number, m_Options.Rate), height * 12 / 16, height / 8, white);
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
  const ui32_t images_per_second = m_Options.Rate * static_cast<ui32_t>(eyes.size());
  const ui32_t held = m_Options.Still ? m_Options.Rate : 1;  // edit units that one picture stands for
  const ui32_t at_once = std::max(1U, std::thread::hardware_concurrency()) * held;
  for (ui32_t first = 0; first < Duration(); first += at_once) {
    if (Interrupt::Requested()) throw SampleStopped();
    std::vector<std::future<Bytes>> batch;
    for (ui32_t number = first; number < std::min(Duration(), first + at_once); number += held)
      for (const char eye : eyes)
        batch.push_back(std::async(std::launch::async,
                                   [&, number, eye] { return Draw(reel, number, eye).Encode(images_per_second); }));
    for (size_t i = 0; i < batch.size(); i += eyes.size()) {
      std::vector<Bytes> pictures;
      for (size_t k = 0; k < eyes.size(); ++k) pictures.push_back(batch[i + k].get());
      for (ui32_t number = 0; number < held; ++number)
        for (size_t k = 0; k < eyes.size(); ++k) take(pictures[k], eyes[k]);
    }
  }
}

void SampleTrackFiles::WritePicture(const std::string& filename, const Reel& reel) const {
  QUIRE::JP2K::MXFWriter mono;
  QUIRE::JP2K::MXFSWriter stereo;
  QUIRE::JP2K::FrameBuffer buffer;
  Encryption encryption(m_Seed, reel, "picture", Labels());
  const auto require = [&](const QUIRE::Result_t& result) {
    reel.Stereoscopic ? SampleRequire(result, stereo, filename) : SampleRequire(result, mono, filename);
  };
  const auto open = [&](const Bytes& codestream) {
    QUIRE::JP2K::PictureDescriptor descriptor;
    SampleRequire(QUIRE::JP2K::ParseCodestream(codestream, descriptor), filename);
    descriptor.EditRate = EditRate();
    descriptor.SampleRate = {EditRate().Numerator * (reel.Stereoscopic ? 2 : 1), 1};
    descriptor.Stereoscopic = reel.Stereoscopic;
    const QUIRE::WriterInfo info = Info(reel, "picture");
    const QUIRE::WriterOptions options = Options(reel, "picture");
    require(reel.Stereoscopic ? stereo.OpenWrite(filename, info, descriptor, options)
                              : mono.OpenWrite(filename, info, descriptor, options));
  };
  ForEachCodestream(reel, [&](const Bytes& codestream, char eye) {
    if (!mono.IsOpen() && !stereo.IsOpen()) open(codestream);
    Fill(buffer, codestream);
    const auto phase = eye == 'R' ? QUIRE::JP2K::SP_RIGHT : QUIRE::JP2K::SP_LEFT;
    require(reel.Stereoscopic ? stereo.WriteFrame(buffer, phase, encryption.Cipher(), encryption.Integrity())
                              : mono.WriteFrame(buffer, encryption.Cipher(), encryption.Integrity()));
    m_OnPicture();
  });
  require(reel.Stereoscopic ? stereo.Finalize() : mono.Finalize());
}

void SampleTrackFiles::WriteSound(const std::string& filename, const Reel& reel) const {
  QUIRE::PCM::AudioDescriptor descriptor;
  descriptor.EditRate = EditRate();
  descriptor.AudioSamplingRate = QUIRE::SampleRate_48k;
  descriptor.ChannelCount = m_Options.Channels;
  descriptor.QuantizationBits = SampleSound::BytesPerSample * 8;
  descriptor.BlockAlign = m_Options.Channels * SampleSound::BytesPerSample;
  QUIRE::PCM::MCALabelList labels;
  if (m_Options.Flavour == Cairn::DFT_DCI_SMPTE) {
    descriptor.ChannelFormat = QUIRE::PCM::CF_CFG_6;
    SampleRequire(QUIRE::PCM::MakeMCALabels(UseOf(m_Options.Channels), "en", labels), filename);
  }
  QUIRE::PCM::MXFWriter writer;
  SampleRequire(writer.OpenWrite(filename, Info(reel, "sound"), descriptor, labels, Options(reel, "sound")), writer,
                filename);
  const SampleSound sound(m_Options.Channels);
  const ui32_t samples = SampleSound::Rate / m_Options.Rate;
  QUIRE::PCM::FrameBuffer buffer;
  Encryption encryption(m_Seed, reel, "sound", Labels());
  for (ui32_t i = 0; i < Duration(); ++i) {
    Fill(buffer, sound.Samples(Ferro::ui64_t{i} * samples, samples));
    SampleRequire(writer.WriteFrame(buffer, encryption.Cipher(), encryption.Integrity()), writer, filename);
  }
  SampleRequire(writer.Finalize(), writer, filename);
}

std::string SampleTrackFiles::SoundConfiguration() const {
  std::string text = UseOf(m_Options.Channels);
  std::ranges::replace(text, '(', '/');
  std::erase(text, ')');
  return text;
}

void SampleTrackFiles::WriteText(const std::string& filename, const Reel& reel, const std::string& kind) const {
  const SampleText text = Text(reel, kind);
  QUIRE::TimedText::TimedTextDescriptor descriptor;
  descriptor.EditRate = EditRate();
  descriptor.ContainerDuration = Duration();
  descriptor.AssetID = text.About().DocumentID;
  descriptor.NamespaceName = SampleText::Namespace;
  descriptor.RFC5646LanguageTagList = "en";
  descriptor.ResourceList.push_back({text.About().FontID, QUIRE::TimedText::MT_OPENTYPE});
  if (text.About().ImageID.HasValue())
    descriptor.ResourceList.push_back({text.About().ImageID, QUIRE::TimedText::MT_PNG});
  QUIRE::TimedText::MXFWriter writer;
  Encryption encryption(m_Seed, reel, kind, Labels());
  SampleRequire(writer.OpenWrite(filename, Info(reel, kind), descriptor, Options(reel, kind)), writer, filename);
  SampleRequire(writer.WriteTimedTextResource(text.SMPTEDocument(), encryption.Cipher(), encryption.Integrity()),
                writer, filename);
  for (const auto& resource : descriptor.ResourceList) {
    QUIRE::TimedText::FrameBuffer buffer;
    buffer.AssetID(resource.ResourceID);
    Fill(buffer, resource.Type == QUIRE::TimedText::MT_PNG ? text.Image() : MakeSampleFontFile());
    SampleRequire(writer.WriteAncillaryResource(buffer, encryption.Cipher(), encryption.Integrity()), writer, filename);
  }
  SampleRequire(writer.Finalize(), writer, filename);
}

SampleText SampleTrackFiles::Text(const Reel& reel, const std::string& kind) const {
  SampleText::Facts facts;
  // An Interop document is itself the asset, while a track file has an identifier of its own.
  facts.DocumentID = m_Seed.ID(reel.NameOf(m_Options.Flavour == Cairn::DFT_Interop ? kind : kind + "-document"));
  facts.FontID = m_Seed.ID("font");
  if (kind == "subtitle") facts.ImageID = m_Seed.ID(reel.NameOf(kind + "-image"));
  facts.Title = reel.Title;
  facts.Kind = kind;
  facts.ReelNumber = reel.Number;
  facts.Seconds = m_Options.Seconds;
  facts.Rate = m_Options.Rate;
  facts.PictureHeight = m_Options.Height;
  facts.Date = m_Seed.Date();
  return SampleText(std::move(facts));
}

void SampleTrackFiles::WriteImmersive(const std::string& filename, const Reel& reel) const {
  QUIRE::ATMOS::AtmosDescriptor descriptor;
  descriptor.EditRate = EditRate();
  descriptor.AtmosID = m_Seed.ID(reel.NameOf("immersive-essence"));
  descriptor.MaxChannelCount = 10;
  descriptor.MaxObjectCount = 118;
  descriptor.AtmosVersion = 1;
  QUIRE::ATMOS::MXFWriter writer;
  SampleRequire(writer.OpenWrite(filename, Info(reel, "immersive"), descriptor, Options(reel, "immersive")), writer,
                filename);
  Encryption encryption(m_Seed, reel, "immersive", Labels());
  QUIRE::DCData::FrameBuffer buffer;
  for (ui32_t i = 0; i < Duration(); ++i) {
    Fill(buffer, SampleImmersiveFrame(i, m_Options.Rate));
    SampleRequire(writer.WriteFrame(buffer, encryption.Cipher(), encryption.Integrity()), writer, filename);
  }
  SampleRequire(writer.Finalize(), writer, filename);
}

QUIRE::WriterInfo SampleTrackFiles::Info(const Reel& reel, const std::string& kind) const {
  QUIRE::WriterInfo info;
  info.ProductUUID = SampleSeed(0).ID("product");
  info.AssetUUID = m_Seed.ID(reel.NameOf(kind));
  info.ProductVersion = Strata::Version();
  info.CompanyName = "Strata";
  info.ProductName = "strata make-sample";
  info.LabelSetType = Labels();
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

}  // namespace Tool
