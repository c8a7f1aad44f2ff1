// SPDX-License-Identifier: BSD-3-Clause
#include <Cairn/TextSchedule.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace {

using Cairn::i64_t;
using Cairn::TextSchedule;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

const QUIRE::Rational Rate(24, 1);

struct Times {
  i64_t In;
  i64_t Out;
  size_t Lines = 1;
  size_t Images = 0;
};

/// An ST 428-7 document whose units are frames, without fades.
Cairn::TimedText Document(const std::vector<Times>& times) {
  Cairn::TimedText document;
  document.DCPFormat = Cairn::DFT_DCI_SMPTE;
  for (const Times& time : times) {
    Cairn::TextInstance& instance = document.InstanceList.emplace_back();
    instance.TimeIn.Value = time.In;
    instance.TimeOut.Value = time.Out;
    instance.TextList.resize(time.Lines);
    instance.ImageList.resize(time.Images);
  }
  return document;
}

TEST(TextSchedule, TimesAreHalfOpen) {
  const TextSchedule schedule(Document({{96, 111}}), Rate);
  EXPECT_THAT(schedule.ShownAt(95), IsEmpty());
  EXPECT_THAT(schedule.ShownAt(96), ElementsAre(0));
  EXPECT_THAT(schedule.ShownAt(110), ElementsAre(0));
  EXPECT_THAT(schedule.ShownAt(111), IsEmpty());
  EXPECT_EQ(schedule.End(), 111);
}

TEST(TextSchedule, AnInstanceThatEndsAsItBeginsIsNeverShown) {
  const TextSchedule schedule(Document({{10, 10}, {20, 15}}), Rate);
  EXPECT_THAT(schedule.Segments(), IsEmpty());
  EXPECT_THAT(schedule.ShownAt(10), IsEmpty());
  EXPECT_EQ(schedule.End(), 0);
  EXPECT_EQ(schedule.Spans().size(), 2U);
  EXPECT_TRUE(schedule.Spans().at(1).IsEmpty());
}

TEST(TextSchedule, ADocumentWithoutInstancesShowsNothing) {
  const TextSchedule schedule(Cairn::TimedText{}, Rate);
  EXPECT_THAT(schedule.ShownAt(0), IsEmpty());
  EXPECT_THAT(schedule.SimultaneousPairs(9), IsEmpty());
}

TEST(TextSchedule, ShownInstancesStandInDocumentOrder) {
  const TextSchedule schedule(Document({{50, 100}, {0, 60}, {55, 58}}), Rate);
  EXPECT_THAT(schedule.ShownAt(56), ElementsAre(0, 1, 2));
  EXPECT_THAT(schedule.ShownAt(59), ElementsAre(0, 1));
}

TEST(TextSchedule, SegmentsCountWhatIsShownAtOnceAndTheGapsBetween) {
  const TextSchedule schedule(Document({{20, 30, 2}, {0, 10}, {5, 10, 0, 3}}), Rate);
  using Segment = TextSchedule::Segment;
  EXPECT_THAT(schedule.Segments(), ElementsAre(Segment{{0, 5}, 1, 1, 0}, Segment{{5, 10}, 2, 1, 3},
                                               Segment{{10, 20}, 0, 0, 0}, Segment{{20, 30}, 1, 2, 0}));
}

TEST(TextSchedule, TouchingInstancesAreNotSimultaneous) {
  const TextSchedule schedule(Document({{0, 10}, {10, 20}, {19, 25}, {5, 30}}), Rate);
  EXPECT_THAT(schedule.SimultaneousPairs(99), ElementsAre(Pair(0, 3), Pair(3, 1), Pair(3, 2), Pair(1, 2)));
  EXPECT_THAT(schedule.SimultaneousPairs(2), ElementsAre(Pair(0, 3), Pair(3, 1)));
}

TEST(TextSchedule, ManyInstancesAtOnceAreCountedWithoutListingThem) {
  const TextSchedule schedule(Document(std::vector<Times>(Cairn::TimedText::MaxInstanceCount, Times{0, 9})), Rate);
  ASSERT_EQ(schedule.Segments().size(), 1U);
  EXPECT_EQ(schedule.Segments().front().InstanceCount, Cairn::TimedText::MaxInstanceCount);
  EXPECT_EQ(schedule.SimultaneousPairs(1000).size(), 1000U);
}

