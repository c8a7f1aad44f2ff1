// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Sigil/Result.h>
#include <Strata/Result.h>

// For hosts, which see both libraries: the engine knows nothing of keys, and libsigil nothing of the engine.

namespace StrataHost {

/// What an outcome of libsigil is called among the engine's results, as a control protocol reports it:
///
/// | libsigil | engine |
/// |---|---|
/// | SG_NO_MESSAGE | SX_NO_KDM |
/// | SG_NO_VALID_MESSAGE | SX_NO_VALID_KDM |
/// | SG_MESSAGE, SG_UNVERIFIED, SG_CONTENT | SX_NO_VALID_KDM: there is a message, and it is of no use |
/// | SG_NO_KEY | SX_NO_KEY |
/// | SG_DUPLICATE | SX_DUP_KDM |
///
/// All other results stay as they are. Any thread may call it.
[[nodiscard]] inline Ferro::Result_t EngineResult(const Ferro::Result_t& result) {
  if (result == Sigil::RESULT_SG_NO_MESSAGE) return Strata::RESULT_SX_NO_KDM;
  if (result == Sigil::RESULT_SG_NO_KEY) return Strata::RESULT_SX_NO_KEY;
  if (result == Sigil::RESULT_SG_DUPLICATE) return Strata::RESULT_SX_DUP_KDM;
  const bool is_of_no_use = result == Sigil::RESULT_SG_NO_VALID_MESSAGE || result == Sigil::RESULT_SG_MESSAGE ||
                            result == Sigil::RESULT_SG_UNVERIFIED || result == Sigil::RESULT_SG_CONTENT;
  return is_of_no_use ? Ferro::Result_t(Strata::RESULT_SX_NO_VALID_KDM) : result;
}

}  // namespace StrataHost
