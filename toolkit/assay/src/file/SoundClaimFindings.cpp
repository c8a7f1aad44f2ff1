// SPDX-License-Identifier: BSD-3-Clause
#include "SoundTracks.h"

#include "base/LanguageSubtags.h"
#include "base/LanguageTag.h"
#include "base/Text.h"
#include "document/PackageFindings.h"
#include "document/TitleConvention.h"

#include <algorithm>
#include <set>

namespace Assay {
namespace {

using namespace QUIRE::PCM;

// --- Languages ---

/// A language tag in lower case; empty for anything else, such as the names of languages that Interop has.
std::string TagOf(std::string_view text) {
  return IsLanguageTag(text) && UnknownSubtag(text).empty() ? ToLower(text) : std::string();
}

/// Whether one language is the other, or includes it: en and en-US.
bool DoAgree(const std::string& first, const std::string& second) {
  const auto includes = [](const std::string& wide, const std::string& narrow) {
    return narrow == wide || narrow.starts_with(wide + '-');
  };
  return includes(first, second) || includes(second, first);
}

/// The language of the sound for the hall: that of the first group that tells it, else of the first such channel.
std::string LanguageOf(const MCALabelList& labels) {
  for (const MCALabel& label : labels)
    if (label.Kind == MCA_SOUNDFIELD_GROUP && !label.SpokenLanguage.empty()) return label.SpokenLanguage;
  for (const MCALabel& label : labels)
    if (label.Kind == MCA_CHANNEL && IsForHall(ChannelRoleOf(label.DictionaryID)) && !label.SpokenLanguage.empty())
      return label.SpokenLanguage;
  return {};
}

class LanguageCheck {
 public:
  LanguageCheck(const CompositionFiles& composition, FindingList& findings)
      : m_Composition(composition), m_Findings(findings) {}

  void Run(const std::vector<SoundTrack>& tracks) {
    for (const AssetFile& use : m_Composition.Assets)
      if (use.Asset->Role == AssetRole::Sound) Hear(use.Asset->Language, PlaceOf(m_Composition, use), "");
    for (const SoundTrack& track : tracks)
      Hear(LanguageOf(track.Header->Labels), PlaceOf(m_Composition, *track.Use), " by its labels");
    const Composition& composition = *m_Composition.Composition;
    const std::string title = ReadTitle(composition.Title).SoundLanguage;
    // Longer codes are the convention's own.
    if (title.size() == 2 && title != "XX")
      Hear(title, composition.At(composition.Root().Child("ContentTitleText")), " by the title");
  }

 private:
  /// The first language told is what the others are held against; each other one is told once.
  void Hear(const std::string& written, const FindingPlace& place, const std::string& source) {
    const std::string tag = TagOf(written);
    if (tag.empty()) return;
    if (m_First.empty()) {
      m_First = tag;
      m_Written = written;
    } else if (!DoAgree(m_First, tag) && m_Told.insert(source + tag).second) {
      Add(m_Findings, Finding(FindingID::SoundLanguage), place, Quoted(m_Written), Quoted(written) + source);
    }
  }

  const CompositionFiles& m_Composition;
  FindingList& m_Findings;
  std::string m_First, m_Written;
  std::set<std::string> m_Told;
};

// --- Metadata ---

/// The one element of metadata; null where there is none, or not one.
const Node* MetadataOf(const Composition& composition) {
  const Node* metadata = nullptr;
  for (const Reel& reel : composition.Reels)
    for (const ReelAsset& asset : reel.Assets) {
      if (asset.Role != AssetRole::Metadata) continue;
      if (metadata != nullptr) return nullptr;
      metadata = asset.Element;
    }
  return metadata;
}

/// A symbol as compositions have it, beyond those of the labels.
std::optional<ChannelRole_t> RoleOfSymbol(std::string_view symbol) {
  if (symbol == "DBOX" || symbol == "DBOX2") return CR_MOTION;
  if (symbol == "FSK" || symbol == "FSKSyncSignal") return CR_FSK_SYNC;
  return ChannelRoleOf(symbol);
}

/// The channels of "51/L,R,C,LFE,Ls,Rs,-,-", or the first symbol that is not known.
struct WrittenChannels {
  std::vector<ChannelRole_t> Roles;
  std::string Unknown;
};

WrittenChannels ReadChannels(std::string_view text) {
  WrittenChannels channels;
  const size_t slash = text.find('/');
  if (slash == std::string_view::npos || slash == 0) {
    channels.Unknown = text;
    return channels;
  }
  for (const std::string_view symbol : Split(text.substr(slash + 1), ',')) {
    const auto role = RoleOfSymbol(Trim(symbol));
    if (!role) {
      channels.Unknown = symbol.empty() ? text : symbol;
      return channels;
    }
    channels.Roles.push_back(*role);
  }
  return channels;
}

/// Whether two orders of as many channels contradict each other. Labels tell everything; of a configuration the first six
/// channels are certain, of 5.1 the next two as well, and any of them may be unused.
bool DoContradict(const SoundTrack& track, const std::vector<ChannelRole_t>& written) {
  if (track.Roles.Source == CRS_ORDER) return false;
  if (track.Roles.Source == CRS_LABELS) return track.Roles.Roles != written;
  const size_t certain = track.Header->Descriptor.ChannelFormat == CF_CFG_1 ? 8 : 6;
  for (size_t i = 0; i < std::min(certain, written.size()); ++i)
    if (written[i] != CR_NONE && written[i] != track.Roles.Roles[i]) return true;
  return false;
}

/// What is wrong with the written configuration, beside the first sound of the composition.
void FindConfiguration(const CompositionFiles& composition, const Node& element, const std::vector<SoundTrack>& tracks,
                       FindingList& findings) {
  const std::string_view text = TextOf(&element);
  const Composition& whole = *composition.Composition;
  const auto say = [&](const std::string& expected, const std::string& found) {
    Add(findings, Finding(FindingID::MetaSoundConfiguration), whole.At(&element, &whole.Reels.front()), expected,
        found);
  };
  if (!whole.Has(AssetRole::Sound) && (text == "-" || text.ends_with("/-"))) return;
  const WrittenChannels written = ReadChannels(text);
  if (!written.Unknown.empty() || written.Roles.empty())
    return say("symbols of channels, such as 51/L,R,C,LFE,Ls,Rs", Quoted(written.Unknown));
  if (tracks.empty()) return;
  const SoundTrack& track = tracks.front();
  if (written.Roles.size() != track.ChannelCount())
    return say(ChannelsText(track.ChannelCount()), ChannelsText(written.Roles.size()));
  if (DoContradict(track, written.Roles)) say(TextOf(track.Roles.Roles), TextOf(written.Roles));
}

// --- Title ---

/// What the audio field of a title stands for.
struct AudioClaim {
  const char* Field;
  ui32_t Channels;  ///< in the hall
};
constexpr AudioClaim AudioClaims[] = {{"10", 1}, {"20", 2}, {"30", 3}, {"40", 4},
                                      {"50", 5}, {"51", 6}, {"61", 7}, {"71", 8}};

class TitleAudioCheck {
 public:
  TitleAudioCheck(const CompositionFiles& composition, FindingList& findings)
      : m_Composition(composition), m_Findings(findings), m_Claims(ReadTitle(composition.Composition->Title)) {}

