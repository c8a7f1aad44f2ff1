// SPDX-License-Identifier: BSD-3-Clause
#include "WrapEssence.h"
#include "terminal/CommandError.h"

#include <QUIRE/AtmosWriter.h>
#include <QUIRE/DCDataWriter.h>

namespace Tool {

namespace {

// Nothing in the files is read: the descriptor tells the most that such a frame usually holds.
constexpr Ferro::ui16_t MostBedChannels = 10;
constexpr Ferro::ui16_t MostObjects = 118;

template <class Writer, class Descriptor>
Wrapped Write(WrapJob& job, const WrapSources& sources, Descriptor descriptor) {
  descriptor.EditRate = job.EditRate();
  descriptor.AssetID = job.Info().AssetUUID;
  Writer writer;
  job.Check(writer.OpenWrite(job.Options().Out, job.Info(), descriptor));
  QUIRE::DCData::FrameBuffer frame;
  Ferro::ui64_t done = 0;
  for (const std::string& file : sources.Files) {
    ReadIntoFrame(file, frame);
    job.Check(writer.WriteFrame(frame, job.Cipher(), job.Integrity()));
    done += frame.Size();
    job.Progress(done, sources.TotalSize);
  }
  job.Check(writer.Finalize());
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
