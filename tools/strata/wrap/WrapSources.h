// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "WrapJob.h"

#include <string>
#include <vector>

namespace Tool {

/// The files that go into one track file, and what they are.
struct WrapSources {
  EssenceKind Kind = EssenceKind::Picture;
  std::vector<std::string> Files;  ///< in order; the left eyes
  std::vector<std::string> Right;  ///< the right eyes; empty unless stereoscopic
  Ferro::ui64_t TotalSize = 0;     ///< bytes of all of them
};

/// Finds the files that the options name. Those of a folder come in the order of their names, numbers in them by value.
/// Throws CommandError where there is nothing, or several kinds of things.
[[nodiscard]] WrapSources FindWrapSources(const WrapOptions& options);

/// True when `a` stands before `b` in a list of files: "frame 9" before "frame 10".
[[nodiscard]] bool NameComesBefore(const std::string& a, const std::string& b);

}  // namespace Tool
