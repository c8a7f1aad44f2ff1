// SPDX-License-Identifier: BSD-3-Clause
#include "StoreFixture.h"

#include <Ferro/SHA1Digest.h>

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <sstream>

namespace CairnTest {

namespace fs = std::filesystem;
using Cairn::AssetRecord;
using Cairn::UUID;

void PutText(const fs::path& file, std::string_view text) {
  fs::create_directories(file.parent_path());
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  out << text;
  out.close();
  if (!out) throw std::runtime_error("cannot write " + file.string());
}

void AlterFile(const fs::path& file, std::string_view text) {
  const auto time = fs::last_write_time(file);
  PutText(file, text);
  fs::last_write_time(file, time + std::chrono::seconds(3));
}

void SpoilUnseen(const fs::path& file) {
  const auto time = fs::last_write_time(file);
  PutText(file, std::string(fs::file_size(file), '?'));
  fs::last_write_time(file, time);
}

std::string CompositionText(const UUID& id) {
  return "<CompositionPlaylist xmlns=\"http://www.smpte-ra.org/schemas/429-7/2006/CPL\"><Id>urn:uuid:" +
         id.EncodeString() + "</Id></CompositionPlaylist>";
}

std::string ShowText(const UUID& id) {
  return "<ShowPlaylist xmlns=\"http://www.strata.example/ra/xsd/strata-spl-1\"><Id>urn:uuid:" + id.EncodeString() +
         "</Id></ShowPlaylist>";
}

PackageMaker::PackageMaker(fs::path folder, Cairn::ui32_t number) : Folder(std::move(folder)) {
  Map.ID = SampleID(number);
  List.ID = SampleID(number + 1);
  for (std::string* text : {&Map.Creator, &Map.Issuer, &List.Creator, &List.Issuer}) *text = "Quayside";
  Map.IssueDate = List.IssueDate = "2026-02-03T04:05:06Z";
}

void PackageMaker::Add(const UUID& id, const std::string& path, std::string_view bytes) {
  PutText(Folder / path, bytes);
  List.AssetList.push_back(
      {id, "", Ferro::DigestText(bytes), bytes.size(), "application/octet-stream", fs::path(path).filename().string()});
  Map.AssetList.push_back({id, "", false, {{path, 1, 0, false, 0}}});
}

void PackageMaker::WriteList(const std::string& name) {
  std::string xml;
  if (List.EncodeXML(xml, Cairn::DFT_DCI_SMPTE).Failure()) throw std::runtime_error("no packing list");
  PutText(Folder / name, xml);
}

void PackageMaker::WriteMap(const std::string& name) {
  std::string xml;
  if (Map.EncodeXML(xml, Cairn::DFT_DCI_SMPTE).Failure()) throw std::runtime_error("no asset map");
  PutText(Folder / name, xml);
}

void PackageMaker::Write() {
  WriteList();
  Map.AssetList.push_back({List.ID, "", true, {{"pkl.xml", 1, 0, false, 0}}});
  WriteMap();
  Map.AssetList.pop_back();
}

std::vector<std::string> Describe(const Cairn::AssetStore& store, const fs::path& base) {
  std::vector<std::string> lines;
  for (const AssetRecord& asset : store.Assets()) {
    std::ostringstream line;
    line << asset.Info.ID.EncodeString() << " type " << asset.Info.FileType << " size " << asset.Info.FileSize << " of "
         << asset.ListedSize << " problems " << asset.Problems << " at "
         << fs::path(asset.Info.RealFilename).lexically_relative(base).string() << " in "
         << fs::path(asset.Package).lexically_relative(base).string();
    lines.push_back(line.str());
  }
  for (const Cairn::PackageRecord& package : store.Packages()) {
    lines.push_back("package " + fs::path(package.Folder).lexically_relative(base).string() + " map " +
                    package.AssetMapID.EncodeString());
    for (const UUID& list : package.PackingLists) lines.push_back("  list " + list.EncodeString());
    for (const Cairn::PackageFinding& finding : package.Findings) lines.push_back("  " + finding.Reason());
  }
  return lines;
}

std::vector<std::string> Reasons(const Cairn::PackageRecord& package) {
  std::vector<std::string> reasons;
  for (const Cairn::PackageFinding& finding : package.Findings) reasons.push_back(finding.Reason());
  return reasons;
}

AssetRecord StoreFixture::Only(const UUID& id) const {
  const std::vector<AssetRecord> places = Store.FindAsset(id);
  EXPECT_EQ(places.size(), 1U) << id.EncodeString();
  return places.size() == 1 ? places.front() : AssetRecord();
}

std::vector<std::string> StoreFixture::DescribeAnew(const std::vector<std::string>& folders) const {
  Cairn::AssetStore store;
  EXPECT_EQ(store.Open(), Ferro::RESULT_OK);
  for (const std::string& folder : folders) EXPECT_EQ(store.AddFolder(folder), Ferro::RESULT_OK) << folder;
  return CairnTest::Describe(store, Base.Folder());
}

}  // namespace CairnTest
