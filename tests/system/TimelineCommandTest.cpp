// SPDX-License-Identifier: BSD-3-Clause
#include "BrokenShow.h"
#include "JsonSchema.h"
#include "drawing/TimelineModel.h"
#include "show/Inputs.h"

#include <Ferro/FileText.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

using namespace Tool;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

class Timeline : public testing::Test {
 protected:
  [[nodiscard]] TimelineModel Model() const {
    Inputs inputs;
    InputOptions options;
    options.Names = {m_Show.Path()};
    EXPECT_TRUE(inputs.Open(options)) << inputs.Problem();
    return MakeTimelineModel(ShowOutline(inputs));
  }

  BrokenShow m_Show;
};

std::vector<std::string> LaneNames(const TimelineModel& model) {
  std::vector<std::string> names;
  for (const TimelineLane& lane : model.Lanes) names.push_back(lane.Name);
  return names;
}

std::vector<Ferro::ui32_t> StartsOf(const TimelineModel& model) {
  std::vector<Ferro::ui32_t> all;
  for (const TimelineComposition& composition : model.Compositions) all.push_back(composition.Start);
  return all;
}

std::string TextOf(const std::string& filename) {
  std::string text;
  EXPECT_TRUE(Ferro::ReadFileIntoString(filename, text).Success()) << filename;
  return text;
}

TEST_F(Timeline, SampleShowHasItsLanesReelsAndMarkers) {
  const TimelineModel model = Model();
  EXPECT_EQ(model.Title, "Sample show");
  EXPECT_EQ(model.Code, ExitCode::Fine);
  EXPECT_EQ(model.Duration, 168U);
  EXPECT_DOUBLE_EQ(model.Seconds, 7);
  EXPECT_THAT(LaneNames(model), ElementsAre("Picture", "Sound", "Subtitle", "Caption 1", "Data 1"));
  EXPECT_THAT(StartsOf(model), ElementsAre(0, 24, 48, 120, 144));
  ASSERT_EQ(model.Lanes[0].Tracks.size(), 7U);
  EXPECT_TRUE(model.Lanes[0].Tracks[1].Encrypted());
  EXPECT_TRUE(model.Lanes[0].Tracks[5].Stereoscopic);
  EXPECT_EQ(model.Lanes[4].Tracks[0].Coding, "immersive audio");
  ASSERT_EQ(model.Shows.size(), 2U);
  EXPECT_EQ(model.Shows[1].Title, "Before the feature");
  EXPECT_EQ(model.Shows[1].Duration, 48U);
  EXPECT_EQ(model.Markers.size(), 16U);
  const auto credits = std::ranges::find(model.Markers, "CREDITS", &TimelineMarker::Label);
  ASSERT_NE(credits, model.Markers.end());
  EXPECT_FALSE(credits->OfComposition);
  EXPECT_DOUBLE_EQ(credits->Seconds, 4);
  EXPECT_EQ(TimelineVerdict(model), "All assets are there.");
}

TEST_F(Timeline, MissingFileIsMarkedInItsLane) {
  m_Show.Remove("Feature/sound-2.mxf");
  const TimelineModel model = Model();
  EXPECT_EQ(model.Code, ExitCode::AssetsMissing);
  EXPECT_EQ(model.Lanes[1].Tracks[3].State, TimelineState::Missing);
  EXPECT_EQ(model.Lanes[1].Tracks[3].Start, 72U);
  EXPECT_EQ(model.Lanes[1].Tracks[2].State, TimelineState::Ready);
  EXPECT_EQ(TimelineVerdict(model), "1 missing: 1 sound.");
}

TEST_F(Timeline, BrokenFileIsMarkedInItsLane) {
  m_Show.Cut("Feature/picture-2.mxf", 60000);
  const TimelineModel model = Model();
  EXPECT_EQ(model.Code, ExitCode::NotPlayable);
  EXPECT_EQ(model.Lanes[0].Tracks[3].State, TimelineState::Broken);
}

