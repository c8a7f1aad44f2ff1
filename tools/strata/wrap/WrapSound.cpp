// SPDX-License-Identifier: BSD-3-Clause
#include "WrapEssence.h"
#include "terminal/CommandError.h"
#include "terminal/ReasonText.h"

#include <QUIRE/PCMWriter.h>
#include <QUIRE/SampleCadence.h>
#include <QUIRE/WAVReader.h>

#include <algorithm>
#include <memory>

namespace Tool {

namespace {

using Ferro::ui32_t;
using QUIRE::PCM::AudioDescriptor;

constexpr ui32_t BytesPerSample = 3;

std::string Kilohertz(const AudioDescriptor& sound) {
  return std::to_string(sound.AudioSamplingRate.Numerator) + " samples per second";
}

/// One WAVE file, which has been found fit.
class Source {
 public:
  Source(const std::string& filename, const QUIRE::Rational& rate) : m_Filename(filename) {
    const Ferro::Result_t result = m_Reader.OpenRead(filename, rate);
    if (result.Failure() || m_Reader.FillAudioDescriptor(m_Descriptor).Failure())
      throw CommandError(ExitCode::NotPlayable,
                         filename + ": this is no WAVE file that can be wrapped: " + ReasonText(result));
    if (m_Descriptor.QuantizationBits != 24)
      throw CommandError(ExitCode::NotPlayable, filename + ": its samples have " +
                                                    std::to_string(m_Descriptor.QuantizationBits) +
                                                    " bits; sound of digital cinema has 24");
    if (!(m_Descriptor.AudioSamplingRate == QUIRE::SampleRate_48k) &&
        !(m_Descriptor.AudioSamplingRate == QUIRE::SampleRate_96k))
      throw CommandError(ExitCode::NotPlayable, filename + ": it has " + Kilohertz(m_Descriptor) +
                                                    "; sound of digital cinema has 48000 or 96000");
  }

  [[nodiscard]] const AudioDescriptor& Descriptor() const { return m_Descriptor; }
  /// Samples of silence that fill up the last edit unit.
  [[nodiscard]] ui32_t Padding() const {
    const auto cadence = QUIRE::PCM::SampleCadence::Make(m_Descriptor.AudioSamplingRate, m_Descriptor.EditRate);
    return static_cast<ui32_t>(cadence->FirstSample(m_Descriptor.ContainerDuration) - m_Reader.SampleCount());
  }

  void RefuseUnlike(const AudioDescriptor& first) const {
    if (m_Descriptor.ChannelCount != 1 || first.ChannelCount != 1)
      throw CommandError(ExitCode::Usage, m_Filename + ": of several files each has one channel");
    if (!(m_Descriptor.AudioSamplingRate == first.AudioSamplingRate))
      throw CommandError(ExitCode::NotPlayable, m_Filename + ": it has " + Kilohertz(m_Descriptor) +
                                                    ", the first file has " + Kilohertz(first));
    if (m_Descriptor.ContainerDuration != first.ContainerDuration)
      throw CommandError(ExitCode::NotPlayable,
                         m_Filename + ": it lasts " + std::to_string(m_Descriptor.ContainerDuration) +
                             " edit units, the first file " + std::to_string(first.ContainerDuration));
  }

  void Read(ui32_t number, QUIRE::PCM::FrameBuffer& frame) const {
    if (const Ferro::Result_t result = m_Reader.ReadFrame(number, frame); result.Failure())
      throw CommandError(ExitCode::NotPlayable, m_Filename + ": " + ReasonText(result));
  }

