// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/EssenceType.h>
#include <QUIRE/FrameDecryption.h>

#include "base/ResultOf.h"
#include "h__Reader.h"

namespace QUIRE {

Result_t ReadTrackEncryption(const std::string& filename, TrackEncryption& out) {
  EssenceType_t type = ESS_UNKNOWN;
  const Result_t result = EssenceType(filename, type);
  if (result.Failure()) return result;
  return ResultOf([&] {
    Ferro::mem_ptr<h__Reader> reader;
    // What is none of the kinds is refused as a file of the wrong kind, with a line that says what is wrong.
    const Result_t opened = h__Reader::Open(filename, type <= ESS_MXF_OTHER ? ESS_JPEG_2000 : type, reader);
    return opened.Success() ? reader->FillTrackEncryption(out) : opened;
  });
}

}  // namespace QUIRE
