// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "StrataProgram.h"
#include "TemporaryFolder.h"

#include <string>
#include <vector>

/// A copy of a sample show of seven seconds, and the hands to break it with. Names are paths below the show's folder; what
/// is not there to be changed is a test failure.
class BrokenShow {
 public:
  BrokenShow();

  [[nodiscard]] std::string Path(const std::string& name = "") const;
  [[nodiscard]] std::string Beside(const std::string& name) const { return m_Folder.Path(name); }

  void Remove(const std::string& name) const;
  void Write(const std::string& name, const std::string& bytes) const;
  [[nodiscard]] std::string Read(const std::string& name) const;
  /// Cuts the file after that many bytes.
  void Cut(const std::string& name, size_t size) const;
  /// Puts `to` for the first `from` after `after`. Bytes of any kind.
  void Replace(const std::string& name, const std::string& from, const std::string& to,
               const std::string& after = "") const;
  /// Has the packing list of its folder list the file as large as it is.
  void ListSize(const std::string& name) const;
  /// Takes the entry of a file out of its folder's asset map and packing list.
  void Unlist(const std::string& name) const;

  /// What `strata check` answers: its exit code in the first line, then its messages, on standard output and error. The
  /// lines about compositions and their keys are left out, and so are identifiers of assets; the show's folder
  /// is called SHOW.
  [[nodiscard]] std::string Check(std::vector<std::string> arguments = {}) const;

 private:
  testsupport::TemporaryFolder m_Folder;
};
