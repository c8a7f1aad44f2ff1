// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "keys/KeyOptions.h"
#include "show/Inputs.h"

#include <Assay/DepthSet.h>
#include <Assay/Finding.h>

#include <optional>
#include <string>

namespace Tool {

/// What the user typed behind `strata check`.
struct CheckOptions {
  InputOptions Inputs;
  KeyOptions Keys;
  ShowTimeOptions Times;
  std::optional<Assay::Depth> Depth;      ///< all up to that one
  std::optional<Assay::Profile> Profile;  ///< no value: what plays
  std::string HtmlFile;
  bool Frames = false;
  bool Hash = false;
  bool Decode = false;
  bool AsJson = false;

  /// Whether the packages themselves are to be looked at.
  [[nodiscard]] bool IsOfPackages() const { return Depth || Frames || Decode || Profile; }
  /// How far they are.
  [[nodiscard]] Assay::DepthSet Depths() const {
    Assay::DepthSet depths = Assay::DepthSet::UpTo(Depth.value_or(Assay::Depth::Files));
    if (Frames) depths.Add(Assay::Depth::Frames);
    if (Hash) depths.Add(Assay::Depth::Hash);
    if (Decode) depths.Add(Assay::Depth::Decode);
    return depths;
  }
};

}  // namespace Tool
