// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "../support/TemporaryFolder.h"

#include <Assay/Check.h>

#include <functional>
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
  virtual ~SamplePackage() = default;

  /// Replaces the first `from` of a document, or all; sizes and digests fit again afterwards.
  SamplePackage& Edit(const std::string& document, const std::string& from, const std::string& to);
  SamplePackage& EditAll(const std::string& document, const std::string& from, const std::string& to);
  /// The same without sizes and digests being made to fit.
  SamplePackage& Damage(const std::string& document, const std::string& from, const std::string& to);
  /// Moves each part of a document that begins and ends so before the next `before`.
  SamplePackage& Move(const std::string& document, const std::string& begin, const std::string& end,
                      const std::string& before);
  SamplePackage& Put(const std::string& path, const std::string& content);
  SamplePackage& Remove(const std::string& path);
  SamplePackage& Rename(const std::string& from, const std::string& to);
  /// What becomes of the composition and then of the packing list once sizes and digests fit: they are signed. The damages
  /// come later.
  using Signing = std::function<std::string(const std::string&)>;
  SamplePackage& Sign(const Signing& composition, const Signing& packing_list);

  /// Writes the package and checks it. Each finding as its name, and its class where that is not the usual one:
  /// "am-path", "am-path warning"; sorted.
  [[nodiscard]] std::vector<std::string> Findings() const;
  /// The findings themselves.
  [[nodiscard]] Assay::CheckReport Report(Assay::Profile profile = Assay::Profile::All) const;
  /// Writes the package into a folder.
  void Write(const std::string& folder) const;

 protected:
  using FileMap = std::map<std::string, std::string>;

  /// Called before the package is written into a folder, with its documents, whose sizes and digests are made to fit later.
  virtual void Prepare(const std::string& /*folder*/, FileMap& /*files*/) const {}
  /// How far Report looks.
  [[nodiscard]] virtual Assay::DepthSet Depths() const { return {Assay::Depth::Documents}; }
  /// Has asset map and packing list give that size to the track file whose identifier ends so.
  static void FitSize(const std::string& id, Assay::ui64_t size, FileMap& files);

 private:
  struct Change {
    std::string Document, From, To;
    bool IsForAll = false;
  };

  static void Apply(const Change& change, FileMap& files);

  FileMap m_Files;
  std::vector<Change> m_Damages;
  Signing m_SignComposition, m_SignPackingList;
};

/// The names of a report's findings, as SamplePackage::Findings gives them: without the notes that clear content is not
/// signed.
[[nodiscard]] std::vector<std::string> NamesOf(const Assay::FindingList& findings);

}  // namespace testsupport
