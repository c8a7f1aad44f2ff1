// SPDX-License-Identifier: BSD-3-Clause
//
// What a check of documents, and of files as well, costs: beside a bare DOM parse of the same documents, and beside opening
// each track file and reading its header. Processor time, system time included, of all threads; all is in the page cache. The
// limit is twice the time. With it the largest amount of memory that a check had.
//
// Contestants take turns; a ratio is the median of the repetitions' ratios.

#include "BenchDocuments.h"
#include "TemporaryFolder.h"
#include "TrackFileMaker.h"

#include <Assay/Check.h>

#include <Cairn/AssetMap.h>
#include <Cairn/PackingList.h>
#include <Cairn/XMLLibraries.h>
#include <Ferro/FileText.h>
#include <Ferro/SHA1Digest.h>
#include <QUIRE/JP2KWriter.h>
#include <QUIRE/PCMWriter.h>
#include <QUIRE/TrackFileProbe.h>

#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <vector>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

constexpr unsigned Reels = 5;
constexpr unsigned Compositions = 1000;
constexpr unsigned EditUnits = 24;  // of each track file
constexpr int Repetitions = 5;

void Require(bool is_so, const char* what) {
  if (is_so) return;
  std::fprintf(stderr, "DepthBench: %s\n", what);
  std::exit(1);
}

testsupport::TrackFileSpec TrackSpec() {
  testsupport::TrackFileSpec spec;
  spec.Duration = EditUnits;
  spec.MCAConfiguration = "51(L,R,C,LFE,Ls,Rs)";
  return spec;
}

std::string BytesOf(const std::string& path) {
  std::string bytes;
  Require(Ferro::ReadFileIntoString(path, bytes, 1 << 24).Success(), "a track file");
  return bytes;
}

/// The bytes of a picture file, which is larger by its header than by its codestreams.
std::string PictureBytes(const std::string& path) {
  const testsupport::TrackFileSpec spec = TrackSpec();
  QUIRE::JP2K::PictureDescriptor picture = testsupport::MakePictureDescriptor(spec);
  picture.StoredWidth = 1998;
  picture.StoredHeight = 1080;
  picture.AspectRatio = {1998, 1080};
  QUIRE::JP2K::MXFWriter writer;
  QUIRE::JP2K::FrameBuffer frame;
  testsupport::FillBuffer(MakeFrame(testsupport::TrackKind::Picture, spec, 0), frame);
  const auto options = testsupport::MakeWriterOptions();
  Require(writer.OpenWrite(path, MakeWriterInfo(spec), picture, options).Success(), "a picture file");
  for (unsigned i = 0; i < EditUnits; ++i) Require(writer.WriteFrame(frame).Success(), "a frame");
  Require(writer.Finalize().Success(), "a picture file");
  return BytesOf(path);
}

/// The bytes of a silent sound file.
std::string SoundBytes(const std::string& path) {
  const testsupport::TrackFileSpec spec = TrackSpec();
  QUIRE::PCM::MXFWriter writer;
  QUIRE::PCM::FrameBuffer frame;
  testsupport::FillBuffer(testsupport::Bytes(MakeFrame(testsupport::TrackKind::Sound, spec, 0).size()), frame);
  const auto options = testsupport::MakeWriterOptions();
  const Ferro::Result_t result =
      writer.OpenWrite(path, MakeWriterInfo(spec), MakeAudioDescriptor(spec), MakeLabels(spec), options);
  Require(result.Success(), "a sound file");
  for (unsigned i = 0; i < EditUnits; ++i) Require(writer.WriteFrame(frame).Success(), "a frame");
  Require(writer.Finalize().Success(), "a sound file");
  return BytesOf(path);
}

std::string WithID(std::string bytes, const Cairn::UUID& id) {
  const Cairn::UUID made = testsupport::TrackFileSpec().AssetID;
  const std::string from(reinterpret_cast<const char*>(made.Value()), 16);
  const std::string to(reinterpret_cast<const char*>(id.Value()), 16);
  for (size_t at = bytes.find(from); at != std::string::npos; at = bytes.find(from, at)) bytes.replace(at, 16, to);
  return bytes;
}