 private:
  std::string m_Filename;
  QUIRE::PCM::WAVReader m_Reader;
  AudioDescriptor m_Descriptor;
};

using SourceList = std::vector<std::unique_ptr<Source>>;

SourceList OpenAll(const WrapSources& sources, const QUIRE::Rational& rate) {
  SourceList list;
  for (const std::string& file : sources.Files) {
    list.push_back(std::make_unique<Source>(file, rate));
    if (list.size() > 1) list.back()->RefuseUnlike(list.front()->Descriptor());
  }
  if (list.front()->Descriptor().ContainerDuration == 0)
    throw CommandError(ExitCode::NotPlayable, sources.Files.front() + ": there is no sound in this file");
  return list;
}

QUIRE::PCM::MCALabelList LabelsOf(const WrapOptions& options, ui32_t channels) {
  QUIRE::PCM::MCALabelList labels;
  if (options.Channels.empty()) return labels;
  if (options.Interop)
    throw CommandError(ExitCode::Usage, "--channels: Interop track files do not say which channel is which");
  if (QUIRE::PCM::MakeMCALabels(options.Channels, options.Language, labels).Failure())
    throw CommandError(ExitCode::Usage,
                       "--channels " + options.Channels + ": this names no channels, as 51(L,R,C,LFE,Ls,Rs) does");
  const bool fits = std::all_of(labels.begin(), labels.end(),
                                [&](const QUIRE::PCM::MCALabel& label) { return label.ChannelID <= channels; });
  if (!fits)
    throw CommandError(ExitCode::Usage,
                       "--channels " + options.Channels + ": the sound has only " + std::to_string(channels));
  return labels;
}

/// Puts one channel of an edit unit between the others.
void Interleave(const QUIRE::FrameBuffer& mono, size_t channel, size_t channels, QUIRE::FrameBuffer& all) {
  for (size_t sample = 0; sample < mono.Size() / BytesPerSample; ++sample)
    std::copy_n(mono.RoData() + sample * BytesPerSample, BytesPerSample,
                all.Data() + (sample * channels + channel) * BytesPerSample);
}

}  // namespace

Wrapped WrapSound(WrapJob& job, const WrapSources& sources) {
  const QUIRE::Rational rate = job.EditRate();
  const SourceList list = OpenAll(sources, rate);
  AudioDescriptor descriptor = list.front()->Descriptor();
  if (list.size() > 1) descriptor.ChannelCount = static_cast<ui32_t>(list.size());
  descriptor.BlockAlign = descriptor.ChannelCount * BytesPerSample;
  descriptor.AvgBps = 0;
  const QUIRE::PCM::MCALabelList labels = LabelsOf(job.Options(), descriptor.ChannelCount);
  descriptor.ChannelFormat = job.Options().Interop          ? QUIRE::PCM::CF_NONE
                             : !labels.empty()              ? QUIRE::PCM::CF_CFG_6
                             : descriptor.ChannelCount == 6 ? QUIRE::PCM::CF_CFG_1
                                                            : QUIRE::PCM::CF_CFG_4;
  QUIRE::PCM::MXFWriter writer;
  job.Check(writer, writer.OpenWrite(job.Options().Out, job.Info(), descriptor, labels));

  // An edit unit is at most a second long.
  QUIRE::PCM::FrameBuffer mono;
  QUIRE::PCM::FrameBuffer all;
  const auto second = static_cast<ui32_t>(descriptor.AudioSamplingRate.Numerator);
  if (mono.Capacity(second * BytesPerSample).Failure() || all.Capacity(second * descriptor.BlockAlign).Failure())
    throw CommandError(ExitCode::NotPlayable, "there is no memory for the sound");
  const ui32_t duration = descriptor.ContainerDuration;
  for (ui32_t number = 0; number < duration; ++number) {
    for (size_t i = 0; i < list.size() && list.size() > 1; ++i) {
      list[i]->Read(number, mono);
      Interleave(mono, i, list.size(), all);
    }
    if (list.size() > 1)
      all.Size(mono.Size() * static_cast<ui32_t>(list.size()));
    else
      list.front()->Read(number, all);
    job.Check(writer, writer.WriteFrame(all, job.Cipher(), job.Integrity()));
    job.Progress(sources.TotalSize * (number + 1) / duration, sources.TotalSize);
  }
  job.Check(writer, writer.Finalize());
  ui32_t padding = 0;
  for (const auto& source : list) padding = std::max(padding, source->Padding());
  return {rate, duration, padding};
}

}  // namespace Tool
