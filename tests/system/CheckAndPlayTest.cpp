// SPDX-License-Identifier: BSD-3-Clause
#include "JsonSchema.h"
#include "SampleFolder.h"
#include "findings/CompositionFindings.h"

#include <nlohmann/json.hpp>

#include <signal.h>

#include <chrono>
#include <fstream>
#include <thread>

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
            "00:00:00:00  SampleTrailer  (96×64, 24 fps, 5.1, en, SMPTE, OV, 1 reel)\n"
            "00:00:01:00  SampleEncrypted  (96×64, 24 fps, 5.1, en, SMPTE, OV, encrypted, 1 reel)\n"
            "00:00:02:00  SampleFeature  (96×64, 24 fps, 5.1, en with en subtitles, captions, SMPTE, OV, 3 reels)\n"
            "00:00:05:00  SampleStereoscopic  (96×64 3D, 24 fps, 5.1, en, SMPTE, OV, 1 reel)\n"
            "00:00:06:00  SampleImmersive  (96×64, 24 fps, 5.1, immersive audio, en, SMPTE, OV, 1 reel)\n"
            "note: SampleEncrypted: The composition is encrypted: it plays only with its keys.\n"
            "    Get a key message for this server, and copy it to where the others lie.\n"
            "This show needs keys for 1 composition: 0:07. All files are as their packing lists say.\n");
  EXPECT_EQ(check.Errors(), "");
}

TEST_F(Check, ReportsAsJson) {
  StrataProgram check({"check", Show(), "--json"});
  EXPECT_EQ(check.Wait(), 0);
  const Json report = Json::parse(check.Output());
  EXPECT_EQ(report["schema"], "strata-check-1");
  EXPECT_EQ(report["playable"], false);
  EXPECT_EQ(report["needs_keys"], 1);
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
  EXPECT_THAT(check.Output(), HasSubstr("The edit rate changes from the composition before. Expected 24, found 25.\n"));
}

TEST(CompositionFindings, UnusualEditRateIsWarnedOf) {
  Cairn::AssetStore store;
  ASSERT_TRUE(store.Open().Success());
  const auto unusual_rates = [&](const QUIRE::Rational& rate) {
    OutlineComposition composition;
    composition.Title = "Composition";
    composition.EditRate = rate;
    FindingList findings;
    FindingMemory memory;
    FindInComposition(composition, store, memory, findings);
    std::string found;
    for (const Finding& finding : findings)
      if (finding.ID == FindingID::PictureRate) {
        EXPECT_EQ(finding.Class, FindingClass::Warning);
        found += finding.Found;
      }
    return found;
  };
  EXPECT_EQ(unusual_rates({24, 1}), "");
  EXPECT_EQ(unusual_rates({48, 1}), "");
  EXPECT_EQ(unusual_rates({20, 1}), "20");
  EXPECT_EQ(unusual_rates({24000, 1001}), "23.976");
}

TEST_F(Check, StrayFilesBesidePackagesStopNothing) {
  std::ofstream(Show("keys.xml")) << "<?xml version=\"1.0\"?><!-- for ShowPlaylist --><DCinemaSecurityMessage "
                                     "xmlns=\"http://www.smpte-ra.org/schemas/430-3/2006/ETM\"><CompositionPlaylistId>"
                                     "urn:uuid:58ce4e14-c900-51d0-9c92-8e0aeba732ae</CompositionPlaylistId>";
  std::ofstream(Show("._show.xml")) << std::string("\0\x05\x16\x07\0\x02\0\0", 8);
  std::ofstream(Show("report.xml")) << "<report>CompositionPlaylist ShowPlaylist</report>";
  for (const char* command : {"check", "timeline", "export"}) {
    std::vector<std::string> arguments = {command, Show()};
    if (std::string(command) == "export") arguments.insert(arguments.begin() + 1, "spl");
    StrataProgram program(arguments);
    EXPECT_EQ(program.Wait(), 0) << command << program.Errors();
  }
}

TEST_F(Check, CompositionsOfAFolderAreJudgedOneByOne) {
  for (const char* name : {"show.xml", "before-the-feature.xml", "Feature/sound-2.mxf"})
    std::filesystem::remove(Show(name));
  StrataProgram check({"check", Show()});
  EXPECT_EQ(check.Wait(), 3);
  EXPECT_THAT(check.Output(), HasSubstr("SampleTrailer  (96×64, 24 fps, 5.1, en, SMPTE, OV, 1 reel): Nothing speaks "
                                        "against this show: 0:01."));
  EXPECT_THAT(check.Output(), HasSubstr("3 reels): This show will not play: missing 1 sound.\n"));
  EXPECT_THAT(check.Output(), testing::EndsWith("1 of 5 will not play. What is wrong with one: strata check '" +
                                                Show("Feature/CPL.xml") + "'\n"));
  EXPECT_EQ(check.Errors(), "");
  StrataProgram json({"check", Show(), "--json"});
  EXPECT_EQ(json.Wait(), 3);
  ExpectMatchesSchema(json.Output(), "strata-check-1");
  EXPECT_EQ(Json::parse(json.Output())["shows"].size(), 5U);
}

