// SPDX-License-Identifier: BSD-3-Clause
#include "FrameExaminer.h"
#include "SoundMeter.h"

#include "document/PackageFindings.h"

#include <QUIRE/ChannelRole.h>

namespace Assay {
namespace {

using namespace QUIRE::PCM;

/// Says nothing of a file whose sample layout is unknown: its header finding does.
class SoundExaminer : public IFrameExaminer {
 public:
  SoundExaminer(const TrackFile& file, const SoundHeader& header)
      : m_File(file), m_Sound(header.Descriptor), m_Roles(ChannelRolesOf(header.Descriptor, header.Labels)) {
    if (const auto layout = SampleLayout::Of(header.Descriptor)) m_Meter.emplace(*layout);
  }

  void Examine(const FrameView& frame) override {
    if (m_Meter) m_Meter->Add(frame.EditUnit, frame.Bytes);
    m_HasFrames = true;
  }

  void Finish(FindingList& findings, FileFigures& figures, bool is_whole) override {
    if (!m_Meter || !m_HasFrames) return;
    const std::vector<SoundMeter::Level>& levels = m_Meter->Levels();
    for (size_t channel = 0; channel < levels.size(); ++channel) {
      const ChannelRole_t role = m_Roles.Roles[channel];
      figures.Channels.push_back({role == CR_NONE ? "" : ChannelRoleSymbol(role), levels[channel].Decibels()});
      FindInChannel(channel, levels[channel], is_whole, findings);
    }
  }

 private:
  void FindInChannel(size_t channel, const SoundMeter::Level& level, bool is_whole, FindingList& findings) const {
    const ChannelRole_t role = m_Roles.Roles[channel];
    FindingPlace place = m_File.At();
    place.Channel = static_cast<ui32_t>(channel + 1);
    if (level.IsSilent()) {
      if (is_whole && IsPromised(role))
        Add(findings, Finding(FindingID::SoundSilent), place, ChannelRoleSymbol(role), "silence");
      return;
    }
    if (IsUnlabelled(role))
      Add(findings, Finding(FindingID::SoundLabels, FindingClass::Profile), place,
          "a label for each channel in use (MCA)", "none");
    if (level.ClippedRuns == 0 || IsSignal(role)) return;
    place.EditUnit = level.FirstClipped;
    place.EditRate = m_File.EditRate;
    Add(findings, Finding(FindingID::SoundClipping), place, "at most two samples in a row at full scale",
        std::to_string(level.LongestRun) + " samples" +
            (level.ClippedRuns == 1 ? "" : ", the longest of " + std::to_string(level.ClippedRuns) + " places"));
  }

  /// Labelled by name; of a configuration what is for the hall, the rest of it being left to choice.
  [[nodiscard]] bool IsPromised(ChannelRole_t role) const {
    if (m_Roles.Source == CRS_LABELS) return role != CR_NONE;
    return m_Roles.Source == CRS_CONFIGURATION && IsForHall(role);
  }

  /// Without a name among channels that have one. Where none has, the header tells.
  [[nodiscard]] bool IsUnlabelled(ChannelRole_t role) const {
    const bool goes_by_labels = m_Sound.ChannelFormat == CF_CFG_4 || m_Sound.ChannelFormat == CF_CFG_6;
    return role == CR_NONE && m_Roles.Source == CRS_LABELS && goes_by_labels &&
           m_File.Info.LabelSetType != QUIRE::LS_MXF_INTEROP;
  }

  const TrackFile& m_File;
  const AudioDescriptor& m_Sound;
  ChannelRoles m_Roles;
  std::optional<SoundMeter> m_Meter;
  bool m_HasFrames = false;
};

}  // namespace

std::unique_ptr<IFrameExaminer> NewSoundExaminer(const TrackFile& file) {
  const auto* header = file.As<SoundHeader>();
  return header == nullptr ? nullptr : std::make_unique<SoundExaminer>(file, *header);
}

}  // namespace Assay
