// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "PassFile.h"

#include "document/Composition.h"
#include "document/Package.h"

#include <functional>
#include <map>
#include <utility>
#include <vector>

namespace Assay {

/// The files of a check by where they lie.
class PassFiles {
 public:
  /// Adds a file; nothing where one lies there already.
  void Add(PassFile file);
  [[nodiscard]] const PassFile* Find(const std::string& package, const std::string& document) const;
  [[nodiscard]] std::vector<PassFile>& All() { return m_Files; }
  [[nodiscard]] const std::vector<PassFile>& All() const { return m_Files; }

 private:
  std::vector<PassFile> m_Files;
  std::map<std::pair<std::string, std::string>, size_t> m_ByPlace;
};

/// pkl-asset-hash: digests of packing lists that are not those of the files. That of a composition has a finding of its own,
/// which documents tell.
void FindByDigests(const Package& package, const PassFiles& files, FindingList& findings);

/// What a composition says of files that no packing list beside it has.
struct FileDigest {
  SHA1 Computed;       ///< no value where it was not
  std::string Listed;  ///< as the packing list has it that the file came with, in Base64; empty where there is none
};
/// reel-hash, where no packing list of the composition's package has a digest.
/// @param package  of the composition; may be null
/// @param find     the digests of an asset's file
void FindByDigests(const Composition& composition, const Package* package,
                   const std::function<FileDigest(const UUID&)>& find, FindingList& findings);

}  // namespace Assay
