// SPDX-License-Identifier: BSD-3-Clause
#include "FoundNames.h"
#include "SampleDocuments.h"
#include "SamplePackage.h"
#include "frames/DigestFindings.h"

#include <Ferro/SHA1Digest.h>
#include <Ferro/TextEncoding.h>

#include <gtest/gtest.h>

namespace {

using namespace Assay;
using testsupport::FoundNames;
using testsupport::SamplePackage;
using Names = std::vector<std::string>;

/// A sample package that was read, all of whose listed files have the digests that its packing list gives.
class DigestFindings : public ::testing::Test {
 protected:
  void ReadSample(SamplePackage sample) {
    sample.Write(m_Folder.Folder().string());
    ReadPackage(m_Folder.Folder().string(), m_Package);
    for (const ListFile& list : m_Package.Lists)
      for (const ListAsset& asset : list.Assets) {
        PassFile file;
        file.Package = m_Package.Folder;
        file.Document = m_Package.FindMapped(*asset.ID)->File;
        std::array<ui8_t, SHA1::Size> digest{};
        ASSERT_TRUE(Ferro::base64decode(asset.Hash, digest)) << asset.Hash;
        file.Digest = SHA1(digest);
        m_Digests[file.Document] = file;
      }
  }
  [[nodiscard]] PassFiles Files() const {
    PassFiles files;
    for (const auto& [path, file] : m_Digests) files.Add(file);
    return files;
  }
  [[nodiscard]] FindingList Find() const {
    FindingList findings;
    FindByDigests(m_Package, Files(), findings);
    return findings;
  }

  testsupport::TemporaryFolder m_Folder;
  Package m_Package;
  std::map<std::string, PassFile> m_Digests;
};

const SHA1 Other = Ferro::DigestText("something else");
std::string Base64(const SHA1& digest) {
  return Ferro::base64encode(digest.Bytes());
}

TEST_F(DigestFindings, FilesAreHeldAgainstThePackingList) {
  ReadSample(SamplePackage());
  EXPECT_EQ(FoundNames(Find()), Names());
  m_Digests["file_12.mxf"].Digest = Other;
  const FindingList findings = Find();
  ASSERT_EQ(FoundNames(findings), Names{"pkl-asset-hash"});
  EXPECT_EQ(findings[0].Found, Base64(Other));
  EXPECT_EQ(findings[0].Place.Document, "PKL.xml");
  EXPECT_GT(findings[0].Place.Line, 0U);
  m_Digests["file_12.mxf"].Digest = SHA1();
  EXPECT_EQ(FoundNames(Find()), Names()) << "it was not computed";
}

TEST_F(DigestFindings, ThatOfACompositionIsToldByItsDocument) {
  ReadSample(SamplePackage());
  m_Digests["CPL.xml"].Digest = Other;
  EXPECT_EQ(FoundNames(Find()), Names());
}

TEST_F(DigestFindings, OtherDocumentsAreHeldAgainstItToo) {
  ReadSample(SamplePackage(SamplePackage::Kind::Interop));
  m_Digests["text/font.ttf"].Digest = Other;
  EXPECT_EQ(FoundNames(Find()), Names{"pkl-asset-hash"});
}

TEST_F(DigestFindings, ACompositionIsHeldAgainstFilesThatItsPackageDoesNotList) {
  ReadSample(SamplePackage());
  const Composition composition = ReadComposition(*m_Package.Compositions.at(0));
  std::string hash;
  for (const ReelAsset& asset : composition.Reels.at(0).Assets)
    if (asset.Role == AssetRole::Picture) hash = asset.Hash;
  ASSERT_FALSE(hash.empty());
  FileDigest digest;
  const auto find = [&](const Package* package) {
    FindingList findings;
    FindByDigests(
        composition, package, [&](const UUID& id) { return id == *composition.Picture()->ID ? digest : FileDigest(); },
        findings);
    return FoundNames(findings);
  };
  EXPECT_EQ(find(nullptr), Names()) << "no digest was computed";
  std::array<ui8_t, SHA1::Size> bytes{};
  ASSERT_TRUE(Ferro::base64decode(hash, bytes));
  digest.Computed = SHA1(bytes);
  EXPECT_EQ(find(nullptr), Names());
  digest.Computed = Other;
  EXPECT_EQ(find(nullptr), Names{"reel-hash"});
  EXPECT_EQ(find(&m_Package), Names()) << "its packing list tells";
  digest.Listed = hash;
  EXPECT_EQ(find(nullptr), Names()) << "the other packing list tells";
}

}  // namespace
