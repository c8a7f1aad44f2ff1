// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/Export.h>

#include <string>

namespace QUIRE {
class Dictionary;
namespace MXF {
class AudioChannelLabelSubDescriptor;
class OP1aHeader;
}  // namespace MXF
}  // namespace QUIRE

namespace Strata {

// The sound configuration of a PCM track file as one short text: a kind, then the channels in the order of the file.
// With `paren` true "51(L,R,C,LFE,Ls,Rs)", with false "51/L,R,C,LFE,Ls,Rs". Channels that stand outside the group
// follow it: "51(L,R,C,LFE,Ls,Rs),HI,VIN". What fails gives an empty text and, where something is wrong, a line in the
// default log. `dict` is QUIRE::DefaultSMPTEDict(). One thread at a time for one header.

/// The configuration by the descriptor's channel-assignment label (ST 429-2, annex A), or by multichannel labels where
/// that label says so. A descriptor without the label gives an empty text.
/// @throws std::out_of_range as mca_sound_label_from_mxf does.
[[nodiscard]] STRATA_API std::string sound_config_from_mxf(QUIRE::MXF::OP1aHeader& header,
                                                           const QUIRE::Dictionary& dict, bool paren);

/// The configuration by multichannel labels (ST 377-4, ST 429-12): the one soundfield group, and its channels by
/// channel number. The closing parenthesis stands before the first channel outside the group only; without such a
/// channel the text ends unclosed, "51(L,R,C,LFE,Ls,Rs".
/// @throws std::out_of_range when a tag symbol has fewer than two characters.
[[nodiscard]] STRATA_API std::string mca_sound_label_from_mxf(QUIRE::MXF::OP1aHeader& header,
                                                              const QUIRE::Dictionary& dict, bool paren);

/// The order of channels: true when `lhs` has the lower channel number. One without a number counts as 0. Neither may
/// be null (assertion).
[[nodiscard]] STRATA_API bool compare_ChannelID(const QUIRE::MXF::AudioChannelLabelSubDescriptor* lhs,
                                                const QUIRE::MXF::AudioChannelLabelSubDescriptor* rhs);

}  // namespace Strata
