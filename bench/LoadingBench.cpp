// SPDX-License-Identifier: BSD-3-Clause
// What loading a show costs, by its number of compositions: each has one reel, with a picture and a sound track file. Beside
// it what it is made of: reading the composition playlists with Cairn alone, and opening the same track files with QUIRE
// alone and reading what they say of themselves. Loading and opening take turns; of_files is the median of their ratios.
#include "../tests/support/LogCapture.h"
#include "../tests/support/TemporaryFolder.h"
#include "../tests/support/TrackFileMaker.h"
#include "FrameReads.h"

#include <Strata/Strata.h>

#include <Cairn/CompositionPlaylist.h>
#include <Cairn/IAssetLookup.h>
#include <Cairn/InitObjectWithFile.h>
#include <Ferro/FileText.h>
#include <QUIRE/JP2KReader.h>
#include <QUIRE/PCMReader.h>

#include <benchmark/benchmark.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace bench;
using testsupport::TrackKind;

/// Answers from memory, so that the lookup costs next to nothing.
class MemoryLookup : public Cairn::IAssetLookup {
 public:
  void Add(const Ferro::UUID& id, const std::string& path, Cairn::FileType_t type) {
    Cairn::AssetInfo& info = m_Assets[id];
    info.ID = id;
    info.RealFilename = path;
    info.FileType = type;
  }

  Ferro::Result_t GetAssetIDList(Cairn::UUIDList&) const override { return Ferro::RESULT_NOTIMPL; }
  Ferro::Result_t RegisterAsset(const std::string&, const Cairn::SHA1&, Cairn::AssetInfo&) override {
    return Ferro::RESULT_NOTIMPL;
  }
  Ferro::Result_t GetInfoForAssetID(const Ferro::UUID& id, Cairn::AssetInfo& out, bool) const override {
    const auto found = m_Assets.find(id);
    if (found == m_Assets.end()) return Ferro::RESULT_FALSE;
    out = found->second;
    return Ferro::RESULT_OK;
  }
  Ferro::Result_t GetInfoForAssetIDList(const Cairn::UUIDList& ids, Cairn::AssetInfoList& out, bool) const override {
    for (const Ferro::UUID& id : ids) {
      const Ferro::Result_t result = GetInfoForAssetID(id, out.emplace_back(), true);
      if (result != Ferro::RESULT_OK) return result;
    }
    return Ferro::RESULT_OK;
  }

 private:
  std::map<Ferro::UUID, Cairn::AssetInfo> m_Assets;
};

/// Shows of up to 5000 compositions. The track files are one picture and one sound file under many names.
class Shows {
 public:
  static constexpr Ferro::ui32_t Most = 5000;

  Shows() {
    Require(testsupport::MakeTrackFile(TrackKind::Picture, m_Folder.Path("picture.mxf"), m_Spec));
    Require(testsupport::MakeTrackFile(TrackKind::Sound, m_Folder.Path("sound.mxf"), m_Spec));
    for (Ferro::ui32_t number = 0; number < Most; ++number) MakeComposition(std::to_string(number));
  }

  [[nodiscard]] const MemoryLookup& Lookup() const { return m_Lookup; }
  [[nodiscard]] Ferro::ArchivableList<Ferro::UUID> First(size_t count) const {
    Ferro::ArchivableList<Ferro::UUID> ids;
    ids.insert(ids.end(), m_Compositions.begin(), m_Compositions.begin() + static_cast<std::ptrdiff_t>(count));
    return ids;
  }
  [[nodiscard]] std::string CompositionPath(size_t number) const {
    return m_Folder.Path("composition" + std::to_string(number) + ".xml");
  }
  [[nodiscard]] std::string PathOf(const char* kind, size_t number) const {
    return m_Folder.Path(kind + std::to_string(number) + ".mxf");
  }

 private:
  void Describe(Cairn::GenericAsset& asset, const std::string& kind, const std::string& number,
                Cairn::FileType_t type) {
    asset.AssetID = Ferro::UUID::Random();
    asset.EditRate = m_Spec.EditRate;
    asset.IntrinsicDuration = asset.Duration = m_Spec.Duration;
    const std::string path = m_Folder.Path(kind + number + ".mxf");
    std::filesystem::create_hard_link(m_Folder.Path(kind + ".mxf"), path);
    m_Lookup.Add(asset.AssetID, path, type);
  }

