// SPDX-License-Identifier: BSD-3-Clause
// Reads the worked documents that may stand beside the standards' schemas.
#include "../support/LogCapture.h"
#include "../support/SchemaCheck.h"

#include <Cairn/InitObjectWithFile.h>
#include <Cairn/TimedText.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace {

TEST(TimedTextExamples, ValidDocumentsOfBothFlavoursHaveNoProblems) {
  const std::string schemas = testsupport::SchemaFolder();
  const std::string folder = schemas + "/../examples/";
  if (schemas.empty() || !std::filesystem::is_directory(folder))
    GTEST_SKIP() << "NOT RUN: no folder \"examples\" beside STRATA_SCHEMAS";
  for (const char* name : {"smpte-428-7-text.xml", "smpte-428-7-image.xml", "interop-dcsubtitle.xml"}) {
    Cairn::TimedText document;
    EXPECT_EQ(Cairn::InitObjectWithFile(document, folder + name), Ferro::RESULT_OK) << name;
    EXPECT_EQ(document.ProblemCount, 0U) << name;
    EXPECT_THAT(document.InstanceList, testing::Not(testing::IsEmpty())) << name;
  }
}

TEST(TimedTextExamples, NoOtherDocumentIsTakenForTimedText) {
  const std::string schemas = testsupport::SchemaFolder();
  const std::string folder = schemas + "/../examples/";
  if (schemas.empty() || !std::filesystem::is_directory(folder))
    GTEST_SKIP() << "NOT RUN: no folder \"examples\" beside STRATA_SCHEMAS";
  const testsupport::LogCapture log;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    const std::string name = entry.path().filename().string();
    const bool is_text = name.find("428-7") != std::string::npos || name.find("dcsubtitle") != std::string::npos;
    if (entry.path().extension() != ".xml" || is_text) continue;
    Cairn::TimedText document;
    EXPECT_TRUE(Cairn::InitObjectWithFile(document, entry.path().string()).Failure()) << name;
  }
}

}  // namespace
