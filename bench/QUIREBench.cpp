// SPDX-License-Identifier: BSD-3-Clause
// What reading track files costs, everything in page cache.
//
//   Picture, Sound   frames of 1.3 MB and of 86,400 bytes, in the file's order and at random, beside bare positioned
//                    reads of the same bytes into one buffer and beside libavformat (av_read_frame, after av_seek_frame
//                    at random)
//   Open             opening with descriptor and writer information, and the same with the first frame, beside
//                    avformat_open_input and a whole run of mediainfo; on one second and on two hours of pictures
//
// Contestants take turns within every repetition, each repetition with another one first. Ratios are the medians of the
// repetitions' ratios; of_pread and of_demuxer are speeds (above 1: faster), of_open_input and of_mediainfo are times
// (below 1: faster).
#include "Demuxer.h"
#include "EssenceMaker.h"
#include "FrameReads.h"
#include "TemporaryFolder.h"
#include "TrackFileMaker.h"

#include <QUIRE/JP2KReader.h>
#include <QUIRE/JP2KWriter.h>
#include <QUIRE/PCMReader.h>
#include <QUIRE/PCMWriter.h>

#include <functional>
#include <memory>

namespace {

using namespace bench;

// Many short ones: what else runs on the machine then disturbs few of them.
constexpr int FrameRepetitions = 101;
constexpr int OpenRepetitions = 21;
constexpr ui32_t BufferSize = 4194304;

struct Essence {
  std::string Filename;
  std::vector<Extent> Frames;
  ui64_t Bytes = 0;
};

std::string PathOf(const std::string& name) {
  static const testsupport::TemporaryFolder folder;
  return folder.Path(name);
}

/// Pictures of `size` bytes and a little more or less; for speed of writing there are just 16 different ones.
std::string WritePictures(const std::string& name, ui32_t count, size_t size, size_t step) {
  const std::string filename = PathOf(name);
  const testsupport::TrackFileSpec spec;
  QUIRE::JP2K::MXFWriter writer;
  Require(writer.OpenWrite(filename, MakeWriterInfo(spec), MakePictureDescriptor(spec)));
  std::vector<QUIRE::JP2K::FrameBuffer> frames(16);
  for (ui32_t i = 0; i < 16; ++i) testsupport::FillBuffer(testsupport::MakeNoise(size + step * i, i), frames[i]);
  for (ui32_t i = 0; i < count; ++i) Require(writer.WriteFrame(frames[i % 16]));
  Require(writer.Finalize());
  return filename;
}

Essence Found(const std::string& filename, ui64_t smallest) {
  Essence essence{filename, FindFrames(filename, smallest)};
  for (const Extent& frame : essence.Frames) essence.Bytes += frame.Length;
  return essence;
}

/// 4 GB of pictures as at 250 Mbit/s and 24 per second, or a quarter of the memory where that is less.
const Essence& PictureFile() {
  static const Essence essence = [] {
    const ui64_t memory = static_cast<ui64_t>(sysconf(_SC_PHYS_PAGES)) * static_cast<ui64_t>(sysconf(_SC_PAGESIZE));
    const ui64_t count = std::min<ui64_t>(3200, memory / 4 / 1310000);
    return Found(WritePictures("picture.mxf", static_cast<ui32_t>(count), 1300000, 977), 1000000);
  }();
  return essence;
}

/// 2000 edit units of sound of 86,400 bytes: 15 channels of 24 bits at 48 kHz and 25 per second.
const Essence& SoundFile() {
  static const Essence essence = [] {
    const std::string filename = PathOf("sound.mxf");
    testsupport::TrackFileSpec spec;
    spec.EditRate = {25, 1};
    spec.ChannelCount = 15;
    spec.ChannelFormat = QUIRE::PCM::CF_CFG_4;
    QUIRE::PCM::MXFWriter writer;
    Require(writer.OpenWrite(filename, MakeWriterInfo(spec), MakeAudioDescriptor(spec)));
    QUIRE::PCM::FrameBuffer frame;
    testsupport::FillBuffer(testsupport::MakeNoise(86400, 1), frame);
    for (int i = 0; i < 2000; ++i) Require(writer.WriteFrame(frame));
    Require(writer.Finalize());
    return Found(filename, 86400);
  }();
  return essence;
}

template <class Reader, class Buffer>
class Contest {
 public:
  /// `ticks` of the demuxer's time base make one edit unit.
  Contest(const Essence& essence, size_t count, bool random, std::int64_t ticks)
      : m_Essence(essence), m_Count(count), m_Random(random), m_Ticks(ticks) {
    Require(m_Reader.OpenRead(essence.Filename));
    Require(m_Frame.Capacity(BufferSize));
    if (HasDemuxer()) m_Demuxer = std::make_unique<Demuxer>(essence.Filename);
  }

