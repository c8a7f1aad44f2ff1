// SPDX-License-Identifier: BSD-3-Clause
#include "../support/CinemaCodestream.h"
#include "EssenceMaker.h"

#include <QUIRE/JP2KHeaders.h>

#include <gtest/gtest.h>

namespace {

using namespace QUIRE;
using namespace QUIRE::JP2K;
using testsupport::Bytes;
using testsupport::CinemaCodestream;

CodestreamHeaders Parse(const Bytes& bytes) {
  CodestreamHeaders headers;
  EXPECT_EQ(ParseHeaders(bytes, headers), Ferro::RESULT_OK);
  return headers;
}

bool IsRefused(const Bytes& bytes) {
  CodestreamHeaders headers;
  return ParseHeaders(bytes, headers) == RESULT_RAW_FORMAT && headers == CodestreamHeaders();
}

TEST(ParseHeaders, TellsWhatA2KCodestreamIs) {
  const CinemaCodestream stream;
  const CodestreamHeaders headers = Parse(stream.Make());
  EXPECT_EQ(headers.Size.Rsiz, 3);
  EXPECT_EQ(headers.Size.Xsiz, 1998u);
  EXPECT_EQ(headers.Size.PictureComponentSizing, std::vector<ComponentSizing>(3, {11, 1, 1}));
  const CodingStyle coding = {ProgressionOrder::CPRL,
                              1,
                              true,
                              5,
                              32,
                              32,
                              0,
                              WaveletTransform::Irreversible97,
                              {0x77, 0x88, 0x88, 0x88, 0x88, 0x88}};
  EXPECT_EQ(headers.Coding, coding);
  EXPECT_EQ(headers.Quant, (Quantization{2, 1}));
  EXPECT_EQ(headers.TilePartLengths, (std::vector<ui32_t>{114, 214, 314}));
  EXPECT_EQ(headers.MainMarkers, (std::vector<Marker>{Marker::SIZ, Marker::COD, Marker::QCD, Marker::TLM}));
  EXPECT_EQ(headers.MainHeaderLength, stream.MainHeader().size());
  ASSERT_EQ(headers.TileParts.size(), 3u);
  EXPECT_EQ(headers.TileParts[1], (TilePart{headers.MainHeaderLength + 114, 214, 0, 1, 3}));
  EXPECT_EQ(headers.End, CodestreamEnd::Proper);
  EXPECT_EQ(headers.Length, stream.Make().size());
  EXPECT_FALSE(headers.HasHighThroughput);
}

TEST(ParseHeaders, TellsWhatA4KCodestreamIs) {
  const CodestreamHeaders headers = Parse(CinemaCodestream::FourK().Make());
  EXPECT_EQ(headers.ProgressionChanges, (std::vector<ProgressionChange>{{0, 0, 1, 5, 3, ProgressionOrder::CPRL},
                                                                        {5, 0, 1, 6, 3, ProgressionOrder::CPRL}}));
  EXPECT_EQ(headers.TileParts.size(), 6u);
  EXPECT_EQ(headers.Quant.GuardBits, 2);
}

TEST(ParseHeaders, ComponentsMayHaveTheirOwnStyle) {
  CinemaCodestream stream;
  stream.MoreOfMainHeader = CinemaCodestream::Segment(Marker::COC, {1, 0, 4, 2, 3, 1, 1});
  const Bytes quantization = CinemaCodestream::Segment(Marker::QCC, {2, 0x62, 1, 2});
  stream.MoreOfMainHeader.insert(stream.MoreOfMainHeader.end(), quantization.begin(), quantization.end());
  const CodestreamHeaders headers = Parse(stream.Make());
  ASSERT_EQ(headers.CodingOf.size(), 1u);
  EXPECT_EQ(headers.CodingOf[0].Component, 1);
  EXPECT_EQ(headers.CodingOf[0].Value.Levels, 4);
  EXPECT_EQ(headers.CodingOf[0].Value.CodeBlockWidth, 16u);
  EXPECT_EQ(headers.CodingOf[0].Value.Transform, WaveletTransform::Reversible53);
  ASSERT_EQ(headers.QuantOf.size(), 1u);
  EXPECT_EQ(headers.QuantOf[0], (OfComponent<Quantization>{2, {2, 3}}));
}

TEST(ParseHeaders, NumbersOfComponentsAreWideBeyond256OfThem) {
  CinemaCodestream stream;
  stream.Components.clear();
  for (int i = 0; i < 257; ++i) CinemaCodestream::Append(stream.Components, {7, 1, 1});
  stream.MoreOfMainHeader = CinemaCodestream::Segment(Marker::QCC, {1, 0, 0x20, 0});
  EXPECT_EQ(Parse(stream.Make()).QuantOf.at(0).Component, 256);
  stream.MoreOfMainHeader = CinemaCodestream::Segment(Marker::QCC, {1, 1, 0x20, 0});
  EXPECT_TRUE(IsRefused(stream.Make()));
}

TEST(ParseHeaders, TilePartLengthsComeInEveryWidth) {
  const struct {
    ui8_t Sizes;
    Bytes Entry;
  } forms[] = {
      {0x00, {1, 2}}, {0x10, {0, 1, 2}}, {0x20, {0, 0, 1, 2}}, {0x40, {0, 0, 1, 2}}, {0x60, {0, 0, 0, 0, 1, 2}}};
  for (const auto& form : forms) {
    CinemaCodestream stream;
    stream.HasTLM = false;
    Bytes content = {0, form.Sizes};
    CinemaCodestream::Append(content, form.Entry);
    stream.MoreOfMainHeader = CinemaCodestream::Segment(Marker::TLM, content);
    EXPECT_EQ(Parse(stream.Make()).TilePartLengths, std::vector<ui32_t>{0x0102}) << int{form.Sizes};
    content.push_back(0);
    stream.MoreOfMainHeader = CinemaCodestream::Segment(Marker::TLM, content);
    EXPECT_TRUE(IsRefused(stream.Make())) << int{form.Sizes};
  }
}

TEST(ParseHeaders, HighThroughputIsToldByCapabilitiesAndByStyle) {
  CinemaCodestream stream;
  stream.MoreOfMainHeader = CinemaCodestream::Segment(Marker::CAP, {0, 2, 0, 0, 0, 0});
  EXPECT_TRUE(Parse(stream.Make()).HasHighThroughput);
  stream.MoreOfMainHeader = CinemaCodestream::Segment(Marker::CAP, {0, 1, 0, 0, 0, 0});
  EXPECT_FALSE(Parse(stream.Make()).HasHighThroughput);
  stream.Style[8] = 0x40;
  EXPECT_TRUE(Parse(stream.Make()).HasHighThroughput);
}

TEST(ParseHeaders, ALengthOf0ReachesToTheEnd) {
  CinemaCodestream stream;
  stream.DataLengths = {50};
  Bytes bytes = stream.Make();
  const size_t length_at = stream.MainHeader().size() + 6;
  std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(length_at), 4, ui8_t{0});
  const CodestreamHeaders headers = Parse(bytes);
  ASSERT_EQ(headers.TileParts.size(), 1u);
  EXPECT_EQ(headers.TileParts[0].Length, 64u);
  EXPECT_EQ(headers.End, CodestreamEnd::Proper);
}

