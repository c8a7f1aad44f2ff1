// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TemporaryFolder.h"

#include <Assay/Check.h>

namespace testsupport {

/// Of these depths, those that checks have: each is tried on an empty folder.
[[nodiscard]] inline Assay::DepthSet DepthsThereAre(std::initializer_list<Assay::Depth> wanted) {
  const TemporaryFolder empty;
  Assay::DepthSet depths = {Assay::Depth::Documents};
  for (const Assay::Depth depth : wanted) {
    Assay::CheckRequest request;
    request.Folders = {empty.Folder().string()};
    request.Depths = {depth};
    Assay::CheckReport report;
    if (Assay::Check(request, report).Success()) depths.Add(depth);
  }
  return depths;
}

}  // namespace testsupport
