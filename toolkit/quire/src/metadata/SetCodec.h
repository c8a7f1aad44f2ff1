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

/// Makes the object for a set from its key and value, which lies at `offset`. At most `items_left` items are taken, and
/// counted off. @return RESULT_OK; RESULT_FORMAT with one log line.
[[nodiscard]] Result_t ReadSet(const UL& key, std::span<const ui8_t> value, ui64_t offset, const Primer& primer,
                               size_t& items_left, std::unique_ptr<InterchangeObject>& object);

/// Appends the set as a KLV, its tags listed in `primer`. @return RESULT_OK; RESULT_TOOLARGE when an item exceeds 65535
/// bytes or no tag is free, `out` then being unspecified.
[[nodiscard]] Result_t WriteSet(const InterchangeObject& object, Primer& primer, std::vector<ui8_t>& out);

}  // namespace QUIRE::MXF
