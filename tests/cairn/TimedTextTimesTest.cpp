// SPDX-License-Identifier: BSD-3-Clause
#include "TimedTextFixture.h"

#include <cmath>
#include <numeric>

namespace {

using Cairn::i64_t;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr i64_t None = -1;  // cannot be read

class TimedTextTimes : public CairnTest::TimedTextTest {
 protected:
  /// TimeOut as units, or None; problems stay to be looked at.
  i64_t ReadTime(const std::string& time, bool is_interop) {
    const std::string instance =
        "<Subtitle SpotNumber='1' TimeIn='00:00:00:000' TimeOut='" + time + "'><Text>a</Text></Subtitle>";
    Read(is_interop ? Interop(instance) : SMPTE(instance));
    const auto& out = m_Document.InstanceList.at(0).TimeOut;
    return out.IsPresent() ? out.Value : None;
  }

  void ExpectEditUnits(i64_t units, const QUIRE::Rational& rate, i64_t expected) {
    EXPECT_EQ(m_Document.EditUnits(units, rate), expected) << units << " at " << rate.EncodeString();
  }
};

struct TimeForm {
  std::string Text;
  i64_t Units;
  std::string Problem;  // as Problems() has it; empty: none
};

TEST_F(TimedTextTimes, TicksAreFourMillisecondsAndFractionsAreDecimal) {
  const TimeForm forms[] = {
      {"00:01:12:125", 72'500, ""},
      {"00:00:00:000", 0, ""},
      {"29:59:59:249", 107'999'996, ""},
      {"00:00:01.5", 1'500, ""},
      {"00:00:01.05", 1'050, ""},
      {"00:00:01.005", 1'005, ""},
      {" 00:00:01.5 ", 1'500, ""},
      {"00:00:01:250", 1'996, "2 out of range Subtitle/@TimeOut [00:00:01:250] [00:00:01.996]"},
      {"00:00:01:20", 1'080, "2 malformed Subtitle/@TimeOut [00:00:01:20] [00:00:01.080]"},
      {"00:00:01:0020", 1'080, "2 malformed Subtitle/@TimeOut [00:00:01:0020] [00:00:01.080]"},
      {"00:00:01.0059", 1'005, "2 malformed Subtitle/@TimeOut [00:00:01.0059] [00:00:01.005]"},
      {"0:0:1:250", 1'996, "2 malformed Subtitle/@TimeOut [0:0:1:250] [00:00:01.996]"},
      {"00:00:60:000", 60'000, "2 out of range Subtitle/@TimeOut [00:00:60:000] [00:01:00.000]"},
      {"30:00:00:000", 108'000'000, "2 out of range Subtitle/@TimeOut [30:00:00:000] [30:00:00.000]"},
      {"00:00:01", None, "2 malformed Subtitle/@TimeOut [00:00:01] []"},
      {"00:00:01.", None, "2 malformed Subtitle/@TimeOut [00:00:01.] []"},
      {"00:00:01,5", None, "2 malformed Subtitle/@TimeOut [00:00:01,5] []"},
      {"00:00:01:1234567890", None, "2 malformed Subtitle/@TimeOut [00:00:01:1234567890] []"},
      {"000:00:01:000", None, "2 malformed Subtitle/@TimeOut [000:00:01:000] []"},
      {"00:00:-1:000", None, "2 malformed Subtitle/@TimeOut [00:00:-1:000] []"},
      {"00:00:+1:000", None, "2 malformed Subtitle/@TimeOut [00:00:+1:000] []"},
      {"20", None, "2 malformed Subtitle/@TimeOut [20] []"},
      {"", None, "2 malformed Subtitle/@TimeOut [] []"},
  };
  for (const TimeForm& form : forms) {
    EXPECT_EQ(ReadTime(form.Text, true), form.Units) << form.Text;
    EXPECT_EQ(Problems(), form.Problem.empty() ? std::vector<std::string>() : std::vector{form.Problem}) << form.Text;
  }
}

TEST_F(TimedTextTimes, TimeCodesCountUnitsOfTheTimeCodeRate) {
  const TimeForm forms[] = {
      {"00:04:11:11", 6'035, ""},
      {"00:00:01:000", 24, ""},
      {"00:00:01:5", 29, ""},
      {"00:00:01:24", 47, "2 out of range Subtitle/@TimeOut [00:00:01:24] [00:00:01:23]"},
      {"00:00:01:500", 47, "2 out of range Subtitle/@TimeOut [00:00:01:500] [00:00:01:23]"},
      {"00:60:00:00", 86'400, "2 out of range Subtitle/@TimeOut [00:60:00:00] [01:00:00:00]"},
      {"0:00:01:00", 24, "2 malformed Subtitle/@TimeOut [0:00:01:00] [00:00:01:00]"},
      {"00:00:01.5", None, "2 malformed Subtitle/@TimeOut [00:00:01.5] []"},
      {"00:00:01:", None, "2 malformed Subtitle/@TimeOut [00:00:01:] []"},
      {"00:00:01:1a", None, "2 malformed Subtitle/@TimeOut [00:00:01:1a] []"},
  };
  for (const TimeForm& form : forms) {
    EXPECT_EQ(ReadTime(form.Text, false), form.Units) << form.Text;
    EXPECT_EQ(Problems(), form.Problem.empty() ? std::vector<std::string>() : std::vector{form.Problem}) << form.Text;
  }
}

TEST_F(TimedTextTimes, TicksGoToTheNearestFrame) {
  ReadTime("00:01:12:125", true);
  ExpectEditUnits(72'500, {24, 1}, 1740);
  ExpectEditUnits(72'500, {25, 1}, 1813);
  ExpectEditUnits(40, {24, 1}, 1);
  ExpectEditUnits(20, {24, 1}, 0);
  ExpectEditUnits(21, {24, 1}, 1);
  ExpectEditUnits(1'001, {24'000, 1'001}, 24);
}

// A tick is 4 ms; whichever way a tool went from the frame to ticks, the nearest frame is the one that was meant.
TEST_F(TimedTextTimes, EveryFrameIsRecoveredHoweverItsTicksWereRounded) {
  ReadTime("00:00:00:000", true);
  for (const int rate : {24, 25, 30, 48, 50, 60, 96, 100, 120}) {
    for (int frame = 0; frame < 2 * rate; ++frame) {
      const int quarter = frame * 250;  // ticks, times the rate
      const int ticks[] = {quarter / rate, (2 * quarter + rate) / (2 * rate), (quarter + rate - 1) / rate};
      for (const int tick : ticks) ExpectEditUnits(4 * tick, {rate, 1}, frame);
    }
  }
}

TEST_F(TimedTextTimes, UnitsAreScaledToTheEditRate) {
  ReadTime("00:00:01:00", false);
  EXPECT_EQ(m_Document.UnitRate(), 24U);
  ExpectEditUnits(6'035, {24, 1}, 6'035);
  ExpectEditUnits(6'035, {48, 1}, 12'070);
  ExpectEditUnits(6'035, {24'000, 1'001}, 6'035);  // the nominal rate
  ExpectEditUnits(6'035, {48'000, 1'001}, 12'070);
  ExpectEditUnits(1, {25, 1}, 1);
  ExpectEditUnits(12, {25, 1}, 13);
  ExpectEditUnits(-12, {25, 1}, -12);
  ExpectEditUnits(-24, {25, 1}, -25);
  ExpectEditUnits(-25, {25, 1}, -26);
}

TEST_F(TimedTextTimes, LargestValuesDoNotOverflow) {
  ReadTime("00:00:01:00", false);
  ExpectEditUnits(1'000'000'000, {2'147'483'647, 1}, 89'478'485'291'666'667);
  ExpectEditUnits(-1'000'000'000, {1, 2'147'483'647}, 0);
}

TEST_F(TimedTextTimes, AnInstanceWithoutOneOfItsTimesIsNeverShown) {
  Read(
      SMPTE("<Subtitle TimeIn='00:00:01:00'><Text>a</Text></Subtitle>\n"
            "<Subtitle TimeIn='x' TimeOut='00:00:02:00'><Text>a</Text></Subtitle>\n"
            "<Subtitle><Text>a</Text></Subtitle>"));
  const auto& instances = m_Document.InstanceList;
  EXPECT_EQ(instances.at(0).TimeIn.Value, 24);
  EXPECT_EQ(instances.at(0).TimeOut.Value, 24);
  EXPECT_EQ(instances.at(1).TimeIn.Value, 48);
  EXPECT_EQ(instances.at(1).TimeOut.Value, 48);
  EXPECT_EQ(instances.at(2).TimeOut.Value, 0);
  EXPECT_THAT(Problems(), ElementsAre("2 missing Subtitle/@TimeOut [] []", "3 malformed Subtitle/@TimeIn [x] []",
                                      "4 missing Subtitle/@TimeIn [] []", "4 missing Subtitle/@TimeOut [] []"));
}

TEST_F(TimedTextTimes, FadesHaveTheDefaultOfTheirFlavour) {
  Read(Interop(Instance("<Text>a</Text>")));
  EXPECT_EQ(m_Document.InstanceList.at(0).FadeUpTime, (Cairn::TextField<i64_t>{80, 0}));
  EXPECT_EQ(m_Document.InstanceList.at(0).FadeDownTime, (Cairn::TextField<i64_t>{80, 0}));
  Read(SMPTE(Instance("<Text>a</Text>")));
  EXPECT_EQ(m_Document.InstanceList.at(0).FadeUpTime, (Cairn::TextField<i64_t>{2, 0}));
  EXPECT_EQ(m_Document.InstanceList.at(0).FadeDownTime, (Cairn::TextField<i64_t>{2, 0}));
}

TEST_F(TimedTextTimes, FadesAreTicksOrTimes) {
  const auto fade = [this](const std::string& up) {
    Read(Interop(Instance("<Text>a</Text>", "FadeUpTime='" + up + "'")));
    return m_Document.InstanceList.at(0).FadeUpTime;
  };
  const auto present = [](i64_t value) { return Cairn::TextField<i64_t>{value, 2}; };
  EXPECT_EQ(fade("20"), present(80));
  EXPECT_EQ(fade("020"), present(80));
  EXPECT_EQ(fade("0"), present(0));
  EXPECT_EQ(fade("00:00:01:000"), present(1'000));
  EXPECT_EQ(fade("00:00:00.5"), present(500));
  EXPECT_THAT(Problems(), IsEmpty());
  EXPECT_EQ(fade("250"), present(996));
  EXPECT_THAT(Problems(), ElementsAre("2 out of range Subtitle/@FadeUpTime [250] [00:00:00.996]"));
  EXPECT_EQ(fade("fast").Value, 80);
  EXPECT_THAT(Problems(), ElementsAre("2 malformed Subtitle/@FadeUpTime [fast] [00:00:00.080]"));

  Read(SMPTE(Instance("<Text>a</Text>", "FadeUpTime='00:00:00:12' FadeDownTime='12'")));
  EXPECT_EQ(m_Document.InstanceList.at(0).FadeUpTime, present(12));
  EXPECT_EQ(m_Document.InstanceList.at(0).FadeDownTime.Value, 2);
  EXPECT_THAT(Problems(), ElementsAre("2 malformed Subtitle/@FadeDownTime [12] [00:00:00:02]"));
}

TEST_F(TimedTextTimes, TimesCountFromTheStartTime) {
  Read(SMPTE("<Subtitle TimeIn='01:00:04:00' TimeOut='01:00:06:00'><Text>a</Text></Subtitle>",
             "<StartTime>01:00:00:00</StartTime>"));
  EXPECT_EQ(m_Document.StartTime.Value, 86'400);
  EXPECT_EQ(m_Document.Origin, 86'400);
  EXPECT_EQ(m_Document.InstanceList.at(0).TimeIn.Value, 96);
  EXPECT_EQ(m_Document.InstanceList.at(0).TimeOut.Value, 144);
  EXPECT_THAT(Problems(), IsEmpty());
}

TEST_F(TimedTextTimes, AStartTimeAfterAllTimesWasNotMeantAsOrigin) {
  Read(SMPTE(Instance("<Text>a</Text>"), "<StartTime>01:00:00:00</StartTime>"));
  EXPECT_EQ(m_Document.Origin, 0);
  EXPECT_EQ(m_Document.StartTime.Value, 86'400);
  EXPECT_EQ(m_Document.InstanceList.at(0).TimeIn.Value, 24);
  EXPECT_THAT(Problems(), ElementsAre("1 before start StartTime [01:00:00:00] [00:00:00:00]"));
}

TEST_F(TimedTextTimes, ATimeBeforeTheStartTimeStaysThere) {
  Read(
      SMPTE("<Subtitle TimeIn='01:00:04:00' TimeOut='01:00:06:00'><Text>a</Text></Subtitle>\n"
            "<Subtitle TimeIn='00:59:59:00' TimeOut='01:00:01:00'><Text>a</Text></Subtitle>",
            "<StartTime>01:00:00:00</StartTime>"));
  EXPECT_EQ(m_Document.InstanceList.at(1).TimeIn.Value, -24);
  EXPECT_EQ(m_Document.InstanceList.at(1).TimeOut.Value, 24);
  EXPECT_THAT(Problems(), ElementsAre("3 before start Subtitle/@TimeIn [00:59:59:00] [00:59:59:00]"));
}

struct RateForm {
  std::string Heading;
  QUIRE::Rational EditRate;
  Cairn::ui32_t TimeCodeRate;
  std::vector<std::string> Problems;
};

TEST_F(TimedTextTimes, RatesAreReducedAndFillInForEachOther) {
  const RateForm forms[] = {
      {"<EditRate>48000 2000</EditRate><TimeCodeRate>24</TimeCodeRate>", {24, 1}, 24, {}},
      {"<EditRate>24000 1001</EditRate><TimeCodeRate>24</TimeCodeRate>", {24'000, 1'001}, 24, {}},
      {"<TimeCodeRate>25</TimeCodeRate>", {25, 1}, 25, {"1 missing EditRate [] []"}},
      {"<EditRate>30000 1001</EditRate>", {30'000, 1'001}, 30, {"1 missing TimeCodeRate [] []"}},
      {"", {24, 1}, 24, {"1 missing EditRate [] []", "1 missing TimeCodeRate [] []"}},
      {"<EditRate>24</EditRate><TimeCodeRate>24</TimeCodeRate>", {24, 1}, 24, {"1 malformed EditRate [24] [24 1]"}},
      {"<EditRate>24 0</EditRate><TimeCodeRate>x</TimeCodeRate>",
       {24, 1},
       24,
       {"1 out of range EditRate [24 0] [24 1]", "1 malformed TimeCodeRate [x] [24]"}},
      {"<EditRate>0 0</EditRate><TimeCodeRate>0</TimeCodeRate>",
       {24, 1},
       24,
       {"1 out of range EditRate [0 0] [24 1]", "1 out of range TimeCodeRate [0] [24]"}},
      {"<EditRate>99999999999 1</EditRate><TimeCodeRate>1001</TimeCodeRate>",
       {24, 1},
       24,
       {"1 out of range EditRate [99999999999 1] [24 1]", "1 out of range TimeCodeRate [1001] [24]"}},
  };
  for (const RateForm& form : forms) {
    Read(SMPTE("", "", "2014", form.Heading));
    EXPECT_EQ(m_Document.EditRate.Value, form.EditRate) << form.Heading;
    EXPECT_EQ(m_Document.TimeCodeRate.Value, form.TimeCodeRate) << form.Heading;
    EXPECT_EQ(Problems(), form.Problems) << form.Heading;
  }
}

}  // namespace
