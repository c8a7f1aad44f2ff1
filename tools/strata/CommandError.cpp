// SPDX-License-Identifier: BSD-3-Clause
#include "CommandError.h"

void CheckWritten(const std::string& filename, const Ferro::Result_t& result) {
  if (result.Success()) return;
  const char* reason = result == Ferro::RESULT_NOT_FOUND ? "its folder is not there" : result.Label();
  throw CommandError(NotPlayable, filename + ": this file cannot be written: " + reason);
}
