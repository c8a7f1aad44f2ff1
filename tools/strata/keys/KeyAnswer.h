// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Sigil/KeyMessageStore.h>

namespace Tool {

/// Whether a key message serves a composition in the show that begins at a moment. Plain values; the message belongs to its
/// store.
struct KeyAnswer {
  Ferro::Timestamp Begin;                     ///< of the show
  bool IsNow = false;                         ///< that is now; otherwise the user named it
  Sigil::Result_t Result = Ferro::RESULT_OK;  ///< as KeyMessageStore::FindBest
  Sigil::KeyMessageStore::Choice Choice;

  [[nodiscard]] bool Serves() const { return Result.Success(); }
};

}  // namespace Tool
