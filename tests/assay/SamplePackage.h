// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "../support/TemporaryFolder.h"

#include <Assay/Check.h>

#include <map>
#include <string>
#include <vector>

namespace testsupport {

/// A sound package in a folder, to be changed at one place. Its track files are one byte each: documents are all that is
/// looked at.
class SamplePackage {
 public:
  enum class Kind { SMPTE, Interop };

  explicit SamplePackage(Kind kind = Kind::SMPTE);

  /// Replaces the first `from` of a document, or all; sizes and digests fit again afterwards.
  SamplePackage& Edit(const std::string& document, const std::string& from, const std::string& to);
  SamplePackage& EditAll(const std::string& document, const std::string& from, const std::string& to);
  /// The same without sizes and digests being made to fit.
  SamplePackage& Damage(const std::string& document, const std::string& from, const std::string& to);
  SamplePackage& Put(const std::string& path, const std::string& content);
  SamplePackage& Remove(const std::string& path);
  SamplePackage& Rename(const std::string& from, const std::string& to);

  /// Writes the package and checks it. Each finding as its name, and its class where that is not the usual one:
  /// "am-path", "am-path warning"; sorted.
  [[nodiscard]] std::vector<std::string> Findings();
  /// The findings themselves.
  [[nodiscard]] Assay::CheckReport Report(Assay::Profile profile = Assay::Profile::All);
  /// Writes the package into a folder.
  void Write(const std::string& folder);

 private:
  struct Change {
    std::string Document, From, To;
    bool IsForAll = false;
  };

  void Apply(const Change& change);

  std::map<std::string, std::string> m_Files;
  std::vector<Change> m_Damages;
};

/// The names of a report's findings, as SamplePackage::Findings gives them.
[[nodiscard]] std::vector<std::string> NamesOf(const Assay::FindingList& findings);

}  // namespace testsupport
