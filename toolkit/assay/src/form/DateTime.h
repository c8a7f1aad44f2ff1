// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/Types.h>

#include <optional>
#include <string_view>

namespace Assay {

/// A date and time as documents have it (XML Schema, part 2, 3.2.7).
struct DateTime {
  i64_t Seconds = 0;                 ///< since 1970-01-01T00:00:00 of its offset, or of UTC without one
  bool HasOffset = false;            ///< "Z" or "+01:00"
  int Year = 0, Month = 1, Day = 1;  ///< as written

  /// No value where the text has not the form, or the date is none.
  [[nodiscard]] static std::optional<DateTime> FromText(std::string_view text);
};

}  // namespace Assay
