// SPDX-License-Identifier: BSD-3-Clause
#include "CommandError.h"

#include "ReasonText.h"

#include <Ferro/FileWriter.h>

namespace Tool {

namespace {

std::string WriteProblem(const Ferro::Result_t& result, const std::string& reason) {
  const std::string why = result == Ferro::RESULT_NOT_FOUND  ? "its folder is not there"
                          : result == Ferro::RESULT_NOTAFILE ? "a folder, device or pipe has this name"
                          : reason.empty()                   ? ReasonText(result)
                                                             : reason;
  return "this file cannot be written: " + why;
}

}  // namespace

void CheckWritten(const std::string& filename, const Ferro::Result_t& result, const std::string& reason) {
  if (result.Failure()) throw CommandError(ExitCode::NotPlayable, filename + ": " + WriteProblem(result, reason));
}

std::string TryToWriteFile(const std::string& filename, std::string_view content) {
  Ferro::FileWriter file;
  Ferro::Result_t result = file.OpenWrite(filename);
  if (result.Success()) result = file.Write(content);
  if (result.Success()) result = file.Commit();
  return result.Success() ? "" : WriteProblem(result, file.FailureReason());
}

std::string WriteWholeFile(const std::string& filename, std::string_view content) {
  const std::string problem = TryToWriteFile(filename, content);
  return problem.empty() ? "" : filename + ": " + problem;
}

}  // namespace Tool
