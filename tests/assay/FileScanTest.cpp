// SPDX-License-Identifier: BSD-3-Clause
#include "../support/TemporaryFolder.h"
#include "frames/FileScan.h"

#include <gtest/gtest.h>

namespace {

using namespace Assay;
using Ferro::RESULT_OK;

class FileScanTest : public ::testing::Test {
 protected:
  FileScanTest() {
    m_Content.resize(3'000'000);
    ui32_t value = 1;
    for (char& c : m_Content) c = static_cast<char>((value = value * 1664525 + 1013904223) >> 24);
    m_Path = m_Folder.Write("file", m_Content);
  }

  void ExpectPiece(FileScan& scan, size_t offset, size_t length) {
    std::span<const ui8_t> bytes;
    ASSERT_EQ(scan.Take(offset, length, bytes), RESULT_OK);
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()), m_Content.substr(offset, length)) << offset;
  }

  testsupport::TemporaryFolder m_Folder;
  std::string m_Content;
  std::string m_Path;
};

TEST_F(FileScanTest, TheDigestIsThatOfTheFileWhateverIsTaken) {
  FileScan scan(true, {});
  ASSERT_EQ(scan.Open(m_Path), RESULT_OK);
  ExpectPiece(scan, 10, 100);
  ExpectPiece(scan, 110, 0);
  ExpectPiece(scan, 130, 700'000);
  EXPECT_EQ(scan.ReadAgain(), 0U);
  ExpectPiece(scan, 50, 1000);          // before what went by
  ExpectPiece(scan, 700'000, 300'000);  // partly
  EXPECT_EQ(scan.ReadAgain(), 301'000U);
  ExpectPiece(scan, 2'500'000, 400'000);  // after a gap
  SHA1 digest;
  ASSERT_EQ(scan.Finish(digest), RESULT_OK);
  EXPECT_EQ(digest, Ferro::DigestText(m_Content));
}

TEST_F(FileScanTest, WithoutADigestPiecesAreRead) {
  FileScan scan(false, {});
  ASSERT_EQ(scan.Open(m_Path), RESULT_OK);
  ExpectPiece(scan, 1'000'000, 1'500'000);
  ExpectPiece(scan, 0, 10);
  EXPECT_EQ(scan.ReadAgain(), 10U);
}

TEST_F(FileScanTest, WhatIsNotThereIsAFailure) {
  FileScan scan(true, {});
  ASSERT_EQ(scan.Open(m_Path), RESULT_OK);
  std::span<const ui8_t> bytes;
  EXPECT_EQ(scan.Take(m_Content.size() - 10, 11, bytes), Ferro::RESULT_ENDOFFILE);
  EXPECT_TRUE(scan.Take(ui64_t{1} << 62, 10, bytes).Failure());
}

TEST_F(FileScanTest, EndsWhenItIsTold) {
  ui64_t done = 0;
  const auto until = [&](ui64_t passed) {
    done = passed;
    return passed < 1'000'000;
  };
  FileScan scan(true, until);
  ASSERT_EQ(scan.Open(m_Path), RESULT_OK);
  SHA1 digest;
  EXPECT_EQ(scan.Finish(digest), Ferro::RESULT_CANCELLED);
  EXPECT_GE(done, 1'000'000U);
  EXPECT_LT(done, 2'000'000U);
  EXPECT_FALSE(digest.HasValue());
}

}  // namespace
