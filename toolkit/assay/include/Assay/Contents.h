// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/DepthSet.h>
#include <Assay/Types.h>

#include <string>

namespace Assay {

/// Why the contents of a file were not looked at, or not to the end.
enum class LeftOutReason : ui8_t {
  Cancelled,   ///< the check was ended before
  NoKey,       ///< its frames are encrypted, and there is no key for them
  Algorithm,   ///< they are encrypted by an algorithm that is not known
  Unreadable,  ///< the system does not read it
  Damaged,     ///< most of it cannot be found, or its parts lie over each other
  NoMemory,    ///< memory ran out meanwhile
};

/// A file that was not looked at as far as it was asked for. A plain value.
struct LeftOut {
  std::string Package;   ///< its folder
  std::string Document;  ///< path of the file, from the package's folder on
  DepthSet Depths;       ///< what of Frames, Hash and Decode is missing
  LeftOutReason Reason = LeftOutReason::Cancelled;

  friend bool operator==(const LeftOut&, const LeftOut&) = default;
};

/// What became of the file of kept results.
enum class KeptState : ui8_t {
  None,       ///< none was named, or there is none yet
  Used,       ///< it was read; what had not changed was taken from it
  Damaged,    ///< it is not one, or damaged: nothing was taken from it
  Older,      ///< it was written by other rules than these: nothing was taken from it
  Unwritten,  ///< what was found could not be kept
};

}  // namespace Assay
