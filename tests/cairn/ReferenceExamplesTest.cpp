// SPDX-License-Identifier: BSD-3-Clause
// Reads, writes and reads again the worked documents that may stand beside the standards' schemas.
#include "../support/LogCapture.h"
#include "../support/SchemaCheck.h"
#include "SampleDocuments.h"

#include <Cairn/InitObjectWithFile.h>

#include <gtest/gtest.h>

#include <filesystem>

namespace {

std::string ExamplesFolder() {
  const std::string schemas = testsupport::SchemaFolder();
  const std::string folder = schemas + "/../examples";
  return !schemas.empty() && std::filesystem::is_directory(folder) ? folder : std::string();
}

// A written document carries neither its signature nor the namespace it was read in.
template <class T>
T Comparable(T model) {
  if constexpr (requires { model.NamespaceName; }) model.NamespaceName.clear();
  if constexpr (requires { model.SignatureMode; }) {
    model.SignatureMode = Cairn::SM_NONE;
    model.SignatureChain.clear();
  }
  return model;
}

// 1 when the file is such a document and comes back equal, 0 when it is another document.
template <class T>
int ReadsAndWrites(const std::string& path) {
  const testsupport::LogCapture log;
  T model;
  if (Cairn::InitObjectWithFile(model, path).Failure()) return 0;
  std::string xml;
  EXPECT_EQ(CairnTest::Encode(model, xml, model.DCPFormat), Ferro::RESULT_OK) << path;
  T again;
  EXPECT_EQ(again.DecodeXML(xml), Ferro::RESULT_OK) << path;
  EXPECT_EQ(Comparable(again), Comparable(model)) << path;
  return 1;
}

TEST(ReferenceExamples, EachIsReadByOneModelAndComesBackEqual) {
  const std::string folder = ExamplesFolder();
  if (folder.empty()) GTEST_SKIP() << "NOT RUN: no folder \"examples\" beside STRATA_SCHEMAS";
  int count = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    const std::string path = entry.path().string();
    const std::string name = entry.path().filename().string();
    if (entry.path().extension() != ".xml") continue;
    // Timed text and presentation lists have their readers elsewhere; a hostile document has none.
    const bool is_other = name.starts_with("smpte-428-7") || name.starts_with("rpl") || name.starts_with("hostile");
    EXPECT_EQ(ReadsAndWrites<Cairn::CompositionPlaylist>(path) + ReadsAndWrites<Cairn::PackingList>(path) +
                  ReadsAndWrites<Cairn::AssetMap>(path) + ReadsAndWrites<Cairn::VolumeIndex>(path) +
                  ReadsAndWrites<Cairn::DCSubtitle>(path),
              is_other ? 0 : 1)
        << path;
    ++count;
  }
  EXPECT_GT(count, 0);
}

}  // namespace
