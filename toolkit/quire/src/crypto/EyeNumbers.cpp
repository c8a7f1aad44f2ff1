// SPDX-License-Identifier: BSD-3-Clause
#include "EyeNumbers.h"

namespace QUIRE {

SequenceRule SequenceRuleOf(const EyeNumbers& first, const EyeNumbers& last, ui32_t last_unit) {
  for (const SequenceRule rule : {SequenceRule::OnePerTriplet, SequenceRule::OnePerEditUnit,
                                  SequenceRule::OnePerTripletFromZero, SequenceRule::OnePerEditUnitFromZero,
                                  SequenceRule::AlwaysOne, SequenceRule::AlwaysZero, SequenceRule::NoNumbers}) {
    TrackEncryption track;
    track.Sequence = rule;
    const auto numbers = [&](ui32_t unit) {
      return EyeNumbers{track.SequenceNumber(unit, Eye::Left), track.SequenceNumber(unit, Eye::Right)};
    };
    if (numbers(0) == first && numbers(last_unit) == last) return rule;
  }
  return SequenceRule::OnePerTriplet;
}

}  // namespace QUIRE