TEST_F(Check, WhoNeedsOneShowIsToldWhatToType) {
  for (const char* name : {"show.xml", "before-the-feature.xml"}) std::filesystem::remove(Show(name));
  StrataProgram play({"play", Show()});
  EXPECT_EQ(play.Wait(), 1);
  EXPECT_THAT(play.Errors(), HasSubstr("several compositions could be meant. Name one of them, as in `"));
  EXPECT_THAT(play.Errors(), HasSubstr(".xml --store " + Show() + "`:\n"));
  EXPECT_THAT(play.Errors(), HasSubstr(Show("Trailer/CPL.xml") + "  \"SampleTrailer\"\n"));
}

TEST_F(Check, TwoCopiesOfAPackageAreOne) {
  const std::string both = Beside("both");
  std::filesystem::create_directory(both);
  for (const char* copy : {"/a", "/b"})
    std::filesystem::copy(Show("Trailer"), both + copy, std::filesystem::copy_options::recursive);
  StrataProgram check({"check", both});
  EXPECT_EQ(check.Wait(), 0) << check.Errors();
  EXPECT_THAT(check.Output(), HasSubstr("SampleTrailer"));
}

TEST(CompositionFindings, FileThatCouldNotBeReadToItsEndIsAnError) {
  Cairn::AssetStore store;
  ASSERT_TRUE(store.Open().Success());
  OutlineComposition composition;
  OutlineAsset& asset = composition.Reels.emplace_back().Assets.emplace_back();
  asset.Found.emplace();
  asset.Found->Problems = Cairn::AP_READ_FAILED;
  asset.Found->ReadFailure = "Input/output error";
  asset.Found->Info.RealFilename = "/show/picture.mxf";
  FindingList findings;
  FindingMemory memory;
  FindInComposition(composition, store, memory, findings);
  ASSERT_FALSE(findings.empty());
  EXPECT_EQ(findings.front().ID, FindingID::FileUnreadable);
  EXPECT_EQ(findings.front().Class, FindingClass::Error);
  EXPECT_EQ(PathOf(findings.front().Place), "/show/picture.mxf");
  EXPECT_EQ(findings.front().Found, "Input/output error");
}

class Play : public SampleFolder {};

TEST_F(Play, EveryFrameIsAsInItsFile) {
  StrataProgram play({"play", Show(), "--speed", "max", "--verify"});
  EXPECT_EQ(play.Wait(), 0) << play.Errors();
  const std::string output = play.Output();
  EXPECT_THAT(output, HasSubstr("Played 168 edit units in "));
  // 168 of picture and of sound, 72 of subtitles and of captions, 24 of immersive audio.
  EXPECT_THAT(output, HasSubstr("Verified 504 frames: all were read as they stand in their files. "));
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
       {"composition \"SampleTrailer\", reel 1 of 1: 96\u00d764, 24 fps, 5.1, en, SMPTE, OV, 1 reel\n",
        "event SHOW_START\n",
        "composition \"SampleFeature\", reel 1 of 3: 96\u00d764, 24 fps, 5.1, en with en subtitles, captions, SMPTE, "
        "OV, 3 reels\n",
        "event LIGHTS_DOWN\n", "composition \"SampleFeature\", reel 2 of 3\n",
        "composition \"SampleFeature\", reel 3 of 3\n", "event CREDITS\n",
        "composition \"SampleImmersive\", reel 1 of 1: 96\u00d764, "}) {
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
  StrataProgram play({"play", Show(), "--paused"}, "?\nx\nq\n");
  EXPECT_EQ(play.Wait(), 0);
  EXPECT_THAT(play.Output(), HasSubstr("  f b           play forwards, backwards\n"));
  EXPECT_THAT(play.Output(), HasSubstr("In short: (f|b|l<n>|t<n>|j(b|f)|p|s|?)\n"));
}

TEST_F(Play, SecondsLostWhileItWasStoppedAreCounted) {
  StrataProgram play({"play", Show(), "--speed", "4", "--json"});
  std::this_thread::sleep_for(std::chrono::milliseconds(500));  // it lasts 1.75 s
  play.Signal(SIGSTOP);
  std::this_thread::sleep_for(std::chrono::milliseconds(3000));
  play.Signal(SIGCONT);
  EXPECT_EQ(play.Wait(), 0) << play.Errors();
  ExpectMatchesSchema(play.Output(), "strata-play-1");
  const Json summary = Json::parse(play.Output());
  EXPECT_GT(summary["held_up_seconds"], 1.5);
  EXPECT_LT(summary["held_up_seconds"], summary["seconds"]);
  EXPECT_GE(summary["channels"][0]["late"], 20);  // of those that are played faster to catch up
}

TEST_F(Play, SaysThatItResumes) {
  const std::string file = Beside("position");
  std::ofstream(file) << "12882066-0fed-5c52-83e0-cf5e3b96e2bb 100\n";
  StrataProgram play({"play", Show(), "--speed", "max", "--resume", file});
  EXPECT_EQ(play.Wait(), 0);
  EXPECT_THAT(play.Output(), testing::StartsWith("resuming at 00:00:04:04, edit unit 100 of 168\n"));
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
