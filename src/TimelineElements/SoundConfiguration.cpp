// SPDX-License-Identifier: BSD-3-Clause
#include <Strata/SoundConfiguration.h>
#include <Strata/Types.h>

#include <Ferro/Assert.h>
#include <Ferro/ILogSink.h>
#include <QUIRE/Dictionary.h>
#include <QUIRE/MXF/Descriptors.h>
#include <QUIRE/MXF/OP1aHeader.h>
#include <QUIRE/MXF/SubDescriptors.h>

#include <array>
#include <cstdio>
#include <list>

namespace Strata {

namespace {

using QUIRE::Dictionary;
using QUIRE::MXF::AudioChannelLabelSubDescriptor;
using QUIRE::MXF::InterchangeObject;
using QUIRE::MXF::OP1aHeader;
using QUIRE::MXF::SoundfieldGroupLabelSubDescriptor;
using QUIRE::MXF::WaveAudioDescriptor;

/// A channel-assignment label that names a fixed layout.
struct FixedConfiguration {
  QUIRE::MDD_t Label;
  const char* Kind;
  const char* Channels;
  ui32_t HearingImpairedAbove;  // more channels than this: the last two are for impaired hearing and vision
};

// The lowest layout may carry the two extra channels from its seventh channel on, the others from their ninth.
constexpr std::array<FixedConfiguration, 4> FixedConfigurations{{
    {QUIRE::MDD_DCAudioChannelCfg_1_5p1, "51", "L,R,C,LFE,Ls,Rs", 6},
    {QUIRE::MDD_DCAudioChannelCfg_2_6p1, "61", "L,R,C,LFE,Ls,Rs,Cs,-", 8},
    {QUIRE::MDD_DCAudioChannelCfg_3_7p1, "SDS", "L,R,C,LFE,Ls,Rs,Lc,Rc", 8},
    {QUIRE::MDD_DCAudioChannelCfg_5_7p1_DS, "71", "L,R,C,LFE,Lss,Rss,Lrs,Rrs", 8},
}};

/// A header may claim any number of channels; the label of a wild track file names no more than these.
constexpr ui32_t MaxWildChannels = 1024;

const WaveAudioDescriptor* FindDescriptor(const OP1aHeader& header, const Dictionary& dict) {
  InterchangeObject* object = nullptr;
  if (header.GetMDObjectByType(dict.ul(QUIRE::MDD_WaveAudioDescriptor), &object).Failure()) {
    Ferro::DefaultLogSink().Error("WaveAudioDescriptor not found.\n");
    return nullptr;
  }
  const auto* descriptor = dynamic_cast<const WaveAudioDescriptor*>(object);
  if (descriptor == nullptr) Ferro::DefaultLogSink().Error("WaveAudioDescriptor type failure.\n");
  return descriptor;
}

std::string WildConfiguration(ui32_t channels, bool paren) {
  std::string label = paren ? "WTF(CH01,CH02" : "WTF/CH01,CH02";
  for (ui32_t channel = 3; channel <= channels && channel <= MaxWildChannels; ++channel) {
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), ",CH%02u", channel);
    label += text.data();
  }
  return paren ? label + ")" : label;
}

std::string FixedLabel(const FixedConfiguration& configuration, ui32_t channels, bool paren) {
  std::string label = configuration.Kind;
  label += paren ? "(" : "/";
  label += configuration.Channels;
  if (paren) label += ")";
  if (channels > configuration.HearingImpairedAbove) label += ",HI,VIN";
  return label;
}

/// The sub-descriptors of a sound descriptor that say how its channels are used.
struct MCALabels {
  std::list<const SoundfieldGroupLabelSubDescriptor*> Groups;
  std::list<const AudioChannelLabelSubDescriptor*> Channels;
};

