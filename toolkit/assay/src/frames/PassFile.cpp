// SPDX-License-Identifier: BSD-3-Clause
#include "PassFile.h"

namespace Assay {

DepthSet PassFile::Applicable(const DepthSet& depths) const {
  DepthSet applicable;
  if (depths.Has(Depth::Hash)) applicable.Add(Depth::Hash);
  if (Track == nullptr || !Track->IsOpen()) return applicable;
  if (depths.Has(Depth::Frames)) applicable.Add(Depth::Frames);
  if (depths.Has(Depth::Decode) && Track->As<QUIRE::JP2K::PictureDescriptor>() != nullptr)
    applicable.Add(Depth::Decode);
  return applicable;
}

void PassFile::LeaveOut(const DepthSet& depths, LeftOutReason reason) {
  Missing = depths.Without(LookedAt);
  Reason = reason;
}

}  // namespace Assay