/// A package that is being made: its files, and the documents that list them.
class BenchPackage {
 public:
  explicit BenchPackage(fs::path folder, unsigned first) : m_Folder(std::move(folder)) {
    fs::create_directories(m_Folder);
    m_List.ID = NumberedID(first);
    m_Map.ID = NumberedID(first + 100);
    m_List.IssueDate = m_Map.IssueDate = "2026-02-03T04:05:06Z";
    m_List.Creator = m_List.Issuer = m_Map.Creator = m_Map.Issuer = "Quayside";
  }

  void Add(const Cairn::UUID& id, const std::string& name, const std::string& type, const std::string& bytes) {
    Write(name, bytes);
    // That of the compositions' assets, which is not computed.
    Ferro::SHA1 digest;
    if (type == "text/xml")
      digest = Ferro::DigestText(bytes);
    else
      Require(digest.DecodeBase64("2jmj7l5rSw0yVb/vlWAYkK/YBwk="), "a digest");
    m_List.AssetList.push_back({id, "", digest, bytes.size(), type, name});
    m_Map.AssetList.push_back({id, "", false, {{name, 1, 0, true, bytes.size()}}});
  }

  void Close() {
    std::string xml;
    Require(m_List.EncodeXML(xml, Cairn::DFT_DCI_SMPTE).Success(), "a packing list");
    Write("PKL.xml", xml);
    m_Map.AssetList.push_back({m_List.ID, "", true, {{"PKL.xml", 1, 0, true, xml.size()}}});
    Require(m_Map.EncodeXML(xml, Cairn::DFT_DCI_SMPTE).Success(), "an asset map");
    Write("ASSETMAP.xml", xml);
    Require(Cairn::VolumeIndex().EncodeXML(xml, Cairn::DFT_DCI_SMPTE).Success(), "a volume index");
    Write("VOLINDEX.xml", xml);
  }

 private:
  /// Silence takes no room on the disk.
  void Write(const std::string& name, const std::string& bytes) const {
    constexpr size_t Block = 4096;
    std::ofstream file(m_Folder / name, std::ios::binary);
    for (size_t at = 0; at < bytes.size(); at += Block) {
      const std::string_view block = std::string_view(bytes).substr(at, Block);
      if (block.find_first_not_of('\0') == std::string_view::npos && at + Block < bytes.size()) continue;
      file.seekp(static_cast<std::streamoff>(at));
      file << block;
    }
  }

  fs::path m_Folder;
  Cairn::PackingList m_List;
  Cairn::AssetMap m_Map;
};

void AddTracks(BenchPackage& package, unsigned first, const std::string& picture, const std::string& sound) {
  for (unsigned i = 0; i < Reels; ++i)
    for (const bool is_sound : {false, true}) {
      const Cairn::UUID id = NumberedID(first + 11 + 3 * i + (is_sound ? 1 : 0));
      const std::string name = (is_sound ? "sound_" : "picture_") + std::to_string(i) + ".mxf";
      package.Add(id, name, "application/mxf", WithID(is_sound ? sound : picture, id));
    }
}

void AddComposition(BenchPackage& package, unsigned first) {
  std::string xml = CompositionOf(Reels, Content::Digested, first);
  const std::string length = ">1440<";
  for (size_t at = xml.find(length); at != std::string::npos; at = xml.find(length, at))
    xml.replace(at, length.size(), '>' + std::to_string(EditUnits) + '<');
  package.Add(NumberedID(first + 1), "CPL_" + std::to_string(first) + ".xml", "text/xml", xml);
}

/// Packages of one composition each, with ten track files.
void MakePackages(const fs::path& folder, const std::string& picture, const std::string& sound) {
  for (unsigned number = 1; number <= Compositions; ++number) {
    const unsigned first = 1000 * number;
    BenchPackage package(folder / std::to_string(number), first);
    AddTracks(package, first, picture, sound);
    AddComposition(package, first);
    package.Close();
  }
}