TEST_F(Timeline, MissingCompositionKeepsThePlaceThatTheShowGivesIt) {
  m_Show.Remove("Feature/CPL.xml");
  const TimelineModel model = Model();
  EXPECT_EQ(model.Code, ExitCode::AssetsMissing);
  EXPECT_THAT(StartsOf(model), ElementsAre(0, 24, 48, 120, 144));
  EXPECT_EQ(model.Compositions[2].State, TimelineState::Missing);
  EXPECT_EQ(model.Compositions[2].Title, "Feature");
  EXPECT_EQ(model.Compositions[2].Duration, 72U);
  EXPECT_EQ(std::ranges::find(model.Markers, "CREDITS", &TimelineMarker::Label)->Position, 96U);
}

TEST_F(Timeline, TellsSilenceFromNoSound) {
  const auto drop_sound = [&](const std::string& composition) {
    const std::string text = m_Show.Read(composition);
    const size_t begin = text.find("<MainSound>");
    const size_t end = text.find("</MainSound>") + 12;
    m_Show.Write(composition, text.substr(0, begin) + text.substr(end));
    m_Show.ListSize(composition);
  };
  drop_sound("Feature/CPL.xml");
  drop_sound("Trailer/CPL.xml");
  const TimelineModel model = Model();
  EXPECT_EQ(model.Lanes[1].Tracks[0].State, TimelineState::NoSound);
  EXPECT_EQ(model.Lanes[1].Tracks[2].State, TimelineState::Silence);
  EXPECT_EQ(model.Lanes[1].Tracks[3].State, TimelineState::Ready);
}

TEST_F(Timeline, EntryPointsAndMarkersOfCompositionsAreTold) {
  m_Show.Replace("Feature/CPL.xml", "<EntryPoint>0</EntryPoint>", "<EntryPoint>5</EntryPoint>", "<MainPicture>");
  m_Show.Replace("Feature/CPL.xml", "<Duration>24</Duration>", "<Duration>12</Duration>", "<MainPicture>");
  m_Show.Replace("Feature/CPL.xml", "<Offset>1</Offset>", "<Offset>3</Offset>");
  m_Show.ListSize("Feature/CPL.xml");
  const TimelineModel model = Model();
  const TimelineTrack& track = model.Lanes[0].Tracks[2];
  EXPECT_EQ(track.HeadTrim(), 5U);
  EXPECT_EQ(track.TailTrim(), 7U);
  EXPECT_EQ(track.Duration, 12U);
  const TimelineTrack& sound = model.Lanes[1].Tracks[2];  // longer than its picture
  EXPECT_EQ(sound.Duration, 12U);
  EXPECT_EQ(sound.TailTrim(), 12U);
  EXPECT_EQ(model.Duration, 156U);
  const auto marker = std::ranges::find(model.Markers, 51U, &TimelineMarker::Position);
  ASSERT_NE(marker, model.Markers.end());
  EXPECT_EQ(marker->Label, "FFOC");
  EXPECT_TRUE(marker->OfComposition);
}

TEST_F(Timeline, SoundEndsWithItsDuration) {
  m_Show.Replace("Feature/CPL.xml", "<Duration>24</Duration>", "<Duration>10</Duration>", "<MainSound>");
  m_Show.ListSize("Feature/CPL.xml");
  const TimelineModel model = Model();
  const TimelineTrack& sound = model.Lanes[1].Tracks[2];
  EXPECT_EQ(sound.Duration, 10U);
  EXPECT_EQ(sound.TailTrim(), 14U);
  EXPECT_EQ(model.Lanes[0].Tracks[2].Duration, 24U);
}

TEST_F(Timeline, TimeGoesOnWhereTheEditRateChanges) {
  m_Show.Replace("show.xml", "<CompositionPlaylist>",
                 "<CompositionPlaylist><CompositionId>urn:uuid:99999999-9999-4999-8999-999999999999</CompositionId>"
                 "<EditRate>48 1</EditRate><Duration>96</Duration></CompositionPlaylist><CompositionPlaylist>");
  const TimelineModel model = Model();
  EXPECT_DOUBLE_EQ(model.Seconds, 9);
  EXPECT_EQ(model.Duration, 264U);
  EXPECT_EQ(TimelineTimeCode(model, 48), "00:00:02:00");
  EXPECT_EQ(TimelineTimeCode(model, 143), "00:00:03:47");
  EXPECT_EQ(TimelineTimeCode(model, 145), "00:00:04:01");
}

