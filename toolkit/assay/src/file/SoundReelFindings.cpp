// SPDX-License-Identifier: BSD-3-Clause
#include "SoundFindings.h"
#include "SoundTracks.h"

#include "base/Text.h"
#include "document/PackageFindings.h"

#include <algorithm>

namespace Assay {
namespace {

using namespace QUIRE::PCM;

constexpr ui32_t FeatureChannels = 6;
constexpr ui32_t SyncChannel = 14;  // ISDCF Document 4

/// Few channels in a feature. What is wrong with their number by itself is told of the file.
void FindFewChannels(const CompositionFiles& composition, const std::vector<SoundTrack>& tracks,
                     FindingList& findings) {
  const Node* kind = composition.Composition->Root().Child("ContentKind");
  if (tracks.empty() || ToLower(TextOf(kind)) != "feature") return;
  const ui32_t count = tracks.front().ChannelCount();
  if (count >= FeatureChannels || count == 0 || count % 2 != 0) return;
  Add(findings, Finding(FindingID::SoundChannels, FindingClass::Note), PlaceOf(composition, *tracks.front().Use),
      "6 channels or more in a feature", std::to_string(count));
}

bool HaveOneFormat(const SoundTrack& first, const SoundTrack& second) {
  return first.ChannelCount() == second.ChannelCount() && first.Roles.Roles == second.Roles.Roles &&
         first.Header->Descriptor.ChannelFormat == second.Header->Descriptor.ChannelFormat &&
         AreEqual(first.Header->Descriptor.AudioSamplingRate, second.Header->Descriptor.AudioSamplingRate);
}

std::string FormatText(const SoundTrack& track) {
  const AudioDescriptor& sound = track.Header->Descriptor;
  std::string text = ChannelsText(sound.ChannelCount);
  if (sound.ChannelFormat == CF_CFG_6)
    text += " with labels by name";
  else if (sound.ChannelFormat != CF_NONE)
    text += " in configuration " + std::to_string(sound.ChannelFormat);
  if (track.Roles.Source == CRS_LABELS) text += ": " + TextOf(track.Roles.Roles);
  return text + ", " + RateText(sound.AudioSamplingRate) + " Hz";
}

void FindChanges(const CompositionFiles& composition, const std::vector<SoundTrack>& tracks, FindingList& findings) {
  for (size_t i = 1; i < tracks.size(); ++i)
    if (!HaveOneFormat(tracks[i - 1], tracks[i]))
      Add(findings, Finding(FindingID::SoundChanges), PlaceOf(composition, *tracks[i].Use), FormatText(tracks[i - 1]),
          FormatText(tracks[i]));
}

const QUIRE::ATMOS::AtmosDescriptor* ImmersiveOf(const AssetFile& use) {
  return use.IsOpen() ? use.File->As<QUIRE::ATMOS::AtmosDescriptor>() : nullptr;
}

/// The rate of the picture of a reel: that of its file, else as the composition has it.
std::optional<QUIRE::Rational> PictureRate(const CompositionFiles& composition, const Reel& reel) {
  for (const AssetFile& use : composition.Assets) {
    if (use.Reel != &reel || use.Asset->Role != AssetRole::Picture) continue;
    if (use.IsOpen()) return use.File->EditRate;
    return use.Asset->EditRate;
  }
  return std::nullopt;
}

void FindImmersiveRates(const CompositionFiles& composition, FindingList& findings) {
  for (const AssetFile& use : composition.Assets) {
    const auto* immersive = ImmersiveOf(use);
    if (immersive == nullptr) continue;
    const auto picture = PictureRate(composition, *use.Reel);
    if (!picture || AreEqual(*picture, use.File->EditRate)) continue;
    Add(findings, Finding(FindingID::AuxAtmosRate), PlaceOf(composition, use), RateText(*picture),
        RateText(use.File->EditRate));
  }
}

/// Whether there can be a synchronisation signal: by labels, or where it usually is.
bool HasSync(const SoundTrack& track) {
  return track.Has(CR_FSK_SYNC) || (track.Roles.Source != CRS_LABELS && track.ChannelCount() >= SyncChannel);
}

/// Told once for a composition.
void FindSync(const CompositionFiles& composition, const std::vector<SoundTrack>& tracks, FindingList& findings) {
  if (composition.Composition->IsInterop()) return;
  for (const SoundTrack& track : tracks) {
    const bool has_immersive = std::ranges::any_of(composition.Assets, [&](const AssetFile& use) {
      return use.Reel == track.Use->Reel && ImmersiveOf(use) != nullptr;
    });
    if (!has_immersive || HasSync(track)) continue;
    return Add(findings, Finding(FindingID::AuxSync), PlaceOf(composition, *track.Use), "a signal on channel 14",
               track.Roles.Source == CRS_LABELS ? "no channel labelled so" : ChannelsText(track.ChannelCount()));
  }
}

}  // namespace

void FindInSounds(const CompositionFiles& composition, FindingList& findings) {
  const std::vector<SoundTrack> tracks = SoundTracksOf(composition);
  FindFewChannels(composition, tracks, findings);
  FindChanges(composition, tracks, findings);
  FindSoundLanguages(composition, tracks, findings);
  FindSoundMetadata(composition, tracks, findings);
  FindTitleAudio(composition, tracks, findings);
  FindImmersiveRates(composition, findings);
  FindSync(composition, tracks, findings);
}

}  // namespace Assay
