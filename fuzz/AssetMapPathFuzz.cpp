// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/AssetMapPath.h>

#include <Ferro/Assert.h>
#include <Ferro/Path.h>

// Whatever is accepted stays below the folder it is taken from, in every form that is to be tried.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size) {
  const std::string_view path(reinterpret_cast<const char*>(data), size);
  std::vector<std::string> candidates;
  const Cairn::Result_t result = Cairn::AssetMapPathCandidates(path, candidates);
  FERRO_ASSERT(result.Success() ? candidates.size() == 1 || candidates.size() == 2 : candidates.empty());
  for (const std::string& candidate : candidates) {
    FERRO_ASSERT(!candidate.empty());
    FERRO_ASSERT(Ferro::PathStaysInside(candidate));
    FERRO_ASSERT(!Ferro::PathIsAbsolute(candidate));
    FERRO_ASSERT(("/" + candidate + "/").find("/../") == std::string::npos);
    FERRO_ASSERT(candidate.find('\0') == std::string::npos);
  }
  return 0;
}
