// SPDX-License-Identifier: BSD-3-Clause
#include "WrapEssence.h"
#include "terminal/CommandError.h"

#include <QUIRE/Codestream.h>
#include <QUIRE/JP2KWriter.h>

namespace Tool {

namespace {

using QUIRE::JP2K::PictureDescriptor;

PictureDescriptor Describe(const std::string& filename, const QUIRE::FrameBuffer& codestream) {
  PictureDescriptor descriptor;
  if (QUIRE::JP2K::ParseCodestream({codestream.RoData(), codestream.Size()}, descriptor).Failure())
    throw CommandError(ExitCode::NotPlayable, filename + ": this is no JPEG 2000 codestream");
  return descriptor;
}

std::string SizeOf(const PictureDescriptor& picture) {
  return std::to_string(picture.StoredWidth) + " x " + std::to_string(picture.StoredHeight) + " pixels";
}

/// Reads codestreams, all of which are like the first.
class CodestreamReader {
 public:
  CodestreamReader(WrapJob& job, const WrapSources& sources) : m_Job(job), m_Total(sources.TotalSize) {}

  void Read(const std::string& filename, QUIRE::JP2K::FrameBuffer& frame) {
    ReadIntoFrame(filename, frame);
    const PictureDescriptor picture = Describe(filename, frame);
    if (m_First.StoredWidth == 0) m_First = picture;
    if (SizeOf(picture) != SizeOf(m_First))
      throw CommandError(ExitCode::NotPlayable,
                         filename + ": this picture has " + SizeOf(picture) + ", the first one has " + SizeOf(m_First));
    if (picture.Rsiz != m_First.Rsiz || !(picture.PictureComponentSizing == m_First.PictureComponentSizing))
      throw CommandError(ExitCode::NotPlayable,
                         filename + ": this picture has another profile or another depth than the first");
    m_Done += frame.Size();
    m_Job.Progress(m_Done, m_Total);
  }
  [[nodiscard]] const PictureDescriptor& First() const { return m_First; }

 private:
  WrapJob& m_Job;
  PictureDescriptor m_First;
  Ferro::ui64_t m_Total;
  Ferro::ui64_t m_Done = 0;
};

Wrapped WrapStereoscopic(WrapJob& job, const WrapSources& sources) {
  CodestreamReader reader(job, sources);
  QUIRE::JP2K::MXFSWriter writer;
  QUIRE::JP2K::SFrameBuffer frame;
  const QUIRE::Rational rate = job.EditRate();
  for (size_t i = 0; i < sources.Files.size(); ++i) {
    reader.Read(sources.Files[i], frame.Left);
    reader.Read(sources.Right[i], frame.Right);
    if (!writer.IsOpen()) {
      PictureDescriptor descriptor = reader.First();
      descriptor.EditRate = rate;
      descriptor.Stereoscopic = true;
      job.Check(writer.OpenWrite(job.Options().Out, job.Info(), descriptor));
    }
    job.Check(writer.WriteFrame(frame, job.Cipher(), job.Integrity()));
  }
  job.Check(writer.Finalize());
  return {rate, static_cast<Ferro::ui32_t>(sources.Files.size())};
}

}  // namespace

Wrapped WrapPicture(WrapJob& job, const WrapSources& sources) {
  if (!sources.Right.empty()) return WrapStereoscopic(job, sources);
  CodestreamReader reader(job, sources);
  QUIRE::JP2K::MXFWriter writer;
  QUIRE::JP2K::FrameBuffer frame;
  const QUIRE::Rational rate = job.EditRate();
  for (const std::string& file : sources.Files) {
    reader.Read(file, frame);
    if (!writer.IsOpen()) {
      PictureDescriptor descriptor = reader.First();
      descriptor.EditRate = descriptor.SampleRate = rate;
      job.Check(writer.OpenWrite(job.Options().Out, job.Info(), descriptor));
    }
    job.Check(writer.WriteFrame(frame, job.Cipher(), job.Integrity()));
  }
  job.Check(writer.Finalize());
  return {rate, static_cast<Ferro::ui32_t>(sources.Files.size())};
}

}  // namespace Tool
