// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/Export.h>
#include <QUIRE/Result.h>
#include <QUIRE/Types.h>
#include <QUIRE/UL.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace QUIRE::PCM {

enum MCALabelKind_t : ui8_t {
  MCA_CHANNEL = 0,
  MCA_SOUNDFIELD_GROUP = 1,
  MCA_GROUP_OF_SOUNDFIELD_GROUPS = 2,
};

/// One multichannel audio label (ST 377-4): a channel, a soundfield group, or a group of those.
struct MCALabel {
  MCALabelKind_t Kind = MCA_CHANNEL;
  UL DictionaryID;             ///< decides what the label means
  std::string TagSymbol;       ///< "chL", "sg51"
  std::string TagName;         ///< "Left"; empty: not written
  std::string SpokenLanguage;  ///< an RFC 5646 tag; empty: not written
  ui32_t ChannelID = 0;        ///< of a channel: its place in the interleaved samples, from 1; 0: not written
  /// Of a channel: the place of its soundfield group in the list, from 0. Of a group: those of the groups it belongs to.
  std::vector<size_t> Groups;

  friend bool operator==(const MCALabel&, const MCALabel&) = default;
};

/// Labels in the order in which they are stored.
using MCALabelList = std::vector<MCALabel>;

/// The labels for channels in order, from symbols without their prefixes: one soundfield group with its channels, then
/// those outside any: "51(L,R,C,LFE,Ls,Rs),HI,VIN". A channel "-" stays without label. (ST 428-12)
/// @param language  an RFC 5646 tag for the group and the channels; empty: none.
/// @param labels    receives the group, then the channels; unchanged on failure.
/// @return RESULT_OK; RESULT_PARAM for a malformed text or a symbol that the dictionary does not have.
[[nodiscard]] QUIRE_API Result_t MakeMCALabels(std::string_view configuration, const std::string& language,
                                               MCALabelList& labels);

}  // namespace QUIRE::PCM
