// SPDX-License-Identifier: BSD-3-Clause
// Written documents against the files in the golden folder. STRATA_ACCEPT_GOLDEN=1 in the environment makes the tests
// write the files instead; look at the difference before keeping it.
#include "../support/LogCapture.h"
#include "../support/SchemaCheck.h"
#include "SampleDocuments.h"

#include <Ferro/FileText.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace {

using CairnTest::Sample;
using testing::IsEmpty;

std::string GoldenPath(const std::string& name) {
  return std::string(CAIRN_GOLDEN_FOLDER) + "/" + name;
}

std::string GoldenText(const std::string& name) {
  std::string text;
  EXPECT_EQ(Ferro::ReadFileIntoString(GoldenPath(name), text), Ferro::RESULT_OK) << name;
  return text;
}

template <class T>
void ExpectWritten(const std::vector<Sample<T>>& samples) {
  for (const Sample<T>& sample : samples) {
    std::string xml;
    ASSERT_EQ(CairnTest::Encode(sample.Model, xml, sample.Format), Ferro::RESULT_OK) << sample.Golden;
    if (std::getenv("STRATA_ACCEPT_GOLDEN") != nullptr) {
      ASSERT_EQ(Ferro::WriteStringIntoFile(GoldenPath(sample.Golden), xml), Ferro::RESULT_OK);
    }
    EXPECT_EQ(xml, GoldenText(sample.Golden)) << sample.Golden;
  }
}

template <class T>
void ExpectRead(const std::vector<Sample<T>>& samples) {
  for (const Sample<T>& sample : samples) {
    const testsupport::LogCapture log;
    T model;
    EXPECT_EQ(model.DecodeXML(GoldenText(sample.Golden)), Ferro::RESULT_OK) << sample.Golden;
    EXPECT_EQ(model, sample.Model) << sample.Golden;
    EXPECT_THAT(log.Entries(), IsEmpty()) << sample.Golden;
  }
}

template <class T>
void ExpectValid(const std::vector<Sample<T>>& samples) {
  for (const Sample<T>& sample : samples)
    EXPECT_EQ(
        testsupport::ValidateFiles(testsupport::SchemaFolder() + "/" + sample.Schema, {GoldenPath(sample.Golden)}), "")
        << sample.Golden;
}

TEST(GoldenDocument, CompositionPlaylistsAreWrittenWhole) {
  ExpectWritten(CairnTest::CompositionSamples());
}

TEST(GoldenDocument, CompositionPlaylistsAreReadBackEqual) {
  ExpectRead(CairnTest::CompositionSamples());
}

TEST(GoldenDocument, PackingListsAreWrittenWhole) {
  ExpectWritten(CairnTest::PackingListSamples());
}

TEST(GoldenDocument, PackingListsAreReadBackEqual) {
  ExpectRead(CairnTest::PackingListSamples());
}

TEST(GoldenDocument, AssetMapsAreWrittenWhole) {
  ExpectWritten(CairnTest::AssetMapSamples());
}

TEST(GoldenDocument, AssetMapsAreReadBackEqual) {
  ExpectRead(CairnTest::AssetMapSamples());
}

TEST(GoldenDocument, VolumeIndexesAreWrittenWhole) {
  ExpectWritten(CairnTest::VolumeIndexSamples());
}

TEST(GoldenDocument, VolumeIndexesAreReadBackEqual) {
  ExpectRead(CairnTest::VolumeIndexSamples());
}

TEST(GoldenDocument, SubtitleDocumentsAreWrittenWhole) {
  ExpectWritten(CairnTest::SubtitleSamples());
}

TEST(GoldenDocument, SubtitleDocumentsAreReadBackEqual) {
  ExpectRead(CairnTest::SubtitleSamples());
}

TEST(GoldenDocument, AllAreValidAgainstTheStandardsSchemas) {
  if (testsupport::SchemaFolder().empty())
    GTEST_SKIP() << "NOT RUN: STRATA_SCHEMAS does not name the folder of the standards' schemas";
  ExpectValid(CairnTest::CompositionSamples());
  ExpectValid(CairnTest::PackingListSamples());
  ExpectValid(CairnTest::AssetMapSamples());
  ExpectValid(CairnTest::VolumeIndexSamples());
  ExpectValid(CairnTest::SubtitleSamples());
}

}  // namespace
