// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Assay/Finding.h>
#include <Assay/Result.h>
#include <Assay/Types.h>

#include <Ferro/Timestamp.h>

#include <string>

namespace Sigil {
struct Finding;
}

namespace Assay {

/// Whether a key message serves an encrypted composition of a show that begins at a moment. A plain value.
struct KeyAnswer {
  Ferro::Timestamp Begin;              ///< of the show
  bool IsNow = false;                  ///< that is the check's own time; otherwise the host named it
  Result_t Result = Ferro::RESULT_OK;  ///< as Sigil::KeyMessageStore::FindBest
  std::string Source;                  ///< of the best message, as its store has it; empty: none is for the composition
  UUID MessageID;                      ///< of that message, as all below
  Ferro::Timestamp NotBefore;          ///< the first moment of its window, with the offset as written
  Ferro::Timestamp NotAfter;           ///< the last one

  [[nodiscard]] bool Serves() const { return Result.Success(); }
  [[nodiscard]] bool HasMessage() const { return !Source.empty(); }
};

/// A finding of libsigil as one of this library's: for key messages that are looked at by themselves.
[[nodiscard]] ASSAY_API Finding FindingOf(const Sigil::Finding& finding);

}  // namespace Assay
