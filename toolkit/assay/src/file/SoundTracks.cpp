// SPDX-License-Identifier: BSD-3-Clause
#include "SoundTracks.h"

#include <algorithm>

namespace Assay {

using QUIRE::PCM::ChannelRole_t;

bool SoundTrack::Has(ChannelRole_t role) const {
  return std::ranges::find(Roles.Roles, role) != Roles.Roles.end();
}

std::vector<SoundTrack> SoundTracksOf(const CompositionFiles& composition) {
  std::vector<SoundTrack> tracks;
  for (const AssetFile& use : composition.Assets) {
    if (use.Asset->Role != AssetRole::Sound || !use.IsOpen()) continue;
    const auto* header = use.File->As<SoundHeader>();
    if (header != nullptr) tracks.push_back({&use, header, ChannelRolesOf(header->Descriptor, header->Labels)});
  }
  return tracks;
}

FindingPlace PlaceOf(const CompositionFiles& composition, const AssetFile& use) {
  return composition.Composition->At(use.Asset->Element, use.Reel, use.Asset);
}

std::string TextOf(const std::vector<ChannelRole_t>& roles) {
  constexpr size_t MostShown = 32;
  std::string text;
  for (size_t i = 0; i < std::min(roles.size(), MostShown); ++i)
    text += (i == 0 ? "" : ",") + std::string(ChannelRoleSymbol(roles[i]));
  return roles.size() > MostShown ? text + ",\u2026" : text;
}

std::string RateText(const QUIRE::Rational& rate) {
  const std::string text = std::to_string(rate.Numerator);
  return rate.Denominator == 1 ? text : text + '/' + std::to_string(rate.Denominator);
}

std::string ChannelsText(ui64_t count) {
  return std::to_string(count) + (count == 1 ? " channel" : " channels");
}

}  // namespace Assay
