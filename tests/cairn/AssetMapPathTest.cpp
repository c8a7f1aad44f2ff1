// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/AssetMapPath.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace std::string_view_literals;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> Candidates(std::string_view path) {
  std::vector<std::string> out;
  EXPECT_EQ(Cairn::AssetMapPathCandidates(path, out), Ferro::RESULT_OK) << path;
  return out;
}

void ExpectRefused(std::string_view path) {
  std::vector<std::string> out = {"before"};
  EXPECT_EQ(Cairn::AssetMapPathCandidates(path, out), Cairn::RESULT_CN_PATH) << path;
  EXPECT_THAT(out, IsEmpty()) << path;
}

TEST(AssetMapPath, ARelativePathStands) {
  EXPECT_THAT(Candidates("PKL.xml"), ElementsAre("PKL.xml"));
  EXPECT_THAT(Candidates("reel 1/sound,2.mxf"), ElementsAre("reel 1/sound,2.mxf"));
}

TEST(AssetMapPath, BlanksAroundAreTakenOff) {
  EXPECT_THAT(Candidates("\n\t a b.mxf \r\n"), ElementsAre("a b.mxf"));
}

TEST(AssetMapPath, OneFilePrefixIsTakenOff) {
  EXPECT_THAT(Candidates("file:///reel1/picture.mxf"), ElementsAre("reel1/picture.mxf"));
  EXPECT_THAT(Candidates("file://picture.mxf"), ElementsAre("picture.mxf"));
  EXPECT_THAT(Candidates("file:/picture.mxf"), ElementsAre("picture.mxf"));
}

TEST(AssetMapPath, EmptyAndDotStepsVanish) {
  EXPECT_THAT(Candidates("./reel1/.//subtitle.mxf/"), ElementsAre("reel1/subtitle.mxf"));
}

TEST(AssetMapPath, TheDecodedFormComesSecond) {
  EXPECT_THAT(Candidates("reel%201/s%6Fund.mxf"), ElementsAre("reel%201/s%6Fund.mxf", "reel 1/sound.mxf"));
}

TEST(AssetMapPath, DecodingIsDoneOnce) {
  EXPECT_THAT(Candidates("a%2520b"), ElementsAre("a%2520b", "a%20b"));
  EXPECT_THAT(Candidates("%252e%252e/b"), ElementsAre("%252e%252e/b", "%2e%2e/b"));
}

TEST(AssetMapPath, PercentSignsThatEscapeNothingStay) {
  EXPECT_THAT(Candidates("100%"), ElementsAre("100%"));
  EXPECT_THAT(Candidates("a%2"), ElementsAre("a%2"));
  EXPECT_THAT(Candidates("a%zz"), ElementsAre("a%zz"));
}

TEST(AssetMapPath, BytesOfUTF8Stay) {
  EXPECT_THAT(Candidates("caf\xC3\xA9.mxf"), ElementsAre("caf\xC3\xA9.mxf"));
}

TEST(AssetMapPath, ABackslashInsideIsACharacter) {
  EXPECT_THAT(Candidates("a\\b.mxf"), ElementsAre("a\\b.mxf"));
}

TEST(AssetMapPath, DotsInNamesAreNames) {
  EXPECT_THAT(Candidates("..a/b../...mxf"), ElementsAre("..a/b../...mxf"));
}

TEST(AssetMapPath, StepsUpwardsAreRefused) {
  for (const std::string_view path :
       {"../outside.mxf"sv, "../../outside.mxf"sv, "a/../b"sv, "a/.."sv, ".."sv, "file:///../a"sv, "./../a"sv})
    ExpectRefused(path);
}

TEST(AssetMapPath, StepsUpwardsBehindAnEscapeAreRefused) {
  for (const std::string_view path : {"%2e%2e/outside.mxf"sv, "%2E./a"sv, "a/%2e%2e/b"sv, "a%2f..%2fb"sv})
    ExpectRefused(path);
}

TEST(AssetMapPath, StepsUpwardsBehindBackslashesAreRefused) {
  for (const std::string_view path : {"..\\a"sv, "a\\..\\b"sv, "a/b\\.."sv, "%5c..%5ca"sv}) ExpectRefused(path);
}

TEST(AssetMapPath, AbsolutePathsAreRefused) {
  for (const std::string_view path : {"/absolute/file.mxf"sv, "//host/share"sv, "file:////etc/passwd"sv,
                                      "\\\\host\\share"sv, "%2fetc/passwd"sv, "file:///%2fetc"sv})
    ExpectRefused(path);
}

TEST(AssetMapPath, DriveLettersAndOtherSchemesAreRefused) {
  for (const std::string_view path : {"C:\\windows\\file.mxf"sv, "c:/file.mxf"sv, "http://192.0.2.10/file.mxf"sv,
                                      "file:file:///a"sv, "data:x"sv, "a%3ab/c"sv})
    ExpectRefused(path);
}

TEST(AssetMapPath, AColonBehindTheFirstSeparatorIsACharacter) {
  EXPECT_THAT(Candidates("a/b:c"), ElementsAre("a/b:c"));
}

TEST(AssetMapPath, ControlCharactersAreRefused) {
  for (const std::string_view path : {"a\0b"sv, "a%00b.mxf"sv, "a\nb"sv, "a%0Ab"sv, "a\x7F"sv}) ExpectRefused(path);
}

TEST(AssetMapPath, EmptyPathsAreRefused) {
  for (const std::string_view path : {""sv, "  "sv, "."sv, "./."sv, "file:///"sv, "%2e"sv}) ExpectRefused(path);
}

}  // namespace
