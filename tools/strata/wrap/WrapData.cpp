// SPDX-License-Identifier: BSD-3-Clause
#include "WrapEssence.h"
#include "terminal/CommandError.h"

#include <QUIRE/AtmosWriter.h>
#include <QUIRE/DCDataWriter.h>

namespace Tool {

namespace {

// What is in a frame is not read: the descriptor tells the most that such a frame usually holds.
constexpr Ferro::ui16_t MostBedChannels = 10;
constexpr Ferro::ui16_t MostObjects = 118;

/// A preamble and a frame, each with its tag and length before it (ST 2098-2, 8.2).
bool IsImmersive(const QUIRE::FrameBuffer& data) {
  constexpr Ferro::ui64_t Header = 5;
  Ferro::ui64_t at = 0;
  for (const Ferro::ui8_t tag : {Ferro::ui8_t{1}, Ferro::ui8_t{2}}) {
    if (at + Header > data.Size() || data.RoData()[at] != tag) return false;
    Ferro::ui64_t length = 0;
    for (size_t i = 1; i < Header; ++i) length = length << 8 | data.RoData()[at + i];
    at += Header + length;
  }
  return at <= data.Size();
}

template <class Writer, class Descriptor>
Wrapped Write(WrapJob& job, const WrapSources& sources, Descriptor descriptor) {
  descriptor.EditRate = job.EditRate();
  descriptor.AssetID = job.Info().AssetUUID;
  Writer writer;
  job.Check(writer, writer.OpenWrite(job.Options().Out, job.Info(), descriptor));
  QUIRE::DCData::FrameBuffer frame;
  Ferro::ui64_t done = 0;
  for (const std::string& file : sources.Files) {
    ReadIntoFrame(file, frame);
    if (sources.Kind == EssenceKind::Immersive && !job.Options().Force && !IsImmersive(frame))
      throw CommandError(ExitCode::NotPlayable,
                         file + ": this is no edit unit of immersive audio; --force wraps it all the same");
    job.Check(writer, writer.WriteFrame(frame, job.Cipher(), job.Integrity()));
    done += frame.Size();
    job.Progress(done, sources.TotalSize);
  }
  job.Check(writer, writer.Finalize());
  return {descriptor.EditRate, static_cast<Ferro::ui32_t>(sources.Files.size())};
}

}  // namespace

Wrapped WrapData(WrapJob& job, const WrapSources& sources) {
  if (sources.Kind == EssenceKind::Immersive) {
    QUIRE::ATMOS::AtmosDescriptor descriptor;
    descriptor.AtmosID = Ferro::UUID::Random();
    descriptor.AtmosVersion = 1;
    descriptor.MaxChannelCount = MostBedChannels;
    descriptor.MaxObjectCount = MostObjects;
    return Write<QUIRE::ATMOS::MXFWriter>(job, sources, descriptor);
  }
  QUIRE::DCData::DCDataDescriptor descriptor;
  if (!descriptor.DataEssenceCoding.DecodeHex(job.Options().Coding))
    throw CommandError(ExitCode::Usage, "data need --coding, the label of what they are: 32 hexadecimal digits");
  return Write<QUIRE::DCData::MXFWriter>(job, sources, descriptor);
}

}  // namespace Tool