  void MakeComposition(const std::string& number) {
    Cairn::CompositionPlaylist composition;
    composition.ID = Ferro::UUID::Random();
    composition.IssueDate = "2026-01-02T03:04:05+00:00";
    composition.Issuer = composition.Creator = composition.ContentTitle = "Strata";
    composition.ContentKind = Cairn::CK_FEATURE;
    Cairn::Reel& reel = composition.ReelList.emplace_back();
    reel.ID = Ferro::UUID::Random();
    Describe(reel.MainPicture, "picture", number, Cairn::FT_QUIRE_JP2K_J2C);
    reel.MainPicture.FrameRate = m_Spec.EditRate;
    reel.MainPicture.ScreenAspectRatio = {64, 36};
    Describe(reel.MainSound, "sound", number, Cairn::FT_QUIRE_PCM);
    std::string text;
    Require(composition.EncodeXML(text, Cairn::DFT_DCI_SMPTE));
    const std::string path = m_Folder.Path("composition" + number + ".xml");
    Require(Ferro::WriteStringIntoFile(path, text));
    m_Lookup.Add(composition.ID, path, Cairn::FT_CPL);
    m_Compositions.push_back(composition.ID);
  }

  const testsupport::TrackFileSpec m_Spec;
  testsupport::TemporaryFolder m_Folder;
  MemoryLookup m_Lookup;
  std::vector<Ferro::UUID> m_Compositions;
};

const Shows& TheShows() {
  static const Shows shows;
  return shows;
}

using Identifiers = Ferro::ArchivableList<Ferro::UUID>;

double TimeLoading(const Identifiers& ids) {
  const auto start = std::chrono::steady_clock::now();
  {
    Ferro::mem_ptr<Strata::IPlaylist> playlist;
    Require(Strata::NewPlaylist(playlist));
    Require(playlist->InitWithUUIDList(ids, TheShows().Lookup(), {}));
    benchmark::DoNotOptimize(playlist->GetDuration());
  }
  return SecondsSince(start);
}

double TimeReadingDocuments(size_t count) {
  const auto start = std::chrono::steady_clock::now();
  for (size_t number = 0; number < count; ++number) {
    Cairn::CompositionPlaylist composition;
    Require(Cairn::InitObjectWithFile(composition, TheShows().CompositionPath(number)));
  }
  return SecondsSince(start);
}

double TimeOpeningFiles(size_t count) {
  const auto start = std::chrono::steady_clock::now();
  for (size_t number = 0; number < count; ++number) {
    QUIRE::WriterInfo info;
    QUIRE::JP2K::MXFReader picture;
    QUIRE::JP2K::PictureDescriptor picture_descriptor;
    Require(picture.OpenRead(TheShows().PathOf("picture", number)));
    Require(picture.FillPictureDescriptor(picture_descriptor));
    Require(picture.FillWriterInfo(info));
    QUIRE::PCM::MXFReader sound;
    QUIRE::PCM::AudioDescriptor sound_descriptor;
    Require(sound.OpenRead(TheShows().PathOf("sound", number)));
    Require(sound.FillAudioDescriptor(sound_descriptor));
    Require(sound.FillWriterInfo(info));
  }
  return SecondsSince(start);
}

void LoadShow(benchmark::State& state) {
  const testsupport::LogCapture log;
  const auto count = static_cast<size_t>(state.range(0));
  const Identifiers ids = TheShows().First(count);
  std::vector<double> loading;
  std::vector<double> reading;
  std::vector<double> opening;
  std::vector<double> ratio;
  static_cast<void>(TimeLoading(ids) + TimeOpeningFiles(count));
  for (auto _ : state) {
    const bool load_first = loading.size() % 2 == 0;
    const double first = load_first ? TimeLoading(ids) : TimeOpeningFiles(count);
    const double second = load_first ? TimeOpeningFiles(count) : TimeLoading(ids);
    loading.push_back(load_first ? first : second);
    opening.push_back(load_first ? second : first);
    ratio.push_back(loading.back() / opening.back());
    reading.push_back(TimeReadingDocuments(count));
    state.SetIterationTime(loading.back());
  }
  const auto per_composition = [&](const std::vector<double>& times) {
    return Median(times) / static_cast<double>(count) * 1e6;
  };
  state.counters["load_us"] = per_composition(loading);
  state.counters["documents_us"] = per_composition(reading);
  state.counters["files_us"] = per_composition(opening);
  state.counters["of_files"] = Median(ratio);
}

void Configure(benchmark::internal::Benchmark* bench) {
  bench->ArgName("compositions")->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(21);
  for (const int count : {1, 10, 100, 1000, 5000}) bench->Arg(count);
}

BENCHMARK(LoadShow)->Apply(Configure);

}  // namespace
