// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/ResourcePresentationList.h>

#include <Ferro/Assert.h>
#include <Ferro/LogSink.h>

#include <cstdint>
#include <string>

// Recognises a resource presentation list, which takes nothing from it.

namespace {

class Silence : public Ferro::ILogSink {
 public:
  void WriteEntry(const Ferro::LogEntry&) override {}
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static Silence silence;
  Ferro::SetDefaultLogSink(&silence);
  Strata::ResourcePresentationList list;
  static_cast<void>(list.DecodeXML(std::string(data, data + size)));
  FERRO_ASSERT(list.PlayoutID == 0 && list.ReelResourcesList.empty());
  return 0;
}