TEST(ParseHeaders, SaysHowTheStreamEnds) {
  CinemaCodestream stream;
  stream.Tail = {};
  EXPECT_EQ(Parse(stream.Make()).End, CodestreamEnd::NoEOC);
  stream.Tail = {0xff, 0xd9, 0};
  EXPECT_EQ(Parse(stream.Make()).End, CodestreamEnd::DataAfterEOC);
  stream.Tail = {0xff, 0x64, 0, 2};
  EXPECT_EQ(Parse(stream.Make()).End, CodestreamEnd::MalformedTilePart);
  stream.Tail = {};
  Bytes cut = stream.Make();
  cut.pop_back();
  EXPECT_EQ(Parse(cut).End, CodestreamEnd::Cut);
  EXPECT_EQ(Parse(cut).TileParts.size(), 2u);
  EXPECT_EQ(Parse(stream.MainHeader().empty() ? Bytes() : [&] {
              Bytes header = stream.MainHeader();
              CinemaCodestream::Append(header, {0xff, 0x90});
              return header;
            }()).End,
            CodestreamEnd::Cut);
}

TEST(ParseHeaders, MalformedTilePartsEndTheList) {
  const CinemaCodestream stream;
  const size_t part = stream.MainHeader().size();
  const struct {
    const char* What;
    size_t Offset;
    Bytes Replacement;
  } damages[] = {
      {"a wrong segment length", 3, {11}},
      {"a length that ends in the header", 6, {0, 0, 0, 13}},
      {"no start of data", 13, {0x92}},
      {"a marker that is none", 12, {0x00}},
  };
  for (const auto& damage : damages) {
    Bytes bytes = stream.Make();
    std::copy(damage.Replacement.begin(), damage.Replacement.end(),
              bytes.begin() + static_cast<std::ptrdiff_t>(part + damage.Offset));
    const CodestreamHeaders headers = Parse(bytes);
    EXPECT_EQ(headers.End, CodestreamEnd::MalformedTilePart) << damage.What;
    EXPECT_TRUE(headers.TileParts.empty()) << damage.What;
  }
}

TEST(ParseHeaders, MarkersOfTilePartHeadersAreNoted) {
  CinemaCodestream stream;
  stream.MoreOfTilePart = CinemaCodestream::Segment(Marker::PLT, {0, 5});
  const CodestreamHeaders headers = Parse(stream.Make());
  EXPECT_EQ(headers.TilePartMarkers, std::vector<Marker>{Marker::PLT});
  EXPECT_EQ(headers.End, CodestreamEnd::Proper);
}

TEST(ParseHeaders, ACutMainHeaderIsRefusedAtEveryByte) {
  CinemaCodestream stream = CinemaCodestream::FourK();
  stream.MoreOfMainHeader = CinemaCodestream::Segment(Marker::COM, {0, 1, 'x'});
  const Bytes header = stream.MainHeader();
  for (size_t length = 0; length < header.size() + 2; ++length) {
    const Bytes whole = stream.Make();
    ASSERT_TRUE(IsRefused(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)))) << length;
  }
}

