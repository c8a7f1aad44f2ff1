// SPDX-License-Identifier: BSD-3-Clause
#include "WrapEssence.h"
#include "terminal/CommandError.h"
#include "terminal/ReasonText.h"

#include <Ferro/FileReader.h>
#include <QUIRE/Codestream.h>
#include <QUIRE/MPEG2Writer.h>

#include <vector>

namespace Tool {

namespace {

constexpr size_t Piece = 1024 * 1024;  // bytes read at once
constexpr size_t LargestAccessUnit = 16 * 1024 * 1024;

/// Takes access units out of a stream that is larger than memory.
class StreamReader {
 public:
  explicit StreamReader(const std::string& filename) : m_Filename(filename) { Check(m_File.OpenRead(filename)); }

  /// The next access unit, valid until the next call; empty at the end.
  std::span<const Ferro::ui8_t> Next() {
    m_Bytes.erase(m_Bytes.begin(), m_Bytes.begin() + static_cast<std::ptrdiff_t>(m_Taken));
    m_Taken = 0;
    // One that reaches to the end of what was read may go on.
    while (!m_AtEnd && (m_Bytes.empty() || !Find() || m_Taken == m_Bytes.size())) ReadMore();
    if (m_Bytes.empty()) return {};
    if (!Find()) throw CommandError(ExitCode::NotPlayable, m_Filename + ": this is no MPEG-2 video elementary stream");
    return {m_Bytes.data(), m_Taken};
  }

 private:
  bool Find() { return QUIRE::MPEG2::FindAccessUnit(m_Bytes, m_Taken).Success(); }

  void ReadMore() {
    const size_t before = m_Bytes.size();
    if (before > LargestAccessUnit)
      throw CommandError(ExitCode::NotPlayable, m_Filename + ": this is no MPEG-2 video elementary stream");
    m_Bytes.resize(before + Piece);
    size_t count = 0;
    Check(m_File.ReadUpTo(m_Position, std::span(m_Bytes).subspan(before), count));
    m_Bytes.resize(before + count);
    m_Position += count;
    m_AtEnd = count < Piece;
  }
  void Check(const Ferro::Result_t& result) const {
    if (result.Failure()) throw CommandError(ExitCode::NotPlayable, m_Filename + ": " + ReasonText(result));
  }

  std::string m_Filename;
  Ferro::FileReader m_File;
  std::vector<Ferro::ui8_t> m_Bytes;  // read and not yet given up
  size_t m_Taken = 0;                 // bytes of the present access unit
  Ferro::fsize_t m_Position = 0;
  bool m_AtEnd = false;
};

}  // namespace

Wrapped WrapVideo(WrapJob& job, const WrapSources& sources) {
  if (sources.Files.size() != 1)
    throw CommandError(ExitCode::Usage, "a track file of MPEG-2 is made of one elementary stream; there are " +
                                            std::to_string(sources.Files.size()) + ", from " + sources.Files.front() +
                                            " to " + sources.Files.back());
  const std::string& filename = sources.Files.front();
  StreamReader stream(filename);
  QUIRE::MPEG2::MXFWriter writer;
  QUIRE::MPEG2::FrameBuffer frame;
  QUIRE::MPEG2::VideoDescriptor descriptor;
  Ferro::ui64_t done = 0;
  for (auto unit = stream.Next(); !unit.empty(); unit = stream.Next()) {
    if (!writer.IsOpen()) {
      if (QUIRE::MPEG2::ParseSequence(unit, descriptor).Failure())
        throw CommandError(ExitCode::NotPlayable, filename + ": this is no MPEG-2 video elementary stream");
      const QUIRE::Rational asked = job.EditRate(descriptor.EditRate);
      if (Ferro::i64_t{asked.Numerator} * descriptor.EditRate.Denominator !=
          Ferro::i64_t{descriptor.EditRate.Numerator} * asked.Denominator)
        throw CommandError(ExitCode::Usage, filename + ": this stream has " + descriptor.EditRate.EncodeString() +
                                                " pictures per second, not what --rate says");
      job.Check(writer, writer.OpenWrite(job.Options().Out, job.Info(), descriptor));
    }
    FillFrame(unit, frame);
    job.Check(writer, writer.WriteFrame(frame, job.Cipher(), job.Integrity()));
    done += unit.size();
    job.Progress(done, sources.TotalSize);
  }
  if (!writer.IsOpen()) throw CommandError(ExitCode::NotPlayable, filename + ": this file is empty");
  const Wrapped wrapped{descriptor.EditRate, writer.EditUnitCount()};
  job.Check(writer, writer.Finalize());
  return wrapped;
}

}  // namespace Tool
