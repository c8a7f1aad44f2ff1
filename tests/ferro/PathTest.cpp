// SPDX-License-Identifier: BSD-3-Clause
#include <Ferro/Path.h>

#include <gtest/gtest.h>

using namespace Ferro;

TEST(Path, JoinPutsExactlyOneSeparatorBetween) {
  EXPECT_EQ(PathJoin("a", "b"), "a/b");
  EXPECT_EQ(PathJoin("a/", "b"), "a/b");
  EXPECT_EQ(PathJoin("a", "/b"), "a/b");
  EXPECT_EQ(PathJoin("a//", "//b/"), "a/b/");
  EXPECT_EQ(PathJoin("/", "b"), "/b");
  EXPECT_EQ(PathJoin("/a/b", "c.xml"), "/a/b/c.xml");
  EXPECT_EQ(PathJoin("a", "/"), "a/");
}

TEST(Path, JoinWithAnEmptySideGivesTheOther) {
  EXPECT_EQ(PathJoin("", "b"), "b");
  EXPECT_EQ(PathJoin("", "/b"), "/b");
  EXPECT_EQ(PathJoin("a/", ""), "a/");
  EXPECT_EQ(PathJoin("", ""), "");
}

TEST(Path, JoinTakesAnotherSeparator) {
  EXPECT_EQ(PathJoin("a", "b", ':'), "a:b");
  EXPECT_EQ(PathJoin("a:", ":b", ':'), "a:b");
  EXPECT_EQ(PathJoin("a/", "/b", ':'), "a/:/b");
}

TEST(Path, DirnameIsAllBeforeTheLastSeparator) {
  EXPECT_EQ(PathDirname("a/b/c.xml"), "a/b");
  EXPECT_EQ(PathDirname("/a"), "/");
  EXPECT_EQ(PathDirname("c.xml"), "");
  EXPECT_EQ(PathDirname(""), "");
  EXPECT_EQ(PathDirname("/"), "/");
  EXPECT_EQ(PathDirname("a/b/"), "a/b");
  EXPECT_EQ(PathDirname("a//b"), "a");
  EXPECT_EQ(PathDirname("//a"), "/");
}

TEST(Path, BasenameIsAllAfterTheLastSeparator) {
  EXPECT_EQ(PathBasename("a/b/c.xml"), "c.xml");
  EXPECT_EQ(PathBasename("c.xml"), "c.xml");
  EXPECT_EQ(PathBasename("a/"), "");
  EXPECT_EQ(PathBasename(""), "");
}

TEST(Path, ExtensionComesWithoutItsPoint) {
  EXPECT_EQ(PathExtension("a/b.PNG"), "PNG");
  EXPECT_EQ(PathExtension("b.tar.gz"), "gz");
  EXPECT_EQ(PathExtension("b"), "");
  EXPECT_EQ(PathExtension(".b"), "");
  EXPECT_EQ(PathExtension("b."), "");
  EXPECT_EQ(PathExtension("a.d/b"), "");
  EXPECT_EQ(PathExtension("a.d/"), "");
  EXPECT_EQ(PathExtension(".."), "");
}

TEST(Path, AbsoluteBeginsWithASeparator) {
  EXPECT_TRUE(PathIsAbsolute("/a"));
  EXPECT_FALSE(PathIsAbsolute("a"));
  EXPECT_FALSE(PathIsAbsolute(""));
}

TEST(Path, NormalizeResolvesStepsAsText) {
  EXPECT_EQ(PathNormalize("a/./b//../c"), "a/c");
  EXPECT_EQ(PathNormalize("/a/../../b"), "/b");
  EXPECT_EQ(PathNormalize("../a/../../b"), "../../b");
  EXPECT_EQ(PathNormalize("a/.."), "");
  EXPECT_EQ(PathNormalize("."), "");
  EXPECT_EQ(PathNormalize(""), "");
  EXPECT_EQ(PathNormalize("/"), "/");
  EXPECT_EQ(PathNormalize("//a///b/"), "/a/b");
  EXPECT_EQ(PathNormalize(".../..a"), ".../..a");
}

TEST(Path, StaysInsideItsFolder) {
  for (const char* path : {"a", "a/b.mxf", "a/../b", "./a", "a/b/../../c", "..a", "..."})
    EXPECT_TRUE(PathStaysInside(path)) << path;
}

TEST(Path, LeavesItsFolder) {
  for (const char* path : {"/a", "..", "../a", "a/../../b", "a/../..", "./../a"})
    EXPECT_FALSE(PathStaysInside(path)) << path;
  EXPECT_FALSE(PathStaysInside(std::string_view("a\0b", 3)));
}
