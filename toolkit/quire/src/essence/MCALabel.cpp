// SPDX-License-Identifier: BSD-3-Clause
#include <QUIRE/MCALabel.h>

#include "SoundLabels.h"

#include <QUIRE/Dictionary.h>

#include <algorithm>
#include <span>

namespace QUIRE::PCM {

namespace {

template <class LabelT>
const LabelT* Find(std::span<const LabelT> table, std::string_view symbol) {
  const auto found =
      std::find_if(table.begin(), table.end(), [&](const LabelT& known) { return known.Symbol == symbol; });
  return found == table.end() ? nullptr : &*found;
}

template <class LabelT>
MCALabel MakeLabel(MCALabelKind_t kind, const LabelT& known, const std::string& language) {
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
      const ChannelLabel* known = Find(ChannelLabels(), symbol);
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
  const SoundfieldLabel* group = Find(SoundfieldLabels(), configuration.substr(0, open));
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