TEST(TextSchedule, AgreesWithAPlainSearch) {
  std::mt19937 random(7);
  for (int run = 0; run < 50; ++run) {
    std::vector<Times> times(random() % 40);
    for (Times& time : times) {
      time.In = static_cast<i64_t>(random() % 100) - 10;
      time.Out = time.In + static_cast<i64_t>(random() % 30);
    }
    const TextSchedule schedule(Document(times), Rate);
    size_t pairs = 0;
    for (size_t a = 0; a < times.size(); ++a)
      for (size_t b = a + 1; b < times.size(); ++b)
        if (times[a].In < times[a].Out && times[b].In < times[b].Out)
          pairs += times[a].In < times[b].Out && times[b].In < times[a].Out ? 1 : 0;
    EXPECT_EQ(schedule.SimultaneousPairs(10'000).size(), pairs);
    for (i64_t at = -20; at < 140; ++at) {
      std::vector<size_t> expected;
      for (size_t i = 0; i < times.size(); ++i)
        if (times[i].In <= at && at < times[i].Out) expected.push_back(i);
      ASSERT_EQ(schedule.ShownAt(at), expected) << "run " << run << ", edit unit " << at;
    }
  }
}

// 20 ticks, 80 ms, at 24 frames a second.
TEST(TextSchedule, FadesAreTakenInTheMiddleOfTheFrame) {
  Cairn::TimedText document = Document({{0, 1'000}});
  document.DCPFormat = Cairn::DFT_Interop;
  document.InstanceList[0].FadeUpTime.Value = document.InstanceList[0].FadeDownTime.Value = 80;
  const TextSchedule schedule(document, Rate);
  EXPECT_NEAR(schedule.Opacity(0, 0), 0.260, 0.0005);
  EXPECT_NEAR(schedule.Opacity(0, 1), 0.781, 0.0005);
  EXPECT_EQ(schedule.Opacity(0, 2), 1);
  EXPECT_EQ(schedule.Opacity(0, 21), 1);
  EXPECT_NEAR(schedule.Opacity(0, 22), 0.781, 0.0005);
  EXPECT_NEAR(schedule.Opacity(0, 23), 0.260, 0.0005);
  EXPECT_EQ(schedule.Opacity(0, 24), 0);
  EXPECT_EQ(schedule.Opacity(0, -1), 0);
}

TEST(TextSchedule, AFadeDownMayBeginAtTimeOut) {
  Cairn::TimedText document = Document({{0, 1'000}, {1'000, 2'000}});
  document.DCPFormat = Cairn::DFT_Interop;
  document.InstanceList[0].FadeDownTime.Value = 80;
  const TextSchedule schedule(document, Rate, TextSchedule::FadeDown::BeginsAtTimeOut);
  EXPECT_EQ(schedule.Spans().at(0), (TextSchedule::Span{0, 26}));
  EXPECT_EQ(schedule.Opacity(0, 23), 1);
  EXPECT_GT(schedule.Opacity(0, 24), schedule.Opacity(0, 25));
  EXPECT_GT(schedule.Opacity(0, 25), 0);
  EXPECT_EQ(schedule.Opacity(0, 26), 0);
  EXPECT_THAT(schedule.SimultaneousPairs(9), ElementsAre(Pair(0, 1)));
}

TEST(TextSchedule, FadesLongerThanTheInstanceMeetBelowFull) {
  Cairn::TimedText document = Document({{0, 10}});
  document.InstanceList[0].FadeUpTime.Value = document.InstanceList[0].FadeDownTime.Value = 20;
  const TextSchedule schedule(document, Rate);
  for (i64_t at = 0; at < 10; ++at) EXPECT_LT(schedule.Opacity(0, at), 0.5);
  EXPECT_NEAR(schedule.Opacity(0, 4), 4.5 / 20, 1e-9);
  EXPECT_NEAR(schedule.Opacity(0, 5), 4.5 / 20, 1e-9);
}

TEST(TextSchedule, WithoutFadesTheCutIsHard) {
  const TextSchedule schedule(Document({{0, 3}}), Rate);
  EXPECT_EQ(schedule.Opacity(0, 0), 1);
  EXPECT_EQ(schedule.Opacity(0, 2), 1);
}

}  // namespace
