// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "LogCapture.h"
#include "SampleDocuments.h"
#include "TemporaryFolder.h"

#include <Cairn/AssetStore.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace CairnTest {

/// Creates or replaces a file, with the folders around it.
void PutText(const std::filesystem::path& file, std::string_view text);
/// Replaces what is in a file, and moves its time so that the change can be seen however coarse the clock is.
void AlterFile(const std::filesystem::path& file, std::string_view text);
/// Replaces each byte of a file, and leaves its size and its time as they were.
void SpoilUnseen(const std::filesystem::path& file);

/// A small composition and a small show playlist: documents with an identifier, of no other content.
std::string CompositionText(const Cairn::UUID& id);
std::string ShowText(const Cairn::UUID& id);

/// A package that is being made: files, packing list, asset map.
class PackageMaker {
 public:
  /// Numbers of identifiers from `number` on are the package's: `number` the asset map's, + 1 the packing list's.
  PackageMaker(std::filesystem::path folder, Cairn::ui32_t number);

  /// Writes a file, and puts it into packing list and asset map.
  void Add(const Cairn::UUID& id, const std::string& path, std::string_view bytes);
  void AddComposition(Cairn::ui32_t number) {
    Add(SampleID(number), CompositionName(number), CompositionText(SampleID(number)));
  }
  static std::string CompositionName(Cairn::ui32_t number) { return "cpl_" + std::to_string(number) + ".xml"; }
  void WriteList(const std::string& name = "pkl.xml");
  void WriteMap(const std::string& name = "ASSETMAP.xml");
  /// Both.
  void Write();

  std::filesystem::path Folder;
  Cairn::PackingList List;
  Cairn::AssetMap Map;
};

/// A line for each asset and each package, with paths from `base` on: to compare stores, and to look at.
std::vector<std::string> Describe(const Cairn::AssetStore& store, const std::filesystem::path& base);

/// What is wrong with a package, a sentence each.
std::vector<std::string> Reasons(const Cairn::PackageRecord& package);

/// A store in memory, folders for it, and silence.
struct StoreFixture {
  StoreFixture() : Opened(Store.Open()) {}

  [[nodiscard]] std::filesystem::path At(const std::string& name) const { return Base.Folder() / name; }
  [[nodiscard]] PackageMaker Package(const std::string& name, Ferro::ui32_t number) const { return {At(name), number}; }
  /// The only record of an asset; an empty one, and a failure, when there is not just one.
  [[nodiscard]] Cairn::AssetRecord Only(const Cairn::UUID& id) const;
  [[nodiscard]] Cairn::Result_t Add(const std::string& name = "") { return Store.AddFolder(At(name).string()); }
  [[nodiscard]] std::vector<std::string> Describe() const { return CairnTest::Describe(Store, Base.Folder()); }
  /// What a new store says of the same folders.
  [[nodiscard]] std::vector<std::string> DescribeAnew(const std::vector<std::string>& folders) const;

  testsupport::TemporaryFolder Base;
  testsupport::LogCapture Log;
  Cairn::AssetStore Store;
  Cairn::Result_t Opened;
};

}  // namespace CairnTest
