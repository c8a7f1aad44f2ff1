// SPDX-License-Identifier: BSD-3-Clause
//
// What reading a document costs beside a bare DOM parse of the same text: processor time, the best of several runs, and
// the most memory held at once. The limits are twice the time and one and a half times the memory.

#include "BenchDocuments.h"

#include <Cairn/AssetMap.h>
#include <Cairn/XMLLibraries.h>
#include <Cairn/XercesCallWrapper.h>

#include <Ferro/LogSink.h>

#include <malloc.h>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <new>
#include <string>

namespace {

size_t s_Held = 0;
size_t s_MostHeld = 0;

}  // namespace

// Count what is held, in the libraries too.
[[gnu::noinline]] void* operator new(std::size_t size) {
  void* memory = std::malloc(size);
  if (memory == nullptr) throw std::bad_alloc();
  s_MostHeld = std::max(s_MostHeld, s_Held += malloc_usable_size(memory));
  return memory;
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
  s_Held -= malloc_usable_size(memory);
  std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
  operator delete(memory);
}

namespace {

struct Cost {
  double Seconds = 1e9;
  size_t Bytes = 0;
};

template <class Work>
Cost CostOf(Work work) {
  Cost cost;
  for (int run = 0; run < 7; ++run) {
    const size_t before = s_MostHeld = s_Held;
    const std::clock_t start = std::clock();
    work();
    cost.Seconds = std::min(cost.Seconds, double(std::clock() - start) / CLOCKS_PER_SEC);
    cost.Bytes = s_MostHeld - before;
  }
  return cost;
}

void ParseBare(const std::string& xml) {
  xercesc::XercesDOMParser parser;
  parser.setDoNamespaces(true);
  const xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(xml.data()), xml.size(), "bench");
  parser.parse(source);
  if (parser.getErrorCount() != 0) std::abort();
}

/// Hands the tree over and takes nothing from it.
class Frame : public Cairn::XercesCallWrapper<int> {
 public:
  Cairn::Result_t SetupCaller(int*, Cairn::DCPFormat_t, Ferro::ILogSink&) override { return Ferro::RESULT_OK; }
};

template <class Document>
void Compare(const char* name, const std::string& xml) {
  const Cost bare = CostOf([&] { ParseBare(xml); });
  const auto tell = [&](const char* what, const Cost& cost) {
    std::printf("%-22s %-8s %8zu bytes: time %.2f, memory %.2f of a bare parse (%.2f ms, %.1f KiB)\n", name, what,
                xml.size(), cost.Seconds / bare.Seconds, double(cost.Bytes) / double(bare.Bytes), 1e3 * cost.Seconds,
                double(cost.Bytes) / 1024);
  };
  tell("model", CostOf([&] {
         Document document;
         if (document.DecodeXML(xml).Failure()) std::abort();
       }));
  tell("frame", CostOf([&] {
         int nothing = 0;
         if (Cairn::DecodeXMLDocument<Frame>(xml, &nothing).Failure()) std::abort();
       }));
}

std::string MapOf(unsigned assets, const std::string& annotation) {
  Cairn::AssetMap map;
  map.ID = NumberedID(1);
  map.Creator = map.Issuer = "Quayside";
  map.IssueDate = "2026-02-03T04:05:06Z";
  for (unsigned i = 0; i < assets; ++i)
    map.AssetList.push_back({NumberedID(2 + i), annotation, false, {{"file.mxf", 1, 0, false, 0}}});
  std::string xml;
  if (map.EncodeXML(xml, Cairn::DFT_DCI_SMPTE).Failure()) std::abort();
  return xml;
}

}  // namespace

int main() {
  Cairn::init_xml_libs();
  Compare<Cairn::CompositionPlaylist>("composition, 1 reel", CompositionOf(1, Content::Clear));
  Compare<Cairn::CompositionPlaylist>("composition, 10 reels", CompositionOf(10, Content::Clear));
  Compare<Cairn::CompositionPlaylist>("composition, 2000 reels", CompositionOf(2000, Content::Clear));
  Compare<Cairn::AssetMap>("asset map, 10 assets", MapOf(10, ""));
  Compare<Cairn::AssetMap>("asset map, 10000", MapOf(10'000, ""));
  Compare<Cairn::AssetMap>("much text", MapOf(10, std::string(300'000, 'x')));
  return 0;
}
