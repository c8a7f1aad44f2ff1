// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/// The files in which a server keeps what it was playing, to take it up again after a restart. Paths are relative to
/// the server's data directory. The library does not use them.
namespace Strata::RestartInternals {

inline constexpr const char* DataDirectory = "restart";
inline constexpr const char* PositionName = "restart/strata-restart-position";
inline constexpr const char* LoadListName = "restart/strata-restart-load-list";
inline constexpr const char* LoadXMLName = "restart/strata-restart-load-xml";

}  // namespace Strata::RestartInternals
