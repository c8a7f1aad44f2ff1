// SPDX-License-Identifier: BSD-3-Clause
//
// A store of 10,000 assets in 1,000 packages: opening it cold and warm, and looking assets up. The peer of both openings
// is what the file system takes for the same: to find and stat each file, and to find, open and read it.

#include "TemporaryFolder.h"

#include <Cairn/AssetMap.h>
#include <Cairn/AssetStore.h>
#include <Cairn/PackingList.h>

#include <Ferro/SHA1Digest.h>

#include <benchmark/benchmark.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace {

namespace fs = std::filesystem;
using Cairn::ui32_t;

constexpr ui32_t PackageCount = 1000;
constexpr ui32_t AssetsPerPackage = 10;  // with the packing list

Cairn::UUID NumberedID(ui32_t number) {
  char text[40];
  std::snprintf(text, sizeof(text), "00000000-0000-4000-8000-%012x", number);
  return *Cairn::UUID::FromHex(text);
}

void Require(bool good, const char* what) {
  if (!good) throw std::runtime_error(what);
}

void PutText(const fs::path& file, const std::string& text) {
  std::ofstream out(file, std::ios::binary);
  out << text;
  out.close();
  Require(out.good(), "cannot write the packages");
}

/// One composition; the others are images, as files that are known by their first bytes.
void MakePackage(const fs::path& folder, ui32_t number) {
  fs::create_directories(folder);
  Cairn::PackingList list;
  Cairn::AssetMap map;
  list.ID = NumberedID(number);
  map.ID = NumberedID(number + AssetsPerPackage);
  for (std::string* text : {&map.Creator, &map.Issuer, &list.Creator, &list.Issuer}) *text = "Quayside";
  map.IssueDate = list.IssueDate = "2026-02-03T04:05:06Z";
  for (ui32_t i = 1; i < AssetsPerPackage; ++i) {
    const Cairn::UUID id = NumberedID(number + i);
    const std::string name = std::to_string(i) + (i == 1 ? ".xml" : ".png");
    const std::string text =
        i > 1 ? "\x89PNG\r\n\x1a\n" + id.EncodeString()
              : "<CompositionPlaylist xmlns=\"http://www.smpte-ra.org/schemas/429-7/2006/CPL\"><Id>" + id.EncodeURN() +
                    "</Id></CompositionPlaylist>";
    PutText(folder / name, text);
    list.AssetList.push_back({id, "", Ferro::DigestText(text), text.size(), "application/octet-stream", name});
    map.AssetList.push_back({id, "", false, {{name, 1, 0, false, 0}}});
  }
  map.AssetList.push_back({list.ID, "", true, {{"pkl.xml", 1, 0, false, 0}}});
  std::string xml;
  Require(list.EncodeXML(xml, Cairn::DFT_DCI_SMPTE).Success(), "cannot make a packing list");
  PutText(folder / "pkl.xml", xml);
  xml.clear();
  Require(map.EncodeXML(xml, Cairn::DFT_DCI_SMPTE).Success(), "cannot make an asset map");
  PutText(folder / "ASSETMAP.xml", xml);
}

/// The packages and an index of them, made once.
class Packages {
 public:
  static const Packages& Get() {
    static const Packages packages;
    return packages;
  }
  [[nodiscard]] std::string Folder() const { return m_Base.Path("packages"); }
  [[nodiscard]] std::string Index() const { return m_Base.Path("index.db"); }

 private:
  Packages() {
    for (ui32_t i = 0; i < PackageCount; ++i)
      MakePackage(fs::path(Folder()) / std::to_string(i), i * (AssetsPerPackage + 1));
    Cairn::AssetStore store;
    Require(store.Open(Index()).Success() && store.AddFolder(Folder()).Success(), "cannot index the packages");
  }
  const testsupport::TemporaryFolder m_Base;
};

void CheckCount(benchmark::State& state, const Cairn::AssetStore& store) {
  Cairn::UUIDList ids;
  if (store.GetAssetIDList(ids).Failure() || ids.size() != PackageCount * AssetsPerPackage)
    state.SkipWithError("the store is not complete");
}

void OpenCold(benchmark::State& state) {
  const std::string folder = Packages::Get().Folder();
  const std::string index = state.range(0) != 0 ? Packages::Get().Index() + ".cold" : "";
  for (auto _ : state) {
    if (!index.empty())
      for (const char* suffix : {"", "-wal", "-shm"}) fs::remove(index + suffix);
    Cairn::AssetStore store;
    Require(store.Open(index).Success() && store.AddFolder(folder).Success(), "cannot index the packages");
    CheckCount(state, store);
  }
}
BENCHMARK(OpenCold)->ArgName("in_file")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();

void OpenWarm(benchmark::State& state) {
  const Packages& packages = Packages::Get();
  for (auto _ : state) {
    Cairn::AssetStore store;
    Require(store.Open(packages.Index()).Success() && store.Refresh().Success(), "cannot open the index");
    CheckCount(state, store);
  }
}
BENCHMARK(OpenWarm)->Unit(benchmark::kMillisecond);

/// The peer of OpenWarm.
void StatEachFile(benchmark::State& state) {
  const std::string folder = Packages::Get().Folder();
  for (auto _ : state) {
    std::uintmax_t bytes = 0;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
      struct stat status = {};
      Require(stat(entry.path().c_str(), &status) == 0, "a file is gone");
      bytes += static_cast<std::uintmax_t>(status.st_size);
    }
    benchmark::DoNotOptimize(bytes);
  }
}
BENCHMARK(StatEachFile)->Unit(benchmark::kMillisecond);

/// The peer of OpenCold.
void ReadEachFile(benchmark::State& state) {
  const std::string folder = Packages::Get().Folder();
  for (auto _ : state)
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
      if (!entry.is_regular_file()) continue;
      std::ifstream file(entry.path(), std::ios::binary);
      std::string text{std::istreambuf_iterator<char>(file), {}};
      benchmark::DoNotOptimize(text);
    }
}
BENCHMARK(ReadEachFile)->Unit(benchmark::kMillisecond);

void LookUp(benchmark::State& state) {
  Cairn::AssetStore store;
  Require(store.Open(Packages::Get().Index()).Success(), "cannot open the index");
  Cairn::UUIDList known;
  Require(store.GetAssetIDList(known).Success(), "cannot ask the index");
  Cairn::UUIDList ids(known.begin(), std::next(known.begin(), state.range(0)));
  for (auto _ : state) {
    Cairn::AssetInfoList found;
    if (store.GetInfoForAssetIDList(ids, found, true) != Ferro::RESULT_OK || found.size() != ids.size())
      state.SkipWithError("not all were found");
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(LookUp)->Arg(1)->Arg(5000)->Unit(benchmark::kMicrosecond);

void ListAll(benchmark::State& state) {
  Cairn::AssetStore store;
  Require(store.Open(Packages::Get().Index()).Success(), "cannot open the index");
  for (auto _ : state) benchmark::DoNotOptimize(store.Assets());
}
BENCHMARK(ListAll)->Unit(benchmark::kMillisecond);

}  // namespace