  void Run(benchmark::State& state) {
    const std::function<double()> contestants[] = {
        [&] { return TimeReader(); },
        [&] { return TimeReads(m_Essence.Filename, m_Essence.Frames, m_Positions, m_Buffers); },
        [&] { return TimeDemuxer(); }};
    const size_t entrants = HasDemuxer() ? 3 : 2;
    std::vector<double> reader, of_pread, of_demuxer, demuxer_of_pread;
    Choose(0);
    for (size_t i = 0; i < entrants; ++i) contestants[i]();
    for (auto _ : state) {
      Choose(1 + reader.size());
      double seconds[3] = {};
      for (size_t i = 0; i < entrants; ++i) {
        const size_t entrant = (i + reader.size()) % entrants;
        seconds[entrant] = contestants[entrant]();
      }
      reader.push_back(seconds[0]);
      of_pread.push_back(seconds[1] / seconds[0]);
      of_demuxer.push_back(seconds[2] / seconds[0]);
      demuxer_of_pread.push_back(seconds[1] / seconds[2]);
      state.SetIterationTime(seconds[0]);
    }
    state.counters["fps"] = static_cast<double>(m_Count) / Median(reader);
    state.counters["file_MB"] = static_cast<double>(m_Essence.Bytes) / 1e6;
    state.counters["of_pread"] = Median(of_pread);
    if (!HasDemuxer()) return;
    state.counters["of_demuxer"] = Median(of_demuxer);
    state.counters["demuxer_of_pread"] = Median(demuxer_of_pread);
  }

 private:
  // In the file's order the demuxer continues where it was, but for the start of the file.
  void Choose(size_t repetition) {
    const size_t first = repetition * m_Count % m_Essence.Frames.size();
    m_Positions = Positions(m_Essence.Frames.size(), m_Count, m_Random, m_Random ? repetition : first);
    if (m_Demuxer && !m_Random) m_Demuxer->Seek(m_Positions.front(), m_Ticks);
  }

  double TimeReader() {
    const auto start = std::chrono::steady_clock::now();
    for (const ui32_t position : m_Positions) {
      Require(m_Reader.ReadFrame(position, m_Frame));
      benchmark::DoNotOptimize(m_Frame.RoData());
    }
    return SecondsSince(start);
  }

  double TimeDemuxer() {
    const auto start = std::chrono::steady_clock::now();
    for (const ui32_t position : m_Positions) {
      if (m_Random) m_Demuxer->Seek(position, m_Ticks);
      if (m_Demuxer->Read() != m_Essence.Frames[position].Length) {
        std::cerr << "benchmark: libavformat delivers another frame than " << position << '\n';
        std::exit(1);
      }
    }
    return SecondsSince(start);
  }

