// SPDX-License-Identifier: BSD-3-Clause
#include "../support/CinemaCodestream.h"
#include "FoundNames.h"
#include "frames/FrameExaminer.h"

#include <gtest/gtest.h>

namespace {

using namespace Assay;
using testsupport::CinemaCodestream;
using testsupport::FoundNames;
using Bytes = CinemaCodestream::Bytes;
using Marker = QUIRE::JP2K::Marker;
using Names = std::vector<std::string>;

TrackFile PictureFile(const QUIRE::Rational& rate, bool is_stereoscopic = false, ui32_t duration = 100) {
  TrackFile file;
  file.Package = "/package";
  file.Path = "picture.mxf";
  file.EditRate = rate;
  file.Duration = duration;
  QUIRE::JP2K::PictureDescriptor picture;
  picture.Stereoscopic = is_stereoscopic;
  file.Essence = picture;
  return file;
}

struct Examined {
  FindingList Findings;
  FileFigures Figures;
};

/// One edit unit for each frame, or of a stereoscopic file for each two.
Examined Examine(const TrackFile& file, const std::vector<Bytes>& frames) {
  const bool has_eyes =
      file.As<QUIRE::JP2K::PictureDescriptor>() != nullptr && file.As<QUIRE::JP2K::PictureDescriptor>()->Stereoscopic;
  const auto examiner = NewPictureExaminer(file);
  for (size_t i = 0; i < frames.size(); ++i) {
    const size_t unit = has_eyes ? i / 2 : i;
    examiner->Examine({static_cast<ui32_t>(unit), has_eyes && i % 2 == 1, frames[i]});
  }
  Examined examined;
  examiner->Finish(examined.Findings, examined.Figures, true);
  return examined;
}

Names NamesOf(const CinemaCodestream& stream, const QUIRE::Rational& rate = QUIRE::EditRate_24) {
  return FoundNames(Examine(PictureFile(rate), {stream.Make()}).Findings);
}

/// A sound stream of that size.
Bytes OfSize(size_t size) {
  CinemaCodestream stream;
  stream.DataLengths = {0, 0, 0};
  const auto data = static_cast<ui32_t>(size - stream.Make().size());
  stream.DataLengths = {data / 3, data / 3, data - 2 * (data / 3)};
  return stream.Make();
}

Names NamesOfSizes(const QUIRE::Rational& rate, bool is_stereoscopic, const std::vector<size_t>& sizes) {
  std::vector<Bytes> frames;
  for (const size_t size : sizes) frames.push_back(OfSize(size));
  return FoundNames(Examine(PictureFile(rate, is_stereoscopic), frames).Findings);
}

TEST(PictureExaminer, SoundPicturesHaveNoFindings) {
  EXPECT_EQ(NamesOf(CinemaCodestream()), Names());
  EXPECT_EQ(NamesOf(CinemaCodestream::FourK()), Names());
}

struct Breach {
  const char* What;
  Names Expected;
  void (*Change)(CinemaCodestream& stream);
};

const Breach Breaches[] = {
    {"no profile", {"j2k-profile"}, [](auto& s) { s.Rsiz = 0; }},
    {"a width of 2049", {"j2k-profile"}, [](auto& s) { s.Width = s.TileWidth = 2049; }},
    {"a height of 1081", {"j2k-profile"}, [](auto& s) { s.Height = 1081; }},
    {"two tiles", {"j2k-profile"}, [](auto& s) { s.TileWidth = 1000; }},
    {"8 bits", {"j2k-profile"}, [](auto& s) { s.Components[3] = 7; }},
    {"signed samples", {"j2k-profile"}, [](auto& s) { s.Components[3] = 0x8b; }},
    {"subsampling", {"j2k-profile"}, [](auto& s) { s.Components[4] = 2; }},
    {"6 levels", {"j2k-levels"}, [](auto& s) { s.Style[5] = 6, s.Style.push_back(0x88); }},
    {"4 levels", {"j2k-levels note"}, [](auto& s) { s.Style[5] = 4, s.Style.pop_back(); }},
    {"5-3", {"j2k-levels"}, [](auto& s) { s.Style[9] = 1; }},
    {"no component transform", {"j2k-layers warning"}, [](auto& s) { s.Style[4] = 0; }},
    {"two layers", {"j2k-layers"}, [](auto& s) { s.Style[3] = 2; }},
    {"code-blocks 64 wide", {"j2k-blocks"}, [](auto& s) { s.Style[6] = 4; }},
    {"code-blocks 64 high", {"j2k-blocks"}, [](auto& s) { s.Style[7] = 4; }},
    {"code-block style", {"j2k-blocks"}, [](auto& s) { s.Style[8] = 1; }},
    {"256 at the lowest resolution", {"j2k-blocks"}, [](auto& s) { s.Style[10] = 0x88; }},
    {"128 at the highest", {"j2k-blocks"}, [](auto& s) { s.Style[15] = 0x77; }},
    {"LRCP", {"j2k-progression"}, [](auto& s) { s.Style[1] = 0; }},
    {"a POC in 2K", {"j2k-marker warning"}, [](auto& s) { s.ProgressionChanges = {0, 0, 0, 1, 6, 3, 4}; }},
    {"one tile-part", {"j2k-tile-parts"}, [](auto& s) { s.DataLengths = {10}; }},
    {"no TLM", {"j2k-tile-parts"}, [](auto& s) { s.HasTLM = false; }},
    {"two guard bits", {"j2k-guard-bits"}, [](auto& s) { s.Quant[0] = 0x42; }},
    {"a region of interest",
     {"j2k-marker warning"},
     [](auto& s) {
       s.MoreOfMainHeader = CinemaCodestream::Segment(Marker::RGN, {0, 0, 1});
     }},
    {"packed packet headers",
     {"j2k-marker warning"},
     [](auto& s) {
       s.MoreOfTilePart = CinemaCodestream::Segment(Marker::PPT, {0, 0});
     }},
    {"QCD in a tile-part",
     {"j2k-marker warning"},
     [](auto& s) { s.MoreOfTilePart = CinemaCodestream::Segment(Marker::QCD, s.Quant); }},
    {"no EOC", {"j2k-marker"}, [](auto& s) { s.Tail = {}; }},
    {"data after EOC", {"j2k-marker"}, [](auto& s) { s.Tail.push_back(0); }},
};

TEST(PictureExaminer, EachBreachIsItsFindingAndNothingElse) {
  for (const Breach& breach : Breaches) {
    CinemaCodestream stream;
    breach.Change(stream);
    EXPECT_EQ(NamesOf(stream), breach.Expected) << breach.What;
  }
}

TEST(PictureExaminer, OfCodeBlocksBothSidesAreTold) {
  CinemaCodestream stream;
  stream.Style[7] = 4;
  const FindingList findings = Examine(PictureFile(QUIRE::EditRate_24), {stream.Make()}).Findings;
  ASSERT_EQ(FoundNames(findings), Names{"j2k-blocks"});
  EXPECT_EQ(findings[0].Expected, "code blocks 32 x 32");
  EXPECT_EQ(findings[0].Found, "code blocks 32 x 64, edit unit 0");
}

TEST(PictureExaminer, FourKHasRulesOfItsOwn) {
  CinemaCodestream stream = CinemaCodestream::FourK();
  stream.ProgressionChanges.clear();
  EXPECT_EQ(NamesOf(stream), Names{"j2k-progression warning"});
  stream = CinemaCodestream::FourK();
  stream.DataLengths.resize(3);
  EXPECT_EQ(NamesOf(stream), Names{"j2k-tile-parts"});
  stream = CinemaCodestream::FourK();
  stream.Quant[0] = 0x22;
  EXPECT_EQ(NamesOf(stream), Names{"j2k-guard-bits"});
  stream = CinemaCodestream::FourK();
  stream.Style[5] = 6;
  stream.Style.push_back(0x88);
  stream.ProgressionChanges = {0, 0, 0, 1, 6, 3, 4, 6, 0, 0, 1, 7, 3, 4};
  EXPECT_EQ(NamesOf(stream), Names()) << "as many levels as are allowed";
  stream.Style[5] = 0;
  stream.Style.resize(11);
  stream.ProgressionChanges = {0, 0, 0, 1, 0, 3, 4, 0, 0, 0, 1, 1, 3, 4};
  EXPECT_EQ(NamesOf(stream), Names{"j2k-levels"});
}

TEST(PictureExaminer, WhatCannotBeReadIsDamage) {
  const Bytes sound = CinemaCodestream().Make();
  for (const size_t size : {size_t{0}, size_t{1}, size_t{60}, sound.size() - 200, sound.size() - 1}) {
    const Bytes cut(sound.begin(), sound.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_EQ(FoundNames(Examine(PictureFile(QUIRE::EditRate_24), {cut}).Findings), Names{"j2k-marker"}) << size;
  }
  CinemaCodestream other;  // TLM says something else than the tile-parts
  Bytes bytes = other.Make();
  const Bytes marker = {0xff, 0x55};
  const auto at = std::search(bytes.begin(), bytes.end(), marker.begin(), marker.end());
  *(at + 10) ^= 1;
  EXPECT_EQ(FoundNames(Examine(PictureFile(QUIRE::EditRate_24), {bytes}).Findings), Names{"j2k-marker"});
}

struct RateLimit {
  QUIRE::Rational Rate;
  size_t Codestream;
  size_t Component;
};
const RateLimit Limits[] = {{{24, 1}, 1302083, 1041666}, {{25, 1}, 1250000, 1000000}, {{30, 1}, 1041666, 833333},
                            {{48, 1}, 651041, 520833},   {{50, 1}, 625000, 500000},   {{60, 1}, 520833, 416666}};

TEST(PictureExaminer, PicturesHaveALargestSizeAtEachRate) {
  for (const RateLimit& limit : Limits) {
    const bool is_fast = limit.Rate.Numerator >= 48;
    const Names beyond = {is_fast ? "j2k-size-max warning" : "j2k-size-max"};
    const size_t near = (limit.Codestream * 98 + 99) / 100;
    EXPECT_EQ(NamesOfSizes(limit.Rate, false, {near - 1}), Names()) << limit.Rate.EncodeString();
    EXPECT_EQ(NamesOfSizes(limit.Rate, false, {near}), Names{"j2k-size-near"}) << limit.Rate.EncodeString();
    EXPECT_EQ(NamesOfSizes(limit.Rate, false, {limit.Codestream}), Names{"j2k-size-near"});
    EXPECT_EQ(NamesOfSizes(limit.Rate, false, {limit.Codestream + 1}), beyond) << limit.Rate.EncodeString();
  }
  EXPECT_EQ(NamesOfSizes({48, 1}, false, {1302083}), Names{"j2k-size-max warning"});
  EXPECT_EQ(NamesOfSizes({48, 1}, false, {1302084}), Names{"j2k-size-max"});
  EXPECT_EQ(NamesOfSizes({0, 0}, false, {3'000'000}), Names()) << "without a rate there is no limit";
}

TEST(PictureExaminer, TwoEyesShareTheLimitOfOnePicture) {
  EXPECT_EQ(NamesOfSizes({24, 1}, true, {638020, 638020}), Names());
  EXPECT_EQ(NamesOfSizes({24, 1}, true, {651041, 651041}), Names{"j2k-size-near"});
  EXPECT_EQ(NamesOfSizes({24, 1}, true, {651041, 651042}), Names{"j2k-size-max warning"});
  EXPECT_EQ(NamesOfSizes({24, 1}, true, {300000, 651042}), Names{"j2k-size-max warning"});
  EXPECT_EQ(NamesOfSizes({24, 1}, true, {651042, 651042}), Names{"j2k-size-max"});
  for (const int rate : {48, 50, 60}) EXPECT_EQ(NamesOfSizes({rate, 1}, true, {100'000, 400'000}), Names()) << rate;
  EXPECT_EQ(NamesOfSizes({48, 1}, true, {325520, 325521}), (Names{"j2k-size-near"}));
  EXPECT_EQ(NamesOfSizes({48, 1}, true, {325521, 325521}), (Names{"j2k-size-max warning"}));
  EXPECT_EQ(NamesOfSizes({48, 1}, true, {651041, 651042}), (Names{"j2k-size-max warning"}));
  EXPECT_EQ(NamesOfSizes({48, 1}, true, {651042, 651042}), (Names{"j2k-size-max"}));
}

Names NamesOfComponent(const QUIRE::Rational& rate, bool is_stereoscopic, size_t size) {
  CinemaCodestream stream;
  stream.DataLengths = {10, static_cast<ui32_t>(size) - 14, 10};
  std::vector<Bytes> frames = {stream.Make()};
  if (is_stereoscopic) frames.push_back(CinemaCodestream().Make());
  return FoundNames(Examine(PictureFile(rate, is_stereoscopic), frames).Findings);
}

TEST(PictureExaminer, AComponentHasALargestSizeAtEachRate) {
  for (const RateLimit& limit : Limits) {
    EXPECT_EQ(NamesOfComponent(limit.Rate, false, limit.Component), Names()) << limit.Rate.EncodeString();
    EXPECT_EQ(NamesOfComponent(limit.Rate, false, limit.Component + 1), Names{"j2k-size-component"});
  }
  EXPECT_EQ(NamesOfComponent({24, 1}, true, 520833), Names());
  EXPECT_EQ(NamesOfComponent({24, 1}, true, 520834), Names{"j2k-size-component"});
  CinemaCodestream large = CinemaCodestream::FourK();
  large.DataLengths = {10, 10, 10, 1'100'000, 10, 10};
  EXPECT_EQ(NamesOf(large), Names()) << "the highest resolution of 4K has no limit of its own";
}

TEST(PictureExaminer, AKindIsToldOnceWithTheFirstEditUnitAndHowMany) {
  std::vector<Bytes> frames(10, CinemaCodestream().Make());
  CinemaCodestream other;
  other.Rsiz = 0;
  other.Components[0] = other.Components[3] = 7;
  for (const size_t i : {3U, 4U, 7U}) frames[i] = other.Make();
  const FindingList findings = Examine(PictureFile(QUIRE::EditRate_24), frames).Findings;
  ASSERT_EQ(FoundNames(findings), Names{"j2k-profile"});
  EXPECT_EQ(findings[0].Place.Package, "/package");
  EXPECT_EQ(findings[0].Place.Document, "picture.mxf");
  EXPECT_EQ(findings[0].Place.EditUnit, 3U);
  EXPECT_EQ(findings[0].Place.EditRate, QUIRE::EditRate_24);
  EXPECT_EQ(findings[0].Expected, "profile 3, 12 bits unsigned");
  EXPECT_EQ(findings[0].Found, "profile 0, 8 bits, edit unit 3, 2 more");
}

TEST(PictureExaminer, BothEyesOfAnEditUnitCountOnce) {
  CinemaCodestream other;
  other.Rsiz = 0;
  const FindingList findings =
      Examine(PictureFile(QUIRE::EditRate_24, true), std::vector<Bytes>(4, other.Make())).Findings;
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings[0].Found, "profile 0, edit unit 0, 1 more");
}

TEST(PictureExaminer, MeasuresTheRate) {
  std::vector<Bytes> frames(24, OfSize(100'000));
  frames[5] = OfSize(1'000'000);
  const auto figures = Examine(PictureFile(QUIRE::EditRate_24, false, 24), frames).Figures.Picture;
  ASSERT_TRUE(figures.has_value());
  EXPECT_DOUBLE_EQ(figures->MeanRate, (23 * 100'000 + 1'000'000) * 8 / 1e6);
  EXPECT_DOUBLE_EQ(figures->PeakRate, 192.0);
  EXPECT_EQ(figures->PeakEditUnit, 5U);
  EXPECT_EQ(figures->LimitRate, 250);
  EXPECT_EQ(figures->UnitsOfSpan, 1U);
  ASSERT_EQ(figures->Spans.size(), 24U);
  EXPECT_FLOAT_EQ(figures->Spans[4], 19.2F);
  EXPECT_FLOAT_EQ(figures->Spans[5], 192.0F);
}

TEST(PictureExaminer, FiguresOfHoursTakeNoMoreThanThoseOfSeconds) {
  constexpr ui32_t duration = 250'001;
  const TrackFile file = PictureFile(QUIRE::EditRate_48, false, duration);
  const auto examiner = NewPictureExaminer(file);
  const Bytes frame = CinemaCodestream().Make();
  for (ui32_t i = 0; i < duration; i += 50) examiner->Examine({i, false, frame});
  Examined examined;
  examiner->Finish(examined.Findings, examined.Figures, true);
  ASSERT_TRUE(examined.Figures.Picture.has_value());
  EXPECT_EQ(examined.Figures.Picture->UnitsOfSpan, 251U);
  EXPECT_LE(examined.Figures.Picture->Spans.size(), PictureFigures::MaxSpans);
  EXPECT_EQ(examined.Figures.Picture->LimitRate, 500);
}

TEST(PictureExaminer, OfVideoTheRateIsAllThatIsKnown) {
  TrackFile file = PictureFile(QUIRE::EditRate_24);
  file.Essence = QUIRE::MPEG2::VideoDescriptor();
  const Examined examined = Examine(file, {Bytes(1000), Bytes(2000)});
  EXPECT_TRUE(examined.Findings.empty());
  ASSERT_TRUE(examined.Figures.Picture.has_value());
  EXPECT_DOUBLE_EQ(examined.Figures.Picture->PeakRate, 2000 * 8 * 24 / 1e6);
  EXPECT_EQ(examined.Figures.Picture->LimitRate, 0);
}

}  // namespace
