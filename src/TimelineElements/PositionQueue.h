// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Ferro/Assert.h>
#include <Ferro/Types.h>

#include <cstddef>
#include <vector>

namespace Strata {

/// A first-in-first-out queue of edit-unit positions that keeps its memory: once it is as long as it will get, it
/// allocates no more. The standard queue allocates and frees a block every so many elements, on the frame path.
class PositionQueue {
 public:
  PositionQueue() { m_Positions.reserve(16); }

  [[nodiscard]] bool empty() const { return m_Oldest == m_Positions.size(); }

  void push(Ferro::ui32_t position) {
    // Reuse the served half rather than grow; moving at most as many as were served keeps push constant on average.
    if (m_Positions.size() == m_Positions.capacity() && m_Oldest >= m_Positions.size() / 2) {
      m_Positions.erase(m_Positions.begin(), m_Positions.begin() + static_cast<std::ptrdiff_t>(m_Oldest));
      m_Oldest = 0;
    }
    m_Positions.push_back(position);
  }

  /// Removes and returns the oldest position; the queue must not be empty.
  Ferro::ui32_t pop() {
    FERRO_ASSERT(!empty());
    return m_Positions[m_Oldest++];
  }

 private:
  std::vector<Ferro::ui32_t> m_Positions;
  std::size_t m_Oldest = 0;  // those before it are served
};

}  // namespace Strata
