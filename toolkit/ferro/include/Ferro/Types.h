// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>

namespace Ferro {

// The toolkit's fixed-width integers. The other modules import them by using-declarations.
using i8_t = std::int8_t;
using i16_t = std::int16_t;
using i32_t = std::int32_t;
using i64_t = std::int64_t;
using ui8_t = std::uint8_t;
using ui16_t = std::uint16_t;
using ui32_t = std::uint32_t;
using ui64_t = std::uint64_t;

/// A file's size, or a position in it, in bytes.
using fsize_t = ui64_t;

}  // namespace Ferro
