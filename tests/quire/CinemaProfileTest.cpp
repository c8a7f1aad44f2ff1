// SPDX-License-Identifier: BSD-3-Clause
#include "../support/CinemaCodestream.h"

#include <QUIRE/CinemaProfile.h>

#include <gmock/gmock.h>

namespace {

using namespace QUIRE;
using namespace QUIRE::JP2K;
using testing::ElementsAre;
using testing::IsEmpty;
using testsupport::CinemaCodestream;
using Bytes = CinemaCodestream::Bytes;

std::vector<ProfileFinding> Check(const CinemaCodestream& stream, const Rational& rate = Rational(24, 1)) {
  CodestreamHeaders headers;
  EXPECT_EQ(ParseHeaders(stream.Make(), headers), Ferro::RESULT_OK);
  return CheckCinemaProfile(headers, rate);
}

std::vector<ProfileRule> Rules(const CinemaCodestream& stream) {
  std::vector<ProfileRule> rules;
  for (const ProfileFinding& finding : Check(stream)) rules.push_back(finding.Rule);
  return rules;
}

TEST(CinemaProfile, ProperCodestreamsHaveNoFindings) {
  EXPECT_THAT(Check(CinemaCodestream()), IsEmpty());
  EXPECT_THAT(Check(CinemaCodestream::FourK()), IsEmpty());
}

TEST(CinemaProfile, SizesInBytesFollowTheRate) {
  const struct {
    Rational Rate;
    SizeLimits Limits;
  } rates[] = {{{24, 1}, {1302083, 1041666}},
               {{25, 1}, {1250000, 1000000}},
               {{30, 1}, {1041666, 833333}},
               {{48, 1}, {651041, 520833}},
               {{60, 1}, {520833, 416666}},
               {{200, 11}, {1718750, 1375000}},
               {{0, 1}, {0, 0}},
               {{24, 0}, {0, 0}},
               {{-24, 1}, {0, 0}}};
  for (const auto& rate : rates) {
    EXPECT_EQ(SizeLimitsAt(rate.Rate).Codestream, rate.Limits.Codestream) << rate.Rate.EncodeString();
    EXPECT_EQ(SizeLimitsAt(rate.Rate).Component, rate.Limits.Component) << rate.Rate.EncodeString();
  }
}

TEST(CinemaProfile, ACodestreamUpToTheLimitPasses) {
  CinemaCodestream stream;
  stream.DataLengths = {400000, 400000, 0};
  const size_t rest = 1302083 - stream.Make().size();
  stream.DataLengths[2] = static_cast<ui32_t>(rest);
  EXPECT_THAT(Check(stream), IsEmpty());
  stream.DataLengths[2] += 13;
  ASSERT_THAT(Check(stream), ElementsAre(ProfileFinding{ProfileRule::CodestreamBytes, 1302096, 1302083, 0}));
  EXPECT_EQ(Check(stream)[0].EncodeString(), "1302096 bytes, more than 1302083");
  EXPECT_THAT(Check(stream, Rational()), IsEmpty());
}

TEST(CinemaProfile, AComponentHasALimitOfItsOwn) {
  CinemaCodestream stream;
  stream.DataLengths = {0, 1041666 - 14, 0};
  EXPECT_THAT(Check(stream), IsEmpty());
  ++stream.DataLengths[1];
  ASSERT_THAT(Check(stream), ElementsAre(ProfileFinding{ProfileRule::ComponentBytes, 1041667, 1041666, 1}));
  EXPECT_EQ(Check(stream)[0].EncodeString(), "component 1: 1041667 bytes, more than 1041666");
}

TEST(CinemaProfile, TheHighestResolutionOf4KHasNoComponentLimit) {
  CinemaCodestream stream = CinemaCodestream::FourK();
  stream.DataLengths = {100, 100, 100, 100, 1200000, 100};
  EXPECT_THAT(Check(stream), IsEmpty());
}

struct Breach {
  const char* What;
  ProfileRule Rule;
  void (*Change)(CinemaCodestream& stream);
};

const Breach Breaches[] = {
    {"a width of 2049", ProfileRule::Width, [](auto& s) { s.Width = s.TileWidth = 2049; }},
    {"a height of 1081", ProfileRule::Height, [](auto& s) { s.Height = 1081; }},
    {"an offset", ProfileRule::Origin, [](auto& s) { s.Offset = 2; }},
    {"two tiles", ProfileRule::Tiles, [](auto& s) { s.TileWidth = 1000; }},
    {"8 bits", ProfileRule::Depth, [](auto& s) { s.Components[3] = 7; }},
    {"signed samples", ProfileRule::Depth, [](auto& s) { s.Components[3] = 0x8b; }},
    {"subsampling", ProfileRule::Subsampling, [](auto& s) { s.Components[4] = 2; }},
    {"6 levels", ProfileRule::Levels, [](auto& s) { s.Style[5] = 6, s.Style.push_back(0x88); }},
    {"5-3", ProfileRule::Transform, [](auto& s) { s.Style[9] = 1; }},
    {"no component transform", ProfileRule::ComponentTransform, [](auto& s) { s.Style[4] = 0; }},
    {"code-blocks 64 wide", ProfileRule::CodeBlocks, [](auto& s) { s.Style[6] = 4; }},
    {"code-blocks 16 high", ProfileRule::CodeBlocks, [](auto& s) { s.Style[7] = 2; }},
    {"code-block style", ProfileRule::CodeBlockStyle, [](auto& s) { s.Style[8] = 1; }},
    {"256 at the lowest resolution", ProfileRule::Precincts, [](auto& s) { s.Style[10] = 0x88; }},
    {"128 at the highest", ProfileRule::Precincts, [](auto& s) { s.Style[15] = 0x77; }},
    {"no precincts", ProfileRule::Precincts, [](auto& s) { s.Style[0] = 0, s.Style.resize(10); }},
    {"two layers", ProfileRule::Layers, [](auto& s) { s.Style[3] = 2; }},
    {"LRCP", ProfileRule::Progression, [](auto& s) { s.Style[1] = 0; }},
    {"a POC", ProfileRule::ProgressionChange, [](auto& s) { s.ProgressionChanges = {0, 0, 0, 1, 6, 3, 4}; }},
    {"one tile-part", ProfileRule::TileParts, [](auto& s) { s.DataLengths = {10}; }},
    {"no TLM", ProfileRule::TilePartLengths, [](auto& s) { s.HasTLM = false; }},
    {"two guard bits", ProfileRule::GuardBits, [](auto& s) { s.Quant[0] = 0x42; }},
    {"a region of interest", ProfileRule::ForbiddenMarker,
     [](auto& s) {
       s.MoreOfMainHeader = CinemaCodestream::Segment(Marker::RGN, {0, 0, 1});
     }},
    {"packed packet headers", ProfileRule::ForbiddenMarker,
     [](auto& s) {
       s.MoreOfTilePart = CinemaCodestream::Segment(Marker::PPT, {0, 0});
     }},
    {"QCD in a tile-part", ProfileRule::TilePartMarker,
     [](auto& s) { s.MoreOfTilePart = CinemaCodestream::Segment(Marker::QCD, s.Quant); }},
    {"no EOC", ProfileRule::End, [](auto& s) { s.Tail = {}; }},
    {"data after EOC", ProfileRule::End, [](auto& s) { s.Tail.push_back(0); }},
};

TEST(CinemaProfile, EveryBreachIsFoundAloneAndHasAText) {
  for (const Breach& breach : Breaches) {
    CinemaCodestream stream;
    breach.Change(stream);
    EXPECT_THAT(Rules(stream), ElementsAre(breach.Rule)) << breach.What;
    for (const ProfileFinding& finding : Check(stream)) EXPECT_GT(finding.EncodeString().size(), 6u) << breach.What;
  }
}

TEST(CinemaProfile, OfCodeBlocksBothSidesAreGiven) {
  CinemaCodestream stream;
  stream.Style[7] = 4;
  EXPECT_THAT(Check(stream), ElementsAre(ProfileFinding{ProfileRule::CodeBlocks, 32 << 16 | 64, 32 << 16 | 32, 0}));
}

TEST(CinemaProfile, AnotherProfileIsMeasuredByItsSize) {
  CinemaCodestream stream;
  stream.Rsiz = 0;
  EXPECT_THAT(Check(stream), ElementsAre(ProfileFinding{ProfileRule::Profile, 0, 3, 0}));
  CinemaCodestream large = CinemaCodestream::FourK();
  large.Rsiz = 0;
  EXPECT_THAT(Check(large), ElementsAre(ProfileFinding{ProfileRule::Profile, 0, 4, 0}));
  EXPECT_EQ(Check(large)[0].EncodeString(), "profile (Rsiz) 0, not 4");
}

TEST(CinemaProfile, FourKNeedsItsTwoProgressions) {
  CinemaCodestream stream = CinemaCodestream::FourK();
  stream.ProgressionChanges[4] = 4;
  EXPECT_THAT(Rules(stream), ElementsAre(ProfileRule::ProgressionChange));
  stream.ProgressionChanges.clear();
  EXPECT_THAT(Rules(stream), ElementsAre(ProfileRule::ProgressionChange));
}

TEST(CinemaProfile, FourKNeedsALevel) {
  CinemaCodestream stream = CinemaCodestream::FourK();
  stream.Style = {0x01, 4, 0, 1, 1, 0, 3, 3, 0, 0, 0x77};
  stream.ProgressionChanges = {0, 0, 0, 1, 0, 3, 4, 0, 0, 0, 1, 1, 3, 4};
  EXPECT_THAT(Rules(stream), ElementsAre(ProfileRule::Levels));
}

TEST(CinemaProfile, ComponentsAreNamed) {
  CinemaCodestream stream;
  stream.MoreOfMainHeader = CinemaCodestream::Segment(Marker::COC, {2, 1, 4, 3, 3, 0, 0, 0x77, 0x88, 0x88, 0x88, 0x88});
  EXPECT_THAT(Check(stream), ElementsAre(ProfileFinding{ProfileRule::Levels, 4, 5, 2}));
  stream.MoreOfMainHeader = CinemaCodestream::Segment(Marker::QCC, {1, 0x42, 0});
  EXPECT_THAT(Check(stream), ElementsAre(ProfileFinding{ProfileRule::GuardBits, 2, 1, 1}));
}

TEST(CinemaProfile, SignedSamplesAreSaidToBe) {
  CinemaCodestream stream;
  stream.Components[0] = 0x8b;
  EXPECT_EQ(Check(stream).at(0).EncodeString(), "component 0: 12 bits signed, not 12 unsigned");
}

TEST(CinemaProfile, ABeginningIsCheckedAsFarAsItGoes) {
  const CinemaCodestream stream;
  Bytes beginning = stream.MainHeader();
  CinemaCodestream::Append(beginning, {0xff, 0x90});
  CodestreamHeaders headers;
  ASSERT_EQ(ParseHeaders(beginning, headers), Ferro::RESULT_OK);
  const auto findings = CheckCinemaProfile(headers, Rational(24, 1));
  ASSERT_EQ(findings.size(), 1u);
  EXPECT_EQ(findings[0].Rule, ProfileRule::End);
}

}  // namespace
