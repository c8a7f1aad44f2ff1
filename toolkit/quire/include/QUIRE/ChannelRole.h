// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/AudioDescriptor.h>
#include <QUIRE/Export.h>
#include <QUIRE/MCALabel.h>
#include <QUIRE/Types.h>
#include <QUIRE/UL.h>

#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace QUIRE::PCM {

/// What one channel of a sound track is for (ST 428-12).
enum ChannelRole_t : ui8_t {
  CR_NONE = 0,  ///< nothing is said of it: unused
  CR_L,
  CR_R,
  CR_C,
  CR_LFE,
  CR_LS,
  CR_RS,
  CR_LSS,
  CR_RSS,
  CR_LRS,
  CR_RRS,
  CR_LC,
  CR_RC,
  CR_CS,
  CR_HI,             ///< for the hearing impaired: dialogue brought out
  CR_VIN,            ///< narration for the visually impaired
  CR_FSK_SYNC,       ///< synchronisation signal for outboard renderers (ST 430-12); not sound to be heard
  CR_MOTION,         ///< data for moving seats; not sound to be heard
  CR_SIGN_LANGUAGE,  ///< sign language video, coded into samples; not sound to be heard
  CR_OTHER,          ///< labelled as something else
};

/// A role's symbol without its prefix: "L", "LFE", "VIN"; "-" for CR_NONE, "Motion" and "Other" for those that have none.
/// Never null.
[[nodiscard]] QUIRE_API const char* ChannelRoleSymbol(ChannelRole_t role);
/// The role of a symbol without its prefix, letter case included: "Ls", and "-" for CR_NONE. No value for one that is not
/// known.
[[nodiscard]] QUIRE_API std::optional<ChannelRole_t> ChannelRoleOf(std::string_view symbol);
/// What a channel's label means: its dictionary identifier decides. CR_OTHER for one that is not known.
[[nodiscard]] QUIRE_API ChannelRole_t ChannelRoleOf(const UL& label);

/// Sound for the loudspeakers of the hall.
[[nodiscard]] constexpr bool IsForHall(ChannelRole_t role) {
  return role >= CR_L && role <= CR_CS;
}
/// A signal at full level that nobody should hear.
[[nodiscard]] constexpr bool IsSignal(ChannelRole_t role) {
  return role == CR_FSK_SYNC || role == CR_MOTION || role == CR_SIGN_LANGUAGE;
}

/// How it is known which channel is which.
enum ChannelRoleSource_t : ui8_t {
  CRS_LABELS,         ///< by labels of the channels (ST 377-4)
  CRS_CONFIGURATION,  ///< by the channel-assignment label (ST 429-2, A.1.2)
  CRS_ORDER,          ///< the file does not say; by the order that is usual in the field (ISDCF Document 4)
};

struct ChannelRoles {
  std::vector<ChannelRole_t> Roles;  ///< of each channel, in order
  ChannelRoleSource_t Source = CRS_ORDER;
};

/// Channels that are given a role; those behind have none.
inline constexpr ui32_t MaxChannelRoles = 1024;

/// The role of each channel of a sound track: by the labels, where one of them names a channel of the track; else by its
/// configuration; else by the order that is usual: one channel is C, two are L and R, more are
///
///     1 L  2 R  3 C  4 LFE  5 Ls  6 Rs  7 HI  8 VIN  9 Lc  10 Rc  11 Lrs  12 Rrs  13 motion  14 sync  15 sign  16 -
///
/// Configurations 2, 3 and 5 have surround or screen channels at 7 and 8, then HI and VIN at 9 and 10. Tracks of
/// configurations 3 and 5 with more than ten channels are in the usual order in fact. What lies behind the channels of
/// configuration 1 or 2 is unused up to the twelfth. Of two labels for one channel the first one counts.
[[nodiscard]] QUIRE_API ChannelRoles ChannelRolesOf(const AudioDescriptor& sound, const MCALabelList& labels);

/// How many channels a configuration can have (ST 429-2, A.1.2).
struct ChannelCounts {
  ui32_t Least = 0;
  ui32_t Most = 0;
  friend bool operator==(const ChannelCounts&, const ChannelCounts&) = default;
};
/// 1 to 16 where the configuration leaves it open.
[[nodiscard]] QUIRE_API ChannelCounts ChannelCountsOf(ChannelFormat_t format);

/// The channels that make up a soundfield group, in their usual order, by its symbol without prefix ("51") or by the
/// dictionary identifier of its label (ST 428-12). Empty for one that is not known.
[[nodiscard]] QUIRE_API std::span<const ChannelRole_t> SoundfieldChannels(std::string_view symbol);
[[nodiscard]] QUIRE_API std::span<const ChannelRole_t> SoundfieldChannels(const UL& label);

}  // namespace QUIRE::PCM
