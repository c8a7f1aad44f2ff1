// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QUIRE/MXF/InterchangeObject.h>
#include <QUIRE/MXF/KLV.h>
#include <QUIRE/MXF/Primer.h>
#include <QUIRE/Result.h>

#include <memory>
#include <span>
#include <vector>

namespace QUIRE::MXF {

/// An item of a local set with two-byte tags and lengths (ST 377-1, 6.3.2).
struct SetItem {
  ui16_t Tag = 0;
  std::span<const ui8_t> Value;
  ui64_t Offset = 0;  ///< of the item in the file
};

/// Takes the next item off the front of `rest`, which lies at `offset`; both move past it.
/// @return RESULT_OK; RESULT_FORMAT with one log line when the item reaches past the end of its set.
[[nodiscard]] Result_t NextItem(std::span<const ui8_t>& rest, ui64_t& offset, SetItem& item);

/// What the sets of a header may still take in memory. Made-up metadata could otherwise take eighty times their own size.
class SetBudget {
 public:
  explicit SetBudget(size_t bytes) : m_Left(bytes) {}
  /// False when there is not as much left.
  [[nodiscard]] bool Take(size_t bytes) {
    const bool enough = bytes <= m_Left;
    m_Left -= enough ? bytes : m_Left;
    return enough;
  }
  static constexpr const char* Exceeded = "header metadata that take more memory than any track file needs";
  /// Of a set: its place in the list and in the map of identifiers, and the allocator's own.
  static constexpr size_t Surroundings = 160;

 private:
  size_t m_Left;
};

/// Makes the object for a set from its key and value, which lies at `offset`; takes its memory from the budget.
/// @return RESULT_OK; RESULT_FORMAT with one log line.
[[nodiscard]] Result_t ReadSet(const UL& key, std::span<const ui8_t> value, ui64_t offset, const Primer& primer,
                               SetBudget& budget, std::unique_ptr<InterchangeObject>& object);

/// Appends the set as a KLV, its tags listed in `primer`. @return RESULT_OK; RESULT_TOOLARGE when an item exceeds 65535
/// bytes or no tag is free, `out` then being unspecified.
[[nodiscard]] Result_t WriteSet(const InterchangeObject& object, Primer& primer, std::vector<ui8_t>& out);

}  // namespace QUIRE::MXF
