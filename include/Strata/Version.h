// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/Export.h>

namespace Strata {

/// The library's version, "2.0.3". The text is constant and never freed. Any thread may call it.
[[nodiscard]] STRATA_API const char* Version();

/// The control protocol's version as major, point, minor. All calls return the same buffer, which is never freed. Any
/// thread may call it.
[[nodiscard]] STRATA_API const char* ProtocolVersion();

}  // namespace Strata
