// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <functional>

namespace Assay {

/// Does `work` for each of the numbers below `count`, in several threads, the calling one among them. What one throws is
/// thrown when all have ended.
/// @param threads  at most; at least 1.
/// @param go_on    asked by the calling thread before each of its numbers; false ends the work. It may be empty.
/// @return whether all was done.
[[nodiscard]] bool ForEachInParallel(size_t count, unsigned threads, const std::function<void(size_t)>& work,
                                     const std::function<bool()>& go_on = {});

}  // namespace Assay