  void Run(const std::vector<SoundTrack>& tracks) {
    if (m_Claims.Audio.empty()) return;
    const bool has_sound = m_Composition.Composition->Has(AssetRole::Sound);
    const bool claims_sound = m_Claims.Audio != "MOS";
    if (has_sound != claims_sound) Say(m_Claims.Audio, has_sound ? "sound" : "no sound");
    if (has_sound != claims_sound) return;
    if (tracks.empty()) return;
    FindChannels(tracks.front());
    FindRole(tracks.front(), m_Claims.HasHI, CR_HI, "HI");
    FindRole(tracks.front(), m_Claims.HasVI, CR_VIN, "VI");
  }

 private:
  void Say(const std::string& expected, const std::string& found) {
    const Composition& composition = *m_Composition.Composition;
    Add(m_Findings, Finding(FindingID::TitleAudio), composition.At(composition.Root().Child("ContentTitleText")),
        expected, found);
  }

  /// Labels name the channels in use. A configuration may leave some unused, so that a title may claim mono or stereo;
  /// with a number of channels that is not the configuration's it proves nothing.
  void FindChannels(const SoundTrack& track) {
    const auto* claim =
        std::ranges::find_if(AudioClaims, [&](const AudioClaim& each) { return m_Claims.Audio == each.Field; });
    if (claim == std::end(AudioClaims)) return;
    const auto in_hall = static_cast<ui32_t>(std::ranges::count_if(track.Roles.Roles, IsForHall));
    const ChannelCounts counts = ChannelCountsOf(track.Header->Descriptor.ChannelFormat);
    const bool is_certain =
        track.Roles.Source == CRS_CONFIGURATION && track.ChannelCount() <= counts.Most && claim->Channels >= 6;
    if (track.Roles.Source == CRS_LABELS || is_certain) {
      if (in_hall != claim->Channels) Say(m_Claims.Audio, TextOf(track.Roles.Roles));
    } else if (track.ChannelCount() < claim->Channels) {
      Say(m_Claims.Audio, ChannelsText(track.ChannelCount()));
    }
  }

  void FindRole(const SoundTrack& track, bool is_claimed, ChannelRole_t role, const char* name) {
    if (is_claimed && !track.Has(role)) Say(name, TextOf(track.Roles.Roles));
  }

  const CompositionFiles& m_Composition;
  FindingList& m_Findings;
  TitleClaims m_Claims;
};

}  // namespace

void FindSoundLanguages(const CompositionFiles& composition, const std::vector<SoundTrack>& tracks,
                        FindingList& findings) {
  LanguageCheck(composition, findings).Run(tracks);
}

void FindSoundMetadata(const CompositionFiles& composition, const std::vector<SoundTrack>& tracks,
                       FindingList& findings) {
  const Composition& whole = *composition.Composition;
  const Node* metadata = whole.IsInterop() ? nullptr : MetadataOf(whole);
  if (metadata == nullptr) return;
  if (const Node* configuration = metadata->Child("MainSoundConfiguration"))
    FindConfiguration(composition, *configuration, tracks, findings);
  const Node* element = metadata->Child("MainSoundSampleRate");
  const auto rate = RateOf(element);
  if (!rate || tracks.empty() || AreEqual(*rate, tracks.front().Header->Descriptor.AudioSamplingRate)) return;
  Add(findings, Finding(FindingID::MetaSoundRate), whole.At(element, &whole.Reels.front()),
      RateText(tracks.front().Header->Descriptor.AudioSamplingRate), RateText(*rate));
}

void FindTitleAudio(const CompositionFiles& composition, const std::vector<SoundTrack>& tracks, FindingList& findings) {
  TitleAudioCheck(composition, findings).Run(tracks);
}

}  // namespace Assay
