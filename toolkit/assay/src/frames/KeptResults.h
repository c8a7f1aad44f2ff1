// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "KeptResultsForm.h"
#include "PassFile.h"

#include <Ferro/Result.h>

#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace Assay {

/// @return no value where the file cannot be looked at.
[[nodiscard]] std::optional<FileState> StateOf(const std::string& path);

/// What was found in files, kept from one check to the next in a file of its own. One thread at a time.
class KeptResults {
 public:
  /// More files than this are not kept: those that were not asked for last go first.
  static constexpr size_t MaxFiles = 100'000;
  /// Larger files of results are taken for damaged.
  static constexpr ui64_t MaxBytes = 256 * 1024 * 1024;

  /// Reads a file of results. @return None where there is none, Used, Damaged or Older; then there are no results.
  [[nodiscard]] KeptState Read(const std::string& path);
  /// The same from memory. The bytes may be anything.
  [[nodiscard]] KeptState Decode(std::span<const ui8_t> bytes);
  [[nodiscard]] std::vector<ui8_t> Encode() const;
  /// Replaces the file as a whole. @return as Ferro::FileWriter.
  [[nodiscard]] Ferro::Result_t Write(const std::string& path);

  /// Fills in what is known of a file in that state, if it was looked at as far as `wanted`; false: it was not.
  [[nodiscard]] bool Take(PassFile& file, const FileState& state, const DepthSet& wanted);
  void Put(const PassFile& file, const FileState& state);
  [[nodiscard]] size_t Size() const { return m_Files.size(); }

 private:
  std::map<std::string, KeptFile> m_Files;  // by path
};

}  // namespace Assay
