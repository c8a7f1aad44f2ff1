// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "EssenceMaker.h"

#include <string_view>

namespace testsupport {

/// A TrueType font of one shape, which stands for each of the characters; others it has not.
Bytes MakeTrueType(std::u32string_view characters);

}  // namespace testsupport
