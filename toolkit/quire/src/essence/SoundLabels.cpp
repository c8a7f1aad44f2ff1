// SPDX-License-Identifier: BSD-3-Clause
#include "SoundLabels.h"

#include <QUIRE/Dictionary.h>

#include <utility>

namespace QUIRE::PCM {

namespace {

constexpr ChannelLabel Channels[] = {
    {CR_L, "L", "Left", MDD_DCAudioChannel_L},
    {CR_R, "R", "Right", MDD_DCAudioChannel_R},
    {CR_C, "C", "Center", MDD_DCAudioChannel_C},
    {CR_LFE, "LFE", "LFE", MDD_DCAudioChannel_LFE},
    {CR_LS, "Ls", "Left Surround", MDD_DCAudioChannel_Ls},
    {CR_RS, "Rs", "Right Surround", MDD_DCAudioChannel_Rs},
    {CR_LSS, "Lss", "Left Side Surround", MDD_DCAudioChannel_Lss},
    {CR_RSS, "Rss", "Right Side Surround", MDD_DCAudioChannel_Rss},
    {CR_LRS, "Lrs", "Left Rear Surround", MDD_DCAudioChannel_Lrs},
    {CR_RRS, "Rrs", "Right Rear Surround", MDD_DCAudioChannel_Rrs},
    {CR_LC, "Lc", "Left Center", MDD_DCAudioChannel_Lc},
    {CR_RC, "Rc", "Right Center", MDD_DCAudioChannel_Rc},
    {CR_CS, "Cs", "Center Surround", MDD_DCAudioChannel_Cs},
    {CR_HI, "HI", "Hearing Impaired", MDD_DCAudioChannel_HI},
    {CR_VIN, "VIN", "Visually Impaired-Narrative", MDD_DCAudioChannel_VIN},
    {CR_FSK_SYNC, "FSKSync", "FSK Sync", MDD_DCAudioChannel_FSKSync},
    {CR_SIGN_LANGUAGE, "SLVS", "Sign Language Video Stream", MDD_DCAudioChannel_SLVS},
};

constexpr ChannelRole_t FiveOne[] = {CR_L, CR_R, CR_C, CR_LFE, CR_LS, CR_RS};
constexpr ChannelRole_t SixOne[] = {CR_L, CR_R, CR_C, CR_LFE, CR_LS, CR_RS, CR_CS};
constexpr ChannelRole_t SevenOneSDS[] = {CR_L, CR_R, CR_C, CR_LFE, CR_LS, CR_RS, CR_LC, CR_RC};
constexpr ChannelRole_t SevenOneDS[] = {CR_L, CR_R, CR_C, CR_LFE, CR_LSS, CR_RSS, CR_LRS, CR_RRS};
constexpr ChannelRole_t Monaural[] = {CR_C};

constexpr SoundfieldLabel Soundfields[] = {
    {"51", "5.1", MDD_DCAudioSoundfield_51, FiveOne},          {"71", "7.1DS", MDD_DCAudioSoundfield_71, SevenOneDS},
    {"SDS", "7.1SDS", MDD_DCAudioSoundfield_SDS, SevenOneSDS}, {"61", "6.1", MDD_DCAudioSoundfield_61, SixOne},
    {"M", "1.0 Monaural", MDD_DCAudioSoundfield_M, Monaural},
};

constexpr std::pair<MDD_t, ChannelFormat_t> Assignments[] = {
    {MDD_DCAudioChannelCfg_1_5p1, CF_CFG_1},    {MDD_DCAudioChannelCfg_2_6p1, CF_CFG_2},
    {MDD_DCAudioChannelCfg_3_7p1, CF_CFG_3},    {MDD_DCAudioChannelCfg_4_WTF, CF_CFG_4},
    {MDD_DCAudioChannelCfg_5_7p1_DS, CF_CFG_5}, {MDD_DCAudioChannelCfg_MCA, CF_CFG_6},
};

}  // namespace

std::span<const ChannelLabel> ChannelLabels() {
  return Channels;
}

std::span<const SoundfieldLabel> SoundfieldLabels() {
  return Soundfields;
}

ChannelFormat_t ChannelFormatOf(const UL& label) {
  for (const auto& [entry, format] : Assignments)
    if (DefaultSMPTEDict().Is(label, entry)) return format;
  return CF_NONE;
}

std::optional<UL> AssignmentLabel(ChannelFormat_t format) {
  for (const auto& [entry, known] : Assignments)
    if (known == format) return DefaultSMPTEDict().ul(entry);
  return std::nullopt;
}

}  // namespace QUIRE::PCM
