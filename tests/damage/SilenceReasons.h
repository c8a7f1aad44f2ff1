// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "DamageLab.h"

#include <span>

namespace testsupport {

/// Why a check can say nothing of a difference.
struct SilenceReason {
  const char* Name;
  const char* Text;  ///< one or two sentences
  bool (*Holds)(const DamageCase&);
};

[[nodiscard]] std::span<const SilenceReason> SilenceReasons();
/// The first that holds for a case that differs and of which nothing is told; null where none does.
[[nodiscard]] const SilenceReason* ReasonOf(const DamageCase& damage);

}  // namespace testsupport
