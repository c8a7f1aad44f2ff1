// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "terminal/CommandError.h"

#include <Ferro/Result.h>

#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace Tool {

/// A file or another thing of the sample cannot be made; what() says why.
class SampleFailure : public std::runtime_error {
 public:
  SampleFailure(std::string thing, const std::string& why) : std::runtime_error(why), m_Thing(std::move(thing)) {}
  /// Its path where it is a file.
  [[nodiscard]] const std::string& Thing() const { return m_Thing; }

 private:
  std::string m_Thing;
};

/// Throws SampleFailure with the result's text unless it is a success.
inline void SampleRequire(const Ferro::Result_t& result, const std::string& thing) {
  if (result.Failure()) throw SampleFailure(thing, result.Label());
}

/// The same for what a writer of track files returned, with its reason.
template <class WriterT>
void SampleRequire(const Ferro::Result_t& result, const WriterT& writer, const std::string& filename) {
  const std::string reason = writer.FailureReason();
  if (result.Failure()) throw SampleFailure(filename, reason.empty() ? result.Label() : reason);
}

/// Writes a whole file. Throws SampleFailure.
inline void WriteSampleFile(const std::string& filename, std::string_view content) {
  if (const std::string problem = TryToWriteFile(filename, content); !problem.empty())
    throw SampleFailure(filename, problem);
}

}  // namespace Tool
