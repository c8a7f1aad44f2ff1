// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>

namespace testsupport {

/// Chance that falls the same way for the same seed, with every library.
class Dice {
 public:
  explicit Dice(uint32_t seed) : m_Random(seed) {}

  /// 0 to count - 1; `count` is not 0.
  size_t Below(size_t count) { return m_Random() % count; }
  template <class ContainerT>
  auto& Of(ContainerT& container) {
    return *(std::begin(container) + static_cast<std::ptrdiff_t>(Below(std::size(container))));
  }

 private:
  std::mt19937 m_Random;
};

}  // namespace testsupport
