// SPDX-License-Identifier: BSD-3-Clause
#include "CommandError.h"

#include "ReasonText.h"

#include <Ferro/FileWriter.h>

namespace Tool {

std::string WriteProblem(const std::string& filename, const Ferro::Result_t& result, const std::string& reason) {
  const std::string why = result == Ferro::RESULT_NOT_FOUND  ? "its folder is not there"
                          : result == Ferro::RESULT_NOTAFILE ? "a folder, device or pipe has this name"
                          : reason.empty()                   ? ReasonText(result)
                                                             : reason;
  return filename + ": this file cannot be written: " + why;
}

void CheckWritten(const std::string& filename, const Ferro::Result_t& result, const std::string& reason) {
  if (result.Failure()) throw CommandError(ExitCode::NotPlayable, WriteProblem(filename, result, reason));
}

std::string WriteWholeFile(const std::string& filename, std::string_view content) {
  Ferro::FileWriter file;
  Ferro::Result_t result = file.OpenWrite(filename);
  if (result.Success()) result = file.Write(content);
  if (result.Success()) result = file.Commit();
  return result.Success() ? "" : WriteProblem(filename, result, file.FailureReason());
}

}  // namespace Tool
