// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/ChannelRole.h>

#include "SoundLabels.h"

#include <QUIRE/Dictionary.h>

#include <algorithm>

namespace QUIRE::PCM {

namespace {

// What is usual where nothing is said, and the configurations.
constexpr ChannelRole_t Usual[] = {CR_L,  CR_R,  CR_C,   CR_LFE, CR_LS,     CR_RS,       CR_HI,           CR_VIN,
                                   CR_LC, CR_RC, CR_LRS, CR_RRS, CR_MOTION, CR_FSK_SYNC, CR_SIGN_LANGUAGE};
constexpr ChannelRole_t UsualSide[] = {CR_L,  CR_R,  CR_C,   CR_LFE, CR_LSS,    CR_RSS,      CR_HI,           CR_VIN,
                                       CR_LC, CR_RC, CR_LRS, CR_RRS, CR_MOTION, CR_FSK_SYNC, CR_SIGN_LANGUAGE};
constexpr ChannelRole_t FiveOne[] = {CR_L,    CR_R,    CR_C,      CR_LFE,      CR_LS,
                                     CR_RS,   CR_HI,   CR_VIN,    CR_NONE,     CR_NONE,
                                     CR_NONE, CR_NONE, CR_MOTION, CR_FSK_SYNC, CR_SIGN_LANGUAGE};
constexpr ChannelRole_t SixOne[] = {CR_L,  CR_R,   CR_C,    CR_LFE,  CR_LS,     CR_RS,       CR_CS,           CR_NONE,
                                    CR_HI, CR_VIN, CR_NONE, CR_NONE, CR_MOTION, CR_FSK_SYNC, CR_SIGN_LANGUAGE};
constexpr ChannelRole_t SevenOneSDS[] = {CR_L, CR_R, CR_C, CR_LFE, CR_LS, CR_RS, CR_LC, CR_RC, CR_HI, CR_VIN};
constexpr ChannelRole_t SevenOneDS[] = {CR_L, CR_R, CR_C, CR_LFE, CR_LSS, CR_RSS, CR_LRS, CR_RRS, CR_HI, CR_VIN};
constexpr ChannelRole_t Stereo[] = {CR_L, CR_R};
constexpr ChannelRole_t Mono[] = {CR_C};

// Labels of data for moving seats, by bytes 9 to 14.
constexpr ui8_t MotionLabel[] = {0x0e, 0x16, 0x01, 0x01, 0x01, 0x01};

std::span<const ChannelRole_t> OrderOf(ChannelFormat_t format, ui32_t channels) {
  switch (format) {
    case CF_CFG_1:
      return FiveOne;
    case CF_CFG_2:
      return SixOne;
    case CF_CFG_3:
      if (channels > std::size(SevenOneSDS)) return Usual;
      return SevenOneSDS;
    case CF_CFG_5:
      if (channels > std::size(SevenOneDS)) return UsualSide;
      return SevenOneDS;
    case CF_NONE:
    case CF_CFG_4:
    case CF_CFG_6:
      break;
  }
  if (channels == 1) return Mono;
  if (channels == 2) return Stereo;
  return Usual;
}

/// Gives each channel the role of its label; false where no label names a channel.
bool TakeLabels(const MCALabelList& labels, std::vector<ChannelRole_t>& roles) {
  bool has = false;
  for (const MCALabel& label : labels) {
    // One channel alone needs no number.
    const ui32_t channel = label.ChannelID == 0 && roles.size() == 1 ? 1 : label.ChannelID;
    if (label.Kind != MCA_CHANNEL || channel == 0 || channel > roles.size()) continue;
    ChannelRole_t& role = roles[channel - 1];
    if (role == CR_NONE) role = ChannelRoleOf(label.DictionaryID);
    has = true;
  }
  return has;
}

}  // namespace

const char* ChannelRoleSymbol(ChannelRole_t role) {
  for (const ChannelLabel& known : ChannelLabels())
    if (known.Role == role) return known.Symbol.data();
  return role == CR_MOTION ? "Motion" : role == CR_OTHER ? "Other" : "-";
}

std::optional<ChannelRole_t> ChannelRoleOf(std::string_view symbol) {
  for (const ChannelLabel& known : ChannelLabels())
    if (known.Symbol == symbol) return known.Role;
  if (symbol == "-") return CR_NONE;
  return std::nullopt;
}

ChannelRole_t ChannelRoleOf(const UL& label) {
  for (const ChannelLabel& known : ChannelLabels())
    if (DefaultSMPTEDict().Is(label, known.Label)) return known.Role;
  return std::equal(std::begin(MotionLabel), std::end(MotionLabel), label.Value() + 8) ? CR_MOTION : CR_OTHER;
}

ChannelRoles ChannelRolesOf(const AudioDescriptor& sound, const MCALabelList& labels) {
  ChannelRoles roles;
  roles.Roles.resize(std::min(sound.ChannelCount, MaxChannelRoles), CR_NONE);
  if (TakeLabels(labels, roles.Roles)) {
    roles.Source = CRS_LABELS;
    return roles;
  }
  const auto order = OrderOf(sound.ChannelFormat, sound.ChannelCount);
  std::copy_n(order.begin(), std::min(order.size(), roles.Roles.size()), roles.Roles.begin());
  const bool is_fixed =
      sound.ChannelFormat != CF_NONE && sound.ChannelFormat != CF_CFG_4 && sound.ChannelFormat != CF_CFG_6;
  roles.Source = is_fixed ? CRS_CONFIGURATION : CRS_ORDER;
  return roles;
}

ChannelCounts ChannelCountsOf(ChannelFormat_t format) {
  switch (format) {
    case CF_CFG_1:
      return {6, 8};
    case CF_CFG_2:
      return {7, 10};
    case CF_CFG_3:
    case CF_CFG_5:
      return {8, 10};
    case CF_NONE:
    case CF_CFG_4:
    case CF_CFG_6:
      break;
  }
  return {1, 16};
}

std::span<const ChannelRole_t> SoundfieldChannels(std::string_view symbol) {
  for (const SoundfieldLabel& known : SoundfieldLabels())
    if (known.Symbol == symbol) return known.Channels;
  return {};
}

std::span<const ChannelRole_t> SoundfieldChannels(const UL& label) {
  for (const SoundfieldLabel& known : SoundfieldLabels())
    if (DefaultSMPTEDict().Is(label, known.Label)) return known.Channels;
  return {};
}

}  // namespace QUIRE::PCM
