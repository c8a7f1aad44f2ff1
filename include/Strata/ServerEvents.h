// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/// Labels of the events that a server reports of its transport, and the scope that marks them as such. The library does
/// not use them.
namespace Strata::ServerEvents {

/// The vocabulary that the labels below are from.
inline constexpr const char* Scope = "http://www.strata.example/ra/xsd/strata-spl-1#server-events";
inline constexpr const char* TransportPlay = "transport-play";
inline constexpr const char* TransportEnd = "transport-end";
inline constexpr const char* TransportStop = "transport-stop";
inline constexpr const char* TransportStopError = "transport-stop-error";
inline constexpr const char* TransportUnload = "transport-unload";
inline constexpr const char* TransportLoad = "transport-load";

}  // namespace Strata::ServerEvents