TEST(ParseHeaders, MalformedSegmentsOfTheMainHeaderAreRefused) {
  const Bytes segments[] = {
      CinemaCodestream::Segment(Marker::COD, CinemaCodestream().Style),  // twice
      CinemaCodestream::Segment(Marker::QCD, {0x22, 1}),                 // twice
      CinemaCodestream::Segment(Marker::SIZ, {}),
      CinemaCodestream::Segment(Marker::COC, {3, 0, 5, 3, 3, 0, 0}),  // no such component
      CinemaCodestream::Segment(Marker::COC, {1, 0, 33, 3, 3, 0, 0}),
      CinemaCodestream::Segment(Marker::COC, {1, 0, 5, 9, 0, 0, 0}),
      CinemaCodestream::Segment(Marker::COC, {1, 0, 5, 5, 4, 0, 0}),
      CinemaCodestream::Segment(Marker::COC, {1, 0, 5, 3, 3, 0, 2}),
      CinemaCodestream::Segment(Marker::COC, {1, 1, 5, 3, 3, 0, 0}),     // precincts missing
      CinemaCodestream::Segment(Marker::COC, {1, 0, 5, 3, 3, 0, 0, 0}),  // too long
      CinemaCodestream::Segment(Marker::QCC, {1, 0x23, 1}),
      CinemaCodestream::Segment(Marker::QCC, {1, 0x22}),
      CinemaCodestream::Segment(Marker::POC, {}),
      CinemaCodestream::Segment(Marker::POC, {0, 0, 0, 1, 5, 3}),
      CinemaCodestream::Segment(Marker::TLM, {0}),
      CinemaCodestream::Segment(Marker::TLM, {0, 0x30, 1, 2, 3, 4, 5}),
      CinemaCodestream::Segment(Marker::CAP, {0}),
      {0xff, 0xd9},
      {0xff, 0x93},
      {0xff, 0x64, 0, 1},
      {0x00, 0x64, 0, 2},
  };
  for (const Bytes& segment : segments) {
    CinemaCodestream stream;
    stream.MoreOfMainHeader = segment;
    EXPECT_TRUE(IsRefused(stream.Make())) << testing::PrintToString(segment);
  }
}

TEST(ParseHeaders, ReservedMarkersHaveNoSegment) {
  CinemaCodestream stream;
  stream.MoreOfMainHeader = {0xff, 0x30, 0xff, 0x3f};
  EXPECT_EQ(Parse(stream.Make()).End, CodestreamEnd::Proper);
}

TEST(ParseHeaders, MoreTilePartsThanAreKeptAreTakenForDamage) {
  CinemaCodestream stream;
  stream.HasTLM = false;
  stream.DataLengths.assign(CodestreamHeaders::MaxTileParts + 1, 0);
  const CodestreamHeaders headers = Parse(stream.Make());
  EXPECT_EQ(headers.End, CodestreamEnd::MalformedTilePart);
  EXPECT_EQ(headers.TileParts.size(), CodestreamHeaders::MaxTileParts);
}

TEST(ParseHeaders, ReadsWhatAnEncoderWrites) {
  const CodestreamHeaders headers = Parse(testsupport::MakeCodestream(64, 36, 1));
  EXPECT_EQ(headers.End, CodestreamEnd::Proper);
  EXPECT_EQ(headers.Size.Xsiz, 64u);
  EXPECT_EQ(headers.TileParts.size(), 1u);
}

TEST(BytesOfComponents, AreThoseOfTheirTileParts) {
  EXPECT_EQ(BytesOfComponents(Parse(CinemaCodestream().Make())),
            (std::vector<ComponentBytes>{{114, 114}, {214, 214}, {314, 314}}));
  EXPECT_EQ(BytesOfComponents(Parse(CinemaCodestream::FourK().Make())),
            (std::vector<ComponentBytes>{{114 + 414, 114}, {214 + 514, 214}, {314 + 614, 314}}));
}

TEST(BytesOfComponents, OfACutStreamFollowFromTLM) {
  const CinemaCodestream stream;
  Bytes beginning = stream.MainHeader();
  CinemaCodestream::Append(beginning, {0xff, 0x90});
  EXPECT_EQ(BytesOfComponents(Parse(beginning)), (std::vector<ComponentBytes>{{114, 114}, {214, 214}, {314, 314}}));
}

TEST(BytesOfComponents, AreNotKnownWhereTilePartsAreLaidOutOtherwise) {
  CinemaCodestream one_part;
  one_part.DataLengths = {100};
  EXPECT_TRUE(BytesOfComponents(Parse(one_part.Make())).empty());
  CinemaCodestream by_layer;
  by_layer.Style[1] = 0;
  EXPECT_TRUE(BytesOfComponents(Parse(by_layer.Make())).empty());
  CinemaCodestream tiled;
  tiled.TileWidth = 1000;
  EXPECT_TRUE(BytesOfComponents(Parse(tiled.Make())).empty());
}

}  // namespace
