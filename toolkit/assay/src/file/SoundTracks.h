// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "CompositionFiles.h"

#include <QUIRE/ChannelRole.h>

#include <string>
#include <vector>

namespace Assay {

/// The sound of a reel, whose file is at hand and open.
struct SoundTrack {
  const AssetFile* Use = nullptr;
  const SoundHeader* Header = nullptr;
  QUIRE::PCM::ChannelRoles Roles;

  [[nodiscard]] ui32_t ChannelCount() const { return Header->Descriptor.ChannelCount; }
  [[nodiscard]] bool Has(QUIRE::PCM::ChannelRole_t role) const;
};

/// The sounds of a composition in the order of its reels. They point to `composition`.
[[nodiscard]] std::vector<SoundTrack> SoundTracksOf(const CompositionFiles& composition);

/// The place of an asset's use.
[[nodiscard]] FindingPlace PlaceOf(const CompositionFiles& composition, const AssetFile& use);

/// "L,R,C,-" of the first 32 channels, for a report.
[[nodiscard]] std::string TextOf(const std::vector<QUIRE::PCM::ChannelRole_t>& roles);
/// "48000", or "48000/1001" for a rate that is not whole.
[[nodiscard]] std::string RateText(const QUIRE::Rational& rate);
/// "1 channel", "6 channels"
[[nodiscard]] std::string ChannelsText(ui64_t count);

// What makes up FindInSounds.

/// sound-language
void FindSoundLanguages(const CompositionFiles& composition, const std::vector<SoundTrack>& tracks,
                        FindingList& findings);
/// meta-sound-configuration, meta-sound-rate
void FindSoundMetadata(const CompositionFiles& composition, const std::vector<SoundTrack>& tracks,
                       FindingList& findings);
/// title-audio
void FindTitleAudio(const CompositionFiles& composition, const std::vector<SoundTrack>& tracks, FindingList& findings);

}  // namespace Assay
