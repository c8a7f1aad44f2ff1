// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Timestamp.h>

#include <optional>
#include <string>

namespace Tool {

// Points in time as people type and read them: in the local time of this machine.

/// Reads "20:00", "20:00:30", "2026-03-01 20:00" and "2026-03-01T20:00:00+01:00"; without an offset it is local time. A time
/// without a date is today's, or tomorrow's where it was more than twelve hours before `now`.
[[nodiscard]] std::optional<Ferro::Timestamp> ReadMoment(const std::string& text, const Ferro::Timestamp& now);

/// "2026-03-09 23:59:59": local time.
[[nodiscard]] std::string LocalText(const Ferro::Timestamp& moment);
/// The same with the offset of the document beside it: "2026-03-09 22:59:59 (written in +01:00)".
[[nodiscard]] std::string WrittenText(const Ferro::Timestamp& moment);

/// `moment` and so many seconds.
[[nodiscard]] Ferro::Timestamp Later(const Ferro::Timestamp& moment, double seconds);

}  // namespace Tool
