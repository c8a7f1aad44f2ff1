// SPDX-License-Identifier: BSD-3-Clause
// What looking at all frames of picture files and digesting the files costs, beside OpenSSL's SHA-1 alone over the same
// files with as many threads; wall clock, files in the page cache. The limit is 0.85 of its speed. With it the largest amount
// of memory that the process ever had, for files of two lengths: it does not grow with the number of frames.
//
// Contestants take turns; a ratio is the median of the repetitions' ratios.
#include "CinemaCodestream.h"
#include "TemporaryFolder.h"

#include "file/TrackFile.h"
#include "frames/ContentsPass.h"

#include <Ferro/FileReader.h>
#include <QUIRE/Codestream.h>
#include <QUIRE/JP2KReader.h>
#include <QUIRE/JP2KWriter.h>

#include <openssl/evp.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <sys/resource.h>

namespace {

using namespace Assay;

constexpr size_t FrameSize = 1'250'000;  // bytes
constexpr ui32_t Frames = 160;           // of each file
constexpr int Repetitions = 9;

void Require(bool is_so, const char* what) {
  if (is_so) return;
  std::fprintf(stderr, "CheckBench: %s\n", what);
  std::exit(1);
}

template <class Work>
double SecondsOf(const Work& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double Median(std::vector<double> values) {
  std::ranges::nth_element(values, values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2));
  return values[values.size() / 2];
}

/// A sound codestream of noise.
std::vector<ui8_t> Codestream() {
  testsupport::CinemaCodestream stream;
  stream.DataLengths = {FrameSize / 3, FrameSize / 3, FrameSize / 3};
  std::vector<ui8_t> bytes = stream.Make();
  ui32_t value = 1;
  for (size_t part = 0, at = stream.MainHeader().size(); part < 3; ++part) {
    at += 14;
    for (size_t i = 0; i < stream.DataLengths[part]; ++i)
      bytes[at++] = static_cast<ui8_t>((value = value * 1664525 + 1013904223) >> 25);
  }
  return bytes;
}

void WriteFile(const std::string& path, ui32_t frames) {
  const std::vector<ui8_t> bytes = Codestream();
  QUIRE::WriterInfo info;
  info.AssetUUID = *UUID::FromHex("a5a5a5a5-0000-4000-8000-000000000001");
  info.LabelSetType = QUIRE::LS_MXF_SMPTE;
  QUIRE::JP2K::FrameBuffer frame;
  Require(frame.Capacity(static_cast<ui32_t>(bytes.size())).Success(), "memory");
  std::ranges::copy(bytes, frame.Data());
  frame.Size(static_cast<ui32_t>(bytes.size()));
  QUIRE::JP2K::PictureDescriptor picture;
  Require(QUIRE::JP2K::ParseCodestream(bytes, picture).Success(), "a codestream");
  picture.EditRate = picture.SampleRate = QUIRE::EditRate_24;
  QUIRE::JP2K::MXFWriter writer;
  Require(writer.OpenWrite(path, info, picture).Success(), "a file to write");
  for (ui32_t i = 0; i < frames; ++i) Require(writer.WriteFrame(frame).Success(), "writing");
  Require(writer.Finalize().Success(), "writing");
}

TrackFile Open(const std::string& folder, const std::string& name) {
  TrackFile file;
  file.Package = folder;
  file.Path = name;
  QUIRE::JP2K::MXFReader reader;
  QUIRE::JP2K::PictureDescriptor picture;
  Require(reader.OpenRead(folder + '/' + name).Success() && reader.FillPictureDescriptor(picture).Success(), "a file");
  file.Opened = Ferro::RESULT_OK;
  file.EditRate = picture.EditRate;
  file.Duration = picture.ContainerDuration;
  file.Essence = picture;
  Ferro::FileReader bytes;
  Require(bytes.OpenRead(folder + '/' + name).Success(), "a file");
  file.Size = bytes.Size();
  return file;
}

std::vector<PassFile> FilesOf(const std::vector<TrackFile>& tracks) {
  std::vector<PassFile> files;
  for (const TrackFile& track : tracks) {
    PassFile& file = files.emplace_back();
    file.Package = track.Package;
    file.Document = track.Path;
    file.Path = track.FullPath();
    file.Track = &track;
    file.Size = track.Size;
  }
  return files;
}

void LookAt(const std::vector<TrackFile>& tracks, ui32_t threads) {
  PassRequest request;
  request.Depths = {Depth::Frames, Depth::Hash};
  request.Threads = threads;
  std::vector<PassFile> files = FilesOf(tracks);
  PassOver(request, files);
  for (const PassFile& file : files)
    Require(file.LookedAt == request.Depths && file.Findings.empty(), "a file that was looked at");
}

void Digest(const std::string& path) {
  Ferro::FileReader file;
  Require(file.OpenRead(path).Success(), "a file");
  const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(EVP_MD_CTX_new(), EVP_MD_CTX_free);
  Require(EVP_DigestInit_ex(context.get(), EVP_sha1(), nullptr) == 1, "a digest");
  std::vector<ui8_t> piece(1 << 18);
  size_t count = 1;
  for (ui64_t at = 0; count > 0; at += count) {
    Require(file.ReadUpTo(at, piece, count).Success(), "reading");
    EVP_DigestUpdate(context.get(), piece.data(), count);
  }
  unsigned char digest[EVP_MAX_MD_SIZE];
  Require(EVP_DigestFinal_ex(context.get(), digest, nullptr) == 1, "a digest");
}

void DigestAll(const std::vector<TrackFile>& tracks, ui32_t threads) {
  std::atomic<size_t> next = 0;
  std::vector<std::jthread> workers;
  for (ui32_t i = 0; i < threads; ++i)
    workers.emplace_back([&] {
      for (size_t index = next++; index < tracks.size(); index = next++) Digest(tracks[index].FullPath());
    });
}

long PeakMegabytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss / 1024;
}

}  // namespace

int main() {
  const testsupport::TemporaryFolder folder;
  std::vector<TrackFile> tracks;
  WriteFile(folder.Path("short"), Frames / 8);
  LookAt({Open(folder.Folder().string(), "short")}, 1);
  const long short_peak = PeakMegabytes();
  for (const char* name : {"one", "two"}) {
    WriteFile(folder.Path(name), Frames);
    tracks.push_back(Open(folder.Folder().string(), name));
  }
  LookAt({tracks[0]}, 1);
  std::printf("memory: %ld MB after %u frames, %ld MB after %u\n", short_peak, Frames / 8, PeakMegabytes(), Frames);
  const double megabytes = double(tracks[0].Size + tracks[1].Size) / 1e6;
  for (const ui32_t threads : {1U, 2U}) {
    std::vector<double> ours;
    std::vector<double> floor;
    std::vector<double> ratios;
    for (int i = 0; i < Repetitions; ++i) {
      floor.push_back(SecondsOf([&] { DigestAll(tracks, threads); }));
      ours.push_back(SecondsOf([&] { LookAt(tracks, threads); }));
      ratios.push_back(floor.back() / ours.back());
    }
    std::printf("%u threads: frames and digest %.0f MB/s, SHA-1 alone %.0f MB/s, ratio %.3f (limit 0.85)\n", threads,
                megabytes / Median(ours), megabytes / Median(floor), Median(ratios));
  }
}
