// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/ShowPlaylist.h>

#include <Ferro/Assert.h>
#include <Ferro/LogSink.h>

#include <cstdint>
#include <string>

// Reads a show playlist. What was read is written, and must then be read and written the same.

namespace {

class Silence : public Ferro::ILogSink {
 public:
  void WriteEntry(const Ferro::LogEntry&) override {}
};

std::string Rewritten(const std::string& document) {
  Strata::ShowPlaylist playlist;
  FERRO_ASSERT(playlist.DecodeXML(document).Success());
  std::string out;
  FERRO_ASSERT(playlist.EncodeXML(out, Cairn::DFT_NONE).Success());
  return out;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static Silence silence;
  Ferro::SetDefaultLogSink(&silence);
  Strata::ShowPlaylist playlist;
  if (playlist.DecodeXML(std::string(data, data + size)).Failure()) return 0;
  static_cast<void>(playlist.GetDurationSeconds());
  static_cast<void>(playlist.GetPositionSeconds(1000));
  std::string document;
  if (playlist.EncodeXML(document, Cairn::DFT_NONE).Failure()) return 0;  // XML 1.1 may hold what 1.0 cannot
  document = Rewritten(document);  // without the annotations of markers, which are not read back
  FERRO_ASSERT(Rewritten(document) == document);
  return 0;
}
