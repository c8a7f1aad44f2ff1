// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/AudioDescriptor.h>
#include <QUIRE/ChannelRole.h>
#include <QUIRE/MDD.h>

#include <optional>
#include <span>
#include <string_view>

namespace QUIRE::PCM {

// The labels of sound, each in one table.

/// A channel's label (ST 428-12; FSK sync: ST 430-12; sign language video: ISDCF Document 13).
struct ChannelLabel {
  ChannelRole_t Role;
  std::string_view Symbol;  ///< without the prefix "ch"
  const char* Name;
  MDD_t Label;
};
[[nodiscard]] std::span<const ChannelLabel> ChannelLabels();

/// A soundfield group's label (ST 428-12), and the channels that make it up.
struct SoundfieldLabel {
  std::string_view Symbol;  ///< without the prefix "sg"
  const char* Name;
  MDD_t Label;
  std::span<const ChannelRole_t> Channels;
};
[[nodiscard]] std::span<const SoundfieldLabel> SoundfieldLabels();

// The channel-assignment label (ST 429-2, A.1.2); CF_NONE has none, and is what an unknown one means.
[[nodiscard]] ChannelFormat_t ChannelFormatOf(const UL& label);
[[nodiscard]] std::optional<UL> AssignmentLabel(ChannelFormat_t format);

}  // namespace QUIRE::PCM