TEST_F(Timeline, WritesAllFormsAtOnceAndTellsWhatIsMissing) {
  m_Show.Remove("Feature/sound-2.mxf");
  StrataProgram program({"timeline", m_Show.Path(), "--svg", m_Show.Beside("a.svg"), "--html", m_Show.Beside("a.html"),
                         "--text", "--width", "60"});
  EXPECT_EQ(program.Wait(), 3);
  EXPECT_EQ(program.Errors(), "strata: 1 missing: 1 sound. `strata check` tells more.\n");
  EXPECT_THAT(program.Output(), HasSubstr("missing: SampleFeature, reel 2, sound: A file of the"));
  EXPECT_THAT(program.Output(), HasSubstr("\n    file  " + m_Show.Path("Feature/sound-2.mxf") + "\n"));
  EXPECT_THAT(program.Output(), testing::ContainsRegex("\n    asset [0-9a-f-]{36}\n"));
  EXPECT_THAT(TextOf(m_Show.Beside("a.svg")), HasSubstr("class=\"missing\" x="));
  EXPECT_THAT(TextOf(m_Show.Beside("a.html")), HasSubstr("\"schema\":\"strata-timeline-1\""));
}

TEST_F(Timeline, WithoutAWishItPrintsText) {
  StrataProgram program({"timeline", m_Show.Path()});
  EXPECT_EQ(program.Wait(), 0);
  EXPECT_THAT(program.Output(), HasSubstr("Compositions"));
  EXPECT_EQ(program.Errors(), "");
}

TEST_F(Timeline, FilesAloneLeaveStandardOutputEmpty) {
  StrataProgram program({"timeline", m_Show.Path(), "--svg", m_Show.Beside("a.svg")});
  EXPECT_EQ(program.Wait(), 0);
  EXPECT_EQ(program.Output(), "");
}

TEST_F(Timeline, JsonIsAsDocumented) {
  StrataProgram program({"timeline", m_Show.Path(), "--json"});
  EXPECT_EQ(program.Wait(), 0);
  ExpectMatchesSchema(program.Output(), "strata-timeline-1");
}

TEST_F(Timeline, JsonOfABrokenShowIsAsDocumented) {
  m_Show.Remove("Feature/sound-2.mxf");
  m_Show.Remove("Immersive/CPL.xml");
  m_Show.Cut("Trailer/picture-1.mxf", 60000);
  StrataProgram program({"timeline", m_Show.Path(), "--json"});
  EXPECT_EQ(program.Wait(), 2);
  ExpectMatchesSchema(program.Output(), "strata-timeline-1");
}

TEST_F(Timeline, FileThatCannotBeWrittenIsNamed) {
  StrataProgram program({"timeline", m_Show.Path(), "--svg", m_Show.Beside("none/a.svg")});
  EXPECT_EQ(program.Wait(), 2);
  EXPECT_EQ(program.Errors(),
            "strata: " + m_Show.Beside("none/a.svg") + ": this file cannot be written: its folder is not there\n");
}

TEST_F(Timeline, UsageErrorsAreTold) {
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{"timeline"},
                                                    {"timeline", m_Show.Path(), "--width", "39"},
                                                    {"timeline", m_Show.Path(), "--width", "1001"},
                                                    {"timeline", m_Show.Path(), "--text", "--json"},
                                                    {"timeline", m_Show.Path("nothing")}}) {
    StrataProgram program(arguments);
    EXPECT_EQ(program.Wait(), 1);
    EXPECT_EQ(program.Output(), "");
  }
}

// The picture in the documentation. When a drawing is meant to look otherwise, the message says how it is made anew.
TEST_F(Timeline, PictureInTheDocumentationIsTheSampleShows) {
  const std::string drawn = m_Show.Beside("a.svg");
  StrataProgram program({"timeline", m_Show.Path(), "--svg", drawn});
  ASSERT_EQ(program.Wait(), 0);
  EXPECT_TRUE(TextOf(drawn) == TextOf(TIMELINE_PICTURE))
      << "strata make-sample /tmp/show --length 1 --size 96x64; strata timeline /tmp/show --svg "
         "docs/timeline-sample.svg";
}

}  // namespace