/// One package with all compositions, whose track files are those of the first.
void MakePackage(const fs::path& folder) {
  BenchPackage package(folder, 0);
  AddTracks(package, 1000, "x", "x");
  for (unsigned number = 1; number <= Compositions; ++number) AddComposition(package, 1000 * number);
  package.Close();
}

std::vector<std::string> FilesOf(const fs::path& folder, const char* extension) {
  std::vector<std::string> paths;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder))
    if (entry.path().extension() == extension) paths.push_back(entry.path().string());
  return paths;
}

void ParseBare(const std::vector<std::string>& paths) {
  for (const std::string& path : paths) {
    std::string xml;
    Require(Ferro::ReadFileIntoString(path, xml).Success(), "a document");
    xercesc::XercesDOMParser parser;
    parser.setDoNamespaces(true);
    const xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(xml.data()), xml.size(), "bench");
    parser.parse(source);
    Require(parser.getErrorCount() == 0, "a document that is well-formed");
  }
}

void OpenBare(const std::vector<std::string>& paths) {
  for (const std::string& path : paths) {
    QUIRE::TrackFileProbe probe;
    Require(probe.OpenRead(path).Success(), "a track file");
  }
}

size_t Check(const fs::path& folder, Assay::Depth depth) {
  Assay::CheckRequest request;
  request.Folders = {folder.string()};
  request.Depths = Assay::DepthSet::UpTo(depth);
  Assay::CheckReport report;
  Require(Assay::Check(request, report).Success() && report.Compositions.size() == Compositions, "a check");
  return report.Findings.size();
}

template <class Work>
double SecondsOf(const Work& work) {
  const std::clock_t start = std::clock();
  work();
  return double(std::clock() - start) / CLOCKS_PER_SEC;
}

double Median(std::vector<double> values) {
  std::ranges::nth_element(values, values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2));
  return values[values.size() / 2];
}

/// In a process of its own, so that its memory is its own.
template <class Work>
void RunApart(const Work& work) {
  std::fflush(stdout);
  const pid_t child = fork();
  if (child == 0) {
    work();
    std::fflush(stdout);
    _exit(0);
  }
  int status = 0;
  Require(child > 0 && waitpid(child, &status, 0) == child && status == 0, "a process that ended well");
}

template <class Floor>
void Compare(const char* name, const fs::path& folder, Assay::Depth depth, const Floor& floor) {
  Cairn::init_xml_libs();
  size_t findings = 0;
  const auto check = [&] { findings = Check(folder, depth); };
  check();
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  std::vector<double> ours;
  std::vector<double> bare;
  std::vector<double> ratios;
  for (int i = 0; i < Repetitions; ++i) {
    bare.push_back(SecondsOf(floor));
    ours.push_back(SecondsOf(check));
    ratios.push_back(ours.back() / bare.back());
  }
  std::printf("%-34s %.2f of its floor (%.0f ms of %.0f ms; limit 2), %ld MB, %zu findings\n", name, Median(ratios),
              1e3 * Median(ours), 1e3 * Median(bare), usage.ru_maxrss / 1024, findings);
}

}  // namespace

int main() {
  const testsupport::TemporaryFolder folder;
  const fs::path one = folder.Path("one");
  const fs::path many = folder.Path("many");
  RunApart([&] {
    MakePackage(one);
    MakePackages(many, PictureBytes(folder.Path("picture")), SoundBytes(folder.Path("sound")));
  });
  const std::vector<std::string> documents = FilesOf(many, ".xml");
  const std::vector<std::string> tracks = FilesOf(many, ".mxf");
  const std::vector<std::string> documents_of_one = FilesOf(one, ".xml");
  const auto parse = [](const std::vector<std::string>& paths) { return [&paths] { ParseBare(paths); }; };
  RunApart([&] { Compare("documents, one package", one, Assay::Depth::Documents, parse(documents_of_one)); });
  RunApart([&] { Compare("documents, 1,000 packages", many, Assay::Depth::Documents, parse(documents)); });
  RunApart([&] { Compare("files, 1,000 packages", many, Assay::Depth::Files, [&] { OpenBare(tracks); }); });
}
