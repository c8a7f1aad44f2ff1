// SPDX-License-Identifier: BSD-3-Clause
#include "BrokenShow.h"
#include "SchemaCheck.h"
#include "StrataProgram.h"

#include <Ferro/FileText.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>

using testing::AllOf;
using testing::HasSubstr;
using Json = nlohmann::json;

namespace {

/// What the command writes; its exit code is expected to be 0 and its errors to be `errors`.
std::string OutputOf(const std::vector<std::string>& arguments, const std::string& errors = "") {
  StrataProgram program(arguments);
  EXPECT_EQ(program.Wait(), 0);
  EXPECT_EQ(program.Errors(), errors);
  return program.Output();
}

std::string ReadOf(const std::string& file) {
  std::string text;
  EXPECT_TRUE(Ferro::ReadFileIntoString(file, text).Success()) << file;
  return text;
}

size_t Count(const std::string& text, const std::string& part) {
  size_t found = 0;
  for (size_t at = text.find(part); at != text.npos; at = text.find(part, at + part.size())) ++found;
  return found;
}

/// What a show's summary says of its playing that does not depend on time.
Json PlayingOf(const std::vector<std::string>& names) {
  std::vector<std::string> arguments = {"play", "--speed", "max", "--json"};
  arguments.insert(arguments.end(), names.begin(), names.end());
  const Json summary = Json::parse(OutputOf(arguments));
  Json playing = {{"edit_units", summary["edit_units"]}, {"events", summary["events"]}};
  for (const Json& channel : summary["channels"]) playing[channel["name"].get<std::string>()] = channel["delivered"];
  return playing;
}

TEST(Export, ShowPlaylistIsFlatAndValidBySchema) {
  const BrokenShow show;
  const std::string document = OutputOf({"export", "spl", show.Path()});
  EXPECT_EQ(testsupport::ValidateDocuments(SHOW_PLAYLIST_SCHEMA, {document}), "");
  EXPECT_EQ(Count(document, "<CompositionPlaylist>"), 5U);
  EXPECT_EQ(Count(show.Read("show.xml"), "<ShowPlaylist>"), 1U);
  EXPECT_EQ(Count(document, "<ShowPlaylist>"), 0U);
}

TEST(Export, ShowPlaylistHasTheTitleThatIsAskedFor) {
  const BrokenShow show;
  const std::string title = "Saturday & \"first\" <show>";
  const std::string document = OutputOf({"export", "spl", show.Path(), "--title", title});
  EXPECT_EQ(testsupport::ValidateDocuments(SHOW_PLAYLIST_SCHEMA, {document}), "");
  const std::string file = show.Beside("flat.xml");
  EXPECT_EQ(OutputOf({"export", "spl", show.Path(), "--title", title, "--out", file}), "");
  const Json item = Json::parse(OutputOf({"info", file, "--json"}))["items"][0];
  EXPECT_EQ(item["title"], title);
  const Json original = Json::parse(OutputOf({"check", show.Path(), "--json"}));
  EXPECT_EQ(Json::parse(OutputOf({"check", file, "--store", show.Path(), "--json"}))["compositions"],
            original["compositions"]);
  EXPECT_EQ(PlayingOf({file, "--store", show.Path()}), PlayingOf({show.Path()}));

  StrataProgram refused({"export", "spl", show.Path(), "--title", "\x01"});
  EXPECT_EQ(refused.Wait(), 2);
  EXPECT_EQ(refused.Output(), "");
}

TEST(Export, ShowPlaylistGivesTheSameTimeline) {
  const BrokenShow show;
  const std::string file = show.Beside("flat.xml");
  EXPECT_EQ(OutputOf({"export", "spl", show.Path(), "--out", file}), "");
  const Json before = Json::parse(OutputOf({"check", show.Path(), "--json"}));
  const Json after = Json::parse(OutputOf({"check", file, "--store", show.Path(), "--json"}));
  EXPECT_EQ(after["compositions"], before["compositions"]);
  EXPECT_EQ(after["duration"], before["duration"]);
  const Json playing = PlayingOf({show.Path()});
  EXPECT_EQ(playing["events"].size(), 4U);
  EXPECT_EQ(PlayingOf({file, "--store", show.Path()}), playing);
}

TEST(Export, PresentationListAnnouncesEachTextUnderTheBaseURL) {
  const BrokenShow show;
  const std::string document =
      OutputOf({"export", "rpl", show.Path("Feature"), "--base-url", "http://192.168.1.20/captions/"});
  EXPECT_EQ(Count(document, "<ReelResources "), 3U);
  EXPECT_EQ(Count(document, ">http://192.168.1.20/captions/"), 6U);
  EXPECT_EQ(Count(document, "ResourceType=\"MainSubtitle\""), 3U);
}

TEST(Export, TextsOfThePresentationListEndWithTheirPicture) {
  const BrokenShow show;
  EXPECT_EQ(Count(OutputOf({"export", "rpl", show.Path("Feature")}), " Duration=\"24\""), 6U);
  show.Replace("Feature/CPL.xml", "<Duration>24</Duration>", "<Duration>9</Duration>", "<MainPicture>");
  show.Replace("Feature/CPL.xml", "<Duration>24</Duration>", "<Duration>5</Duration>", "<MainSubtitle>");
  show.ListSize("Feature/CPL.xml");
  const std::string document = OutputOf({"export", "rpl", show.Path("Feature"), "--base-url", " Duration=\"7"});
  EXPECT_EQ(Count(document, " Duration=\"5\" IntrinsicDuration=\"24\""), 1U);
  EXPECT_EQ(Count(document, " Duration=\"9\" IntrinsicDuration=\"24\""), 1U);
  EXPECT_EQ(Count(document, " Duration=\"24\" IntrinsicDuration=\"24\""), 4U);
}

TEST(Export, PresentationListWithoutTextsSaysSo) {
  const BrokenShow show;
  const std::string document =
      OutputOf({"export", "rpl", show.Path("Trailer")},
               "strata: no reel of this show has subtitles or captions: the list names none\n");
  EXPECT_THAT(document, AllOf(HasSubstr("ResourcePresentationList"), Not(HasSubstr("<ReelResources "))));
}

TEST(Export, TextThatXMLCannotCarryIsRefused) {
  const BrokenShow show;
  StrataProgram program({"export", "rpl", show.Path("Feature"), "--base-url", "\x01"});
  EXPECT_EQ(program.Wait(), 2);
  EXPECT_EQ(program.Output(), "");
  EXPECT_EQ(program.Errors(),
            "strata: this cannot be a document: some text in it holds characters that XML does not have\n");
}

TEST(Export, IdentifiersOfCompositionsStandOneOnALine) {
  const BrokenShow show;
  const Json report = Json::parse(OutputOf({"check", show.Path(), "--json"}));
  std::string expected;
  for (const Json& composition : report["compositions"]) expected += composition["id"].get<std::string>() + '\n';
  EXPECT_EQ(OutputOf({"export", "ids", show.Path()}), expected);
  EXPECT_EQ(OutputOf({"export", "ids", show.Path(), "--which", "encrypted"}),
            report["compositions"][1]["id"].get<std::string>() + '\n');
}

TEST(Export, KeysAreThoseOfTheComposition) {
  const BrokenShow show;
  const std::string composition = show.Read("Encrypted/CPL.xml");
  const std::string keys = OutputOf({"export", "ids", show.Path(), "--which", "keys"});
  ASSERT_EQ(keys.size(), 2 * 37U);
  EXPECT_THAT(composition, AllOf(HasSubstr("<KeyId>urn:uuid:" + keys.substr(0, 36)),
                                 HasSubstr("<KeyId>urn:uuid:" + keys.substr(37, 36))));
}

TEST(Export, BrokenShowIsNotExported) {
  const BrokenShow show;
  show.Cut("Feature/picture-2.mxf", 60000);
  StrataProgram program({"export", "spl", show.Path(), "--out", show.Beside("flat.xml")});
  EXPECT_EQ(program.Wait(), 2);
  EXPECT_THAT(program.Errors(), HasSubstr("strata: this show cannot be played\n"));
  EXPECT_FALSE(std::filesystem::exists(show.Beside("flat.xml")));
}

TEST(Export, ShowWithMissingAssetsIsNotExported) {
  const BrokenShow show;
  show.Remove("Feature/sound-2.mxf");
  StrataProgram program({"export", "ids", show.Path()});
  EXPECT_EQ(program.Wait(), 3);
  EXPECT_EQ(program.Output(), "");
}

TEST(Export, FileThatCannotBeWrittenIsTold) {
  const BrokenShow show;
  const std::string file = show.Beside("no/such/folder.xml");
  StrataProgram program({"export", "spl", show.Path(), "--out", file});
  EXPECT_EQ(program.Wait(), 2);
  EXPECT_EQ(program.Errors(), "strata: " + file + ": this file cannot be written: its folder is not there\n");
}

TEST(Export, FileThatIsThereIsReplaced) {
  const BrokenShow show;
  const std::string file = show.Beside("ids.txt");
  ASSERT_TRUE(Ferro::WriteStringIntoFile(file, "of yesterday").Success());
  EXPECT_EQ(OutputOf({"export", "ids", show.Path(), "--out", file}), "");
  EXPECT_EQ(ReadOf(file), OutputOf({"export", "ids", show.Path()}));
}

TEST(Export, UnknownKindAndUnknownShowAreUsageErrors) {
  EXPECT_EQ(StrataProgram({"export", "edl", "."}).Wait(), 1);
  EXPECT_EQ(StrataProgram({"export", "spl"}).Wait(), 1);
  EXPECT_EQ(StrataProgram({"export", "spl", "/no/such/show"}).Wait(), 1);
}

}  // namespace
