// SPDX-License-Identifier: BSD-3-Clause
#include "SoundFindings.h"
#include "SoundTracks.h"

#include "base/LanguageSubtags.h"
#include "base/LanguageTag.h"
#include "base/Text.h"
#include "document/PackageFindings.h"

#include <algorithm>
#include <set>

namespace Assay {
namespace {

using namespace QUIRE::PCM;

constexpr ui32_t SampleBits = 24;
constexpr ui32_t BytesPerSample = 3;
constexpr ui32_t MaxChannels = 16;
constexpr ui32_t MaxImmersiveChannels = 64;
constexpr ui32_t MaxImmersiveObjects = 118;

/// What is found in one header of sound.
class SoundFileCheck {
 public:
  SoundFileCheck(const TrackFile& file, const SoundHeader& header, FindingList& findings)
      : m_File(file), m_Sound(header.Descriptor), m_Labels(header.Labels), m_Findings(findings) {}

  void Run() {
    FindRate();
    FindBits();
    FindChannels();
    if (m_File.Info.LabelSetType == QUIRE::LS_MXF_INTEROP) return;
    FindAssignment();
    FindDoubleLabels();
    FindStrayLabels();
    FindGroups();
    FindLanguages();
  }

 private:
  void Say(const Finding& finding, const std::string& expected, const std::string& found, ui32_t channel = 0) {
    Add(m_Findings, finding, m_File.At(), expected, found);
    m_Findings.back().Place.Channel = channel;
  }

  void FindRate() {
    const bool is_double = AreEqual(m_Sound.AudioSamplingRate, QUIRE::SampleRate_96k);
    if (HasRate() && (is_double || AreEqual(m_Sound.AudioSamplingRate, QUIRE::SampleRate_48k))) {
      if (is_double)
        Say(Finding(FindingID::SoundRate, FindingClass::Profile), "48000 samples a second",
            RateText(m_Sound.AudioSamplingRate));
      return;
    }
    Say(Finding(FindingID::SoundRate), "48000 or 96000 samples a second", RateText(m_Sound.AudioSamplingRate));
  }
  [[nodiscard]] bool HasRate() const {
    return m_Sound.AudioSamplingRate.Numerator > 0 && m_Sound.AudioSamplingRate.Denominator > 0;
  }

  void FindBits() {
    const ui64_t align = ui64_t{m_Sound.ChannelCount} * BytesPerSample;
    if (m_Sound.QuantizationBits != SampleBits)
      Say(Finding(FindingID::SoundBits), "24 bits", std::to_string(m_Sound.QuantizationBits) + " bits");
    else if (m_Sound.ChannelCount != 0 && m_Sound.BlockAlign != align)
      Say(Finding(FindingID::SoundBits), std::to_string(align) + " bytes for a sample of all channels",
          std::to_string(m_Sound.BlockAlign));
  }

  void FindChannels() {
    const ui32_t count = m_Sound.ChannelCount;
    const ChannelCounts counts = ChannelCountsOf(m_Sound.ChannelFormat);
    if (count == 0 || count > MaxChannels) {
      Say(Finding(FindingID::SoundChannels), "1 to 16 channels", std::to_string(count));
    } else if (count % 2 != 0 && !HasCenterSurround()) {
      Say(Finding(FindingID::SoundChannels, FindingClass::Warning), "an even number of channels",
          std::to_string(count));
    }
    if (m_Sound.ChannelFormat == CF_NONE || m_Sound.ChannelFormat == CF_CFG_4 || m_Sound.ChannelFormat == CF_CFG_6)
      return;
    if (count >= counts.Least && count <= counts.Most) return;
    Say(Finding(FindingID::SoundConfiguration),
        std::to_string(counts.Least) + " to " + std::to_string(counts.Most) + " channels in configuration " +
            std::to_string(m_Sound.ChannelFormat),
        std::to_string(count));
  }

  /// 6.1 alone has an odd number of channels.
  [[nodiscard]] bool HasCenterSurround() const {
    if (m_Sound.ChannelFormat == CF_CFG_2) return true;
    return std::ranges::any_of(m_Labels,
                               [](const MCALabel& label) { return ChannelRoleOf(label.DictionaryID) == CR_CS; });
  }