  const Essence& m_Essence;
  const size_t m_Count;
  const bool m_Random;
  const std::int64_t m_Ticks;
  std::vector<ui32_t> m_Positions;
  Reader m_Reader;
  Buffer m_Frame;
  std::unique_ptr<Demuxer> m_Demuxer;
  std::vector<std::vector<ui8_t>> m_Buffers{std::vector<ui8_t>(BufferSize)};
};

void Picture(benchmark::State& state) {
  Contest<QUIRE::JP2K::MXFReader, QUIRE::JP2K::FrameBuffer>(PictureFile(), 100, state.range(0) != 0, 1).Run(state);
}
void Sound(benchmark::State& state) {
  Contest<QUIRE::PCM::MXFReader, QUIRE::PCM::FrameBuffer>(SoundFile(), 500, state.range(0) != 0, 1920).Run(state);
}

double TimeOpening(const std::string& filename, bool with_frame) {
  QUIRE::JP2K::FrameBuffer frame;
  Require(frame.Capacity(65536));
  const auto start = std::chrono::steady_clock::now();
  QUIRE::JP2K::MXFReader reader;
  QUIRE::JP2K::PictureDescriptor descriptor;
  QUIRE::WriterInfo info;
  Require(reader.OpenRead(filename));
  Require(reader.FillPictureDescriptor(descriptor));
  Require(reader.FillWriterInfo(info));
  if (with_frame) Require(reader.ReadFrame(0, frame));
  Require(reader.Close());
  return SecondsSince(start);
}

double TimeDemuxerOpening(const std::string& filename) {
  const auto start = std::chrono::steady_clock::now();
  if (HasDemuxer()) const Demuxer demuxer(filename);
  return SecondsSince(start);
}

double TimeMediaInfo(const std::string& filename) {
  const auto start = std::chrono::steady_clock::now();
  const int status = std::system(("mediainfo '" + filename + "' > /dev/null").c_str());
  return status == 0 ? SecondsSince(start) : 0;
}

/// The time per opening of `count` in a row.
template <class F>
double Repeated(int count, const F& opening) {
  double seconds = 0;
  for (int i = 0; i < count; ++i) seconds += opening();
  return seconds / count;
}

void Open(benchmark::State& state) {
  const auto pictures = static_cast<ui32_t>(state.range(0));
  const std::string filename = WritePictures(std::to_string(pictures) + ".mxf", pictures, 100, 1);
  const int count = pictures > 1000 ? 5 : 50;
  std::vector<double> opening, first_frame, demuxer, of_demuxer, frame_of_demuxer, of_mediainfo;
  TimeOpening(filename, true);
  TimeDemuxerOpening(filename);
  for (auto _ : state) {
    opening.push_back(Repeated(count, [&] { return TimeOpening(filename, false); }));
    demuxer.push_back(Repeated(count, [&] { return TimeDemuxerOpening(filename); }));
    first_frame.push_back(Repeated(count, [&] { return TimeOpening(filename, true); }));
    const double mediainfo = TimeMediaInfo(filename);
    if (mediainfo > 0) of_mediainfo.push_back(opening.back() / mediainfo);
    of_demuxer.push_back(opening.back() / demuxer.back());
    frame_of_demuxer.push_back(first_frame.back() / demuxer.back());
    state.SetIterationTime(opening.back());
  }
  state.counters["open_us"] = 1e6 * Median(opening);
  state.counters["first_frame_us"] = 1e6 * Median(first_frame);
  if (!of_mediainfo.empty()) state.counters["of_mediainfo"] = Median(of_mediainfo);
  if (of_mediainfo.empty()) std::cerr << "benchmark: mediainfo does not run, it is not compared\n";
  if (!HasDemuxer()) return;
  state.counters["open_input_us"] = 1e6 * Median(demuxer);
  state.counters["of_open_input"] = Median(of_demuxer);
  state.counters["frame_of_open_input"] = Median(frame_of_demuxer);
}

void Configure(benchmark::internal::Benchmark* bench, int repetitions) {
  if (!HasDemuxer()) std::cerr << "benchmark: built without libavformat, it is not compared\n";
  bench->Iterations(repetitions)->UseManualTime()->Unit(benchmark::kMillisecond);
}

void ConfigureFrames(benchmark::internal::Benchmark* bench) {
  Configure(bench->ArgName("random")->Arg(0)->Arg(1), FrameRepetitions);
}
void ConfigureOpen(benchmark::internal::Benchmark* bench) {
  Configure(bench->ArgName("pictures")->Arg(24)->Arg(172800), OpenRepetitions);
}

BENCHMARK(Picture)->Apply(ConfigureFrames);
BENCHMARK(Sound)->Apply(ConfigureFrames);
BENCHMARK(Open)->Apply(ConfigureOpen);

}  // namespace
