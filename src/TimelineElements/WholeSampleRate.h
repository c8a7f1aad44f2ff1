// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Strata/Types.h>

#include <QUIRE/Rational.h>

#include <cmath>

namespace Strata {

/// `rate` in whole samples per second, a half rounded up; 0 for a rate that has no value or is not positive.
[[nodiscard]] inline ui32_t WholeSampleRate(const QUIRE::Rational& rate) {
  const double samples = rate.HasValue() ? std::floor(rate.Quotient() + 0.5) : 0.0;
  return samples > 0.0 ? static_cast<ui32_t>(samples) : 0;
}

}  // namespace Strata
