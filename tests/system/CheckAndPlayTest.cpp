// SPDX-License-Identifier: BSD-3-Clause
#include "SampleFolder.h"
#include "findings/CompositionFindings.h"

#include <nlohmann/json.hpp>

#include <signal.h>

#include <fstream>

using namespace Tool;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

namespace {

using Json = nlohmann::json;

class Check : public SampleFolder {};

TEST_F(Check, SampleShowPlays) {
  StrataProgram check({"check", Show(), "--hash"});
  EXPECT_EQ(check.Wait(), 0);
  EXPECT_EQ(check.Output(),
            "00:00:00:00  SampleTrailer  (1 reel, 24 fps)\n"
            "00:00:01:00  SampleEncrypted  (1 reel, 24 fps)\n"
            "00:00:02:00  SampleFeature  (3 reels, 24 fps)\n"
            "00:00:05:00  SampleStereoscopic  (1 reel, 24 fps, stereoscopic)\n"
            "00:00:06:00  SampleImmersive  (1 reel, 24 fps)\n"
            "warning: SampleEncrypted: The composition is encrypted: it plays only with its keys.\n"
            "This show will play: 0:07.\n");
  EXPECT_EQ(check.Errors(), "");
}

TEST_F(Check, ReportsAsJson) {
  StrataProgram check({"check", Show(), "--json"});
  EXPECT_EQ(check.Wait(), 0);
  const Json report = Json::parse(check.Output());
  EXPECT_EQ(report["schema"], "strata-check-1");
  EXPECT_EQ(report["playable"], true);
  EXPECT_EQ(report["exit_code"], 0);
  EXPECT_EQ(report["duration"], 168);
  EXPECT_EQ(report["duration_seconds"], 7);
  ASSERT_EQ(report["compositions"].size(), 5U);
  EXPECT_EQ(report["compositions"][2]["title"], "SampleFeature");
  EXPECT_EQ(report["compositions"][2]["start"], 48);
  EXPECT_EQ(report["compositions"][2]["reels"], 3);
  EXPECT_EQ(report["compositions"][3]["stereoscopic"], true);
}

TEST_F(Check, UnknownNameIsAUsageError) {
  StrataProgram check({"check", Show("nothing")});
  EXPECT_EQ(check.Wait(), 1);
  EXPECT_EQ(check.Errors(),
            "strata: " + Show("nothing") + ": there is no such file or folder, and it is no identifier.\n");
}

TEST_F(Check, WithoutAShowItIsAUsageError) {
  StrataProgram check({"check"});
  EXPECT_EQ(check.Wait(), 1);
}

TEST_F(Check, EditRateThatChangesIsWarnedOf) {
  StrataProgram maker(
      {"make-sample", Beside("other"), "--length", "1", "--size", "96x64", "--rate", "25", "--seed", "2"});
  ASSERT_EQ(maker.Wait(), 0) << maker.Errors();
  StrataProgram check({"check", Show("Trailer/CPL.xml"), Beside("other/Trailer/CPL.xml")});
  EXPECT_EQ(check.Wait(), 0) << check.Output();
  EXPECT_THAT(check.Output(),
              HasSubstr("The edit rate changes from the composition before: some projectors blank the screen. "
                        "Expected 24, found 25.\n"));
}

TEST(CompositionFindings, UnusualEditRateIsWarnedOf) {
  Cairn::AssetStore store;
  ASSERT_TRUE(store.Open().Success());
  const auto unusual_rates = [&](const QUIRE::Rational& rate) {
    OutlineComposition composition;
    composition.Title = "Composition";
    composition.EditRate = rate;
    std::vector<Finding> findings;
    FindingMemory memory;
    FindInComposition(composition, store, memory, findings);
    std::string found;
    for (const Finding& finding : findings)
      if (finding.ID == FindingID::PictureRate) {
        EXPECT_EQ(finding.Level, Severity::Warning);
        found += finding.Found;
      }
    return found;
  };
  EXPECT_EQ(unusual_rates({24, 1}), "");
  EXPECT_EQ(unusual_rates({48, 1}), "");
  EXPECT_EQ(unusual_rates({20, 1}), "20");
  EXPECT_EQ(unusual_rates({24000, 1001}), "23.976");
}

class Play : public SampleFolder {};

TEST_F(Play, EveryFrameIsAsInItsFile) {
  StrataProgram play({"play", Show(), "--speed", "max", "--verify"});
  EXPECT_EQ(play.Wait(), 0) << play.Errors();
  const std::string output = play.Output();
  EXPECT_THAT(output, HasSubstr("Played 168 edit units in "));
  // 168 of picture and of sound, 72 of subtitles and of captions, 24 of immersive audio.
  EXPECT_THAT(output, HasSubstr("Verified 504 frames: all are as in their files.\n"));
  EXPECT_EQ(play.Errors(), "");
}

TEST_F(Play, SummaryAsJsonTellsOfChannelsAndEvents) {
  StrataProgram play({"play", Show(), "--speed", "max", "--verify", "--json"});
  EXPECT_EQ(play.Wait(), 0);
  const Json summary = Json::parse(play.Output());
  EXPECT_EQ(summary["schema"], "strata-play-1");
  EXPECT_EQ(summary["interrupted"], false);
  EXPECT_EQ(summary["edit_units"], 168);
  EXPECT_EQ(summary["position"], 167);
  EXPECT_EQ(summary["verified"], Json::parse(R"({"compared": 504, "different": 0})"));
  ASSERT_EQ(summary["channels"].size(), 5U);
  EXPECT_EQ(summary["channels"][0]["delivered"], 168);
  std::vector<std::pair<std::string, unsigned>> events;
  for (const Json& event : summary["events"]) events.emplace_back(event["label"], event["position"]);
  EXPECT_THAT(events, testing::ElementsAre(std::pair("SHOW_START", 0U), std::pair("LIGHTS_DOWN", 48U),
                                           std::pair("FEATURE_SECOND_1", 72U), std::pair("CREDITS", 96U)));
}

TEST_F(Play, TellsOfCompositionsReelsAndEventsInOrder) {
  StrataProgram play({"play", Show(), "--speed", "max"});
  EXPECT_EQ(play.Wait(), 0);
  const std::string output = play.Output();
  size_t at = 0;
  for (const char* line :
       {"composition \"SampleTrailer\", reel 1 of 1\n", "event SHOW_START\n",
        "composition \"SampleFeature\", reel 1 of 3\n", "event LIGHTS_DOWN\n",
        "composition \"SampleFeature\", reel 2 of 3\n", "composition \"SampleFeature\", reel 3 of 3\n",
        "event CREDITS\n", "composition \"SampleImmersive\", reel 1 of 1\n"}) {
    at = output.find(line, at);
    ASSERT_NE(at, std::string::npos) << line << output;
  }
}

TEST_F(Play, ObeysCommandsFromStandardInput) {
  StrataProgram play({"play", Show(), "--speed", "max", "--paused", "--json"}, "l30\njf\njf\njb\ns\n");
  EXPECT_EQ(play.Wait(), 0);
  const Json summary = Json::parse(play.Output());
  EXPECT_EQ(summary["position"], 31);
  EXPECT_EQ(summary["edit_units"], 5);  // 0, 30, 31, 32, 31
}

TEST_F(Play, SaysWhatACommandLooksLike) {
  StrataProgram play({"play", Show(), "--paused"}, "?\nq\n");
  EXPECT_EQ(play.Wait(), 0);
  EXPECT_THAT(play.Output(), HasSubstr("(f|b|l<n>|t<n>|j(b|f)|p|s|?)\n"));
}

TEST_F(Play, BrokenShowIsNotPlayed) {
  std::filesystem::resize_file(Show("Feature/picture-2.mxf"), 60000);
  StrataProgram play({"play", Show(), "--speed", "max"});
  EXPECT_EQ(play.Wait(), 2);
  EXPECT_THAT(play.Errors(), HasSubstr("strata: this show cannot be played\n"));
}

TEST_F(Play, ShowWithMissingAssetsIsNotPlayed) {
  std::filesystem::remove(Show("Feature/sound-2.mxf"));
  StrataProgram play({"play", Show(), "--speed", "max"});
  EXPECT_EQ(play.Wait(), 3);
}

TEST_F(Play, SpeedThatIsNoneIsAUsageError) {
  for (const std::string speed : {"0", "-1", "nan", "1e-300", "101", "0x2", "+2", " 2", "2x", "MAX"}) {
    StrataProgram play({"play", Show(), "--speed=" + speed});
    EXPECT_EQ(play.Wait(), 1) << speed;
    EXPECT_THAT(play.Errors(), HasSubstr("not a speed: " + speed));
  }
}

TEST_F(Play, InterruptedItSaysHowFarItCame) {
  StrataProgram play({"play", Show()});
  ASSERT_TRUE(play.WaitForOutput("SampleTrailer"));
  play.Signal(SIGINT);
  EXPECT_EQ(play.Wait(), 4);
  EXPECT_THAT(play.Output(), AllOf(HasSubstr("Played "), Not(HasSubstr("SampleImmersive"))));
}

TEST_F(Play, ResumesWhereItWasInterrupted) {
  const std::string file = Beside("position");
  {
    StrataProgram first({"play", Show(), "--speed", "max", "--resume", file, "--paused"}, "l100\nq\n");
    EXPECT_EQ(first.Wait(), 0);
  }
  StrataProgram second({"play", Show(), "--speed", "max", "--resume", file, "--json"});
  EXPECT_EQ(second.Wait(), 0);
  EXPECT_EQ(Json::parse(second.Output())["edit_units"], 68);  // 100 to 167
}

}  // namespace
