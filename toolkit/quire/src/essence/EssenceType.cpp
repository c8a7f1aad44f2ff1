// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/EssenceType.h>

#include "TrackFacts.h"
#include "base/FormatError.h"

#include <QUIRE/MXF/FileStructure.h>

#include <Ferro/FileReader.h>

#include <algorithm>
#include <vector>

namespace QUIRE {

namespace {

constexpr ui8_t HeaderKey[] = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x05, 0x01, 0x01, 0x0d, 0x01, 0x02, 0x01, 0x01, 0x02};
constexpr size_t KeyVersion = 7;
constexpr size_t MaxRunIn = 65535;

bool IsHeaderKey(const ui8_t* bytes) {
  return std::equal(HeaderKey, HeaderKey + KeyVersion, bytes) &&
         std::equal(HeaderKey + KeyVersion + 1, std::end(HeaderKey), bytes + KeyVersion + 1);
}

// True when a header partition pack starts the file, after a run-in at most (ST 377-1, 6.5).
Result_t IsMXF(const Ferro::FileReader& file, bool& answer) {
  answer = false;
  for (const size_t run_in : {size_t{0}, MaxRunIn}) {
    std::vector<ui8_t> bytes(run_in + sizeof(HeaderKey));
    size_t count = 0;
    if (const Result_t result = file.ReadUpTo(0, bytes, count); result.Failure()) return result;
    for (size_t at = 0; at + sizeof(HeaderKey) <= count && !answer; ++at) answer = IsHeaderKey(bytes.data() + at);
    if (answer) break;
  }
  return Ferro::RESULT_OK;
}

}  // namespace

Result_t EssenceType(const std::string& filename, EssenceType_t& type) {
  type = ESS_UNKNOWN;
  Ferro::FileReader file;
  bool is_mxf = false;
  Result_t result = file.OpenRead(filename);
  if (result.Success()) result = IsMXF(file, is_mxf);
  if (result.Failure() || !is_mxf) return result;

  type = ESS_MXF_OTHER;
  const LogSubject subject(filename);
  MXF::FileStructure structure;
  result = structure.ReadHeader(file);
  if (result == RESULT_FORMAT) return Ferro::RESULT_OK;
  TrackFacts facts;
  if (result.Success() && GatherTrackFacts(structure.Header, facts) == nullptr) type = facts.Type;
  if (result.Failure()) type = ESS_UNKNOWN;
  return result;
}

}  // namespace QUIRE
