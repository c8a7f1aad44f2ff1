// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/MCALabel.h>

#include <QUIRE/Dictionary.h>

#include <algorithm>
#include <span>

namespace QUIRE::PCM {

namespace {

struct KnownLabel {
  std::string_view Symbol;  // without the prefix
  const char* Name;
  MDD_t Label;
};

// ST 428-12; FSK sync: ST 430-12; sign language video: ISDCF Document 13.
constexpr KnownLabel Channels[] = {
    {"L", "Left", MDD_DCAudioChannel_L},
    {"R", "Right", MDD_DCAudioChannel_R},
    {"C", "Center", MDD_DCAudioChannel_C},
    {"LFE", "LFE", MDD_DCAudioChannel_LFE},
    {"Ls", "Left Surround", MDD_DCAudioChannel_Ls},
    {"Rs", "Right Surround", MDD_DCAudioChannel_Rs},
    {"Lss", "Left Side Surround", MDD_DCAudioChannel_Lss},
    {"Rss", "Right Side Surround", MDD_DCAudioChannel_Rss},
    {"Lrs", "Left Rear Surround", MDD_DCAudioChannel_Lrs},
    {"Rrs", "Right Rear Surround", MDD_DCAudioChannel_Rrs},
    {"Lc", "Left Center", MDD_DCAudioChannel_Lc},
    {"Rc", "Right Center", MDD_DCAudioChannel_Rc},
    {"Cs", "Center Surround", MDD_DCAudioChannel_Cs},
    {"HI", "Hearing Impaired", MDD_DCAudioChannel_HI},
    {"VIN", "Visually Impaired-Narrative", MDD_DCAudioChannel_VIN},
    {"FSKSync", "FSK Sync", MDD_DCAudioChannel_FSKSync},
    {"SLVS", "Sign Language Video Stream", MDD_DCAudioChannel_SLVS},
};
constexpr KnownLabel SoundfieldGroups[] = {
    {"51", "5.1", MDD_DCAudioSoundfield_51},        {"71", "7.1DS", MDD_DCAudioSoundfield_71},
    {"SDS", "7.1SDS", MDD_DCAudioSoundfield_SDS},   {"61", "6.1", MDD_DCAudioSoundfield_61},
    {"M", "1.0 Monaural", MDD_DCAudioSoundfield_M},
};

const KnownLabel* Find(std::span<const KnownLabel> table, std::string_view symbol) {
  const auto found =
      std::find_if(table.begin(), table.end(), [&](const auto& known) { return known.Symbol == symbol; });
  return found == table.end() ? nullptr : &*found;
}

MCALabel MakeLabel(MCALabelKind_t kind, const KnownLabel& known, const std::string& language) {
  MCALabel label;
  label.Kind = kind;
  label.DictionaryID = DefaultSMPTEDict().ul(known.Label);
  label.TagSymbol = std::string(kind == MCA_CHANNEL ? "ch" : "sg").append(known.Symbol);
  label.TagName = known.Name;
  label.SpokenLanguage = language;
  return label;
}

// Appends the channels of a list with commas between; their IDs continue from `channel_id`.
bool AppendChannels(std::string_view text, const std::vector<size_t>& groups, const std::string& language,
                    ui32_t& channel_id, MCALabelList& labels) {
  for (;;) {
    const size_t comma = text.find(',');
    const std::string_view symbol = text.substr(0, comma);
    ++channel_id;
    if (symbol != "-") {
      const KnownLabel* known = Find(Channels, symbol);
      if (!known) return false;
      labels.push_back(MakeLabel(MCA_CHANNEL, *known, language));
      labels.back().ChannelID = channel_id;
      labels.back().Groups = groups;
    }
    if (comma == std::string_view::npos) return true;
    text.remove_prefix(comma + 1);
  }
}

}  // namespace

Result_t MakeMCALabels(std::string_view configuration, const std::string& language, MCALabelList& labels) {
  const size_t open = configuration.find('(');
  const size_t close = configuration.find(')');
  if (open == std::string_view::npos || close == std::string_view::npos || close < open) return Ferro::RESULT_PARAM;
  const KnownLabel* group = Find(SoundfieldGroups, configuration.substr(0, open));
  if (!group) return Ferro::RESULT_PARAM;

  MCALabelList made = {MakeLabel(MCA_SOUNDFIELD_GROUP, *group, language)};
  ui32_t channel_id = 0;
  if (!AppendChannels(configuration.substr(open + 1, close - open - 1), {0}, language, channel_id, made)) {
    return Ferro::RESULT_PARAM;
  }
  const std::string_view rest = configuration.substr(close + 1);
  if (!rest.empty() && (rest.front() != ',' || !AppendChannels(rest.substr(1), {}, language, channel_id, made))) {
    return Ferro::RESULT_PARAM;
  }
  labels = std::move(made);
  return Ferro::RESULT_OK;
}

}  // namespace QUIRE::PCM
