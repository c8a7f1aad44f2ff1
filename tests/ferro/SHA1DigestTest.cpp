// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/SHA1Digest.h>

#include <gtest/gtest.h>

#include "TestFiles.h"

using namespace Ferro;
using namespace Ferro::Test;

TEST(SHA1Digest, OfTheEmptyText) {
  EXPECT_EQ(DigestText("").EncodeHex(), "da39a3ee5e6b4b0d3255bfef95601890afd80709");
  EXPECT_TRUE(DigestText("").HasValue());
}

// The examples that accompany FIPS 180-4.
TEST(SHA1Digest, OfTheStandardsExamples) {
  EXPECT_EQ(DigestText("abc").EncodeHex(), "a9993e364706816aba3e25717850c26c9cd0d89d");
  EXPECT_EQ(DigestText("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq").EncodeHex(),
            "84983e441c3bd26ebaae4aa1f95129e5e54670f1");
}

TEST(SHA1Digest, InPiecesIsTheDigestOfTheWhole) {
  SHA1Digest digest;
  const std::string piece(1000, 'a');
  for (int i = 0; i < 1000; ++i) digest.Update(piece);
  EXPECT_EQ(digest.Finish().EncodeHex(), "34aa973cd4c4daa4f61eeb2bdbad27316534016f");
}

TEST(SHA1Digest, StartsAnewAfterFinish) {
  SHA1Digest digest;
  digest.Update("something else");
  (void)digest.Finish();
  digest.Update("abc");
  EXPECT_EQ(digest.Finish().EncodeHex(), "a9993e364706816aba3e25717850c26c9cd0d89d");
}

TEST(SHA1Digest, MovesWithWhatItHasSeen) {
  SHA1Digest digest;
  digest.Update("ab");
  SHA1Digest moved(std::move(digest));
  moved.Update(std::string_view("c"));
  EXPECT_EQ(moved.Finish().EncodeHex(), "a9993e364706816aba3e25717850c26c9cd0d89d");
}

TEST(SHA1Digest, OfAFileReportsProgressUpToItsSize) {
  const TemporaryFolder folder;
  MakeFile(folder.Path("a"), std::string(3'000'000, 'a'));
  std::vector<fsize_t> progress;
  SHA1 digest;
  EXPECT_EQ(DigestFile(folder.Path("a"), digest,
                       [&](fsize_t done) {
                         progress.push_back(done);
                         return true;
                       }),
            RESULT_OK);
  EXPECT_EQ(digest.EncodeHex(), DigestText(std::string(3'000'000, 'a')).EncodeHex());
  EXPECT_EQ(progress, (std::vector<fsize_t>{1'048'576, 2'097'152, 3'000'000}));
}

TEST(SHA1Digest, OfAnEmptyFile) {
  const TemporaryFolder folder;
  MakeFile(folder.Path("empty"), "");
  SHA1 digest;
  EXPECT_EQ(DigestFile(folder.Path("empty"), digest), RESULT_OK);
  EXPECT_EQ(digest.EncodeHex(), "da39a3ee5e6b4b0d3255bfef95601890afd80709");
}

TEST(SHA1Digest, CancelledLeavesTheOutputUnchanged) {
  const TemporaryFolder folder;
  MakeFile(folder.Path("a"), "abc");
  SHA1 digest;
  EXPECT_EQ(DigestFile(folder.Path("a"), digest, [](fsize_t) { return false; }), RESULT_CANCELLED);
  EXPECT_FALSE(digest.HasValue());
}

TEST(SHA1Digest, OfAMissingFileIsNotFound) {
  const TemporaryFolder folder;
  SHA1 digest;
  EXPECT_EQ(DigestFile(folder.Path("missing"), digest), RESULT_NOT_FOUND);
  EXPECT_FALSE(digest.HasValue());
}