/// False when a sub-descriptor is of another kind.
bool CollectLabels(const OP1aHeader& header, const WaveAudioDescriptor& descriptor, MCALabels& labels) {
  for (const UUID& id : descriptor.SubDescriptors) {
    InterchangeObject* i_sub_desc = nullptr;
    if (header.GetMDObjectByID(id, &i_sub_desc).Failure()) continue;
    FERRO_ASSERT_TEXT(i_sub_desc != nullptr, "i_sub_desc!=0");
    if (const auto* group = dynamic_cast<const SoundfieldGroupLabelSubDescriptor*>(i_sub_desc)) {
      labels.Groups.push_back(group);
    } else if (const auto* channel = dynamic_cast<const AudioChannelLabelSubDescriptor*>(i_sub_desc)) {
      labels.Channels.push_back(channel);
    } else {
      Ferro::DefaultLogSink().Error("Unrecognised SubDescriptor object encountered in WaveAudioDescriptor.\n");
      return false;
    }
  }
  return true;
}

/// The symbol "sg51" or "chLFE" without the two letters that say what it is a symbol of.
std::string SymbolName(const std::string& tag_symbol) {
  return tag_symbol.substr(2);
}

std::string GroupLabel(const SoundfieldGroupLabelSubDescriptor& group,
                       const std::list<const AudioChannelLabelSubDescriptor*>& channels, bool paren) {
  const std::string head = SymbolName(group.MCATagSymbol) + (paren ? "(" : "/");
  std::string label = head;
  bool any_linked = false;
  bool closed = false;
  for (auto j = channels.begin(); j != channels.end(); ++j) {
    FERRO_ASSERT(*j);  // out of the reach of any header: CollectLabels takes in what a cast found
    const std::string name = SymbolName((*j)->MCATagSymbol);
    if ((*j)->SoundfieldGroupLinkID.value_or(UUID()) == group.MCALinkID) {
      if (any_linked) label += ",";
      any_linked = true;
    } else {
      const bool any_before = label.size() > head.size();
      if (paren && !closed) label += ")";
      closed = true;
      if (paren || any_before) label += ",";
    }
    label += name;
  }
  return label;
}

}  // namespace

bool compare_ChannelID(const AudioChannelLabelSubDescriptor* lhs, const AudioChannelLabelSubDescriptor* rhs) {
  FERRO_ASSERT_TEXT(lhs && rhs, "lhs&&rhs");
  return lhs->MCAChannelID.value_or(0) < rhs->MCAChannelID.value_or(0);
}

std::string mca_sound_label_from_mxf(OP1aHeader& header, const Dictionary& dict, bool paren) {
  const WaveAudioDescriptor* descriptor = FindDescriptor(header, dict);
  MCALabels labels;
  if (descriptor == nullptr || !CollectLabels(header, *descriptor, labels)) return "";
  if (labels.Groups.empty()) {
    Ferro::DefaultLogSink().Error("No soundfield groups in MXF.\n");
    return "";
  }
  if (labels.Groups.size() > 1) {
    Ferro::DefaultLogSink().Error("Too many soundfield groups in MXF.\n");
    return "";
  }
  labels.Channels.sort(compare_ChannelID);
  return GroupLabel(*labels.Groups.front(), labels.Channels, paren);
}

std::string sound_config_from_mxf(OP1aHeader& header, const Dictionary& dict, bool paren) {
  const WaveAudioDescriptor* descriptor = FindDescriptor(header, dict);
  if (descriptor == nullptr || !descriptor->ChannelAssignment.has_value()) return "";
  const QUIRE::UL& assignment = *descriptor->ChannelAssignment;
  if (dict.Is(assignment, QUIRE::MDD_DCAudioChannelCfg_MCA)) return mca_sound_label_from_mxf(header, dict, paren);
  if (dict.Is(assignment, QUIRE::MDD_DCAudioChannelCfg_4_WTF)) {
    return WildConfiguration(descriptor->ChannelCount, paren);
  }
  for (const FixedConfiguration& configuration : FixedConfigurations) {
    if (dict.Is(assignment, configuration.Label)) return FixedLabel(configuration, descriptor->ChannelCount, paren);
  }
  return "";
}

}  // namespace Strata
