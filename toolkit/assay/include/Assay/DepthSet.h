// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/FindingRule.h>
#include <Assay/Types.h>

#include <initializer_list>

namespace Assay {

/// Which depths a check has.
class DepthSet {
 public:
  constexpr DepthSet() = default;
  constexpr DepthSet(std::initializer_list<Depth> depths) {
    for (const Depth depth : depths) m_Bits |= BitOf(depth);
  }
  /// All depths up to that one.
  [[nodiscard]] static constexpr DepthSet UpTo(Depth depth) {
    DepthSet set;
    for (ui32_t i = 0; i <= static_cast<ui32_t>(depth); ++i) set.m_Bits |= 1U << i;
    return set;
  }
  constexpr void Add(Depth depth) { m_Bits |= BitOf(depth); }
  constexpr void Add(const DepthSet& depths) { m_Bits |= depths.m_Bits; }
  [[nodiscard]] constexpr bool Has(Depth depth) const { return (m_Bits & BitOf(depth)) != 0; }
  /// Whether it has all of those.
  [[nodiscard]] constexpr bool HasAll(const DepthSet& depths) const { return (depths.m_Bits & ~m_Bits) == 0; }
  [[nodiscard]] constexpr bool IsEmpty() const { return m_Bits == 0; }
  /// What it has beyond those.
  [[nodiscard]] constexpr DepthSet Without(const DepthSet& depths) const {
    DepthSet set;
    set.m_Bits = m_Bits & ~depths.m_Bits;
    return set;
  }

  friend constexpr bool operator==(const DepthSet&, const DepthSet&) = default;

 private:
  static constexpr ui32_t BitOf(Depth depth) { return 1U << static_cast<ui32_t>(depth); }

  ui32_t m_Bits = 0;
};

}  // namespace Assay
