// SPDX-License-Identifier: BSD-3-Clause
// Decodes hostile documents between two system calls that a tracer can see; run by HostileDocumentTraceTest.cpp.
#include "HostileDocuments.h"

#include <Cairn/AssetMap.h>
#include <Cairn/CompositionPlaylist.h>
#include <Cairn/DCSubtitle.h>
#include <Cairn/PackingList.h>

#include <Ferro/LogSink.h>

#include <unistd.h>

#include <cstdio>

namespace {

// Leaves its name in the trace.
void Mark(const char* name) {
  static_cast<void>(access(name, F_OK));
}

template <class T>
void Decode(const std::string& text) {
  T document;
  static_cast<void>(document.DecodeXML(text));
}

void DecodeAll(const std::vector<CairnTest::HostileDocument>& documents) {
  for (const CairnTest::HostileDocument& document : documents) {
    Decode<Cairn::VolumeIndex>(document.Text);
    Decode<Cairn::CompositionPlaylist>(document.Text);
    Decode<Cairn::PackingList>(document.Text);
    Decode<Cairn::AssetMap>(document.Text);
    Decode<Cairn::DCSubtitle>(document.Text);
  }
}

}  // namespace

int main() {
  Ferro::MemoryLogSink log;
  Ferro::SetDefaultLogSink(&log);
  const auto types = CairnTest::DocumentsWithTypes();
  const auto encodings = CairnTest::DocumentsOfOddEncodings();
  Decode<Cairn::VolumeIndex>(CairnTest::VolumeIndexText("<Index>1</Index>"));  // what the libraries need, once

  Mark("/strata-trace-begin");
  DecodeAll(types);
  DecodeAll(encodings);
  Mark("/strata-trace-end");

  std::printf("%zu lines logged\n", log.Entries().size());
  Ferro::SetDefaultLogSink(nullptr);
  return log.Entries().size() < types.size() + encodings.size() ? 1 : 0;
}
