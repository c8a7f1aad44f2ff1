// SPDX-License-Identifier: BSD-3-Clause
#include "WrapEssence.h"
#include "terminal/CommandError.h"

#include <QUIRE/CinemaProfile.h>
#include <QUIRE/Codestream.h>
#include <QUIRE/JP2KWriter.h>

#include <map>
#include <utility>

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

/// Compares pictures with the D-Cinema profiles. Of each rule it keeps the first picture that breaks it, and counts them.
class ProfileCheck {
 public:
  explicit ProfileCheck(const QUIRE::Rational& pictures_per_second) : m_Rate(pictures_per_second) {}

  void Look(const std::string& filename, const QUIRE::FrameBuffer& codestream) {
    QUIRE::JP2K::CodestreamHeaders headers;
    const auto result = QUIRE::JP2K::ParseHeaders({codestream.RoData(), codestream.Size()}, headers);
    if (result.Failure()) return Count(Unreadable, filename + ": the headers of this codestream are damaged");
    for (const QUIRE::JP2K::ProfileFinding& finding : CheckCinemaProfile(headers, m_Rate))
      Count(static_cast<int>(finding.Rule), filename + ": not as D-Cinema has it: " + finding.EncodeString());
  }

  void TellIn(WrapJob& job) const {
    for (const auto& [rule, told] : m_Told) {
      const auto& [sentence, count] = told;
      job.Warn(sentence + (count == 1 ? "" : " (so it is in " + std::to_string(count) + " pictures)"));
    }
  }

 private:
  static constexpr int Unreadable = -1;  // before all rules

  void Count(int rule, const std::string& sentence) { ++m_Told.try_emplace(rule, sentence, 0).first->second.second; }

  QUIRE::Rational m_Rate;
  std::map<int, std::pair<std::string, size_t>> m_Told;  // by rule
};

/// Reads codestreams, all of which are like the first.
class CodestreamReader {
 public:
  CodestreamReader(WrapJob& job, const WrapSources& sources, const QUIRE::Rational& pictures_per_second)
      : m_Job(job), m_Check(pictures_per_second), m_Total(sources.TotalSize) {}

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
    m_Check.Look(filename, frame);
    m_Done += frame.Size();
    m_Job.Progress(m_Done, m_Total);
  }
  [[nodiscard]] const PictureDescriptor& First() const { return m_First; }
  void TellWhatIsUnusual() const { m_Check.TellIn(m_Job); }

 private:
  WrapJob& m_Job;
  ProfileCheck m_Check;
  PictureDescriptor m_First;
  Ferro::ui64_t m_Total;
  Ferro::ui64_t m_Done = 0;
};

Wrapped WrapStereoscopic(WrapJob& job, const WrapSources& sources) {
  const QUIRE::Rational rate = job.EditRate();
  CodestreamReader reader(job, sources, {rate.Numerator * 2, rate.Denominator});
  QUIRE::JP2K::MXFSWriter writer;
  QUIRE::JP2K::SFrameBuffer frame;
  for (size_t i = 0; i < sources.Files.size(); ++i) {
    reader.Read(sources.Files[i], frame.Left);
    reader.Read(sources.Right[i], frame.Right);
    if (!writer.IsOpen()) {
      PictureDescriptor descriptor = reader.First();
      descriptor.EditRate = rate;
      descriptor.Stereoscopic = true;
      job.Check(writer, writer.OpenWrite(job.Options().Out, job.Info(), descriptor));
    }
    job.Check(writer, writer.WriteFrame(frame, job.Cipher(), job.Integrity()));
  }
  job.Check(writer, writer.Finalize());
  reader.TellWhatIsUnusual();
  return {rate, static_cast<Ferro::ui32_t>(sources.Files.size())};
}

}  // namespace

Wrapped WrapPicture(WrapJob& job, const WrapSources& sources) {
  if (!sources.Right.empty()) return WrapStereoscopic(job, sources);
  const QUIRE::Rational rate = job.EditRate();
  CodestreamReader reader(job, sources, rate);
  QUIRE::JP2K::MXFWriter writer;
  QUIRE::JP2K::FrameBuffer frame;
  for (const std::string& file : sources.Files) {
    reader.Read(file, frame);
    if (!writer.IsOpen()) {
      PictureDescriptor descriptor = reader.First();
      descriptor.EditRate = descriptor.SampleRate = rate;
      job.Check(writer, writer.OpenWrite(job.Options().Out, job.Info(), descriptor));
    }
    job.Check(writer, writer.WriteFrame(frame, job.Cipher(), job.Integrity()));
  }
  job.Check(writer, writer.Finalize());
  reader.TellWhatIsUnusual();
  return {rate, static_cast<Ferro::ui32_t>(sources.Files.size())};
}

}  // namespace Tool
