// SPDX-License-Identifier: BSD-3-Clause
#include <Assay/PictureDecoder.h>

#include "../support/CinemaCodestream.h"

#include <gtest/gtest.h>

namespace {

using testsupport::CinemaCodestream;
using Marker = CinemaCodestream::Marker;

const std::string TooManyParts = "it has too many precincts, layers or code blocks";

std::string RefusalOf(const CinemaCodestream& stream) {
  std::string reason;
  static_cast<void>(Assay::TryDecoding(stream.Make(), reason));
  return reason;
}

TEST(PictureDecoder, HeadersThatAskForTooMuchMemoryAreRefused) {
  CinemaCodestream precincts;
  precincts.Style = {0x01, 4, 0, 1, 1, 0, 3, 3, 0, 0, 0x00};
  EXPECT_EQ(RefusalOf(precincts), TooManyParts);
  CinemaCodestream layers;
  layers.Style[2] = layers.Style[3] = 0xff;
  EXPECT_EQ(RefusalOf(layers), TooManyParts);
  CinemaCodestream blocks = CinemaCodestream::FourK();
  blocks.Style[6] = blocks.Style[7] = 0;
  EXPECT_EQ(RefusalOf(blocks), TooManyParts);
  CinemaCodestream one_component;
  one_component.MoreOfMainHeader = CinemaCodestream::Segment(Marker::COC, {1, 1, 0, 3, 3, 0, 0, 0x00});
  EXPECT_EQ(RefusalOf(one_component), TooManyParts);
  CinemaCodestream large;
  large.Width = large.TileWidth = large.Height = 8000;
  EXPECT_EQ(RefusalOf(large), "it claims to have 8000 x 8000 pixels");
}

TEST(PictureDecoder, TilePartsCannotChangeTheStyle) {
  CinemaCodestream stream;
  stream.MoreOfTilePart = CinemaCodestream::Segment(Marker::COD, {0x01, 4, 0, 1, 1, 0, 3, 3, 0, 0, 0x00});
  EXPECT_EQ(RefusalOf(stream), "its tile-parts have coding styles of their own");
}

TEST(PictureDecoder, CinemaPicturesOfAnySizeAreTaken) {
  CinemaCodestream full = CinemaCodestream::FourK();
  full.Width = full.TileWidth = 4096;
  full.Style[5] = 6;
  full.Style.push_back(0x88);
  for (const CinemaCodestream& stream : {CinemaCodestream(), CinemaCodestream::FourK(), full}) {
    const std::string refusal = RefusalOf(stream);
    EXPECT_EQ(refusal.find("it has"), std::string::npos) << refusal;
    EXPECT_EQ(refusal.find("it claims"), std::string::npos) << refusal;
  }
}

}  // namespace