  void FindAssignment() {
    const bool has_labels =
        std::ranges::any_of(m_Labels, [](const MCALabel& label) { return label.Kind == MCA_CHANNEL; });
    if (m_Sound.ChannelFormat == CF_NONE)
      Say(Finding(FindingID::SoundLabels), "a label of the channels' configuration", "none");
    else if (m_Sound.ChannelFormat != CF_CFG_4 && m_Sound.ChannelFormat != CF_CFG_6)
      Say(Finding(FindingID::SoundLabels, FindingClass::Profile), "configuration 4, or labels by name (MCA)",
          "configuration " + std::to_string(m_Sound.ChannelFormat));
    else if (!has_labels)
      Say(Finding(FindingID::SoundLabels, FindingClass::Profile), "a label for each channel in use (MCA)", "none");
  }

  void FindDoubleLabels() {
    std::map<ui32_t, std::vector<const MCALabel*>> channels;
    for (const MCALabel& label : m_Labels)
      if (label.Kind == MCA_CHANNEL && label.ChannelID != 0) channels[label.ChannelID].push_back(&label);
    for (const auto& [channel, labels] : channels) {
      if (labels.size() < 2) continue;
      Say(Finding(FindingID::SoundMCA), "one label for a channel",
          Quoted(labels[0]->TagSymbol) + " and " + Quoted(labels[1]->TagSymbol), channel);
    }
  }

  void FindStrayLabels() {
    std::set<ui32_t> told;
    for (const MCALabel& label : m_Labels) {
      if (label.Kind != MCA_CHANNEL) continue;
      const bool is_there = label.ChannelID >= 1 && label.ChannelID <= m_Sound.ChannelCount;
      const bool is_only = label.ChannelID == 0 && m_Sound.ChannelCount == 1;
      if (is_there || is_only || !told.insert(label.ChannelID).second) continue;
      Say(Finding(FindingID::SoundMCA), "a channel from 1 to " + std::to_string(m_Sound.ChannelCount),
          Quoted(label.TagSymbol) + " for " +
              (label.ChannelID == 0 ? "none" : "channel " + std::to_string(label.ChannelID)));
    }
  }

  void FindGroups() {
    for (size_t place = 0; place < m_Labels.size(); ++place) {
      if (m_Labels[place].Kind != MCA_SOUNDFIELD_GROUP) continue;
      std::vector<ChannelRole_t> missing;
      const std::set<ChannelRole_t> members = MembersOf(place);
      for (const ChannelRole_t role : SoundfieldChannels(m_Labels[place].DictionaryID))
        if (!members.contains(role)) missing.push_back(role);
      if (!missing.empty() || members.empty())
        Say(Finding(FindingID::SoundMCA), "all channels of " + Quoted(m_Labels[place].TagSymbol),
            missing.empty() ? "none" : "without " + TextOf(missing));
    }
  }

  [[nodiscard]] std::set<ChannelRole_t> MembersOf(size_t group) const {
    std::set<ChannelRole_t> members;
    for (const MCALabel& label : m_Labels)
      if (label.Kind == MCA_CHANNEL && std::ranges::find(label.Groups, group) != label.Groups.end())
        members.insert(ChannelRoleOf(label.DictionaryID));
    return members;
  }

  void FindLanguages() {
    std::set<std::string> told;
    for (const MCALabel& label : m_Labels) {
      const std::string& tag = label.SpokenLanguage;
      if (tag.empty() || (IsLanguageTag(tag) && UnknownSubtag(tag).empty()) || !told.insert(tag).second) continue;
      Say(Finding(FindingID::SoundMCA), "a language tag such as en or fr-CA", Quoted(tag));
    }
  }

  const TrackFile& m_File;
  const AudioDescriptor& m_Sound;
  const MCALabelList& m_Labels;
  FindingList& m_Findings;
};

void FindInImmersive(const TrackFile& file, const QUIRE::ATMOS::AtmosDescriptor& immersive, FindingList& findings) {
  const auto look = [&](ui32_t count, ui32_t most, const char* what) {
    if (count > most)
      Add(findings, Finding(FindingID::AuxAtmosChannels), file.At(), "at most " + std::to_string(most) + what,
          std::to_string(count));
  };
  look(immersive.MaxChannelCount, MaxImmersiveChannels, " channels");
  look(immersive.MaxObjectCount, MaxImmersiveObjects, " objects");
}

}  // namespace

void FindInSoundFile(const TrackFile& file, FindingList& findings) {
  if (!file.IsOpen()) return;
  if (const auto* sound = file.As<SoundHeader>()) SoundFileCheck(file, *sound, findings).Run();
  if (const auto* immersive = file.As<QUIRE::ATMOS::AtmosDescriptor>()) FindInImmersive(file, *immersive, findings);
}

}  // namespace Assay
